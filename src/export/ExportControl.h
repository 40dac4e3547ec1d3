#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Boolean16.h"
#include "contracts/Object.h"
#include "contracts/Toolkit.h"
#include "contracts/XmlDocument.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/NotedFrame.h"
#include "contracts/controls/PageControls.h"
#include "frame/LiveObjects.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// Everything that a person sets about an export. The boxes themselves hold the values; there is no model
/// behind them. Boxes use the user's decimal separator, documents a point.
///
/// Three descriptions of one raster: its edges, its size on the ground, and its grid with a pixel size.
/// ExportLinkage.cpp says which box follows which, ExportValidation.cpp what is refused and what is
/// complained of, ExportExtents.cpp how the boxes are filled, ExportFormats.cpp what a format sets.
///
/// Nearly every routine ends at its first failure without a message, and its caller continues. Only
/// CheckCols, CheckRows, FExists and DirExists pass failures on.
class ExportControl : public Object, public HostedControl {
 public:
  /// A list of texts in its order.
  using Collection = std::vector<std::string>;

  /// @param container null when a host makes the control without a window. @param name unique in the
  /// container.
  explicit ExportControl(ControlContainer* container, std::string name = "ExportControl1");

  // The properties of the default interface.
  std::optional<Collection> MainComboValues;  ///< entries of MainCombo; nothing until it is set
  std::string LastAOIXml;                     ///< metadata of the image last returned: "Current View Extent"
  std::string FullViewXml;                    ///< service info: "Default Extent of Image Service"
  std::string finalXml;                       ///< the `GetImage` element that OnClose wrote
  std::string mylabel;                        ///< cleared at first display and otherwise unused
  // The complaint about each field; empty while the field is good.
  /// Complaint about uiTxtWidth.
  std::string myWidthLabel;
  /// Complaint about uiTxtHeight.
  std::string myHeightLabel;
  /// Complaint about uiTxtCols.
  std::string myColsLabel;
  /// Complaint about uiTxtRows.
  std::string myRowsLabel;
  /// Complaint about uiTxtGSDX.
  std::string myPixelXLabel;
  /// Complaint about uiTxtGSDY.
  std::string myPixelYLabel;
  /// Complaint about uiTxtCompression.
  std::string myCompFactorLabel;
  Boolean16 ExModalCalled = boolean16False;  ///< opened by the extended show

