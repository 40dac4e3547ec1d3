#include "export/ExportModel.h"

#include <cmath>
#include <stdexcept>

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"
#include "documents/TextCase.h"

namespace vlclientui::test {

namespace {

const std::string heightComplaint = "Height cannot be less than or equal to zero.";
const std::string widthComplaint = "Width cannot be less than or equal to zero.";
const std::string pixelX = "The pixel size X cannot be less than or equal to zero.";
const std::string pixelY = "The pixel size Y cannot be less than or equal to zero.";

/// A step that stops at its first failure.
template <class Step>
void quietly(Step step) {
  try {
    step();
  } catch (const std::exception&) {
    // The next step goes on.
  }
}

double divided(double a, double b) {
  if (b == 0) throw std::domain_error("division by zero");
  return a / b;
}

}  // namespace

std::map<std::string, const TextBox*> ExportModel::boxesOf(const ExportControl& control) {
  return {{"Left", &control.uiTxtLeft},   {"Top", &control.uiTxtTop},
          {"Right", &control.uiTxtRight}, {"Bottom", &control.uiTxtBottom},
          {"Width", &control.uiTxtWidth}, {"Height", &control.uiTxtHeight},
          {"Cols", &control.uiTxtCols},   {"Rows", &control.uiTxtRows},
          {"GSDX", &control.uiTxtGSDX},   {"GSDY", &control.uiTxtGSDY},
          {"MB", &control.uiTxtMB},       {"Compression", &control.uiTxtCompression}};
}

ExportModel::ExportModel(const ExportControl& control, const LocaleFormat& locale) : locale_(locale) {
  for (const auto& [name, box] : boxesOf(control)) {
    text[name] = box->text();
    if (box->textColor() == TextColor::Red) red.insert(name);
  }
  text["Format"] = control.FormatCombo.text();
  complaint = {{"Cols", control.myColsLabel},
               {"Rows", control.myRowsLabel},
               {"Height", control.myHeightLabel},
               {"Width", control.myWidthLabel},
               {"GSDX", control.myPixelXLabel},
               {"GSDY", control.myPixelYLabel},
               {"Compression", control.myCompFactorLabel}};
  toolTip = {{"Cols", control.uiTxtCols.toolTip()}, {"Rows", control.uiTxtRows.toolTip()}};
}

void ExportModel::edit(const std::string& box, const std::string& typed) {
  if (box == "Cols" || box == "Rows" || box == "Width" || box == "Height")
    saved_[box] = trimmedBlanks(text[box]);
  if (box == "GSDX" || box == "GSDY" || box == "Compression") saved_[box] = text[box];
  if (box == "Top" || box == "Left" || box == "Bottom") saved_[box] = text[box];
  text[box] = typed;
  quietly([&] { leave(box); });
}

void ExportModel::leave(const std::string& box) {
  if (refused(box)) return;
  if (box == "Left" || box == "Top" || box == "Bottom") convert(box);
  if (box == "Left" || box == "Top" || box == "Bottom" || box == "Right") recalculateAll();
  if (box == "Width") leaveSize("Width", widthComplaint, "Left", 1, "Right");
  if (box == "Height") leaveSize("Height", heightComplaint, "Top", -1, "Bottom");
  if (box == "Cols" || box == "Rows") leaveGrid(box);
  if (box == "GSDX" || box == "GSDY") leavePixelSize(box);
  if (box == "Compression") leaveQuality();
}

void ExportModel::leaveSize(const std::string& box, const std::string& wrong, const std::string& anchor,
                            int direction, const std::string& movingEdge) {
  convert(box);
  if (!changed(box)) return;
  text[movingEdge] = plain(number(anchor) + direction * number(box));
  recalculateAll();
  checkSign(box, wrong);
}

void ExportModel::leaveGrid(const std::string& box) {
  convert(box);
  if (box == "Cols") {
    checkCols();
    if (refused(box)) return;
  } else {
    checkRows();
  }
  if (changed(box)) recalculateAll();
}

void ExportModel::leavePixelSize(const std::string& box) {
  convert(box);
  if (!changed(box)) return;
  if (box == "GSDX") {
    text["GSDY"] = text["GSDX"];
    colsFromPixelSize();
    text["Right"] = plain(number("Left") + number("Cols") * number("GSDX"));
  }
  rowsFromPixelSize();
  text["Bottom"] = plain(number("Top") - number("Rows") * number("GSDY"));
  recalculateAll();
  checkSign(box, box == "GSDX" ? pixelX : pixelY);
}

void ExportModel::leaveQuality() {
  const double quality = number("Compression");
  if (quality > 100 || quality < 0) {
    red.insert("Compression");
    complaint["Compression"] = "The compression factor cannot be more than 100 and less than 0.";
  } else {
    red.erase("Compression");
    complaint["Compression"] = "";
  }
  approxMB();
  formatAll();
}

bool ExportModel::refused(const std::string& box) {
  if (text[box].empty() || isNumeric(text[box], locale_)) return false;
  ++messages;
  text[box] = saved_[box];
  return true;
}

void ExportModel::convert(const std::string& box) {
  if (locale_.decimalSeparator == ".") return;
  std::string converted;
  for (const char c : text[box]) converted += c == '.' ? locale_.decimalSeparator : std::string(1, c);
  text[box] = converted;
}

bool ExportModel::changed(const std::string& box) { return trimmedBlanks(text[box]) != saved_[box]; }

double ExportModel::number(const std::string& box) { return textToDouble(text[box], locale_); }

double ExportModel::numberOrZero(const std::string& box) { return text[box].empty() ? 0 : number(box); }

std::string ExportModel::plain(double value) {
  if (!std::isfinite(value)) throw std::overflow_error("no number");
  return doubleToText(value, locale_);
}

std::string ExportModel::pictured(const std::string& value, const std::string& form) {
  if (!isNumeric(value, locale_)) return value;
  return formatDouble(textToDouble(value, locale_), form, locale_);
}

void ExportModel::recalculateAll() {
  heightFromExtent();
  widthFromExtent();
  pixelSizeX();
  pixelSizeY();
  approxMB();
  formatAll();
}

void ExportModel::checkSign(const std::string& box, const std::string& message) {
  if (number(box) <= 0) {
    red.insert(box);
    complaint[box] = message;
  } else {
    red.erase(box);
    complaint[box] = "";
  }
}

void ExportModel::heightFromExtent() {
  quietly([this] {
    const std::string height = plain(numberOrZero("Top") - numberOrZero("Bottom"));
    text["Height"] = height == "0" ? "0" + locale_.decimalSeparator + "000" : pictured(height, extentForm);
    checkSign("Height", heightComplaint);
  });
}

void ExportModel::widthFromExtent() {
  quietly([this] {
    const std::string width = plain(numberOrZero("Right") - numberOrZero("Left"));
    text["Width"] = width == "0" ? "0" + locale_.decimalSeparator + "000" : pictured(width, extentForm);
    checkSign("Width", widthComplaint);
  });
}

void ExportModel::pixelSizeX() {
  quietly([this] {
    const double width = numberOrZero("Width");
    if (text["Cols"] != "" && text["Cols"] != "0") {
      const std::string size = plain(divided(width, number("Cols")));
      text["GSDX"] = size == "0" ? "0" + locale_.decimalSeparator + "000" : pictured(size, pixelForm);
    }
    checkSign("GSDX", pixelX);
  });
}

void ExportModel::pixelSizeY() {
  quietly([this] {
    const double height = numberOrZero("Height");
    if (text["Rows"] != "" && text["Rows"] != "0") {
      const std::string size = plain(divided(height, number("Rows")));
      text["GSDY"] = size == "0" ? "0" + locale_.decimalSeparator + "000" : pictured(size, pixelForm);
    }
    checkSign("GSDY", pixelY);
  });
}

void ExportModel::approxMB() {
  quietly([this] {
    const double cols = numberOrZero("Cols");
    const double rows = numberOrZero("Rows");
    const double q = numberOrZero("Compression");
    if (q < 0) throw std::domain_error("no power");
    double f = 1;
    if (q <= 99) f = (1 - std::pow(100, 0.75) * -0.8) + std::pow(q, 0.75) * -0.8;
    if (text["Format"] == "PNG" || text["Format"] == "TIFF-No Compression") f = 1;
    if (text["Format"] == "TIFF-LZ77") f = 5;
    if (bandCount == 1) f = f / 2;
    const double size = rows * cols * bytesPerPixel / (f * 1000000);
    std::string form = extentForm;
    if (size > 10) form = "###";
    if (size > 1 && size < 10) form = "###.0";
    text["MB"] = plain(textToDouble(formatDouble(size, form, locale_), locale_));
    if (number("MB") == 0) {
      red.insert("MB");
    } else {
      red.erase("MB");
    }
  });
}

void ExportModel::formatAll() {
  const std::string zero = "0" + locale_.decimalSeparator + "000";
  if (text["GSDY"] != zero) text["GSDY"] = pictured(text["GSDY"], pixelForm);
  if (text["GSDX"] != zero) text["GSDX"] = pictured(text["GSDX"], pixelForm);
  if (text["Width"] != zero) text["Width"] = pictured(text["Width"], extentForm);
  if (text["Height"] != zero) text["Height"] = pictured(text["Height"], extentForm);
  text["Top"] = pictured(text["Top"], extentForm);
  text["Left"] = pictured(text["Left"], extentForm);
  text["Bottom"] = pictured(text["Bottom"], extentForm);
  text["Right"] = pictured(text["Right"], extentForm);
}

void ExportModel::colsFromPixelSize() {
  quietly([this] {
    const double width = numberOrZero("Width");
    if (text["GSDX"] != "" && text["GSDX"] != "0") {
      text["Cols"] = plain(std::nearbyint(divided(width, number("GSDX"))));
    }
    checkCols();
  });
}

void ExportModel::rowsFromPixelSize() {
  quietly([this] {
    const double height = numberOrZero("Height");
    if (text["GSDY"] != "" && text["GSDY"] != "0") {
      text["Rows"] = plain(std::nearbyint(divided(height, number("GSDY"))));
    }
    checkRows();
  });
}

void ExportModel::checkCols() {
  if (maxCols == 0) return;
  const std::string n = std::to_string(maxCols);
  if (number("Cols") > maxCols) {
    red.insert("Cols");
    complaint["Cols"] =
        "Number of columns cannot be more than the maximum columns allowed. [Max. columns allowed: " + n +
        "]";
    toolTip["Cols"] = "Maximum number of columns allowed is " + n + ".";
  } else {
    red.erase("Cols");
    toolTip["Cols"] = "Number of columns of pixels in the exported image.";
    complaint["Cols"] = "";
  }
  if (number("Cols") <= 0) {
    red.insert("Cols");
    complaint["Cols"] = "Columns cannot be a negative value or zero.";
    toolTip["Cols"] = "Columns cannot be a negative value or zero.";
  }
}

void ExportModel::checkRows() {
  if (maxRows == 0) return;
  const std::string n = std::to_string(maxRows);
  if (number("Rows") > maxRows) {
    red.insert("Rows");
    complaint["Rows"] =
        "Number of rows cannot be more than the maximum rows allowed. [Max. rows allowed: " + n + "]";
    toolTip["Rows"] = "Maximum number of rows allowed is " + n + ".";
  } else {
    red.erase("Rows");
    toolTip["Rows"] = "Number of rows of pixels in the exported image.";
    complaint["Rows"] = "";
  }
  if (number("Rows") <= 0) {
    red.insert("Rows");
    complaint["Rows"] = "Rows cannot be a negative value or zero.";
    toolTip["Rows"] = "Rows cannot be a negative value or zero.";
  }
}

}  // namespace vlclientui::test
