#pragma once

#include <optional>
#include <string>

namespace vlclientui::client {

/// What the raster library opens as the same raster with one mask for all bands, its overviews included. A
/// pixel is a hole when it is wholly transparent, when the raster's own mask leaves it out, or when all of
/// the bands that have a no-data value hold it: one band with that value among others is data. Resampling
/// leaves holes out; where pixels are averaged, a pixel with any data is none, else the nearest one tells.
/// The name may stand in virtual rasters.
/// @param raster a file, or anything else that the raster library opens.
/// @param noData instead of what the bands declare.
[[nodiscard]] std::string maskedName(const std::string& raster, std::optional<double> noData);

/// The same for a raster whose last band is 0 in holes and only there; that band is hidden.
[[nodiscard]] std::string maskedByLastBandName(const std::string& raster);

}  // namespace vlclientui::client
