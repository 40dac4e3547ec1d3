#pragma once

#include <string>
#include <vector>

#include "metadata/MetadataPages.h"
#include "metadata/RasterRecords.h"
#include "metadata/TreeEngine.h"

namespace vlclientui {

/// The pages of the node for source rasters. The three Show routines end quietly at their first failure and
/// leave what they have shown.
class RasterPages {
 public:
  explicit RasterPages(const MetadataWindow& window) : window_(window) {}

  /// Empties RasterList and forgets its ids.
  void clearList();
  /// Fills RasterList, which must be empty, sets tabs and lock button, and shows the first raster.
  void ShowRasterList();
  /// Shows the selected tab for the raster in RasterList. Of several records with its id the last is used.
  void ShowRasterPage();
  /// @param infoXml outer XML of the record's `Info`.
  void ShowRasterInfoPage(const std::string& infoXml);

  /// Id of the raster in RasterList, spelled as in its record. @throws RuntimeFailure (InvalidIndex) when the
  /// list's text matches no raster.
  [[nodiscard]] const std::string& selectedRasterId() const;

  [[nodiscard]] TreeEngine& metadataEngine() { return myRasterMetadataEngine_; }
  [[nodiscard]] TreeEngine& processEngine() { return myRasterProcessEngine_; }

 private:
  [[nodiscard]] const RasterRecords& records();
  void fillList();
  void removeMetadataTab();
  void removeProcessTab();
  [[nodiscard]] std::vector<std::string> takeRasters();
  void decideLockButton();
  void hidePage();
  void showRecord(const RasterRecord& record);
  void showAttributes(const XmlDocument& raster);
  void showTree(TreeEngine& engine, const std::string& xml);

  const MetadataWindow& window_;
  RasterIds myRasterIds_;
  RasterRecords records_;
  TreeEngine myRasterMetadataEngine_;
  TreeEngine myRasterProcessEngine_;
};

}  // namespace vlclientui
