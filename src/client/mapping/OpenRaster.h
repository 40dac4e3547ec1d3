#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/RasterHoles.h"

namespace vlclientui::client {

/// One resolution of a raster: its own pixels, or an overview.
struct RasterLevel {
  int columns = 0;
  int rows = 0;
  double across = 1;  ///< pixels of the raster for one of the level
  double down = 1;
  int blockWidth = 1;
  int blockHeight = 1;
  std::vector<GDALRasterBand*> bands;  ///< all of the raster
  GDALDataset* together = nullptr;     ///< reads all bands at once; null where they are read one by one
};

/// A raster that stays open, with what is asked of it for each picture. For one thread at a time.
struct OpenRaster {
  DatasetPtr dataset;
  int columns = 0;
  int rows = 0;
  std::string wkt;           ///< the system of its places
  GeoTransform transform{};  ///< meaningless where control points place it
  bool isPlacedByPoints = false;
  bool isInDegrees = false;
  std::vector<int> colors;  ///< numbers of all bands but transparency
  int alpha = 0;            ///< number of the band for transparency; 0 for none
  double opaque = 255;      ///< the value of that band where nothing shines through
  bool hasOwnMask = false;
  NoDataValues noData;  ///< of the color bands
  const GDALColorTable* palette = nullptr;
  bool isLabel = false;             ///< no value lies between two others
  std::vector<RasterLevel> levels;  ///< the raster itself first, then ever coarser; never empty
  DatasetPtr copy;                  ///< holds some of the levels; null for none
};

/// @param bands of one resolution, all of the raster.
[[nodiscard]] RasterLevel levelOf(const OpenRaster& raster, std::vector<GDALRasterBand*> bands);

/// The system of a raster, as far as it is known before it is opened.
struct KnownSystem {
  std::string wkt;  ///< empty for none
  /// Where the raster lay when it told the system itself: as long as it lies there it is not asked again,
  /// which takes longer than to open it. Without, the system counts for a raster that tells none.
  std::optional<Bounds> toldAt = {};
};

/// @param noData replaces what the raster declares.
/// @returns null when it cannot be opened; a GdalScope on the stack has the reason.
[[nodiscard]] std::unique_ptr<OpenRaster> openForMap(const std::filesystem::path& file,
                                                     const KnownSystem& known, std::optional<double> noData);

/// As openForMap, of a raster that is open.
[[nodiscard]] std::unique_ptr<OpenRaster> preparedForMap(DatasetPtr dataset, const KnownSystem& known,
                                                         std::optional<double> noData);

}  // namespace vlclientui::client
