#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "client/GdalScope.h"
#include "client/RasterFacts.h"

namespace vlclientui::client {

/// A raster whose rows run from north to south in a service's coordinates: the file itself where it is so
/// already, else a virtual raster that turns it.
struct NorthUpRaster {
  std::string name;  ///< what the raster library opens
  DatasetPtr dataset;
  Bounds extent;
  bool isTurned = false;         ///< its corners may be empty
  std::optional<double> noData;  ///< of the first band; a turned raster always has one
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
