#pragma once

#include <cstdint>
#include <vector>

class GDALDataset;

namespace vlclientui::client {

/// Draws a whole raster at exactly the given size; four bytes per pixel, empty when reading fails.
[[nodiscard]] std::vector<std::uint8_t> drawRaster(GDALDataset& dataset, int width, int height);

}  // namespace vlclientui::client
