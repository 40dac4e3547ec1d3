#include "export/ExportControl.h"

#include <utility>

#include "documents/ExportFormats.h"
#include "documents/TextCase.h"
#include "export/Envelope.h"
#include "export/NumberForms.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* helpPage = "Exporting_Image_Services";
constexpr const char* defaultFileTail = "\\Ostrel\\Vor Lane\\Untitled.tif";

}  // namespace

ExportControl::ExportControl(ControlContainer* container, std::string name)
    : HostedControl(container, std::move(name), "ExportControl"),
      extentForm_(numberForm::groundExtent),
      pixelForm_(numberForm::groundPixel),
      horizontal_{.anchor = uiTxtLeft,
                  .moving = uiTxtRight,
                  .growth = 1,
                  .high = uiTxtRight,
                  .low = uiTxtLeft,
                  .size = uiTxtWidth,
                  .count = uiTxtCols,
                  .pixelSize = uiTxtGSDX,
                  .sizeComplaint = myWidthLabel,
                  .countComplaint = myColsLabel,
                  .pixelSizeComplaint = myPixelXLabel,
                  .maxCount = maxCols_,
                  .sizeText = "Width cannot be less than or equal to zero.",
                  .pixelSizeText = "The pixel size X cannot be less than or equal to zero.",
                  .countUnit = "columns",
                  .countNotPositiveText = "Columns cannot be a negative value or zero.",
                  .countToolTip = "Number of columns of pixels in the exported image."},
      vertical_{.anchor = uiTxtTop,
                .moving = uiTxtBottom,
                .growth = -1,
                .high = uiTxtTop,
                .low = uiTxtBottom,
                .size = uiTxtHeight,
                .count = uiTxtRows,
                .pixelSize = uiTxtGSDY,
                .sizeComplaint = myHeightLabel,
                .countComplaint = myRowsLabel,
                .pixelSizeComplaint = myPixelYLabel,
                .maxCount = maxRows_,
                .sizeText = "Height cannot be less than or equal to zero.",
                .pixelSizeText = "The pixel size Y cannot be less than or equal to zero.",
                .countUnit = "rows",
                .countNotPositiveText = "Rows cannot be a negative value or zero.",
                .countToolTip = "Number of rows of pixels in the exported image."},
      fields_{{
          {uiTxtLeft, savedLeft_, OnFocus::SavesText, DecimalPoint::Converted, &ExportControl::edgeLeft},
          {uiTxtTop, savedTop_, OnFocus::SavesText, DecimalPoint::Converted, &ExportControl::edgeLeft},
          {uiTxtBottom, savedBottom_, OnFocus::SavesText, DecimalPoint::Converted, &ExportControl::edgeLeft},
          // Deliberate: unlike the other edges, this one neither saves nor converts.
          {uiTxtRight, savedRight_, OnFocus::SavesNothing, DecimalPoint::Kept, &ExportControl::edgeLeft},
          {uiTxtWidth, savedWidth_, OnFocus::SavesTrimmed, DecimalPoint::Converted,
           &ExportControl::widthLeft},
          {uiTxtHeight, savedHeight_, OnFocus::SavesTrimmed, DecimalPoint::Converted,
           &ExportControl::heightLeft},
          {uiTxtCols, savedCols_, OnFocus::SavesTrimmed, DecimalPoint::Converted,
           &ExportControl::columnsLeft},
          {uiTxtRows, savedRows_, OnFocus::SavesTrimmed, DecimalPoint::Converted, &ExportControl::rowsLeft},
          {uiTxtGSDX, savedGSDX_, OnFocus::SavesText, DecimalPoint::Converted,
           &ExportControl::pixelSizeXLeft},
          {uiTxtGSDY, savedGSDY_, OnFocus::SavesText, DecimalPoint::Converted,
           &ExportControl::pixelSizeYLeft},
          {uiTxtCompression, savedCompression_, OnFocus::SavesText, DecimalPoint::Kept,
           &ExportControl::compressionLeft},
          {uiTxtMB, savedMB_, OnFocus::SavesText, DecimalPoint::Kept, &ExportControl::estimateLeft},
      }} {
  setDesign();
  connectEvents();
  FormatCombo.setIndex(0);
  MainCombo.clear();
}

