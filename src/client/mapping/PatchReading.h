#pragma once

#include <cstdint>
#include <vector>

#include "client/mapping/PixelPatch.h"

namespace vlclientui::client {

/// Pixels of a level as they are, with their holes.
struct LevelPixels {
  std::vector<float> samples;       ///< of the bands and, after them, of transparency if there is such a band
  std::vector<std::uint8_t> alpha;  ///< 0 for a hole
  int stride = 1;                   ///< samples for each pixel
};

/// Reads one piece at once. @param window in pixels of the level, within it. @param every one of so many
/// pixels is taken, each way; at least 1.
/// @returns false when it cannot be read, or was given up.
[[nodiscard]] bool readLevel(const OpenRaster& raster, const RasterLevel& level, const Window& window,
                             const std::vector<int>& bands, LevelPixels& pixels, int every = 1);

/// Whether all pixels of these bands are bytes that count as they are: without values for holes, or
/// transparency.
[[nodiscard]] bool areBytes(const OpenRaster& raster, const std::vector<int>& bands);

/// As readLevel, of such bands: pixel by pixel.
[[nodiscard]] bool readBytes(const OpenRaster& raster, const RasterLevel& level, const Window& window,
                             const std::vector<int>& bands, std::vector<std::uint8_t>& bytes,
                             std::vector<std::uint8_t>& alpha);

}  // namespace vlclientui::client
