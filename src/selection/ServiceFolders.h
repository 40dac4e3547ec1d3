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

namespace vlclientui {

/// Turns a server's flat list of service names, in which slashes mark folders, into a browsable tree without
/// building one: it keeps the names and a position, and picks out at each request what lies directly below.
///
/// Call init once for a list; then for every display getAllFolders and getAllFiles, in that order;
/// browseFolder or BakSpace to move; Isfile and isFolder ask about the arrays of the last display.
/// Names are compared by lower-cased text, except where told otherwise.
class ServiceFolders : public Object {
 public:
  using StringArray = std::vector<std::string>;

  std::string myCurFolder;    ///< last component of the position; empty at the root
  std::int16_t curLevel = 0;  ///< depth of the position, 0 at the root
  bool isFlatView = false;    ///< stored only

  [[nodiscard]] std::string typeName() const override { return "ServiceFolders"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

  /// Exchanges the first adjacent pair that is out of order, and no more: one call is not a sort. Lists show
  /// this order, which is essentially the server's. Compares lower-cased texts by code unit.
  static void SortStringArray(StringArray& array);
  /// @returns false for an empty array, which changes nothing but the names.
  bool init(StringArray ServiceNames);
  /// Folders of the position, ".." first when it is not the root. @returns whether there are any.
  bool getAllFolders(StringArray& folderNames);
  /// Services of the position. @param temp receives whole names by index (empty strings at the root); an
  /// exchange of SortStringArray is not repeated in it, deliberately: the look-up of details tolerates it
  /// by matching the leaf too. @returns true.
  bool getAllFiles(StringArray& fileNames, StringArray& temp);
  /// Moves up for key 8 or "..", else down. @returns whether the position changed.
  bool browseFolder(const std::string& folderName, const PlexaEvent& e);
  bool BakSpace();
  [[nodiscard]] bool Isfile(const std::string& itemName) const;
  [[nodiscard]] bool isFolder(const std::string& itemName) const;
  [[nodiscard]] std::string getCurrentPath(const std::string& lastComponent = {}) const;
  [[nodiscard]] std::int16_t getErrorCode() const { return 0; }
  [[nodiscard]] std::string getErrorString() const { return {}; }
  /// Back to the root; myCurFolder and the arrays stay. @returns false, always: callers rely on none of it.
  bool resetAll();
  [[nodiscard]] static bool isArrayEmpty(const StringArray& checkArr) { return checkArr.empty(); }
  [[nodiscard]] static bool existInArray(const std::string& anItem, const StringArray& anArr);
  /// Joins the elements 0 to pos by "/" into myRetStr, which stays untouched for a pos out of range.
  /// @returns false, always.
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
