#pragma once

#include <string>
#include <vector>

#include "metadata/MetadataPages.h"
#include "metadata/RasterRecords.h"
#include "metadata/TreeEngine.h"

namespace vlclientui {

/// The pages behind the node of the source rasters. The three Show routines end quietly at their first
/// failure and leave what they have shown.
class RasterPages {
 public:
  explicit RasterPages(const MetadataWindow& window) : window_(window) {}

  /// Empties RasterList and forgets its ids.
  void clearList();
  /// Fills RasterList, which was cleared before, decides tabs and lock button, and shows the first raster.
  void ShowRasterList();
  /// The selected tab of the raster in RasterList. Of several records with its id the last wins.
  void ShowRasterPage();
  /// @param infoXml outer XML of the record's `Info`.
  void ShowRasterInfoPage(const std::string& infoXml);

  /// Id of the raster in RasterList, as its record writes it. @throws RuntimeFailure (InvalidIndex) when the
  /// list's text leads to none.
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
