#include "client/drawing/PictureKind.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <string_view>

#include <gdal_priv.h>

namespace vlclientui::client {
namespace {

using BandChoice = std::array<int, 3>;

std::string lowered(const char* text) {
  std::string out = text != nullptr ? text : "";
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return out;
}

bool holdsAny(const std::string& text, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view word) { return text.find(word) != std::string::npos; });
}

std::string wordsAbout(GDALDataset& dataset, const std::optional<std::string>& title) {
  std::string words = lowered(dataset.GetRasterBand(1)->GetDescription());
  if (title) return words + ' ' + lowered(title->c_str());
  for (const char* item : {"TITLE", "TIFFTAG_IMAGEDESCRIPTION", "TIFFTAG_DOCUMENTNAME"}) {
    words += ' ' + lowered(dataset.GetMetadataItem(item));
  }
  return words;
}

bool isElevation(GDALDataset& dataset, const std::string& words) {
  GDALRasterBand& band = *dataset.GetRasterBand(1);
  if (dataset.GetRasterCount() != 1 || band.GetRasterDataType() == GDT_Byte) return false;
  const std::string unit = lowered(band.GetUnitType());
  const std::array<std::string_view, 6> lengths = {"m", "metre", "meter", "metres", "meters", "ft"};
  return std::find(lengths.begin(), lengths.end(), unit) != lengths.end() ||
         holdsAny(words, {"elevation", "terrain", "height", "geoid", "dtm"});
}

int bandByInterpretation(GDALDataset& dataset, GDALColorInterp wanted) {
  for (int number = 1; number <= dataset.GetRasterCount(); ++number) {
    if (dataset.GetRasterBand(number)->GetColorInterpretation() == wanted) return number;
  }
  return 0;
}

// Accepts "Red" and "Band 4 (red)", but not "near infrared" or "red edge".
bool isNamed(const std::string& description, std::string_view color) {
  return description.find(color) != std::string::npos && !holdsAny(description, {"infrared", "edge", "nir"});
}

int bandByDescription(GDALDataset& dataset, std::string_view color) {
  for (int number = 1; number <= dataset.GetRasterCount(); ++number) {
    if (isNamed(lowered(dataset.GetRasterBand(number)->GetDescription()), color)) return number;
  }
  return 0;
}

bool isComplete(const BandChoice& choice) {
  return std::find(choice.begin(), choice.end(), 0) == choice.end();
}

BandChoice colorBands(GDALDataset& dataset) {
  const BandChoice told = {bandByInterpretation(dataset, GCI_RedBand),
                           bandByInterpretation(dataset, GCI_GreenBand),
                           bandByInterpretation(dataset, GCI_BlueBand)};
  if (isComplete(told)) return told;
  const BandChoice named = {bandByDescription(dataset, "red"), bandByDescription(dataset, "green"),
                            bandByDescription(dataset, "blue")};
  if (isComplete(named)) return named;
  return dataset.GetRasterCount() >= 3 ? BandChoice{1, 2, 3} : BandChoice{1, 1, 1};
}

bool hasPalette(GDALRasterBand& band) {
  return band.GetColorTable() != nullptr && band.GetColorInterpretation() == GCI_PaletteIndex;
}

}  // namespace

PictureKind pictureKindOf(GDALDataset& dataset, const std::optional<std::string>& title) {
  if (hasPalette(*dataset.GetRasterBand(1))) return {PictureKind::Form::Palette, {1, 1, 1}};
  const std::string words = wordsAbout(dataset, title);
  if (!isElevation(dataset, words)) return {PictureKind::Form::Colors, colorBands(dataset)};
  const bool deviates = holdsAny(words, {"geoid", "undulation", "difference"});
  return {deviates ? PictureKind::Form::Deviations : PictureKind::Form::Heights, {1, 1, 1}};
}

}  // namespace vlclientui::client
