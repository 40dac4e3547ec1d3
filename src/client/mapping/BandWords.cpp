#include "client/mapping/BandWords.h"

#include <algorithm>

#include <gdal_priv.h>
#include <gdal_rat.h>

namespace vlclientui::client {
namespace {

// By its purpose, else the first one of texts; -1 for none.
int nameColumn(const GDALRasterAttributeTable& table) {
  const int told = table.GetColOfUsage(GFU_Name);
  if (told >= 0) return told;
  for (int column = 0; column < table.GetColumnCount(); ++column) {
    if (table.GetTypeOfCol(column) == GFT_String) return column;
  }
  return -1;
}

std::string nameInTable(const GDALRasterAttributeTable& table, int value) {
  const int column = nameColumn(table);
  const int row = table.GetRowOfValue(value);
  if (column < 0 || row < 0 || row >= table.GetRowCount()) return {};
  return table.GetValueAsString(row, column);
}

// Color tables of files are filled up to their full length, most often with black.
void dropFilling(std::vector<ServiceClass>& classes) {
  const std::size_t count = classes.size();
  if (count < 2 || classes[count - 1].color != classes[count - 2].color) return;
  const auto filling = classes.back().color;
  std::erase_if(classes, [&](const ServiceClass& one) { return one.color == filling; });
}

}  // namespace

std::string bandName(GDALRasterBand& band, int number) {
  std::string told = band.GetDescription();
  if (!told.empty()) return told;
  const GDALColorInterp color = band.GetColorInterpretation();
  const bool isTold = color != GCI_Undefined && color != GCI_GrayIndex && color != GCI_PaletteIndex;
  return isTold ? GDALGetColorInterpretationName(color) : "Band " + std::to_string(number);
}

std::string className(GDALRasterBand& band, int value) {
  const auto names = CSLConstList(band.GetCategoryNames());
  const bool isNamed = value >= 0 && value < CSLCount(names) && *names[value] != '\0';
  if (isNamed) return names[value];
  const GDALRasterAttributeTable* const table = band.GetDefaultRAT();
  return table == nullptr ? std::string() : nameInTable(*table, value);
}

std::vector<ServiceClass> classesOf(GDALRasterBand& band) {
  std::vector<ServiceClass> classes;
  const GDALColorTable* const table = band.GetColorTable();
  int hasNoData = 0;
  const double noData = band.GetNoDataValue(&hasNoData);
  for (int value = 0; table != nullptr && value < table->GetColorEntryCount(); ++value) {
    GDALColorEntry entry{0, 0, 0, 0};
    table->GetColorEntryAsRGB(value, &entry);
    const bool isShown = entry.c4 != 0 && (hasNoData == 0 || noData != value);
    if (!isShown) continue;
    const auto byte = [](short level) { return static_cast<std::uint8_t>(level); };
    classes.push_back(
        {value, {byte(entry.c1), byte(entry.c2), byte(entry.c3), byte(entry.c4)}, className(band, value)});
  }
  const auto isNameless = [](const ServiceClass& one) { return one.name.empty(); };
  if (std::ranges::all_of(classes, isNameless)) {
    dropFilling(classes);
  } else {
    std::erase_if(classes, isNameless);
  }
  return classes;
}

}  // namespace vlclientui::client
