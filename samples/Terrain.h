#pragma once

#include "Grid.h"

namespace vlclientui::samples {

/// A mountain valley with a lake. All grids cover the same square of ground.
struct Terrain {
  double cellSize = 0;  ///< meters
  double originX = 0;   ///< meters from the west edge of the whole to that of this part
  double originY = 0;   ///< meters from the north edge
  float lakeLevel = 0;  ///< meters
  Grid height;          ///< meters; level on the lake
  Grid water;           ///< 1 on lake and river, 0 on land, between along shores
  Grid moisture;        ///< 0 on crests to 1 along streams
};

/// Always the same.
[[nodiscard]] Terrain makeTerrain(int cells, double cellSize);

/// A part of the ground with smaller cells and finer detail.
/// @param left,top in cells of the whole. @param finer cells of the part for each cell of the whole.
[[nodiscard]] Terrain detailOf(const Terrain& whole, int left, int top, int width, int height, int finer);

/// Rise over run to the east and to the south.
struct Gradient {
  double east = 0;
  double south = 0;
};
[[nodiscard]] Gradient gradientAt(const Terrain& terrain, int x, int y);

/// Cosine of the angle between ground and sun, 0 where the ground turns away.
/// @param azimuth,elevation of the sun in degrees, the azimuth clockwise from north.
[[nodiscard]] double sunlight(const Gradient& gradient, double azimuth, double elevation);

}  // namespace vlclientui::samples
