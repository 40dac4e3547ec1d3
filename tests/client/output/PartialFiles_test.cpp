#include "client/output/PartialFiles.h"

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>

#include <cpl_vsi.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "client/ChildProcess.h"
#include "client/ExportFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Names = std::vector<std::string>;

/// Both kinds of place must give the same result; only what others see meanwhile differs.
class PartialFile : public test::ExportFixture, public testing::WithParamInterface<PartialPlace> {
 protected:
  void SetUp() override {
    if (GetParam() == PartialPlace::WithoutName && !GrowingFile::withoutName(out(""))) {
      GTEST_SKIP() << "the file system of " << out("") << " knows no files without a name";
    }
  }

  static std::string read(const std::string& file) {
    VSILFILE* stream = VSIFOpenL(file.c_str(), "rb");
    std::string text(100, '\0');
    text.resize(VSIFReadL(text.data(), 1, text.size(), stream));
    EXPECT_NE(VSIFEofL(stream), 0);
    EXPECT_EQ(VSIFCloseL(stream), 0);
    return text;
  }
};

INSTANTIATE_TEST_SUITE_P(Places, PartialFile,
                         testing::Values(PartialPlace::WithoutName, PartialPlace::HiddenFolder),
                         [](const auto& one) {
                           return one.param == PartialPlace::WithoutName ? "WithoutName" : "HiddenFolder";
                         });

TEST_P(PartialFile, ReplacesTheFormerOneWithAllThatGoesWithIt) {
  writeText("out/a", "former");
  for (const char* const file : {"out/a.aux.xml", "out/a.ovr", "out/a.msk"}) writeText(file, "of the former");
  PartialFiles partial(out("a"), GetParam());
  partial.write("a", "new");
  partial.write("a.tfw", "world");
  EXPECT_EQ(test::contentOf(out("a")), "former");
  partial.publish();
  EXPECT_EQ(outputs(), (Names{"a", "a.tfw"}));
  EXPECT_EQ(test::contentOf(out("a")), "new");
  EXPECT_EQ(test::contentOf(out("a.tfw")), "world");
}

TEST_P(PartialFile, KeepsWhoMayReadIt) {
  writeText("out/a", "former");
  std::filesystem::permissions(out("a"), std::filesystem::perms(0600));
  PartialFiles partial(out("a"), GetParam());
  partial.write("a", "new");
  partial.write("a.tfw", "world");
  partial.publish();
  EXPECT_EQ(test::contentOf(out("a")), "new");
  EXPECT_EQ(std::filesystem::status(out("a")).permissions(), std::filesystem::perms(0600));
  const auto usual = std::filesystem::status(writeText("usual", "")).permissions();
  EXPECT_EQ(std::filesystem::status(out("a.tfw")).permissions(), usual);
}

TEST_P(PartialFile, LeavesALinkThatLeadsToItAndStandsBesideItWithAllElse) {
  writeText("store/real", "former");
  for (const char* const file : {"store/real.ovr", "out/link.ovr"}) writeText(file, "of the former");
  std::filesystem::permissions(folder() / "store/real", std::filesystem::perms(0640));
  std::filesystem::create_symlink("../store/real", out("link"));
  PartialFiles partial(out("link"), GetParam());
  partial.write("link", "new");
  partial.write("link.aux.xml", "description");
  EXPECT_EQ(test::contentOf(out("link")), "former");
  partial.publish();
  EXPECT_TRUE(std::filesystem::is_symlink(out("link")));
  EXPECT_EQ(test::contentOf((folder() / "store/real").string()), "new");
  EXPECT_EQ(std::filesystem::status(out("link")).permissions(), std::filesystem::perms(0640));
  EXPECT_EQ(outputs(), (Names{"link", "link.aux.xml"}));
  const std::filesystem::directory_iterator store(folder() / "store");
  EXPECT_EQ(std::distance(begin(store), end(store)), 1);
}

TEST_P(PartialFile, FillsALinkThatLedNowhere) {
  std::filesystem::create_directory(folder() / "store");
  std::filesystem::create_symlink(folder() / "store/real", out("link"));
  PartialFiles partial(out("link"), GetParam());
  partial.write("link", "new");
  partial.publish();
  EXPECT_TRUE(std::filesystem::is_symlink(out("link")));
  EXPECT_EQ(test::contentOf((folder() / "store/real").string()), "new");
}

TEST_P(PartialFile, BehindALinkIntoAMissingFolderIsToldOfAtOnce) {
  std::filesystem::create_symlink(folder() / "store/real", out("link"));
  EXPECT_THROW(PartialFiles(out("link"), GetParam()), RuntimeFailure);
  EXPECT_EQ(outputs(), (Names{"link"}));
}

