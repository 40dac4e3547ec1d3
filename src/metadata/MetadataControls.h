#pragma once

#include <optional>

#include "contracts/controls/ControlContainer.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/PageControls.h"
#include "metadata/MetadataViewerDifferences.h"

namespace vlclientui {

/// The controls of a metadata viewer, with their names, captions and design places. The pages begin hidden.
struct MetadataControls {
  MetadataControls(ControlContainer& container, const MetadataViewerDifferences& differences);

  TreeView uiTreeView;
  TabStrip TabStrip2;  ///< the pages of the service
  Label Label1;
  DropDown RasterList;   ///< the rasters
  Button Command7;       ///< locks the mosaic to the raster; the window handles its click
  TabStrip TabStrip1;    ///< the pages of a raster
  ReportList ListView1;  ///< a raster's attributes
  Button Save;
  Frame FirstPageFrame;
  Frame Frame1;
  Frame InfoFrame;
  // Always hidden: copies of the XML that the trees show.
  TextBox MDRichText;
  TextBox MetadataText;
  TextBox ProcessMetadata;
  // Each of these is in one of the windows only.
  std::optional<Frame> Frame2;
  std::optional<Button> Send;
  std::optional<ListBox> SourceImagesList;

  void hideListFrame() { showListFrame(false); }
  /// Shows or hides Frame2 where the window has it.
  void showListFrame(bool shown);

 private:
  void setDesign();
  void hideAllPages();
};

}  // namespace vlclientui
