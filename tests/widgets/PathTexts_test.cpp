#include "widgets/PathTexts.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vlclientui::widgets