  Label uiLblExportMD{*this, "uiLblExportMD", "&Export Metadata XML:"};  ///< caption of ExportMD
  /// Whether the metadata are written beside the image.
  CheckBox ExportMD{*this, "ExportMD", ""};
  FileDialog OpenDialog;  ///< keeps its last file name between uses
  /// Opens a file dialog; what is chosen goes into uiTxtFileName.
  Button OpenFile{*this, "OpenFile", "..."};
  Label uiLblTileSize{*this, "uiLblTileSize", "Tile Size:"};  ///< caption of TileSizeCombo
  /// Pixels a side of the tiles of a TIFF, or "None".
  DropDown TileSizeCombo{*this, "TileSizeCombo"};
  Label uiLblFileName{*this, "uiLblFileName", "File Name:"};  ///< caption of uiTxtFileName
  /// Path with drive and backslashes.
  TextBox uiTxtFileName{*this, "uiTxtFileName"};
  Label uiLblGSDY{*this, "uiLblGSDY", "Ground Pixel Size Y:"};  ///< caption of uiTxtGSDY
  /// Height of a pixel, in units of the service.
  TextBox uiTxtGSDY{*this, "uiTxtGSDY"};
  NotedFrame Frame1{*this, "Frame1", "Extents"};    ///< stands around the four boxes that follow
  Label uiLblRight{*this, "uiLblRight", "Right:"};  ///< caption of uiTxtRight
  /// Right edge, in units of the service.
  TextBox uiTxtRight{*this, "uiTxtRight"};
  Label uiLblBottom{*this, "uiLblBottom", "Bottom:"};  ///< caption of uiTxtBottom
  /// Lower edge.
  TextBox uiTxtBottom{*this, "uiTxtBottom"};
  Label uiLblTop{*this, "uiLblTop", "Top:"};  ///< caption of uiTxtTop
  /// Upper edge.
  TextBox uiTxtTop{*this, "uiTxtTop"};
  Label uiLblLeft{*this, "uiLblLeft", "Left:"};  ///< caption of uiTxtLeft
  /// Left edge.
  TextBox uiTxtLeft{*this, "uiTxtLeft"};
  Label uiLblCompression{*this, "uiLblCompression", "Compression Quality:"};  ///< caption of uiTxtCompression
  /// Quality, 0 to 100; enabled where the format takes one.
  TextBox uiTxtCompression{*this, "uiTxtCompression"};
  Label uiLblFormat{*this, "uiLblFormat", "Format:"};  ///< caption of FormatCombo
  /// The entries of exportFormats.
  DropDown FormatCombo{*this, "FormatCombo"};
  Label uiLblMB{*this, "uiLblMB", "Approx. MB:"};               ///< caption of uiTxtMB
  TextBox uiTxtMB{*this, "uiTxtMB"};                            ///< disabled; views show it bold
  Label uiLblGSDX{*this, "uiLblGSDX", "Ground Pixel Size X:"};  ///< caption of uiTxtGSDX
  /// Width of a pixel, in units of the service.
  TextBox uiTxtGSDX{*this, "uiTxtGSDX"};
  Label uiLblCols{*this, "uiLblCols", "Columns:"};  ///< caption of uiTxtCols
  /// Pixels across.
  TextBox uiTxtCols{*this, "uiTxtCols"};
  Label uiLblRows{*this, "uiLblRows", "Rows:"};  ///< caption of uiTxtRows
  /// Pixels down.
  TextBox uiTxtRows{*this, "uiTxtRows"};
  Label uiLblHeight{*this, "uiLblHeight", "Height:"};  ///< caption of uiTxtHeight
  /// Height of the area, in units of the service.
  TextBox uiTxtHeight{*this, "uiTxtHeight"};
  Label uiLblWidth{*this, "uiLblWidth", "Width:"};  ///< caption of uiTxtWidth
  /// Width of the area, in units of the service.
  TextBox uiTxtWidth{*this, "uiTxtWidth"};
  Label uiLblMain{*this, "uiLblMain", "Set the extent to:"};  ///< caption of MainCombo
  /// The areas to choose from: those of the host, the view, the whole service.
  DropDown MainCombo{*this, "MainCombo"};

  /// Writes the `GetImage` element into finalXml, or leaves that as it is when anything fails. The boxes have
  /// points afterwards, and keep them. @returns false always.
  Boolean16 OnClose();
  /// Whether the file exists. If not, makes its folder; a bare name in uiTxtFileName is moved to the root of
  /// drive C. @throws RuntimeFailure when the system cannot tell.
  Boolean16 FExists(const std::string& OrigFile);
  /// @throws RuntimeFailure when the system cannot tell.
  [[nodiscard]] Boolean16 DirExists(const std::string& OrigFile) const;
  /// The path up to and including its last backslash; unchanged when it has none.
  [[nodiscard]] static std::string StripFileName(const std::string& strPath);
  /// Makes the folders of the path one by one, up to the first that cannot be made.
  void MakeDirPath(const std::string& dirname);

