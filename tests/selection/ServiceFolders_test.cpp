#include "selection/ServiceFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlclientui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = ServiceFolders::StringArray;

const PlexaEvent doubleClickAtTop{"DblClick", "", "/", "", 0};
const PlexaEvent backspace{"DblClick", "", "/", "", 8};

Names foldersOf(ServiceFolders& folders) {
  Names names;
  folders.getAllFolders(names);
  return names;
}

Names filesOf(ServiceFolders& folders) {
  Names names;
  Names whole;
  folders.getAllFiles(names, whole);
  return names;
}

Names wholeNamesOf(ServiceFolders& folders) {
  Names names;
  Names whole;
  folders.getAllFiles(names, whole);
  return whole;
}

/// Enters a folder as a display would: the arrays are filled first.
bool enter(ServiceFolders& folders, const std::string& name) {
  foldersOf(folders);
  filesOf(folders);
  return folders.browseFolder(name, doubleClickAtTop);
}

TEST(ServiceFolders, InitWithoutNamesIsFalseAndKeepsThePosition) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_FALSE(folders.init({}));
  EXPECT_EQ(folders.curLevel, 1);
  EXPECT_EQ(folders.myCurFolder, "A");
  EXPECT_EQ(folders.getCurrentPath("x"), "A/x");
}

TEST(ServiceFolders, RootHasFirstPartsAsFoldersAndBareNamesAsServices) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B", "A/C", "D"}));
  EXPECT_THAT(foldersOf(folders), ElementsAre("A"));
  EXPECT_THAT(filesOf(folders), ElementsAre("D"));
  ASSERT_TRUE(folders.browseFolder("A", doubleClickAtTop));
  EXPECT_THAT(foldersOf(folders), ElementsAre(".."));
  EXPECT_THAT(filesOf(folders), ElementsAre("B", "C"));
}

TEST(ServiceFolders, BackslashesInNamesSeparateFolders) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A\\B"}));
  EXPECT_THAT(foldersOf(folders), ElementsAre("A"));
  ASSERT_TRUE(folders.browseFolder("A", doubleClickAtTop));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("A/B"));
}

TEST(ServiceFolders, FoldersThatDifferInCaseAreOneAndOpenServicesOfBothButFoldersOfOne) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"a/x", "A/y", "A/deep/z", "a/low/z"}));
  EXPECT_THAT(foldersOf(folders), ElementsAre("a"));
  ASSERT_TRUE(folders.browseFolder("a", doubleClickAtTop));
  EXPECT_THAT(foldersOf(folders), ElementsAre("..", "low"));
  EXPECT_THAT(filesOf(folders), ElementsAre("x", "y"));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("a/x", "A/y"));
}

TEST(ServiceFolders, SortingExchangesTheFirstPairOutOfOrderAndNoMore) {
  Names names{"c", "b", "a"};
  ServiceFolders::SortStringArray(names);
  EXPECT_THAT(names, ElementsAre("b", "c", "a"));
}

TEST(ServiceFolders, SortingIgnoresCaseAndLeavesEqualNamesInPlace) {
  Names equal{"b", "B", "c"};
  ServiceFolders::SortStringArray(equal);
  EXPECT_THAT(equal, ElementsAre("b", "B", "c"));
  Names cased{"b", "A"};
  ServiceFolders::SortStringArray(cased);
  EXPECT_THAT(cased, ElementsAre("A", "b"));
}

TEST(ServiceFolders, SortingComparesByCodeUnitOfTheLowerCasedText) {
  // "Z" lowers to "z", which stands behind "_", while "Z" itself stands before it.
  Names names{"Z", "_"};
  ServiceFolders::SortStringArray(names);
  EXPECT_THAT(names, ElementsAre("_", "Z"));
  // UTF-16 puts a character above U+FFFF before U+FF5E; bytes would not.
  Names wide{"\uFF5E", "\U0001F5FA"};
  ServiceFolders::SortStringArray(wide);
  EXPECT_THAT(wide, ElementsAre("\U0001F5FA", "\uFF5E"));
}

TEST(ServiceFolders, SortingAnEmptyArrayDoesNothing) {
  Names names;
  ServiceFolders::SortStringArray(names);
  EXPECT_THAT(names, IsEmpty());
}

TEST(ServiceFolders, BakSpaceAtTheRootIsFalseAndChangesNothing) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  foldersOf(folders);
  EXPECT_FALSE(folders.BakSpace());
  EXPECT_EQ(folders.curLevel, 0);
  EXPECT_TRUE(folders.isFolder("A")) << "the arrays of the display stay";
}

TEST(ServiceFolders, BakSpaceGoesUpOneLevel) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B/C"}));
  ASSERT_TRUE(enter(folders, "A"));
  ASSERT_TRUE(enter(folders, "B"));
  EXPECT_EQ(folders.getCurrentPath("C"), "A/B/C");
  EXPECT_TRUE(folders.BakSpace());
  EXPECT_EQ(folders.myCurFolder, "A");
  EXPECT_TRUE(folders.BakSpace());
  EXPECT_EQ(folders.myCurFolder, "");
  EXPECT_EQ(folders.getCurrentPath("C"), "C");
}

TEST(ServiceFolders, BackspaceAndTheParentEntryGoUpWhateverElseTheEventSays) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_TRUE(folders.browseFolder("..", doubleClickAtTop));
  EXPECT_EQ(folders.curLevel, 0);
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_TRUE(folders.browseFolder("anything", backspace));
  EXPECT_EQ(folders.curLevel, 0);
  EXPECT_FALSE(folders.browseFolder("A", backspace));
  EXPECT_FALSE(folders.browseFolder("..", doubleClickAtTop));
}

