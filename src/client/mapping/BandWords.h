#pragma once

#include <string>
#include <vector>

#include "client/mapping/ServiceColors.h"

class GDALRasterBand;

namespace vlclientui::client {

/// The raster's own words for a band, else its color, or "Band 2". Never empty.
[[nodiscard]] std::string bandName(GDALRasterBand& band, int number);

/// What the raster calls the pixels of a value, by its category names or its attribute table; empty for those
/// that it does not name.
[[nodiscard]] std::string className(GDALRasterBand& band, int value);

/// As ServiceWords has them. Empty for a band without a color table.
[[nodiscard]] std::vector<ServiceClass> classesOf(GDALRasterBand& band);

}  // namespace vlclientui::client
