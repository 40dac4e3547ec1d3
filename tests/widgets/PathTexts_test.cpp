#include "widgets/PathTexts.h"

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "support/TestSystem.h"

namespace vlclientui::widgets {
namespace {

class PathTextsTest : public testing::Test {
 protected:
  std::shared_ptr<test::TestSystem> system = std::make_shared<test::TestSystem>();
  PathTexts texts = pathTextsOf(system);
  std::string home = system->home().string();
};

TEST_F(PathTextsTest, PathIsShownAsThePathOfThisMachine) {
  EXPECT_EQ(texts.shown("C:\\maps\\a.VLRef"), home + "/maps/a.VLRef");
}

TEST_F(PathTextsTest, PathBehindASchemeIsShownNative) {
  EXPECT_EQ(texts.shown("VLDef://C:\\maps\\a.VLDef"), "VLDef://" + home + "/maps/a.VLDef");
}

TEST_F(PathTextsTest, QuotedPathEndsAtItsQuote) {
  EXPECT_EQ(texts.shown("The file: 'C:\\x\\y.Xfdef' is missing."),
            "The file: '" + home + "/x/y.Xfdef' is missing.");
}

TEST_F(PathTextsTest, PathInAnElementEndsAtItsTag) {
  EXPECT_EQ(texts.shown("<a><Name>C:\\x\\y.tif</Name><Name>C:\\z</Name></a>"),
            "<a><Name>" + home + "/x/y.tif</Name><Name>" + home + "/z</Name></a>");
}

TEST_F(PathTextsTest, EachLineHasItsOwnPath) {
  EXPECT_EQ(texts.shown("C:\\a\nC:\\b"), home + "/a\n" + home + "/b");
}

TEST_F(PathTextsTest, TextsWithoutPathsStayAsTheyAre) {
  for (const std::string text :
       {"", "127.0.0.1", "http://host/x", "ImageService://host/a\\b", "abc:\\x", "C:"}) {
    EXPECT_EQ(texts.shown(text), text);
  }
}

TEST_F(PathTextsTest, OnlyAnAbsolutePathIsTranslatedWhenTyped) {
  EXPECT_EQ(texts.typed(home + "/maps"), "C:\\maps");
  for (const std::string text : {"", "localhost", "http://host/x", "a/b"}) EXPECT_EQ(texts.typed(text), text);
}

/// Refuses what the system of a real machine refuses: other drives, and names that end in a blank.
class StrictSystem : public test::TestSystem {
 public:
  std::string nativePath(const std::string& path) const override {
    if (path.starts_with("D:")) throw RuntimeFailure("no such drive");
    return TestSystem::nativePath(path);
  }
  std::string logicPath(const std::string& path) const override {
    if (path.ends_with(' ')) throw RuntimeFailure("no such name");
    return TestSystem::logicPath(path);
  }
};

TEST(PathTexts, TypingGoesThroughTextsThatAreNoPathYet) {
  const auto system = std::make_shared<StrictSystem>();
  const PathTexts texts = pathTextsOf(system);
  const std::string home = system->home().string();
  EXPECT_EQ(texts.typed(home + "/my "), home + "/my ");
  EXPECT_EQ(texts.typed(home + "/my maps"), "C:\\my maps");
}

TEST(PathTexts, DriveThatThisMachineLacksIsShownAsItIs) {
  const PathTexts texts = pathTextsOf(std::make_shared<StrictSystem>());
  EXPECT_EQ(texts.shown("'D:\\maps' is gone"), "'D:\\maps' is gone");
}

}  // namespace
}  // namespace vlclientui::widgets
