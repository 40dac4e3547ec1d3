#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "contracts/Boolean16.h"
#include "contracts/Object.h"
#include "contracts/Plexa.h"
#include "frame/LiveObjects.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// Lets a person browse a flat list of service names whose slashes stand for folders. There is no tree: the
/// names and a position are enough to pick what lies directly below.
///
/// Call init once per list, then getAllFolders and getAllFiles, in that order, for each display. browseFolder
/// and BakSpace move the position; Isfile and isFolder ask about the last display. Names are compared in
/// lower case unless noted.
class ServiceFolders : public Object {
 public:
  /// A list of names in its order.
  using StringArray = std::vector<std::string>;

  std::string myCurFolder;    ///< last component of the position; empty at the root
  std::int16_t curLevel = 0;  ///< depth of the position, 0 at the root
  bool isFlatView = false;    ///< stored, otherwise unused

  [[nodiscard]] std::string typeName() const override { return "ServiceFolders"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

  /// Deliberate: exchanges the first adjacent pair that is out of order and stops, so this is no full sort.
  /// Lists appear in this order, essentially the server's. Compares lower-cased texts by code unit.
  static void SortStringArray(StringArray& array);
  /// @returns false for an empty array, which changes only the names.
  bool init(StringArray ServiceNames);
  /// Folders of the position, ".." first when it is not the root. @returns whether there are any.
  bool getAllFolders(StringArray& folderNames);
  /// Services of the position. @param fileNames receives their names without folders. @param temp receives
  /// whole names by index (empty strings at the root). Deliberate: an exchange by SortStringArray is not
  /// repeated in it; the look-up of details copes by matching the leaf too. @returns true.
  bool getAllFiles(StringArray& fileNames, StringArray& temp);
  /// Moves up for key 8 or "..", else down. @returns whether the position changed.
  bool browseFolder(const std::string& folderName, const PlexaEvent& e);
  /// Moves up. @returns whether the position changed; false at the root.
  bool BakSpace();
  /// Whether the last display had a service of that name.
  [[nodiscard]] bool Isfile(const std::string& itemName) const;
  /// Whether the last display had a folder of that name, ".." among them.
  [[nodiscard]] bool isFolder(const std::string& itemName) const;
  /// The position with "/" between folders, and the component behind it.
  [[nodiscard]] std::string getCurrentPath(const std::string& lastComponent = {}) const;
  /// Always 0.
  [[nodiscard]] std::int16_t getErrorCode() const { return 0; }
  /// Always empty.
  [[nodiscard]] std::string getErrorString() const { return {}; }
  /// Back to the root; myCurFolder and the arrays stay. @returns false always; callers ignore it.
  bool resetAll();
  /// Whether the list has no entries.
  [[nodiscard]] static bool isArrayEmpty(const StringArray& checkArr) { return checkArr.empty(); }
  /// Whether the list has the entry, in any case.
  [[nodiscard]] static bool existInArray(const std::string& anItem, const StringArray& anArr);
  /// Joins elements 0 to pos by "/" into myRetStr. A pos out of range leaves it unchanged.
  /// @returns false always.
  static bool generatePathTillPosition(std::int16_t pos, const StringArray& myPathArr, std::string& myRetStr);

 private:
  void moveUp();
  void enterPosition();
  [[nodiscard]] bool filtersByPath() const { return !myCurFolder.empty() && curLevel > 0; }

  LiveObject alive_;
  StringArray namesArray_;
  StringArray folderArray_;
  StringArray fileArray_;
  std::string currentPath_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
