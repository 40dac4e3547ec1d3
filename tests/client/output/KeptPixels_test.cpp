#include "client/output/KeptPixels.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "client/ChildProcess.h"
#include "client/ExportFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::byte>;
using Names = std::vector<std::string>;

const ExportIdentity identity = {"asked", "content"};

Bytes bytes(int value, std::size_t count = 1000) { return Bytes(count, static_cast<std::byte>(value)); }

/// The pixels of a step; empty where it is not kept.
Bytes found(KeptPixels& kept, const std::string& step, std::size_t count = 1000) {
  Bytes pixels(count);
  return kept.find(step, pixels) ? pixels : Bytes();
}

class KeptPixelsTest : public test::ExportFixture {
 protected:
  [[nodiscard]] fs::path target() const { return out("image.Tif"); }
  [[nodiscard]] fs::path file(const char* name) const { return keptFolder(target()) / name; }
  void keepTwo() const {
    KeptPixels kept(target(), identity);
    EXPECT_TRUE(kept.keep("one", bytes(1)));
    EXPECT_TRUE(kept.keep("two", bytes(2)));
  }
  [[nodiscard]] std::string refusal(const ExportIdentity& other) const {
    try {
      const KeptPixels kept(target(), other);
    } catch (const RuntimeFailure& reason) {
      return reason.description();
    }
    return {};
  }
};

TEST_F(KeptPixelsTest, AreFoundByWhoGoesOn) {
  keepTwo();
  EXPECT_EQ(outputs(), Names{"image.Tif.unfinished"});
  EXPECT_EQ(keptExport(target())->bytes, 2000U);
  KeptPixels kept(target(), identity);
  EXPECT_EQ(found(kept, "one"), bytes(1));
  EXPECT_EQ(found(kept, "two"), bytes(2));
  EXPECT_EQ(found(kept, "three"), Bytes());
  EXPECT_EQ(found(kept, "two", 999), Bytes()) << "another size";
  EXPECT_EQ(kept.bytes(), 2000U);
}

TEST_F(KeptPixelsTest, LeaveNothingWhereNothingWasReadOrTheFileIsWhole) {
  { const KeptPixels kept(target(), identity); }
  EXPECT_EQ(outputs(), Names());
  keepTwo();
  KeptPixels(target(), identity).discard();
  EXPECT_EQ(outputs(), Names());
  EXPECT_FALSE(keptExport(target()));
}

TEST_F(KeptPixelsTest, OfAnotherRequestOrAChangedSourceAreRefused) {
  keepTwo();
  EXPECT_TRUE(test::holds(refusal({"other", "content"}), "belongs to another request"))
      << refusal({"other", "content"});
  EXPECT_TRUE(test::holds(refusal({"asked", "other"}), "source has changed"));
  EXPECT_EQ(refusal(identity), "");
  EXPECT_EQ(keptExport(target())->bytes, 2000U) << "a refusal takes nothing away";
}

TEST_F(KeptPixelsTest, CountOnlyOnceTheJournalTellsThem) {
  keepTwo();
  std::ofstream(file("pixels"), std::ios::app) << "pixels that no line tells of";
  std::ofstream(file("journal"), std::ios::app) << "block\t2000\t10";
  {
    KeptPixels kept(target(), identity);
    EXPECT_EQ(kept.bytes(), 2000U);
    EXPECT_TRUE(kept.keep("three", bytes(3)));
  }
  KeptPixels kept(target(), identity);
  EXPECT_EQ(found(kept, "two"), bytes(2));
  EXPECT_EQ(found(kept, "three"), bytes(3));
}

TEST_F(KeptPixelsTest, ThatWereDamagedAreReadAgain) {
  keepTwo();
  {
    std::fstream pixels(file("pixels"), std::ios::in | std::ios::out | std::ios::binary);
    pixels.seekp(1500);
    pixels.put('x');
  }
  KeptPixels kept(target(), identity);
  EXPECT_EQ(found(kept, "one"), bytes(1));
  EXPECT_EQ(found(kept, "two"), Bytes());
}

TEST_F(KeptPixelsTest, AreReadAgainWhereTheirFileIsTooShort) {
  keepTwo();
  fs::resize_file(file("pixels"), 1200);
  KeptPixels kept(target(), identity);
  EXPECT_EQ(found(kept, "one"), bytes(1));
  EXPECT_EQ(found(kept, "two"), Bytes());
  EXPECT_TRUE(kept.keep("two", bytes(2)));
}

TEST_F(KeptPixelsTest, BelongToOneExportAtATime) {
  const KeptPixels kept(target(), identity);
  EXPECT_TRUE(test::holds(refusal(identity), "Another export to this file is going on"));
  EXPECT_TRUE(keptExport(target())->isInUse);
  EXPECT_FALSE(discardKept(target()));
  const auto other = test::inChild([&] { return refusal(identity); });
  EXPECT_TRUE(test::holds(other.text, "Another export to this file is going on")) << other.text;
}