  [[nodiscard]] std::string typeName() const override { return "ExportControl"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

 protected:
  /// Fills the boxes, at the first display only.
  void onShow() override;

 private:
  /// One direction of the raster. Both are computed alike, with these members.
  struct Direction {
    TextBox& anchor;  ///< the edge that stays when a size is edited
    TextBox& moving;  ///< the edge that follows
    double growth;    ///< 1 when the moving edge lies to the right, -1 when it lies below
    TextBox& high;    ///< size = high - low, in either direction
    TextBox& low;
    TextBox& size;
    TextBox& count;
    TextBox& pixelSize;
    std::string& sizeComplaint;
    std::string& countComplaint;
    std::string& pixelSizeComplaint;
    const std::int16_t& maxCount;
    const char* sizeText;
    const char* pixelSizeText;
    const char* countUnit;
    const char* countNotPositiveText;
    const char* countToolTip;
  };

  enum class OnFocus { SavesText, SavesTrimmed, SavesNothing };
  enum class DecimalPoint { Converted, Kept };

  /// A box that a person edits, and what goes with it.
  struct Field {
    TextBox& box;
    std::string& saved;  ///< its text when it took the focus
    OnFocus onFocus;
    DecimalPoint decimalPoint;
    void (ExportControl::*afterChecks)(const Field&);
  };

  struct Edges {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
  };

  void setDesign();
  void connectEvents();
  void connectField(const Field& field);
  void helpKeyPressed(const KeyEvent& key);

  // Filling the boxes.
  void firstDisplay();
  void fillFromDocuments();
  void extentChosen();
  void readPixelFacts();
  void loadCustomEnvelope(const std::string& description);
  void LoadCurrentViewExtent();
  void LoadDefaultExtent();
  void LoadCustomExtent(const Edges& edges);
  void loadEdge(const XmlDocument& document, const char* path, TextBox& box, bool degrees);
  void placeText(TextBox& box, const std::string& text);
  void formatEdge(TextBox& box, bool degrees);
  [[nodiscard]] static bool showsDegrees(const TextBox& box);
  void swapReversedEdges();
  void finishExtent();
  void ReplaceDecimalSeparator(const std::string& from, const std::string& to);
  void toUsersSeparator(TextBox& box) const;

  // Which box follows which.
  void RecalculateAll();
  void UpdateWidthFromExtent() { updateSizeFromExtent(horizontal_); }
  void UpdateHeightFromExtent() { updateSizeFromExtent(vertical_); }
  void UpdatePixelSizeX() { updatePixelSize(horizontal_); }
  void UpdatePixelSizeY() { updatePixelSize(vertical_); }
  void UpdateApproxMB();
  void FormatAllFields();
  void updateSizeFromExtent(const Direction& direction);
  void updatePixelSize(const Direction& direction);
  void updateCountFromPixelSize(const Direction& direction);
  void sizeEdited(const Direction& direction);
  void fitToWholePixels(const Direction& direction);
  void checkSize(const Direction& direction);
  void checkPixelSize(const Direction& direction);
  [[nodiscard]] double compressionFactor(double quality) const;

  // What happens when a box is left, after refusal and conversion.
  void edgeLeft(const Field& field);
  void widthLeft(const Field& field);
  void heightLeft(const Field& field);
  void columnsLeft(const Field& field);
  void rowsLeft(const Field& field);
  void pixelSizeXLeft(const Field& field);
  void pixelSizeYLeft(const Field& field);
  void compressionLeft(const Field& field);
  void estimateLeft(const Field& field);

  // Refusals and complaints.
  void saveText(const Field& field);
  void leave(const Field& field);
  [[nodiscard]] bool refuses(const Field& field);
  [[nodiscard]] static bool changed(const Field& field);
  void CheckCols() { checkCount(horizontal_); }
  void CheckRows() { checkCount(vertical_); }
  void checkCount(const Direction& direction);
  void checkCompression();
  void keyPressedIn(const KeyEvent& key);
  void switchToCustomExtent();

  // Formats and files.
  void formatChosen();
  void ApplyFormatExtension(const std::string& name);
  void EnsureFormatExtension(const std::string& name);
  void openFilePressed();
  void prepareFolderOf(const std::string& file);

  // The request.
  void writeRaster(XmlDocument& request) const;
  void writeFile(XmlDocument& request);
  void writeServiceFacts(XmlDocument& request) const;

  LiveObject alive_;
  double bytesPerPixel_ = 0;
  bool userEditing_ =
      false;  ///< set while a person edits: switches to the custom extent, keeps rows and columns
  bool firstDisplay_ = true;
  std::string savedCols_;
  std::string savedRows_;
  std::string savedWidth_;
  std::string savedHeight_;
  std::string savedTop_;
  std::string savedLeft_;
  std::string savedRight_;  ///< never saved, so a refusal empties that box
  std::string savedBottom_;
  std::string savedGSDX_;
  std::string savedMB_;
  std::string savedCompression_;
  std::string savedGSDY_;
  const char* extentForm_;    ///< picture of coordinates, width and height
  const char* pixelForm_;     ///< picture of pixel sizes
  std::int16_t maxRows_ = 0;  ///< 0: no limit known
  std::int16_t maxCols_ = 0;
  std::int16_t bandCount_ = 0;
  std::string decimalSeparator_ = ".";  ///< read at every extent load

  const Direction horizontal_;
  const Direction vertical_;
  const std::array<Field, 12> fields_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
