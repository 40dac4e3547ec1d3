#include "client/output/ExportJournal.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

const ExportIdentity identity = {"asked", "content"};
const KeptBlock first = {"values 0 0 10 10 Byte 1", 0, 100, 17};
const KeptBlock second = {"values 0 10 10 10 Byte 1", 100, 100, 4294967295U};

std::string whole() { return journalLine(identity) + journalLine(first) + journalLine(second); }

TEST(ExportJournal, IsReadAsItWasWritten) {
  const JournalContent content = readJournal(whole());
  EXPECT_TRUE(content.isBegun);
  EXPECT_EQ(content.identity, identity);
  EXPECT_EQ(content.blocks, (std::vector<KeptBlock>{first, second}));
  EXPECT_EQ(content.wholeBytes, whole().size());
}

TEST(ExportJournal, EndsBeforeALineThatIsTorn) {
  const std::string begin = journalLine(identity) + journalLine(first);
  for (std::size_t cut = begin.size(); cut < whole().size(); ++cut) {
    const JournalContent content = readJournal(whole().substr(0, cut));
    EXPECT_EQ(content.blocks, std::vector<KeptBlock>{first}) << cut;
    EXPECT_EQ(content.wholeBytes, begin.size());
  }
}

TEST(ExportJournal, EndsBeforeALineOfWhichABitIsWrong) {
  const std::string begin = journalLine(identity) + journalLine(first);
  for (std::size_t place = begin.size(); place < whole().size() - 1; ++place) {
    std::string wrong = whole();
    wrong[place] = static_cast<char>(wrong[place] ^ 1);
    EXPECT_EQ(readJournal(wrong).blocks.size(), 1U) << place;
  }
}

TEST(ExportJournal, HasNotBegunWithoutItsFirstLine) {
  for (const std::string& text : {std::string(), journalLine(identity).substr(0, 9), journalLine(first),
                                  std::string(1000, '\0'), std::string("\n\n\t\n")}) {
    const JournalContent content = readJournal(text);
    EXPECT_FALSE(content.isBegun);
    EXPECT_EQ(content.wholeBytes, 0U);
    EXPECT_TRUE(content.blocks.empty());
  }
}

TEST(ExportJournal, HoldsTextsWithTheSignsThatPartItsFieldsAndLines) {
  for (const std::string text : {"a\tb", "\t", "a\nb\r", "a\\tb", "\\", "\\\\\t\\n"}) {
    const ExportIdentity named = {text, "x" + text};
    const KeptBlock block = {text, 1, 2, 3};
    const JournalContent content = readJournal(journalLine(named) + journalLine(block) + journalLine(first));
    EXPECT_EQ(content.identity, named) << text;
    EXPECT_EQ(content.blocks, (std::vector<KeptBlock>{block, first})) << text;
  }
}

TEST(ExportJournal, HasTheUsualChecksum) {
  const std::string text = "123456789";
  EXPECT_EQ(checkOf({reinterpret_cast<const std::byte*>(text.data()), text.size()}), 0xCBF43926U);
  EXPECT_EQ(checkOf({}), 0U);
}

}  // namespace
}  // namespace vlclientui::client
