#pragma once

#include <cstdint>
#include <vector>

#include "client/network/CoverageRequests.h"

/// How the tiles of a coverage are joined to requests: in groups whose corners lie at fixed places, so that
/// neighbors ask for the same ones.
namespace vlclientui::client {

/// Pixels of a tile along each side.
constexpr int coverageTileSide = 256;

/// Tiles of one level, by column and row.
struct TileRange {
  int level = 0;
  int left = 0;
  int top = 0;
  int right = 0;   ///< the last one
  int bottom = 0;  ///< the last one

  [[nodiscard]] std::int64_t columns() const { return std::int64_t{right} - left + 1; }
  [[nodiscard]] std::int64_t rows() const { return std::int64_t{bottom} - top + 1; }
  [[nodiscard]] bool holds(int column, int row) const {
    return column >= left && column <= right && row >= top && row <= bottom;
  }
  bool operator==(const TileRange&) const = default;
};

/// Tiles of a group, at least one each way.
struct GroupShape {
  int columns = 4;
  int rows = 4;

  bool operator==(const GroupShape&) const = default;
};

/// The tiles that hold pixels of a window, and those of their neighbors that resampling may take.
/// @param window in pixels of level 0. @param columns,rows of the coverage at that level.
[[nodiscard]] TileRange tilesOfWindow(const PixelWindow& window, int level, std::int64_t columns,
                                      std::int64_t rows);

/// The groups that tiles of a range belong to, as far as they lie within it.
[[nodiscard]] std::vector<TileRange> groupsWithin(const TileRange& range, const GroupShape& shape);

/// How many requests it takes to read an area through.
[[nodiscard]] std::int64_t groupCount(const TileRange& area, const GroupShape& shape);

/// The largest shape of which a row across the area stays within a number of tiles: what is read row by row
/// comes back to each of its groups several times, and has to find them kept.
[[nodiscard]] GroupShape shapeFor(const TileRange& area, const GroupShape& largest, std::int64_t mostTiles);

/// What to fetch where a range is read on the way through an area: its groups, and those to the right as long
/// as all of them are no more than a number of tiles.
[[nodiscard]] TileRange aheadWithin(const TileRange& area, const TileRange& range, const GroupShape& shape,
                                    std::int64_t mostTiles);

}  // namespace vlclientui::client
