#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "client/mapping/Hillshade.h"
#include "client/mapping/SampleTile.h"
#include "client/mapping/Stretch.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Colors of classes by their numbers: red, green, blue, alpha.
using ClassColors = std::vector<std::array<std::uint8_t, 4>>;

/// What of the ground slopes depend on.
struct TileGround {
  double scale = 1;        ///< pixels of the service for one of the tile, above 0: for relief
  CornerCells cells = {};  ///< of the tile, in meters: for shading
  double meters = 1;       ///< for a unit of the heights: for shading
};

/// What values look like. @param tile the values. @param stretch how they become colors. @param classes of a
/// palette. @param ground of relief and shading.
/// @returns four bytes for each pixel: red, green, blue, alpha (not premultiplied); none where the work was
/// given up.
[[nodiscard]] std::vector<std::uint8_t> coloredTile(const SampleTile& tile, const Stretch& stretch,
                                                    const ClassColors& classes, const TileGround& ground);

/// The color at a share (0 to 1) of a ramp, as for a legend: red, green, blue.
[[nodiscard]] std::array<std::uint8_t, 3> rampColor(Ramp ramp, double share);

}  // namespace vlclientui::client
#pragma GCC visibility pop
