#include "client/mapping/TileGround.h"

#include <array>
#include <optional>

#include "client/mapping/PointWay.h"

namespace vlclientui::client {

// A corner beyond the earth takes the size of one on it.
CornerCells cornerCells(const OutputGrid& grid, const PointWay* toDegrees) {
  const Bounds& at = grid.extent;
  const std::array<MapPoint, 4> corners = {
      {{at.xMin, at.yMax}, {at.xMax, at.yMax}, {at.xMin, at.yMin}, {at.xMax, at.yMin}}};
  std::array<std::optional<GroundCell>, 4> cells;
  std::optional<GroundCell> any;
  for (std::size_t i = 0; i < corners.size() && toDegrees != nullptr; ++i) {
    cells[i] = groundCell(*toDegrees, corners[i], grid.pixelWidth(), grid.pixelHeight());
    if (!any) any = cells[i];
  }
  const GroundCell usual = any.value_or(GroundCell{grid.pixelWidth(), grid.pixelHeight()});
  return {cells[0].value_or(usual), cells[1].value_or(usual), cells[2].value_or(usual),
          cells[3].value_or(usual)};
}

}  // namespace vlclientui::client