TEST_P(PartialFile, DoesNotTakeThePlaceOfAPipe) {
  ASSERT_EQ(mkfifo(out("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("pipe", out("link"));
  for (const char* name : {"pipe", "link"}) EXPECT_THROW(PartialFiles(out(name), GetParam()), RuntimeFailure);
  EXPECT_TRUE(std::filesystem::is_fifo(out("pipe")));
  EXPECT_EQ(outputs(), (Names{"link", "pipe"}));
}

TEST_P(PartialFile, GivenUpBehindALinkLeavesNothing) {
  writeText("store/real", "former");
  std::filesystem::create_symlink(folder() / "store/real", out("link"));
  { PartialFiles(out("link"), GetParam()).write("link", "half"); }
  EXPECT_EQ(test::contentOf(out("link")), "former");
  EXPECT_EQ(outputs(), (Names{"link"}));
  const std::filesystem::directory_iterator store(folder() / "store");
  EXPECT_EQ(std::distance(begin(store), end(store)), 1);
}

TEST_P(PartialFile, IsAFileLikeOthersToTheRasterLibrary) {
  PartialFiles partial(out("a"), GetParam());
  const std::string file = partial.file();
  EXPECT_EQ(VSIFOpenL(file.c_str(), "rb"), nullptr);
  VSILFILE* stream = VSIFOpenL(file.c_str(), "wb+");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(VSIFWriteL("0123456789", 1, 10, stream), 10U);
  EXPECT_EQ(VSIFSeekL(stream, 2, SEEK_SET), 0);
  EXPECT_EQ(VSIFWriteL("ab", 2, 1, stream), 1U);
  EXPECT_EQ(VSIFTellL(stream), 4U);
  EXPECT_EQ(VSIFSeekL(stream, 0, SEEK_END), 0);
  EXPECT_EQ(VSIFTellL(stream), 10U);
  EXPECT_EQ(VSIFTruncateL(stream, 6), 0);
  EXPECT_EQ(VSIFCloseL(stream), 0);
  EXPECT_EQ(read(file), "01ab45");
  VSIStatBufL facts;
  EXPECT_EQ(VSIStatL(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_size, 6);
  partial.publish();
  EXPECT_EQ(test::contentOf(out("a")), "01ab45");
}

TEST_P(PartialFile, RemovedOneIsNotPublished) {
  PartialFiles partial(out("a"), GetParam());
  partial.write("a", "new");
  partial.write("a.strips", "half");
  EXPECT_TRUE(removeGrowing(partial.file() + ".strips"));
  EXPECT_FALSE(removeGrowing(partial.file() + ".strips"));
  VSIStatBufL facts;
  EXPECT_NE(VSIStatL((partial.file() + ".strips").c_str(), &facts), 0);
  partial.publish();
  EXPECT_EQ(outputs(), (Names{"a"}));
}

TEST_P(PartialFile, MadeTwiceHoldsTheSecondTextOnly) {
  PartialFiles partial(out("a"), GetParam());
  partial.write("a", "the first text");
  partial.write("a", "second");
  partial.publish();
  EXPECT_EQ(test::contentOf(out("a")), "second");
}

TEST_P(PartialFile, GivenUpLeavesNothing) {
  writeText("out/a", "former");
  { PartialFiles(out("a"), GetParam()).write("a", "half"); }
  EXPECT_EQ(outputs(), (Names{"a"}));
  EXPECT_EQ(test::contentOf(out("a")), "former");
}

TEST_P(PartialFile, OfAProcessThatWasKilledIsGoneWithTheNextOne) {
  writeText("out/a", "former");
  const auto result = test::inChild([this]() -> std::string {
    PartialFiles partial(out("a"), GetParam());
    partial.write("a", "half");
    kill(getpid(), SIGKILL);
    return "alive";
  });
  EXPECT_TRUE(result.isKilled);
  EXPECT_EQ(outputs().size(), GetParam() == PartialPlace::WithoutName ? 1U : 2U);
  EXPECT_EQ(test::contentOf(out("a")), "former");
  { const PartialFiles next(out("a"), GetParam()); }
  EXPECT_EQ(outputs(), (Names{"a"}));
}

TEST_P(PartialFile, MayHaveTheLongestNameThatAFolderHolds) {
  for (const std::size_t length : {100U, 101U, 251U, 255U}) {
    const std::string name(length, 'n');
    PartialFiles partial(out(name), GetParam());
    partial.write(name, "new");
    partial.publish();
    EXPECT_EQ(outputs(), Names{name});
    std::filesystem::remove(out(name));
  }
}

TEST_P(PartialFile, OfALongNameIsRemovedByTheNextAfterAKill) {
  const std::string name(255, 'n');
  const auto result = test::inChild([&]() -> std::string {
    PartialFiles partial(out(name), GetParam());
    partial.write(name, "half");
    kill(getpid(), SIGKILL);
    return "alive";
  });
  EXPECT_TRUE(result.isKilled);
  { const PartialFiles next(out(name), GetParam()); }
  EXPECT_EQ(outputs(), Names{});
}

TEST_P(PartialFile, ThatCannotTakeItsPlaceLeavesNothing) {
  PartialFiles partial(out("a"), GetParam());
  partial.write("a", "new");
  std::filesystem::create_directories(out("a/full"));
  EXPECT_THROW(partial.publish(), RuntimeFailure);
  EXPECT_TRUE(std::filesystem::is_directory(out("a/full")));
}

TEST_P(PartialFile, ThatMayNotGrowSaysWhy) {
  const auto result = test::inChild([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{10, 10};
    setrlimit(RLIMIT_FSIZE, &small);
    PartialFiles partial(out("a"), GetParam());
    try {
      partial.write("a", "more than ten bytes");
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return std::string("written");
  });
  EXPECT_TRUE(test::holds(result.text, "File too large")) << result.text;
}

}  // namespace
}  // namespace vlclientui::client
