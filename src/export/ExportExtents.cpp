#include <algorithm>
#include <cmath>
#include <string>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/NumberText.h"
#include "documents/TextCase.h"
#include "export/BoxNumbers.h"
#include "export/Envelope.h"
#include "export/ExportControl.h"
#include "export/NumberForms.h"
#include "export/PixelTypes.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"

// The three extents and the boxes that they fill. A document's text gets the user's separator on its way into
// a box; numbers that go elsewhere are read with a point.

namespace vlclientui {

namespace {

constexpr const char* pixelTypePath = "//Vorlane/Client/ImageMetadata/Basic/PixelType";
constexpr const char* bandsPath = "//Vorlane/Client/ImageMetadata/Basic/NBands";
constexpr const char* rowsPath = "//Vorlane/Client/ImageMetadata/Basic/NRows";
constexpr const char* columnsPath = "//Vorlane/Client/ImageMetadata/Basic/NCols";
constexpr const char* maxColumnsPath = "//Vorlane/ImageServiceInfo/MaxNCols";
constexpr const char* maxRowsPath = "//Vorlane/ImageServiceInfo/MaxNRows";
constexpr const char* pixelSizePath = "//Vorlane/ImageServiceInfo/PixelSize";

constexpr const char* currentLeft = "//Vorlane/Client/ImageMetadata/Basic/XMin";
constexpr const char* currentTop = "//Vorlane/Client/ImageMetadata/Basic/YMax";
constexpr const char* currentRight = "//Vorlane/Client/ImageMetadata/Basic/XMax";
constexpr const char* currentBottom = "//Vorlane/Client/ImageMetadata/Basic/YMin";
constexpr const char* defaultLeft = "//Vorlane/ImageServiceInfo/ClientEnvelope/XMin";
constexpr const char* defaultTop = "//Vorlane/ImageServiceInfo/ClientEnvelope/YMax";
constexpr const char* defaultRight = "//Vorlane/ImageServiceInfo/ClientEnvelope/XMax";
constexpr const char* defaultBottom = "//Vorlane/ImageServiceInfo/ClientEnvelope/YMin";

constexpr double smallestGroundUnit = 360;

std::string ReadDocumentText(const std::string& xml, const char* path) {
  std::string text = "0";
  endsQuietly([&] { text = readText(*parsedDocument(xml), path).value_or("0"); });
  return text;
}

double ReadDocumentNumber(const std::string& xml, const char* path) {
  double number = 0;
  endsQuietly([&] { number = documentNumber(ReadDocumentText(xml, path)); });
  return number;
}

void readLimit(const XmlDocument& document, const char* path, std::int16_t& limit) {
  const auto text = readText(document, path);
  if (text) limit = textToInt16(*text, LocaleFormat{});
}

void swapIfBelow(TextBox& high, TextBox& low) {
  const double lowNumber = numberOf(low);
  if (!(numberOf(high) < lowNumber)) return;
  low.setText(high.text());
  high.setText(plainText(lowNumber));
}

}  // namespace

void ExportControl::extentChosen() {
  endsQuietly([this] {
    const std::string chosen = MainCombo.text();
    const bool extended = ExModalCalled != boolean16False;
    // Deliberate: the plain show never learns the pixel type, so its size estimate stays 0.
    if (extended) readPixelFacts();
    if (chosen == "Current View Extent") return LoadCurrentViewExtent();
    if (chosen == "Default Extent of Image Service") return LoadDefaultExtent();
    if (extended && chosen != "Custom Extent") loadCustomEnvelope(chosen);
  });
}

void ExportControl::readPixelFacts() {
  const std::int16_t bytesPerSample = bytesPerSampleOf(ReadDocumentText(LastAOIXml, pixelTypePath));
  bandCount_ = doubleToInt16(ReadDocumentNumber(LastAOIXml, bandsPath));
  bytesPerPixel_ = static_cast<double>(bandCount_) * bytesPerSample;
}

void ExportControl::loadCustomEnvelope(const std::string& description) {
  const auto& envelopes = customEnvelopes();
  const auto found = std::ranges::find_if(
      envelopes, [&](const auto& envelope) { return envelope->Description() == description; });
  if (found == envelopes.end()) return endSilently("there is no extent '" + description + "'");
  const LocaleFormat locale = currentPlatform().system->localeFormat();
  const Envelope& envelope = **found;
  LoadCustomExtent({.left = textToDouble(envelope.XMin(), locale),
                    .top = textToDouble(envelope.YMax(), locale),
                    .right = textToDouble(envelope.XMax(), locale),
                    .bottom = textToDouble(envelope.YMin(), locale)});
}

// The three loads share their steps, and each has its own order of them.

void ExportControl::LoadCurrentViewExtent() {
  endsQuietly([this] {
    readLocaleDecimalSeparator(decimalSeparator_);
    const auto document = parsedDocument(LastAOIXml);
    // Deliberate: the box as it was decides, before anything is written.
    const bool degrees = !uiTxtLeft.text().empty() && showsDegrees(uiTxtLeft);
    loadEdge(*document, currentLeft, uiTxtLeft, degrees);
    loadEdge(*document, currentTop, uiTxtTop, degrees);
    loadEdge(*document, currentRight, uiTxtRight, degrees);
    loadEdge(*document, currentBottom, uiTxtBottom, degrees);
    pixelForm_ = numberForm::ofPixels(degrees);
    if (!userEditing_) {
      if (const auto rows = readText(*document, rowsPath)) uiTxtRows.setText(*rows);
      if (const auto columns = readText(*document, columnsPath)) uiTxtCols.setText(*columns);
    }
    // Width and height are still those before the swap, until the next recalculation.
    RecalculateAll();
    swapReversedEdges();
    finishExtent();
  });
}

void ExportControl::LoadDefaultExtent() {
  endsQuietly([this] {
    readLocaleDecimalSeparator(decimalSeparator_);
    const auto document = parsedDocument(FullViewXml);
    readLimit(*document, maxColumnsPath, maxCols_);
    readLimit(*document, maxRowsPath, maxRows_);
    bool degrees = false;
    if (const auto left = readText(*document, defaultLeft)) {
      placeText(uiTxtLeft, *left);
      degrees = showsDegrees(uiTxtLeft);
      formatEdge(uiTxtLeft, degrees);
    }
    loadEdge(*document, defaultTop, uiTxtTop, degrees);
    loadEdge(*document, defaultRight, uiTxtRight, degrees);
    loadEdge(*document, defaultBottom, uiTxtBottom, degrees);
    pixelForm_ = numberForm::ofPixels(degrees);
    // The pixel size is not used, but one that is not a number ends the load here.
    if (const auto pixelSize = readText(*document, pixelSizePath)) {
      static_cast<void>(documentNumber(*pixelSize));
    }
    uiTxtRows.setText("1000");
    uiTxtCols.setText("1000");
    swapReversedEdges();
    // Pixel sizes and the estimate keep their values.
    UpdateWidthFromExtent();
    UpdateHeightFromExtent();
    finishExtent();
  });
}

void ExportControl::LoadCustomExtent(const Edges& edges) {
  endsQuietly([this, &edges] {
    readLocaleDecimalSeparator(decimalSeparator_);
    placeText(uiTxtLeft, plainText(edges.left));
    const bool degrees = showsDegrees(uiTxtLeft);
    pixelForm_ = numberForm::ofPixels(degrees);
    formatEdge(uiTxtLeft, degrees);
    placeText(uiTxtTop, plainText(edges.top));
    formatEdge(uiTxtTop, degrees);
    placeText(uiTxtRight, plainText(edges.right));
    formatEdge(uiTxtRight, degrees);
    uiTxtBottom.setText(plainText(edges.bottom));
    // Deliberate: the right box is converted a second time, and the bottom one is not.
    toUsersSeparator(uiTxtRight);
    formatEdge(uiTxtBottom, degrees);
    RecalculateAll();
    swapReversedEdges();
    finishExtent();
  });
}

bool ExportControl::showsDegrees(const TextBox& box) { return std::abs(numberOf(box)) < smallestGroundUnit; }

void ExportControl::loadEdge(const XmlDocument& document, const char* path, TextBox& box, bool degrees) {
  const auto text = readText(document, path);
  if (!text) return;
  placeText(box, *text);
  formatEdge(box, degrees);
}

void ExportControl::placeText(TextBox& box, const std::string& text) {
  box.setText(text);
  toUsersSeparator(box);
}

void ExportControl::formatEdge(TextBox& box, bool degrees) {
  extentForm_ = numberForm::ofExtent(degrees);
  format(box, extentForm_);
}

void ExportControl::swapReversedEdges() {
  swapIfBelow(uiTxtRight, uiTxtLeft);
  swapIfBelow(uiTxtTop, uiTxtBottom);
}

void ExportControl::finishExtent() {
  FormatAllFields();
  if (decimalSeparator_ != ".") ReplaceDecimalSeparator(".", decimalSeparator_);
}

void ExportControl::ReplaceDecimalSeparator(const std::string& from, const std::string& to) {
  endsQuietly([&] {
    // Columns and rows are whole numbers and deliberately not in this list.
    for (TextBox* const box : {&uiTxtLeft, &uiTxtRight, &uiTxtTop, &uiTxtBottom, &uiTxtGSDX, &uiTxtGSDY,
                               &uiTxtCompression, &uiTxtMB, &uiTxtHeight, &uiTxtWidth}) {
      box->setText(replacedAll(box->text(), from, to));
    }
  });
}

void ExportControl::toUsersSeparator(TextBox& box) const {
  if (decimalSeparator_ != ".") box.setText(replacedAll(box.text(), ".", decimalSeparator_));
}

}  // namespace vlclientui
