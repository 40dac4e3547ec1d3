// Journals that were torn, damaged, or written by something else, and what is made of the pixels beside them.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <span>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/output/KeptPixels.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::byte>;

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
const ExportIdentity identity = {"asked", "content"};
const KeptBlock sound = {"values 0 0 10 10 Byte 1", 0, 100, 17};

/// A line that has the right checksum, whatever else it holds.
std::string checkedLine(const std::string& fields) {
  return fields + std::to_string(checkOf(std::as_bytes(std::span(fields)))) + "\n";
}

TEST(ForeignJournal, IsWrittenInFieldsThatLaterVersionsCanRead) {
  EXPECT_EQ(journalLine(identity), checkedLine("export-1\tasked\tcontent\t"));
  EXPECT_EQ(journalLine(sound), checkedLine("block\t0\t100\t17\tvalues 0 0 10 10 Byte 1\t"));
}

TEST(ForeignJournal, EndsBeforeALineThatIsWholeButTellsOfNoPixels) {
  const std::string begin = journalLine(identity) + journalLine(sound);
  for (const char* const fields : {"",
                                   "\t",
                                   "block\t",
                                   "block\t100\t10\t1\t",
                                   "block\t100\t10\t1\tstep\tmore\t",
                                   "Block\t100\t10\t1\tstep\t",
                                   " block\t100\t10\t1\tstep\t",
                                   "block 100 10 1 step\t",
                                   "block\t\t10\t1\tstep\t",
                                   "block\t-1\t10\t1\tstep\t",
                                   "block\t+1\t10\t1\tstep\t",
                                   "block\t 1\t10\t1\tstep\t",
                                   "block\t0x1\t10\t1\tstep\t",
                                   "block\t1.0\t10\t1\tstep\t",
                                   "block\t100\t1e3\t1\tstep\t",
                                   "block\t18446744073709551616\t10\t1\tstep\t",
                                   "block\t100\t18446744073709551616\t1\tstep\t",
                                   "block\t100\t10\t4294967296\tstep\t",
                                   "block\t100\t10\t-1\tstep\t",
                                   "export-1\tasked\tcontent\t"}) {
    const JournalContent content = readJournal(begin + checkedLine(fields) + journalLine(sound));
    EXPECT_EQ(content.blocks, std::vector<KeptBlock>{sound}) << fields;
    EXPECT_EQ(content.wholeBytes, begin.size()) << fields;
  }
}

TEST(ForeignJournal, HasNotBegunWithAFirstLineOfAnotherKind) {
  for (const char* const fields :
       {"export-2\tasked\tcontent\t", "export-10\tasked\tcontent\t", "EXPORT-1\tasked\tcontent\t",
        "export-1\tasked\t", "export-1\tasked\tcontent\tmore\t", "export-1\t", "\texport-1\tasked\tcontent\t",
        "{\"version\": 1}\t"}) {
    const JournalContent content = readJournal(checkedLine(fields) + journalLine(sound));
    EXPECT_FALSE(content.isBegun) << fields;
    EXPECT_EQ(content.wholeBytes, 0U) << fields;
    EXPECT_TRUE(content.blocks.empty()) << fields;
  }
}

TEST(ForeignJournal, IsNoneWhereAnEditorChangedItsLineEndsOrItsBegin) {
  const std::string whole = journalLine(identity) + journalLine(sound);
  std::string windows = whole;
  for (std::size_t at = windows.find('\n'); at != std::string::npos; at = windows.find('\n', at + 2))
    windows.insert(at, "\r");
  std::string mac = whole;
  std::ranges::replace(mac, '\n', '\r');
  std::string blanks = whole;
  std::ranges::replace(blanks, '\t', ' ');
  for (const std::string& text : {windows, mac, blanks, "\xEF\xBB\xBF" + whole, "\n" + whole, " " + whole,
                                  std::string(1, '\0') + whole}) {
    EXPECT_FALSE(readJournal(text).isBegun) << text;
  }
  ASSERT_TRUE(readJournal(whole).isBegun);
}

