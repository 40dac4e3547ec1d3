#pragma once

#include "client/mapping/Hillshade.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

class PointWay;

/// What pixels of a grid are on the ground at its corners. @param toDegrees from the grid's system to WGS 84
/// degrees; null for plain pixels, which count as meters.
[[nodiscard]] CornerCells cornerCells(const OutputGrid& grid, const PointWay* toDegrees);

}  // namespace vlclientui::client
