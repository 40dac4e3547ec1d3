#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "client/mapping/GroundScale.h"
#include "client/mapping/SampleTile.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What a pixel of a grid is on the ground at the grid's corners; between them it changes evenly, so that
/// grids that share an edge agree along it.
struct CornerCells {
  GroundCell upperLeft{1, 1};   ///< of the upper left pixel
  GroundCell upperRight{1, 1};  ///< of the upper right pixel
  GroundCell lowerLeft{1, 1};   ///< of the lower left pixel
  GroundCell lowerRight{1, 1};  ///< of the lower right pixel
};

/// How much light ground gets from a sun in the upper left of the map (azimuth 315 degrees) 45 degrees above
/// the horizon: 255 times the cosine of the angle between both, 0 for what turns away. Slopes are those of
/// the eight neighbors: B. K. P. Horn, "Hill shading and the reflectance map", Proceedings of the IEEE 69
/// (1981).
/// @param heights the first band of the tile. A neighbor that is a hole, or lies beyond the tile, counts as
/// high as the pixel itself; to be true at its edges a tile needs a pixel more around.
/// @param cells what a pixel is on the ground. @param factor meters for a unit of the heights, times the
/// exaggeration.
/// @returns one byte for each pixel.
[[nodiscard]] std::vector<std::uint8_t> hillshade(const SampleTile& heights, const CornerCells& cells,
                                                  double factor);

/// Meters for a unit of heights by its name, "m" or "ft" in one of their spellings; 1 for any other.
[[nodiscard]] double metersOfHeightUnit(const std::string& unit);

}  // namespace vlclientui::client
#pragma GCC visibility pop
