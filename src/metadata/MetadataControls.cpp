#include "metadata/MetadataControls.h"

namespace vlclientui {

MetadataControls::MetadataControls(ControlContainer& container, const MetadataViewerDifferences& differences)
    : uiTreeView(container, "uiTreeView"),
      TabStrip2(container, "TabStrip2", {"Information", "Properties", "Metadata"}),
      Label1(container, "Label1", "Raster:"),
      RasterList(container, "RasterList"),
      Command7(container, "Command7", "", ControlKind::PictureButton),
      TabStrip1(container, "TabStrip1", {"Information", "Metadata", "Attributes", "Process"}),
      ListView1(container, "ListView1", {"Name", "Value"}),
      Save(container, "Save", "&Save As"),
      FirstPageFrame(container, "FirstPageFrame", ""),
      Frame1(container, "Frame1", ""),
      InfoFrame(container, "InfoFrame", ""),
      MDRichText(container, "MDRichText"),
      MetadataText(container, "MetadataText"),
      ProcessMetadata(container, "ProcessMetadata") {
  if (differences.hasFrame2) Frame2.emplace(container, "Frame2", "");
  if (differences.hasSend) Send.emplace(container, "Send", "Send");
  if (differences.hasSourceImagesList) SourceImagesList.emplace(container, "SourceImagesList");
  Command7.setToolTip(differences.lockButtonHint);
  Save.setToolTip("Save the metadata to a given file.");
  setDesign();
  hideAllPages();
}

void MetadataControls::setDesign() {
  uiTreeView.setGeometry({105, 105, 1950, 5400});
  FirstPageFrame.setGeometry({2160, 480, 6330, 5025});
  Frame1.setGeometry({2160, 105, 6330, 5400});
  TabStrip1.setGeometry({2160, 480, 6330, 5025});
  InfoFrame.setGeometry({2250, 855, 6150, 4560});
}

void MetadataControls::hideAllPages() {
  for (Control* const control :
       {static_cast<Control*>(&TabStrip2), static_cast<Control*>(&Label1), static_cast<Control*>(&RasterList),
        static_cast<Control*>(&Command7), static_cast<Control*>(&TabStrip1),
        static_cast<Control*>(&ListView1), static_cast<Control*>(&FirstPageFrame),
        static_cast<Control*>(&InfoFrame), static_cast<Control*>(&MDRichText),
        static_cast<Control*>(&MetadataText), static_cast<Control*>(&ProcessMetadata)}) {
    control->setVisible(false);
  }
  hideListFrame();
  if (SourceImagesList) SourceImagesList->setVisible(false);
  if (!Send) return;
  Send->setToolTip("Send to browser");
  Send->setVisible(false);
  Send->setEnabled(false);
}

void MetadataControls::showListFrame(bool shown) {
  if (Frame2) Frame2->setVisible(shown);
}

}  // namespace vlclientui
