#include "client/network/TileGroups.h"

#include <algorithm>

namespace vlclientui::client {
namespace {

struct Tiles {
  int first = 0;
  int last = 0;
};

Tiles tilesAlong(std::int64_t begin, std::int64_t length, int level, std::int64_t pixels) {
  const std::int64_t ratio = std::int64_t{1} << level;
  const std::int64_t first = std::clamp<std::int64_t>(begin / ratio - 1, 0, pixels - 1);
  const std::int64_t last = std::clamp<std::int64_t>((begin + length - 1) / ratio + 1, first, pixels - 1);
  return {static_cast<int>(first / coverageTileSide), static_cast<int>(last / coverageTileSide)};
}

}  // namespace

TileRange tilesOfWindow(const PixelWindow& window, int level, std::int64_t columns, std::int64_t rows) {
  const Tiles across = tilesAlong(window.column, window.width, level, columns);
  const Tiles down = tilesAlong(window.row, window.height, level, rows);
  return {level, across.first, down.first, across.last, down.last};
}

std::vector<TileRange> groupsWithin(const TileRange& range, const GroupShape& shape) {
  std::vector<TileRange> groups;
  for (int row = range.top / shape.rows; row <= range.bottom / shape.rows; ++row) {
    for (int column = range.left / shape.columns; column <= range.right / shape.columns; ++column) {
      groups.push_back({range.level, std::max(range.left, column * shape.columns),
                        std::max(range.top, row * shape.rows),
                        std::min(range.right, column * shape.columns + shape.columns - 1),
                        std::min(range.bottom, row * shape.rows + shape.rows - 1)});
    }
  }
  return groups;
}

std::int64_t groupCount(const TileRange& area, const GroupShape& shape) {
  const std::int64_t across = std::int64_t{area.right} / shape.columns - area.left / shape.columns + 1;
  const std::int64_t down = std::int64_t{area.bottom} / shape.rows - area.top / shape.rows + 1;
  return across * down;
}

GroupShape shapeFor(const TileRange& area, const GroupShape& largest, std::int64_t mostTiles) {
  GroupShape shape = largest;
  while (shape.rows > 1 && area.columns() * shape.rows > mostTiles) shape.rows /= 2;
  return shape;
}

TileRange aheadWithin(const TileRange& area, const TileRange& range, const GroupShape& shape,
                      std::int64_t mostTiles) {
  TileRange wider = range;
  wider.left = std::max(area.left, range.left / shape.columns * shape.columns);
  wider.top = std::max(area.top, range.top / shape.rows * shape.rows);
  wider.bottom = std::min(area.bottom, (range.bottom / shape.rows + 1) * shape.rows - 1);
  const auto end = [&](int column) {
    return std::min(area.right, (column / shape.columns + 1) * shape.columns - 1);
  };
  wider.right = end(range.right);
  while (wider.right < area.right) {
    TileRange next = wider;
    next.right = end(wider.right + 1);
    if (next.columns() * next.rows() > mostTiles) break;
    wider = next;
  }
  return wider;
}

}  // namespace vlclientui::client
