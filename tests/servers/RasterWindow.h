#pragma once

#include <array>
#include <string>
#include <vector>

#include <gdal_priv.h>

namespace vlclientui::test {

/// Whole pixels of a raster.
struct PixelWindow {
  int column = 0;
  int row = 0;
  int width = 0;
  int height = 0;
};

/// A raster read by GDAL alone, as a test compares it: values of all bands, one band after the other, and
/// where they lie.
struct RasterContent {
  int width = 0;
  int height = 0;
  int bands = 0;
  GDALDataType type = GDT_Unknown;
  std::vector<double> values;
  std::array<double, 4> extent{};  ///< west, south, east, north
  double scale = 1;                ///< what the file tells to multiply values with
};

/// A window of the raster with that name.
[[nodiscard]] RasterContent readWindow(const std::string& name, const PixelWindow& window);
/// All of a file that was fetched. Empty where GDAL cannot open it.
[[nodiscard]] RasterContent readFetched(const std::string& bytes);
/// The sources of a mosaic of the samples as one raster, a later file over an earlier one.
[[nodiscard]] std::string joinedSources(const std::string& folder);

}  // namespace vlclientui::test
