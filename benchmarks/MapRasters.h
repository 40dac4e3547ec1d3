#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"

/// What a map is measured with: rasters in tiles of JPEG, as aerial photographs are kept.
namespace vlclientui::benchmarks {

enum class Overviews { None, Some };

/// A square raster of three bands in UTM. @param left,top in meters; a pixel is a meter.
struct MapRaster {
  int side = 1000;
  double left = 500000;
  double top = 5200000;
  Overviews overviews = Overviews::None;
};

// Slopes with a little noise; blocks of 256 that repeat, so that large ones are made fast.
inline std::vector<std::uint8_t> rowsOfRaster(int side, int rows) {
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(side) * static_cast<std::size_t>(rows) * 3);
  std::uint32_t state = 1;
  std::size_t i = 0;
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < side; ++x) {
      state = state * 1664525U + 1013904223U;
      const double wave = 60 * std::sin(x / 900.0) + 40 * std::cos(y * 6.2832 / rows);
      for (int band = 0; band < 3; ++band) {
        pixels[i++] = static_cast<std::uint8_t>(110 + wave + band * 10 + static_cast<double>(state >> 28U));
      }
    }
  }
  return pixels;
}

inline void writeRows(GDALDataset& raster, int side) {
  constexpr int rows = 1024;
  std::vector<std::uint8_t> pixels = rowsOfRaster(side, std::min(rows, side));
  for (int y = 0; y < side; y += rows) {
    const int count = std::min(rows, side - y);
    if (raster.RasterIO(GF_Write, 0, y, side, count, pixels.data(), side, count, GDT_Byte, 3, nullptr, 3,
                        GSpacing{3} * side, 1, nullptr) != CE_None) {
      std::abort();
    }
  }
}

/// Does nothing where the file is there.
inline void makeMapRaster(const std::filesystem::path& file, const MapRaster& wish) {
  if (std::filesystem::exists(file)) return;
  const client::GdalScope scope;
  std::array<std::string, 4> words = {"TILED=YES", "COMPRESS=JPEG", "PHOTOMETRIC=YCBCR", "BIGTIFF=IF_SAFER"};
  std::array<char*, 5> options = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                                  nullptr};
  const client::DatasetPtr raster(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
      file.c_str(), wish.side, wish.side, 3, GDT_Byte, options.data()));
  if (!raster) std::abort();
  std::array<double, 6> place = {wish.left, 1, 0, wish.top, 0, -1};
  raster->SetGeoTransform(place.data());
  OGRSpatialReference system;
  system.importFromEPSG(32632);
  raster->SetSpatialRef(&system);
  writeRows(*raster, wish.side);
  if (wish.overviews == Overviews::None) return;
  raster->FlushCache();
  std::vector<int> factors;
  for (int factor = 2; wish.side / factor >= 128; factor *= 2) factors.push_back(factor);
  if (raster->BuildOverviews("AVERAGE", static_cast<int>(factors.size()), factors.data(), 0, nullptr, nullptr,
                             nullptr) != CE_None) {
    std::abort();
  }
}

/// A mosaic of columns by rows sources of 1,000 pixels a side, with overviews. @returns its definition.
inline std::filesystem::path makeMapMosaic(const std::filesystem::path& folder, int columns, int rows) {
  const std::filesystem::path definition = folder / "mosaic.VLDef";
  if (std::filesystem::exists(definition)) return definition;
  constexpr int side = 1000;
  std::filesystem::create_directories(folder / "mosaic.sources");
  std::string sources;
  for (int i = 0; i < columns * rows; ++i) {
    const std::string name = "mosaic.sources/" + std::to_string(i) + ".tif";
    makeMapRaster(folder / name,
                  {side, 500000.0 + i % columns * side, 5200000.0 - i / columns * side, Overviews::Some});
    sources += "<Source><File>" + name + "</File></Source>";
  }
  std::ofstream(definition) << "<Vorlane><MosaicDefinition><Sources>" << sources
                            << "</Sources></MosaicDefinition></Vorlane>";
  return definition;
}

}  // namespace vlclientui::benchmarks
