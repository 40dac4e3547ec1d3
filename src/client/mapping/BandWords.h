#pragma once

#include <string>

class GDALRasterBand;

namespace vlclientui::client {

/// The raster's own words for a band, else its color, or "Band 2". Never empty.
[[nodiscard]] std::string bandName(GDALRasterBand& band, int number);

}  // namespace vlclientui::client
