#include "selection/ServiceFolders.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "contracts/controls/Control.h"
#include "documents/TextCase.h"

namespace vlclientui {

namespace {

constexpr const char* parentEntry = "..";

/// A set of texts that ignores case, as existInArray does, but by hash.
class LoweredSet {
 public:
  /// @returns false when the item was there already, in any case.
  bool add(std::string_view item) { return texts_.insert(lowerCased(item)).second; }

 private:
  std::unordered_set<std::string> texts_;
};

std::int32_t upperIndex(std::string_view name) {
  if (name.empty()) return -1;
  return static_cast<std::int32_t>(std::ranges::count(name, '/'));
}

/// @pre the name has a part at that index.
std::string_view partAt(std::string_view name, std::int32_t index) {
  for (; index > 0; --index) name.remove_prefix(name.find('/') + 1);
  return name.substr(0, name.find('/'));
}

/// The parts before an index, joined again and trimmed. @pre the name has that index.
std::string pathBefore(std::string_view name, std::int32_t index) {
  const std::string_view rest = partAt(name, index);
  const auto length = static_cast<std::size_t>(rest.data() - name.data());
  return trimmedBlanks(name.substr(0, length > 0 ? length - 1 : 0));
}

std::string lastComponent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

Object* ServiceFolders::queryInterface(std::string_view interfaceName) {
  return interfaceName == "_ServiceFolders" ? this : nullptr;
}

void ServiceFolders::SortStringArray(StringArray& array) {
  for (std::size_t i = 0; i + 1 < array.size(); ++i) {
    if (compareByCodeUnit(lowerCased(array[i]), lowerCased(array[i + 1])) > 0) {
      std::swap(array[i], array[i + 1]);
      return;
    }
  }
}

bool ServiceFolders::init(StringArray ServiceNames) {
  namesArray_ = std::move(ServiceNames);
  if (isArrayEmpty(namesArray_)) return false;
  for (std::string& name : namesArray_) std::ranges::replace(name, '\\', '/');
  resetAll();
  return true;
}

bool ServiceFolders::getAllFolders(StringArray& folderNames) {
  folderArray_.clear();
  LoweredSet known;
  if (curLevel > 0) {
    folderArray_.emplace_back(parentEntry);
    known.add(parentEntry);
  }
  for (const std::string& name : namesArray_) {
    if (upperIndex(name) <= curLevel) continue;
    // Case matters here, unlike in getAllFiles: of two folders that differ in case alone, each opens only its
    // own.
    if (filtersByPath() && pathBefore(name, curLevel) != currentPath_) continue;
    const std::string_view folder = partAt(name, curLevel);
    if (known.add(folder)) folderArray_.emplace_back(folder);
  }
  SortStringArray(folderArray_);
  folderNames = folderArray_;
  return !isArrayEmpty(folderNames);
}

bool ServiceFolders::getAllFiles(StringArray& fileNames, StringArray& temp) {
  fileArray_.clear();
  LoweredSet known;
  const std::string loweredPath = lowerCased(currentPath_);
  std::size_t next = 0;
  const auto enlarge = [&temp, &next] {
    if (temp.size() <= next) temp.resize(next + 1);
  };
  for (const std::string& name : namesArray_) {
    if (upperIndex(name) != curLevel) continue;
    const std::string_view leaf = partAt(name, curLevel);
    if (filtersByPath()) {
      const std::string path = pathBefore(name, curLevel);
      if (lowerCased(path) != loweredPath) continue;
      enlarge();
      temp[next] = path + "/" + std::string(leaf);
    }
    if (!known.add(leaf)) continue;
    enlarge();
    fileArray_.emplace_back(leaf);
    ++next;
  }
  SortStringArray(fileArray_);
  fileNames = fileArray_;
  return true;
}

bool ServiceFolders::browseFolder(const std::string& folderName, const PlexaEvent& e) {
  if (e.KeyCode == keyCode::backspace || folderName == parentEntry) return BakSpace();
  if (!isFolder(folderName)) return false;
  ++curLevel;
  currentPath_ = getCurrentPath(folderName);
  enterPosition();
  return true;
}

bool ServiceFolders::BakSpace() {
  if (curLevel < 1) return false;
  moveUp();
  enterPosition();
  return true;
}

void ServiceFolders::moveUp() {
  --curLevel;
  const auto slash = currentPath_.rfind('/');
  if (slash != std::string::npos) currentPath_.erase(slash);
}

void ServiceFolders::enterPosition() {
  folderArray_.clear();
  fileArray_.clear();
  if (curLevel == 0) currentPath_.clear();
  myCurFolder = lastComponent(currentPath_);
}

bool ServiceFolders::Isfile(const std::string& itemName) const { return existInArray(itemName, fileArray_); }

bool ServiceFolders::isFolder(const std::string& itemName) const {
  return existInArray(itemName, folderArray_);
}

std::string ServiceFolders::getCurrentPath(const std::string& lastPart) const {
  return currentPath_.empty() ? lastPart : currentPath_ + "/" + lastPart;
}

bool ServiceFolders::resetAll() {
  curLevel = 0;
  currentPath_.clear();
  return false;
}

bool ServiceFolders::existInArray(const std::string& anItem, const StringArray& anArr) {
  const std::string item = lowerCased(anItem);
  return std::ranges::any_of(anArr, [&item](const std::string& entry) { return lowerCased(entry) == item; });
}

bool ServiceFolders::generatePathTillPosition(std::int16_t pos, const StringArray& myPathArr,
                                              std::string& myRetStr) {
  if (pos < 0 || static_cast<std::size_t>(pos) >= myPathArr.size()) return false;
  myRetStr = myPathArr.front();
  for (std::size_t i = 1; i <= static_cast<std::size_t>(pos); ++i) myRetStr += "/" + myPathArr[i];
  return false;
}

}  // namespace vlclientui
