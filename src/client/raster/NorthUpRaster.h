#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "client/raster/GdalScope.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/RasterHoles.h"

namespace vlclientui::client {

/// A raster whose rows run from north to south in a service's coordinates: the file itself where it is so
/// already, else a virtual raster that turns it.
struct NorthUpRaster {
  std::string name;       ///< what the raster library opens; one mask for all bands tells its holes
  std::string plainName;  ///< the same without the mask, where values of the bands tell all holes; else empty
  DatasetPtr dataset;     ///< of the first name
  Bounds extent;
  bool isTurned = false;  ///< its corners may be holes
  bool hasHoles = false;  ///< some pixels may be; always of a turned one
  NoDataValues noData;    ///< as the file declares them for its colour bands, or as they were given
};

/// @param srsWkt the service's system; a raster in another one is brought into it. Empty for none.
/// @param noData instead of what the file declares.
/// @throws RuntimeFailure when the file cannot be opened or turned.
[[nodiscard]] NorthUpRaster openNorthUp(const std::filesystem::path& file, const std::string& srsWkt,
                                        std::optional<double> noData = std::nullopt);

/// The value that says "no data" where a raster declares none: not a number for floating point, the lowest
/// value for signed whole numbers, else 0.
[[nodiscard]] double emptyValue(GDALDataType type);

}  // namespace vlclientui::client