TEST(ServiceFolders, BrowsingAFolderThatIsNotShownIsFalseAndChangesNothing) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B", "C"}));
  foldersOf(folders);
  filesOf(folders);
  EXPECT_FALSE(folders.browseFolder("C", doubleClickAtTop));
  EXPECT_FALSE(folders.browseFolder("X", doubleClickAtTop));
  EXPECT_EQ(folders.curLevel, 0);
  EXPECT_TRUE(folders.Isfile("c"));
  EXPECT_TRUE(folders.isFolder("a"));
}

TEST(ServiceFolders, BrowsingBeforeAnyDisplayFindsNoFolder) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  EXPECT_FALSE(folders.browseFolder("A", doubleClickAtTop));
}

TEST(ServiceFolders, ResetAllIsFalseThoughItGoesToTheRoot) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_FALSE(folders.resetAll());
  EXPECT_EQ(folders.curLevel, 0);
  EXPECT_EQ(folders.getCurrentPath(), "");
  EXPECT_EQ(folders.myCurFolder, "A") << "the name of the folder stays until the next move";
}

TEST(ServiceFolders, InitOnANewListGoesToTheRootAndKeepsTheFolderNameUntilTheNextMove) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  ASSERT_TRUE(enter(folders, "A"));
  ASSERT_TRUE(folders.init({"X/Y", "Z"}));
  EXPECT_EQ(folders.myCurFolder, "A");
  EXPECT_THAT(foldersOf(folders), ElementsAre("X"));
  EXPECT_THAT(filesOf(folders), ElementsAre("Z"));
}

TEST(ServiceFolders, ATrailingSlashMakesAServiceWithAnEmptyName) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/"}));
  EXPECT_THAT(foldersOf(folders), ElementsAre("A"));
  ASSERT_TRUE(folders.browseFolder("A", doubleClickAtTop));
  EXPECT_THAT(filesOf(folders), ElementsAre(""));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("A/"));
}

TEST(ServiceFolders, GetAllFoldersIsTrueOnlyWhenThereIsAFolder) {
  ServiceFolders folders;
  Names names{"left over"};
  ASSERT_TRUE(folders.init({"D"}));
  EXPECT_FALSE(folders.getAllFolders(names));
  EXPECT_THAT(names, IsEmpty());
  ASSERT_TRUE(folders.init({"A/B"}));
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_TRUE(folders.getAllFolders(names)) << "the parent entry counts";
}

TEST(ServiceFolders, GetAllFilesIsTrueAlsoWithoutServices) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  Names names;
  Names whole;
  EXPECT_TRUE(folders.getAllFiles(names, whole));
  EXPECT_THAT(names, IsEmpty());
}

TEST(ServiceFolders, WholeNamesAreEmptyStringsAtTheRoot) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"D", "E"}));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("", ""));
}

TEST(ServiceFolders, AnExchangeOfTheSortLeavesTheWholeNamesOutOfStep) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/c", "A/b"}));
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_THAT(filesOf(folders), ElementsAre("b", "c"));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("A/c", "A/b"));
}

TEST(ServiceFolders, ADoubledServiceOverwritesTheNextWholeName) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/x", "A/X"}));
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_THAT(filesOf(folders), ElementsAre("x"));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("A/x", "A/X"));
}

TEST(ServiceFolders, ErrorFieldsAreNeverSet) {
  ServiceFolders folders;
  EXPECT_FALSE(folders.init({}));
  EXPECT_FALSE(folders.BakSpace());
  EXPECT_EQ(folders.getErrorCode(), 0);
  EXPECT_EQ(folders.getErrorString(), "");
  EXPECT_FALSE(folders.isFlatView);
}

TEST(ServiceFolders, ExistInArrayIgnoresCaseAndFindsNothingInAnEmptyArray) {
  EXPECT_TRUE(ServiceFolders::existInArray("\u00C4B", {"x", "\u00E4b"}));
  EXPECT_FALSE(ServiceFolders::existInArray("y", {"x"}));
  EXPECT_FALSE(ServiceFolders::existInArray("", {}));
}

TEST(ServiceFolders, GeneratePathJoinsUpToThePositionAndIsFalseAlways) {
  std::string path = "untouched";
  EXPECT_FALSE(ServiceFolders::generatePathTillPosition(1, {"a", "b", "c"}, path));
  EXPECT_EQ(path, "a/b");
  EXPECT_FALSE(ServiceFolders::generatePathTillPosition(0, {"a", "b"}, path));
  EXPECT_EQ(path, "a");
}

TEST(ServiceFolders, GeneratePathLeavesTheTextForAPositionOutOfRange) {
  std::string path = "untouched";
  EXPECT_FALSE(ServiceFolders::generatePathTillPosition(-1, {"a"}, path));
  EXPECT_FALSE(ServiceFolders::generatePathTillPosition(1, {"a"}, path));
  EXPECT_FALSE(ServiceFolders::generatePathTillPosition(0, {}, path));
  EXPECT_EQ(path, "untouched");
}

TEST(ServiceFolders, IsArrayEmptyTellsWhetherThereAreElements) {
  EXPECT_TRUE(ServiceFolders::isArrayEmpty({}));
  EXPECT_FALSE(ServiceFolders::isArrayEmpty({""}));
}

TEST(ServiceFolders, IsReachedByItsDefaultInterfaceOnly) {
  ServiceFolders folders;
  EXPECT_EQ(folders.typeName(), "ServiceFolders");
  EXPECT_EQ(folders.queryInterface("_ServiceFolders"), &folders);
  EXPECT_EQ(folders.queryInterface("_Envelope"), nullptr);
}

}  // namespace
}  // namespace vlclientui
