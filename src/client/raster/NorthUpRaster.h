#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "client/raster/GdalScope.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/RasterHoles.h"

namespace vlclientui::client {

/// A raster with rows from north to south in a service's coordinates: the file itself if it is so already,
/// otherwise a virtual raster that turns it.
struct NorthUpRaster {
  std::string name;  ///< what GDAL opens; one mask for all bands marks its holes
  std::string
      plainName;       ///< the same without the mask, if values of the bands mark all holes; otherwise empty
  DatasetPtr dataset;  ///< of the first name
  Bounds extent;
  bool isTurned = false;  ///< its corners may be empty
  bool hasHoles = false;  ///< there may be holes; always true when turned
  NoDataValues noData;    ///< declared by the file for its color bands, or given
};

/// @param srsWkt the service's system, into which the raster is transformed; empty for none.
/// @param noData replaces what the file declares.
/// @throws RuntimeFailure when the file cannot be opened or turned.
[[nodiscard]] NorthUpRaster openNorthUp(const std::filesystem::path& file, const std::string& srsWkt,
                                        std::optional<double> noData = std::nullopt);

/// The no-data value for a raster that declares none: NaN for floating point, the lowest value for signed
/// whole numbers, otherwise 0.
[[nodiscard]] double emptyValue(GDALDataType type);

}  // namespace vlclientui::client
