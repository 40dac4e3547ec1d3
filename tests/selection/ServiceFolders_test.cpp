#include "selection/ServiceFolders.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "documents/TextCase.h"

namespace vlclientui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = ServiceFolders::StringArray;

const PlexaEvent kEnter{"DblClick", "", "/", "", 0};
const PlexaEvent kBackspace{"DblClick", "", "/", "", 8};

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
  return folders.browseFolder(name, kEnter);
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
  ASSERT_TRUE(folders.browseFolder("A", kEnter));
  EXPECT_THAT(foldersOf(folders), ElementsAre(".."));
  EXPECT_THAT(filesOf(folders), ElementsAre("B", "C"));
}

TEST(ServiceFolders, BackslashesInNamesSeparateFolders) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A\\B"}));
  EXPECT_THAT(foldersOf(folders), ElementsAre("A"));
  ASSERT_TRUE(folders.browseFolder("A", kEnter));
  EXPECT_THAT(wholeNamesOf(folders), ElementsAre("A/B"));
}

TEST(ServiceFolders, FoldersThatDifferInCaseAreOneAndOpenServicesOfBothButFoldersOfOne) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"a/x", "A/y", "A/deep/z", "a/low/z"}));
  EXPECT_THAT(foldersOf(folders), ElementsAre("a"));
  ASSERT_TRUE(folders.browseFolder("a", kEnter));
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
  EXPECT_TRUE(folders.browseFolder("..", kEnter));
  EXPECT_EQ(folders.curLevel, 0);
  ASSERT_TRUE(enter(folders, "A"));
  EXPECT_TRUE(folders.browseFolder("anything", kBackspace));
  EXPECT_EQ(folders.curLevel, 0);
  EXPECT_FALSE(folders.browseFolder("A", kBackspace));
  EXPECT_FALSE(folders.browseFolder("..", kEnter));
}

TEST(ServiceFolders, BrowsingAFolderThatIsNotShownIsFalseAndChangesNothing) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B", "C"}));
  foldersOf(folders);
  filesOf(folders);
  EXPECT_FALSE(folders.browseFolder("C", kEnter));
  EXPECT_FALSE(folders.browseFolder("X", kEnter));
  EXPECT_EQ(folders.curLevel, 0);
  EXPECT_TRUE(folders.Isfile("c"));
  EXPECT_TRUE(folders.isFolder("a"));
}

TEST(ServiceFolders, BrowsingBeforeAnyDisplayFindsNoFolder) {
  ServiceFolders folders;
  ASSERT_TRUE(folders.init({"A/B"}));
  EXPECT_FALSE(folders.browseFolder("A", kEnter));
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
  ASSERT_TRUE(folders.browseFolder("A", kEnter));
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

/// The rules step by step and as slowly as they can be run: every request splits every name anew and looks
/// every part up one by one.
class LiteralFolders {
 public:
  bool init(const Names& names) {
    names_ = names;
    if (names_.empty()) return false;
    for (std::string& name : names_) name = replacedAll(name, "\\", "/");
    level_ = 0;
    path_.clear();
    return true;
  }

  bool getAllFolders(Names& result) {
    folders_.clear();
    if (level_ > 0) folders_.push_back("..");
    for (const std::string& name : names_) {
      const Names parts = splitAt(name, '/');
      if (static_cast<int>(parts.size()) - 1 <= level_) continue;
      if (!folder_.empty() && level_ > 0 && trimmedBlanks(pathTill(level_ - 1, parts)) != path_) continue;
      if (!has(folders_, parts[static_cast<std::size_t>(level_)])) {
        folders_.push_back(parts[static_cast<std::size_t>(level_)]);
      }
    }
    exchangeOnce(folders_);
    result = folders_;
    return !result.empty();
  }

  void getAllFiles(Names& result, Names& whole) {
    files_.clear();
    std::size_t next = 0;
    for (const std::string& name : names_) {
      const Names parts = splitAt(name, '/');
      if (static_cast<int>(parts.size()) - 1 != level_) continue;
      if (!folder_.empty() && level_ > 0) {
        const std::string path = trimmedBlanks(pathTill(level_ - 1, parts));
        if (lowerCased(path) != lowerCased(path_)) continue;
        if (whole.size() < next + 1) whole.resize(next + 1);
        whole[next] = path + "/" + parts.back();
      }
      const std::string& part = parts[static_cast<std::size_t>(level_)];
      if (has(files_, part)) continue;
      if (whole.size() < next + 1) whole.resize(next + 1);
      files_.push_back(part);
      ++next;
    }
    exchangeOnce(files_);
    result = files_;
  }

  bool browse(const std::string& name, int key) {
    if (key == 8 || name == "..") {
      if (level_ < 1) return false;
      --level_;
      if (path_.find('/') != std::string::npos) path_ = path_.substr(0, path_.rfind('/'));
    } else {
      if (!has(folders_, name)) return false;
      ++level_;
      path_ = path_.empty() ? name : path_ + "/" + name;
    }
    folders_.clear();
    files_.clear();
    if (level_ == 0) path_.clear();
    folder_ = path_.find('/') == std::string::npos ? path_ : path_.substr(path_.rfind('/') + 1);
    return true;
  }

  [[nodiscard]] bool isFile(const std::string& name) const { return has(files_, name); }
  [[nodiscard]] bool isFolder(const std::string& name) const { return has(folders_, name); }
  [[nodiscard]] int level() const { return level_; }
  [[nodiscard]] const std::string& folder() const { return folder_; }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  static bool has(const Names& names, const std::string& searched) {
    for (const std::string& name : names) {
      if (lowerCased(name) == lowerCased(searched)) return true;
    }
    return false;
  }

  static std::string pathTill(int position, const Names& parts) {
    std::string path = parts[0];
    for (int i = 1; i <= position; ++i) path += "/" + parts[static_cast<std::size_t>(i)];
    return path;
  }

  static void exchangeOnce(Names& names) {
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
      if (compareByCodeUnit(lowerCased(names[i]), lowerCased(names[i + 1])) <= 0) continue;
      std::swap(names[i], names[i + 1]);
      return;
    }
  }

  Names names_;
  Names folders_;
  Names files_;
  int level_ = 0;
  std::string path_;
  std::string folder_;
};