TEST_F(KeptPixelsTest, AreTakenUpThoughSomebodyLooksAtThemMeanwhile) {
  keepTwo();
  std::atomic<bool> isOver = false;
  std::jthread looking([&] {
    while (!isOver) static_cast<void>(keptExport(target()));
  });
  for (int i = 0; i < 50; ++i) EXPECT_EQ(refusal(identity), "") << i;
  isOver = true;
}

TEST_F(KeptPixelsTest, StandBesideATargetThatIsToldWithoutItsFolder) {
  EXPECT_EQ(keptFolder("image.Tif"), fs::current_path() / "image.Tif.unfinished");
  EXPECT_EQ(keptFolder(target()).parent_path(), target().parent_path());
}

TEST_F(KeptPixelsTest, SurviveTheirProcess) {
  const auto killed = test::inChild([&] {
    KeptPixels kept(target(), identity);
    EXPECT_TRUE(kept.keep("one", bytes(1, 9 << 20)));
    kill(getpid(), SIGKILL);
    return std::string();
  });
  EXPECT_TRUE(killed.isKilled);
  KeptPixels kept(target(), identity);
  EXPECT_EQ(found(kept, "one", 9 << 20), bytes(1, 9 << 20));
}

TEST_F(KeptPixelsTest, TellWhyTheyCannotBeKept) {
  writeText("out/image.Tif.unfinished", "no folder");
  EXPECT_TRUE(test::holds(refusal(identity), "cannot be kept in")) << refusal(identity);
}

TEST_F(KeptPixelsTest, GoWithAFileWhoseNameIsAsLongAsANameCanBe) {
  const fs::path longest = out(std::string(255, 'n'));
  { EXPECT_TRUE(KeptPixels(longest, identity).keep("one", bytes(1))); }
  EXPECT_TRUE(keptExport(longest));
  EXPECT_TRUE(discardKept(longest));
  EXPECT_EQ(outputs(), Names());
}

// Exports of a local raster, which keep pixels in the same way.
class KeptExportTest : public KeptPixelsTest, public testing::WithParamInterface<const char*> {
 protected:
  KeptExportTest() { makeSlope(); }
  /// @param share of the export after which it is canceled; more than 1 for none.
  std::string exportSlope(const std::string& name, Keeping keeping, double share) const {
    const auto made = service("ImageService://localhost/slope");
    made->setKeeping(keeping);
    made->setProgress([share](double done) { return done < share; });
    made->ExportProperties(wholeSlope(GetParam(), name).document());
    return made->ExportImage() ? std::string() : made->status();
  }
};

INSTANTIATE_TEST_SUITE_P(Formats, KeptExportTest, testing::Values("Tiff", "JPEG", "PNG", "JPEG2000"));

TEST_P(KeptExportTest, GivesTheFileOfAnUnbrokenOne) {
  ASSERT_EQ(exportSlope("whole", Keeping::Nothing, 2), "");
  const std::string whole = outputs().front();
  const fs::path target = out("broken" + whole.substr(5));
  EXPECT_NE(exportSlope(target.filename().string(), Keeping::Begin, 0.9), "");
  EXPECT_FALSE(fs::exists(target));
  ASSERT_EQ(exportSlope(target.filename().string(), Keeping::GoOn, 2), "");
  EXPECT_EQ(test::contentOf(target.string()), test::contentOf(out(whole)));
  EXPECT_FALSE(fs::exists(keptFolder(target)));
}

TEST_P(KeptExportTest, IsTakenAwayByOneThatBecomesWhole) {
  EXPECT_NE(exportSlope("image", Keeping::Begin, 0.9), "");
  EXPECT_TRUE(keptExport(out("image")));
  EXPECT_TRUE(test::holds(exportSlope("image", Keeping::Begin, 2), "go on with it, or begin anew"));
  ASSERT_EQ(exportSlope("image", Keeping::Nothing, 2), "");
  EXPECT_FALSE(fs::exists(keptFolder(out("image"))));
}

TEST_P(KeptExportTest, LeavesNothingWhereNothingIsToBeKept) {
  EXPECT_NE(exportSlope("image", Keeping::Nothing, 0.9), "");
  EXPECT_EQ(outputs(), Names());
}

TEST_P(KeptExportTest, DoesNotGoOnWithASourceThatHasChanged) {
  EXPECT_NE(exportSlope("image", Keeping::Begin, 0.9), "");
  const fs::path source = folder() / "slope.tif";
  fs::last_write_time(source, fs::last_write_time(source) + std::chrono::seconds(5));
  EXPECT_TRUE(test::holds(exportSlope("image", Keeping::GoOn, 2), "source has changed"));
  EXPECT_EQ(exportSlope("image", Keeping::Anew, 2), "");
}

}  // namespace
}  // namespace vlclientui::client
