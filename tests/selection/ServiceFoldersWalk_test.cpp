// ServiceFolders beside a slow model of it, on random names and walks.

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "documents/TextCase.h"
#include "selection/ServiceFolders.h"

namespace vlclientui {
namespace {

using Names = ServiceFolders::StringArray;

Names foldersOf(ServiceFolders& folders) {
  Names names;
  folders.getAllFolders(names);
  return names;
}
/// A slow model of the same: every request splits every name anew and looks
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

TEST(ServiceFoldersWalk, EveryDisplayOnRandomWalksEqualsThatOfTheSlowModel) {
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
