#include <cmath>
#include <string>

#include "contracts/RuntimeFailure.h"
#include "documents/ExportFormats.h"
#include "documents/NumberText.h"
#include "export/BoxNumbers.h"
#include "export/Complaints.h"
#include "export/ExportControl.h"
#include "export/NumberForms.h"
#include "frame/Guard.h"

// clang-format off
// Which box follows which. Left and top edge are the anchors. When a person edits an edge, a size or the grid, the
// grid stays and the pixel size gives way. Only an edited pixel size changes the grid, and then the right and the
// bottom edge move to whole pixels. Nothing is clamped.
//
//   edited         changes                                                     stays
//   edge           size, pixel size, estimate                                  grid, other edges
//   width          right edge, pixel size X, estimate                          left edge, columns
//   height         bottom edge, pixel size Y, estimate                         top edge, rows
//   columns        pixel size X, estimate                                      all edges, width
//   rows           pixel size Y, estimate                                      all edges, height
//   pixel size X   pixel size Y, grid, right and bottom edge, size, estimate   left and top edge
//   pixel size Y   rows, bottom edge, height, estimate                         other edges, columns, pixel size X
//   quality        estimate                                                    all else
// clang-format on

namespace vlclientui {

namespace {

constexpr double bytesPerMegabyte = 1'000'000;
constexpr double bestLossyQuality = 99;

/// A quality that no power can be taken of is a failure.
double powerOf(double quality) {
  if (quality < 0) throw RuntimeFailure("a negative quality");
  return std::pow(quality, 0.75);
}

const char* estimateForm(double size, const char* otherwise) {
  if (size > 10) return numberForm::wholeEstimate;
  if (size > 1 && size < 10) return numberForm::tenthEstimate;
  return otherwise;
}

/// Complains while the box's number is not positive.
void complainUnlessPositive(TextBox& box, std::string& complaint, const char* text) {
  const bool positive = !(numberOf(box) <= 0);
  box.setTextColor(positive ? TextColor::Normal : TextColor::Red);
  complain(box, complaint, positive ? "" : text);
}

void formatUnlessZero(TextBox& box, const char* form) {
  if (box.text() != zeroText()) format(box, form);
}

}  // namespace

// What happens when a box is left, after refusal and conversion.

void ExportControl::edgeLeft(const Field& /*field*/) { RecalculateAll(); }

void ExportControl::widthLeft(const Field& field) {
  if (changed(field)) sizeEdited(horizontal_);
}

void ExportControl::heightLeft(const Field& field) {
  if (changed(field)) sizeEdited(vertical_);
}

void ExportControl::columnsLeft(const Field& field) {
  CheckCols();
  // Deliberate: columns alone are checked a second time, on what the conversion made of them.
  if (refuses(field)) return;
  if (changed(field)) RecalculateAll();
}

void ExportControl::rowsLeft(const Field& field) {
  CheckRows();
  if (changed(field)) RecalculateAll();
}

void ExportControl::pixelSizeXLeft(const Field& field) {
  if (!changed(field)) return;
  // Deliberate: a new X sets Y as well and refits both directions. A new Y (below) changes its own direction
  // only.
  if (uiTxtGSDY.text() != uiTxtGSDX.text()) uiTxtGSDY.setText(uiTxtGSDX.text());
  fitToWholePixels(horizontal_);
  fitToWholePixels(vertical_);
  RecalculateAll();
  checkPixelSize(horizontal_);
}

void ExportControl::pixelSizeYLeft(const Field& field) {
  if (!changed(field)) return;
  fitToWholePixels(vertical_);
  RecalculateAll();
  checkPixelSize(vertical_);
}

void ExportControl::compressionLeft(const Field& /*field*/) {
  checkCompression();
  UpdateApproxMB();
  FormatAllFields();
}

void ExportControl::estimateLeft(const Field& /*field*/) {}

// After an edit of a size or a pixel size, these move the edge that is not the anchor.

void ExportControl::sizeEdited(const Direction& direction) {
  direction.moving.setText(
      plainText(numberOf(direction.anchor) + direction.growth * numberOf(direction.size)));
  RecalculateAll();
  checkSize(direction);
}

void ExportControl::fitToWholePixels(const Direction& direction) {
  updateCountFromPixelSize(direction);
  direction.moving.setText(
      plainText(numberOf(direction.anchor) +
                direction.growth * (numberOf(direction.count) * numberOf(direction.pixelSize))));
}

// The basic calculations.

void ExportControl::RecalculateAll() {
  UpdateHeightFromExtent();
  UpdateWidthFromExtent();
  UpdatePixelSizeX();
  UpdatePixelSizeY();
  UpdateApproxMB();
  FormatAllFields();
}

void ExportControl::updateSizeFromExtent(const Direction& direction) {
  endsQuietly([&] {
    writeSize(direction.size, numberOrZero(direction.high) - numberOrZero(direction.low), extentForm_);
    checkSize(direction);
  });
}

void ExportControl::updatePixelSize(const Direction& direction) {
  endsQuietly([&] {
    const double size = numberOrZero(direction.size);
    const std::string& count = direction.count.text();
    if (!count.empty() && count != "0") {
      writeSize(direction.pixelSize, quotient(size, numberOf(direction.count)), pixelForm_);
    }
    // As long as nothing has been computed there is nothing to check.
    if (!direction.pixelSize.text().empty()) checkPixelSize(direction);
  });
}

void ExportControl::updateCountFromPixelSize(const Direction& direction) {
  endsQuietly([&] {
    const double size = numberOrZero(direction.size);
    const std::string& pixelSize = direction.pixelSize.text();
    if (!pixelSize.empty() && pixelSize != "0") {
      const double count = quotient(size, numberOf(direction.pixelSize));
      direction.count.setText(plainText(std::nearbyint(count)));
    }
    checkCount(direction);
  });
}

void ExportControl::checkSize(const Direction& direction) {
  complainUnlessPositive(direction.size, direction.sizeComplaint, direction.sizeText);
}

void ExportControl::checkPixelSize(const Direction& direction) {
  complainUnlessPositive(direction.pixelSize, direction.pixelSizeComplaint, direction.pixelSizeText);
}

void ExportControl::FormatAllFields() {
  endsQuietly([this] {
    formatUnlessZero(uiTxtGSDY, pixelForm_);
    formatUnlessZero(uiTxtGSDX, pixelForm_);
    formatUnlessZero(uiTxtWidth, extentForm_);
    formatUnlessZero(uiTxtHeight, extentForm_);
    format(uiTxtTop, extentForm_);
    format(uiTxtLeft, extentForm_);
    format(uiTxtBottom, extentForm_);
    format(uiTxtRight, extentForm_);
  });
}

// The size estimate. A megabyte is 1,000,000 bytes.

void ExportControl::UpdateApproxMB() {
  endsQuietly([this] {
    const double columns = numberOrZero(uiTxtCols);
    const double rows = numberOrZero(uiTxtRows);
    const double factor = compressionFactor(numberOrZero(uiTxtCompression));
    const double divisor = factor == 0 ? bytesPerMegabyte : factor * bytesPerMegabyte;
    const double size = rows * columns * bytesPerPixel_ / divisor;
    uiTxtMB.setText(roundedText(size, estimateForm(size, extentForm_)));
    uiTxtMB.setTextColor(numberOf(uiTxtMB) == 0 ? TextColor::Red : TextColor::Normal);
  });
}

double ExportControl::compressionFactor(double quality) const {
  double factor = quality <= bestLossyQuality ? 1 + 0.8 * powerOf(100) - 0.8 * powerOf(quality) : 1;
  const ExportFormat* const format = findExportFormat(FormatCombo.text());
  if (format && format->estimate == SizeEstimate::Uncompressed) factor = 1;
  if (format && format->estimate == SizeEstimate::AFifth) factor = 5;
  // Deliberate for every format: a single band without compression is estimated at twice its size.
  return bandCount_ == 1 ? factor / 2 : factor;
}

}  // namespace vlclientui