void ExportControl::setDesign() {
  for (const char* const size : {"None", "128", "256", "512"}) TileSizeCombo.addEntry(size);
  for (const ExportFormat& format : exportFormats()) FormatCombo.addEntry(format.entry);
  uiTxtCompression.setText("100");
  uiTxtMB.setEnabled(false);
  TileSizeCombo.setToolTip("Size of internal tiles in the exported image for TIFF images only. ");
  uiTxtFileName.setToolTip(R"(Path and name of the exported image. By default the name is "Untitled".)");
  uiTxtGSDY.setToolTip("Size of the pixels at the ground level in Y direction.");
  uiTxtRight.setToolTip("Right-most X coordinate.");
  uiTxtBottom.setToolTip("Bottom-most Y coordinate.");
  uiTxtTop.setToolTip("Top-most Y coordinate.");
  uiTxtLeft.setToolTip("Left most X coordinate.");
  uiTxtCompression.setToolTip(
      "Defines the quality of compression. A compression quality of 100% is the best.");
  FormatCombo.setToolTip(
      "Format of the exported image. You can select TIFF/TFW no compression, TIFF/TFW-JPEG, TIFF/TFW-LZ77, "
      "JPEG, JP2, and PNG.");
  uiTxtMB.setToolTip("Approximate size of the image in Mega Bytes.");
  uiTxtGSDX.setToolTip("Size of the pixels at the ground level in X direction.");
  uiTxtCols.setToolTip(horizontal_.countToolTip);
  uiTxtRows.setToolTip(vertical_.countToolTip);
  uiTxtHeight.setToolTip("Height of the exported image, expressed in the units of the Data Frame.");
  uiTxtWidth.setToolTip("Width of the exported image, expressed in the units of the Data Frame. ");
  MainCombo.setToolTip("Set extents to Current, Default or User-defined.");
}

void ExportControl::connectEvents() {
  keyPreview.connect([this](const KeyEvent& key) { helpKeyPressed(key); });
  for (const Field& field : fields_) connectField(field);
  MainCombo.click.connect([this] { extentChosen(); });
  FormatCombo.click.connect([this] { formatChosen(); });
  uiTxtFileName.lostFocus.connect([this] { ApplyFormatExtension(uiTxtFileName.text()); });
  OpenFile.click.connect([this] { openFilePressed(); });
}

void ExportControl::connectField(const Field& field) {
  field.box.gotFocus.connect([this, &field] { saveText(field); });
  field.box.lostFocus.connect([this, &field] { leave(field); });
  field.box.keyDown.connect([this](const KeyEvent& key) { keyPressedIn(key); });
}

void ExportControl::helpKeyPressed(const KeyEvent& key) {
  endsQuietly([&] { LaunchHelp(key.keyCode, key.shift, container() != nullptr, helpPage); });
}

Object* ExportControl::queryInterface(std::string_view interfaceName) {
  return interfaceName == "_ExportControl" ? this : nullptr;
}

void ExportControl::onShow() {
  visitWindow(topForm(), [this] { firstDisplay(); });
}

void ExportControl::firstDisplay() {
  mylabel.clear();
  if (!firstDisplay_) return;
  if (MainComboValues) fillFromDocuments();
  userEditing_ = true;
  if (trimmedBlanks(uiTxtFileName.text()).empty()) {
    const auto folder = callOut(currentPlatform().system)->environment("APPDATA");
    uiTxtFileName.setText(folder.value_or(std::string()) + defaultFileTail);
  }
  firstDisplay_ = false;
  mylabel.clear();
}

void ExportControl::fillFromDocuments() {
  MainCombo.clear();
  for (const std::string& entry : *MainComboValues) MainCombo.addEntry(entry);
  if (MainCombo.count() > 0) {
    // Setting the index loads that extent a first time; the three lines after it decide what is shown.
    MainCombo.setIndex(customEnvelopes().empty() ? 0 : MainCombo.count() - 1);
  }
  LoadDefaultExtent();
  LoadCurrentViewExtent();
  extentChosen();
  TileSizeCombo.setIndex(0);
}

}  // namespace vlclientui
