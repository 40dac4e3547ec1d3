#pragma once

#include <optional>

#include "contracts/controls/ControlContainer.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/PageControls.h"
#include "metadata/MetadataViewerDifferences.h"

namespace vlclientui {

/// The controls of a metadata viewer, with their names, captions and design places. What stands behind the
/// nodes begins hidden.
struct MetadataControls {
  MetadataControls(ControlContainer& container, const MetadataViewerDifferences& differences);

  TreeView uiTreeView;
  TabStrip TabStrip2;  ///< the pages of the service
  Label Label1;
  DropDown RasterList;   ///< the rasters
  Button Command7;       ///< locks the mosaic to the raster; its rule belongs to the window
  TabStrip TabStrip1;    ///< the pages of a raster
  ReportList ListView1;  ///< a raster's attributes
  Button Save;
  Frame FirstPageFrame;
  Frame Frame1;
  Frame InfoFrame;
  // Hidden at all times: they hold a copy of the XML that the trees show.
  TextBox MDRichText;
  TextBox MetadataText;
  TextBox ProcessMetadata;
  // In one of the windows each.
  std::optional<Frame> Frame2;
  std::optional<Button> Send;
  std::optional<ListBox> SourceImagesList;

  void hideListFrame() { showListFrame(false); }
  /// Frame2, where there is one.
  void showListFrame(bool shown);

 private:
  void setDesign();
  void hideAllPages();
};

}  // namespace vlclientui