TEST(ForeignJournal, KeepsTheOrderAndTheRepetitionOfItsBlocks) {
  const KeptBlock later = {sound.step, 100, 100, 18};
  const JournalContent content =
      readJournal(journalLine(identity) + journalLine(sound) + journalLine(later) + journalLine(sound));
  EXPECT_EQ(content.blocks, (std::vector<KeptBlock>{sound, later, sound}));
}

TEST(ForeignJournal, ReadsBlocksOfEverySizeAndName) {
  for (const KeptBlock& block :
       {KeptBlock{"step", largest, largest, std::numeric_limits<std::uint32_t>::max()},
        KeptBlock{"", 0, 0, 0}, KeptBlock{"  blanks  ", 1, 2, 3}, KeptBlock{"H\xC3\xB6he \xFF", 1, 2, 3},
        KeptBlock{std::string(100000, 's'), 1, 2, 3}, KeptBlock{std::string("a\0b", 3), 1, 2, 3},
        KeptBlock{"carriage\rreturn", 1, 2, 3}, KeptBlock{"block", 1, 2, 3}}) {
    const JournalContent content = readJournal(journalLine(identity) + journalLine(block));
    EXPECT_EQ(content.blocks, std::vector<KeptBlock>{block}) << block.step.substr(0, 50);
  }
}

TEST(ForeignJournal, LosesAllBehindAByteThatIsWrongAnywhereBeforeIt) {
  const std::string whole = journalLine(identity) + journalLine(sound) + journalLine(sound);
  const std::size_t firstEnd = journalLine(identity).size();
  const std::size_t secondEnd = firstEnd + journalLine(sound).size();
  for (std::size_t place = 0; place < secondEnd; ++place) {
    std::string wrong = whole;
    wrong[place] = static_cast<char>(wrong[place] ^ 0x55);
    const JournalContent content = readJournal(wrong);
    EXPECT_TRUE(content.blocks.empty()) << place;
    EXPECT_EQ(content.isBegun, place >= firstEnd) << place;
    EXPECT_EQ(content.wholeBytes, place < firstEnd ? 0 : firstEnd) << place;
  }
}

/// Folders of kept pixels whose files did not come from here.
class ForeignPixels : public test::ExportFixture {
 protected:
  [[nodiscard]] fs::path target() const { return out("image.Tif"); }
  void write(const std::string& journal, const std::string& pixels = {}) const {
    fs::create_directories(keptFolder(target()));
    std::ofstream(keptFolder(target()) / "journal", std::ios::binary) << journal;
    std::ofstream(keptFolder(target()) / "pixels", std::ios::binary) << pixels;
  }
  [[nodiscard]] static bool has(KeptPixels& kept, const std::string& step, std::size_t count = 4) {
    Bytes pixels(count);
    return kept.find(step, pixels);
  }
  [[nodiscard]] static KeptBlock block(const std::string& step, std::uint64_t offset, const std::string& of) {
    return {step, offset, of.size(), checkOf(std::as_bytes(std::span(of)))};
  }
};

TEST_F(ForeignPixels, AreForgottenWhereTheJournalIsNone) {
  for (const std::string& journal :
       {std::string(), std::string("a list of things to do\n"), std::string(5000, '\0'),
        std::string(300, '\n'), journalLine(sound), journalLine(identity).substr(1),
        checkedLine("export-2\tasked\tcontent\t")}) {
    write(journal, "rest");
    EXPECT_FALSE(keptExport(target())) << journal;
    {
      KeptPixels kept(target(), identity);
      EXPECT_EQ(kept.bytes(), 0U) << journal;
      EXPECT_TRUE(kept.keep("mine", Bytes(4)));
    }
    ASSERT_TRUE(keptExport(target())) << journal;
    EXPECT_EQ(keptExport(target())->identity, identity);
    EXPECT_TRUE(has(*std::make_unique<KeptPixels>(target(), identity), "mine")) << journal;
    EXPECT_TRUE(discardKept(target()));
  }
}

