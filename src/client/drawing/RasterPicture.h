#pragma once

#include <cstdint>
#include <vector>

class GDALDataset;

namespace vlclientui::client {

/// Draws the whole of an open raster at exactly the given size; four bytes a pixel, empty on a read error.
[[nodiscard]] std::vector<std::uint8_t> drawRaster(GDALDataset& dataset, int width, int height);

}  // namespace vlclientui::client
