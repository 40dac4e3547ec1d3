#pragma once

#include <optional>
#include <string>

namespace vlclientui::client {

/// A name under which GDAL opens the same raster with one mask for all bands, overviews included. A pixel is
/// a hole when it is wholly transparent, when the raster's own mask leaves it out, or when every band with a
/// no-data value holds it (one such band among others is data). Resampling leaves holes out; an averaged
/// pixel with any data is data, otherwise the nearest pixel decides. Virtual rasters may use the name.
/// @param raster a file, or anything else that GDAL opens.
/// @param noData replaces what the bands declare.
[[nodiscard]] std::string maskedName(const std::string& raster, std::optional<double> noData);

/// The same for a raster whose last band is 0 in holes and only there; that band is hidden.
[[nodiscard]] std::string maskedByLastBandName(const std::string& raster);

}  // namespace vlclientui::client