std::string pick(std::mt19937& random, const Names& from) {
  return from[std::uniform_int_distribution<std::size_t>(0, from.size() - 1)(random)];
}

std::string randomName(std::mt19937& random) {
  static const Names parts{"a", "A", "b", "B c", " a", "a ", "", "..", "\u00E9", "\u00C9", "z1"};
  static const Names separators{"/", "/", "\\", "//"};
  std::string name = pick(random, parts);
  while (random() % 5 < 3) name += pick(random, separators) + pick(random, parts);
  return name;
}

void expectSameDisplay(ServiceFolders& folders, LiteralFolders& model, const std::string& trace) {
  Names shown;
  Names expected;
  EXPECT_EQ(folders.getAllFolders(shown), model.getAllFolders(expected)) << trace;
  EXPECT_EQ(shown, expected) << trace;
  Names whole;
  Names expectedWhole;
  EXPECT_TRUE(folders.getAllFiles(shown, whole)) << trace;
  model.getAllFiles(expected, expectedWhole);
  EXPECT_EQ(shown, expected) << trace;
  EXPECT_EQ(whole, expectedWhole) << trace;
}

void expectSamePosition(const ServiceFolders& folders, const LiteralFolders& model,
                        const std::string& trace) {
  EXPECT_EQ(folders.curLevel, model.level()) << trace;
  EXPECT_EQ(folders.myCurFolder, model.folder()) << trace;
  EXPECT_EQ(folders.getCurrentPath("x"), model.path().empty() ? "x" : model.path() + "/x") << trace;
}

/// A folder that is shown, most of the time; else a way up or a name from anywhere.
std::string randomMove(std::mt19937& random, ServiceFolders& folders) {
  const Names shown = foldersOf(folders);
  if (!shown.empty() && random() % 4 != 0) return pick(random, shown);
  return random() % 2 == 0 ? ".." : randomName(random);
}

TEST(ServiceFolders, EveryDisplayOnRandomWalksEqualsTheRulesRunOneByOne) {
  std::mt19937 random(20040611);
  int deepest = 0;
  for (int run = 0; run < 400 && !testing::Test::HasFailure(); ++run) {
    Names names;
    for (auto count = random() % 25; count > 0; --count) names.push_back(randomName(random));
    ServiceFolders folders;
    LiteralFolders model;
    ASSERT_EQ(folders.init(names), model.init(names));
    std::string trace = "names: " + testing::PrintToString(names) + " moves:";
    for (int step = 0; step < 12; ++step) {
      expectSameDisplay(folders, model, trace);
      const std::string move = randomMove(random, folders);
      Names ignored;
      model.getAllFolders(ignored);
      EXPECT_EQ(folders.isFolder(move), model.isFolder(move)) << trace;
      EXPECT_EQ(folders.Isfile(move), model.isFile(move)) << trace;
      const int key = random() % 6 == 0 ? 8 : 0;
      trace += " '" + move + "'" + (key == 8 ? "<Backspace>" : "");
      EXPECT_EQ(folders.browseFolder(move, {"DblClick", "", "/", move, key}), model.browse(move, key))
          << trace;
      expectSamePosition(folders, model, trace);
      deepest = std::max(deepest, model.level());
    }
  }
  EXPECT_GE(deepest, 3) << "the walks have to go down";
}

}  // namespace
}  // namespace vlclientui