TEST_F(ForeignPixels, AreNoneOfAnExportThatOnlyBegan) {
  write(journalLine(identity));
  EXPECT_FALSE(keptExport(target()));
  { const KeptPixels kept(target(), identity); }
  EXPECT_EQ(outputs(), std::vector<std::string>()) << "nothing was kept, so nothing stays";
}

TEST_F(ForeignPixels, AreFoundByTheLastLineThatTellsOfAStep) {
  write(journalLine(identity) + journalLine(block("one", 0, "aaaa")) + journalLine(block("one", 4, "bbbb")),
        "aaaabbbb");
  KeptPixels kept(target(), identity);
  std::string pixels(4, ' ');
  ASSERT_TRUE(kept.find("one", std::as_writable_bytes(std::span(pixels))));
  EXPECT_EQ(pixels, "bbbb");
  EXPECT_EQ(kept.bytes(), 8U);
}

TEST_F(ForeignPixels, AreTakenWhereTwoStepsShareThem) {
  write(journalLine(identity) + journalLine(block("one", 0, "aaaa")) + journalLine(block("two", 2, "aabb")),
        "aaaabb");
  KeptPixels kept(target(), identity);
  EXPECT_TRUE(has(kept, "one"));
  EXPECT_TRUE(has(kept, "two"));
  EXPECT_FALSE(has(kept, "two", 3));
  EXPECT_FALSE(has(kept, "One"));
}

TEST_F(ForeignPixels, AreReadAgainWhereTheJournalTellsOfPlacesThatAreNotThere) {
  for (const std::uint64_t offset : {std::uint64_t{1}, std::uint64_t{5000}, largest - 3, largest}) {
    write(journalLine(identity) + journalLine(block("far", offset, "aaaa")), "aaaa");
    KeptPixels kept(target(), identity);
    EXPECT_FALSE(has(kept, "far")) << offset;
    EXPECT_TRUE(kept.keep("near", Bytes(4))) << offset;
  }
}

TEST_F(ForeignPixels, AreToldAsAFailureWhereNoFileCouldHoldThemAndCanBeTakenAway) {
  write(journalLine(identity) + journalLine(block("far", largest / 2, "aaaa")), "aaaa");
  try {
    const KeptPixels kept(target(), identity);
    FAIL() << "a file of that size";
  } catch (const RuntimeFailure& failure) {
    EXPECT_TRUE(test::holds(failure.description(), "cannot be kept in")) << failure.description();
  }
  EXPECT_TRUE(discardKept(target()));
  EXPECT_EQ(KeptPixels(target(), identity).bytes(), 0U);
}

TEST_F(ForeignPixels, OfNothingAreNothingToTakeAway) {
  EXPECT_FALSE(keptExport(target()));
  EXPECT_TRUE(discardKept(target()));
  fs::create_directories(keptFolder(target()));
  EXPECT_FALSE(keptExport(target()));
  EXPECT_TRUE(discardKept(target()));
  fs::create_directories(keptFolder(target()) / "journal");
  EXPECT_FALSE(keptExport(target())) << "a folder in place of the journal";
  EXPECT_THROW(KeptPixels(target(), identity), RuntimeFailure);
}

TEST_F(ForeignPixels, LieInAFolderByTheNameOfTheFile) {
  EXPECT_EQ(keptFolder("/maps/image.Tif"), "/maps/image.Tif.unfinished");
  EXPECT_EQ(keptFolder("image"), fs::absolute("image.unfinished"));
  EXPECT_EQ(keptFolder("/maps/" + std::string(200, 'n')), "/maps/" + std::string(200, 'n') + ".unfinished");
  const fs::path one = keptFolder("/maps/" + std::string(201, 'n'));
  EXPECT_EQ(one.parent_path(), "/maps");
  EXPECT_LT(one.filename().string().size(), 40U);
  EXPECT_EQ(one, keptFolder("/maps/" + std::string(201, 'n')));
  EXPECT_NE(one, keptFolder("/maps/" + std::string(202, 'n')));
}

}  // namespace
}  // namespace vlclientui::client
