#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "client/mapping/RasterPlacing.h"

namespace vlclientui::client {
namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
constexpr int coarsest = 32;  // pixels of the grid
constexpr int finest = 2;
constexpr double tolerance = 0.125;

using Pixels = std::vector<MapPoint>;

// A square of the grid. Its corners are the middles of its first pixel and of the first ones of the squares
// right of it, below it, and beyond both.
struct Cell {
  int x = 0;
  int y = 0;
  std::array<MapPoint, 4> corners;  ///< upper left, upper right, lower left, lower right
};

// Between the corners: above, left, in the middle, right, below.
using Middles = std::array<MapPoint, 5>;

MapPoint between(const MapPoint& from, const MapPoint& to, double share) {
  return {from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share};
}

double distance(const MapPoint& one, const MapPoint& other) {
  return std::hypot(one.x - other.x, one.y - other.y);
}

MapPoint within(const Cell& cell, double across, double down) {
  return between(between(cell.corners[0], cell.corners[1], across),
                 between(cell.corners[2], cell.corners[3], across), down);
}

class Net {
 public:
  Net(const OutputGrid& grid, const RasterPlacing& placing, const Window& part)
      : grid_(grid),
        placing_(placing),
        part_(part),
        pixels_(static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height),
                MapPoint{unknown, unknown}) {}

  Pixels fill() {
    if (placing_.isStraight(grid_)) {
      fillStraight();
      return std::move(pixels_);
    }
    std::vector<Cell> cells = coarsestCells();
    for (int size = coarsest; !cells.empty(); size /= 2) cells = settle(cells, size);
    return std::move(pixels_);
  }

 private:
  [[nodiscard]] MapPoint mapPlace(double column, double row) const {
    return {grid_.extent.xMin + (column + 0.5) * grid_.pixelWidth(),
            grid_.extent.yMax - (row + 0.5) * grid_.pixelHeight()};
  }

  [[nodiscard]] bool isOutside(int column, int row) const {
    return column >= part_.x + part_.width || row >= part_.y + part_.height;
  }

  void put(int column, int row, const MapPoint& pixel) {
    if (isOutside(column, row)) return;
    pixels_[static_cast<std::size_t>(row - part_.y) * static_cast<std::size_t>(part_.width) +
            static_cast<std::size_t>(column - part_.x)] = pixel;
  }

  // What is left of rounding would make rows and columns look askew.
  static MapPoint stepBetween(const MapPoint& from, const MapPoint& to) {
    constexpr double leastStep = 1e-7;
    const auto cleaned = [](double step) { return std::abs(step) < leastStep ? 0.0 : step; };
    return {cleaned(to.x - from.x), cleaned(to.y - from.y)};
  }

  void fillStraight() {
    Pixels three = {mapPlace(0, 0), mapPlace(1, 0), mapPlace(0, 1)};
    placing_.toPixels(three);
    const MapPoint right = stepBetween(three[0], three[1]);
    const MapPoint down = stepBetween(three[0], three[2]);
    for (int row = part_.y; row < part_.y + part_.height; ++row) {
      for (int column = part_.x; column < part_.x + part_.width; ++column) {
        put(column, row,
            {three[0].x + column * right.x + row * down.x, three[0].y + column * right.y + row * down.y});
      }
    }
  }

  [[nodiscard]] std::vector<Cell> coarsestCells() const {
    const int across = (part_.width + coarsest - 1) / coarsest;
    const int down = (part_.height + coarsest - 1) / coarsest;
    Pixels nodes;
    for (int row = 0; row <= down; ++row) {
      for (int column = 0; column <= across; ++column) {
        nodes.push_back(mapPlace(part_.x + column * coarsest, part_.y + row * coarsest));
      }
    }
    placing_.toPixels(nodes);
    const auto node = [&](int column, int row) {
      return nodes[static_cast<std::size_t>(row * (across + 1) + column)];
    };
    std::vector<Cell> cells;
    for (int row = 0; row < down; ++row) {
      for (int column = 0; column < across; ++column) {
        cells.push_back(
            {part_.x + column * coarsest,
             part_.y + row * coarsest,
             {node(column, row), node(column + 1, row), node(column, row + 1), node(column + 1, row + 1)}});
      }
    }
    return cells;
  }

  // Fills the cells that run straight enough, or lie beyond the raster. @returns the quarters of the others.
  std::vector<Cell> settle(const std::vector<Cell>& cells, int size) {
    Pixels places;
    const double half = size / 2.0;
    for (const Cell& cell : cells) {
      places.insert(places.end(),
                    {mapPlace(cell.x + half, cell.y), mapPlace(cell.x, cell.y + half),
                     mapPlace(cell.x + half, cell.y + half), mapPlace(cell.x + size, cell.y + half),
                     mapPlace(cell.x + half, cell.y + size)});
    }
    placing_.toPixels(places);
    std::vector<Cell> rest;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      Middles middles;
      std::copy_n(places.begin() + static_cast<std::ptrdiff_t>(i * middles.size()), middles.size(),
                  middles.begin());
      settle(cells[i], middles, size, rest);
    }
    return rest;
  }

  void settle(const Cell& cell, const Middles& middles, int size, std::vector<Cell>& rest) {
    if (isBeyond(cell, middles)) return;
    if (isStraightEnough(cell, middles, size)) return fill(cell, size);
    if (size == finest) return fillExactly(cell, middles);
    const int half = size / 2;
    const auto& [above, left, middle, right, below] = middles;
    const auto& corners = cell.corners;
    rest.push_back({cell.x, cell.y, {corners[0], above, left, middle}});
    rest.push_back({cell.x + half, cell.y, {above, corners[1], middle, right}});
    rest.push_back({cell.x, cell.y + half, {left, middle, corners[2], below}});
    rest.push_back({cell.x + half, cell.y + half, {middle, right, below, corners[3]}});
  }

  // Well beyond: the cell may bend between the places that are known.
  [[nodiscard]] bool isBeyond(const Cell& cell, const Middles& middles) const {
    if (isOutside(cell.x, cell.y)) return true;
    Pixels known(cell.corners.begin(), cell.corners.end());
    known.insert(known.end(), middles.begin(), middles.end());
    if (!std::ranges::all_of(known, &MapPoint::isKnown)) return false;
    const auto [left, right] = std::ranges::minmax(known, {}, &MapPoint::x);
    const auto [top, bottom] = std::ranges::minmax(known, {}, &MapPoint::y);
    const double across = right.x - left.x;
    const double down = bottom.y - top.y;
    return left.x - across > placing_.columns() || right.x + across < 0 || top.y - down > placing_.rows() ||
           bottom.y + down < 0;
  }

  [[nodiscard]] static bool isStraightEnough(const Cell& cell, const Middles& middles, int size) {
    const auto& corners = cell.corners;
    const double across = distance(corners[0], corners[1]) / size;
    const double down = distance(corners[0], corners[2]) / size;
    const double most = tolerance * std::min(across, down);
    constexpr std::array<std::array<double, 2>, 5> shares = {
        {{0.5, 0}, {0, 0.5}, {0.5, 0.5}, {1, 0.5}, {0.5, 1}}};
    for (std::size_t i = 0; i < middles.size(); ++i) {
      // Not known is not near either.
      if (!(distance(within(cell, shares[i][0], shares[i][1]), middles[i]) <= most)) return false;
    }
    return true;
  }

  void fill(const Cell& cell, int size) {
    for (int row = 0; row < size; ++row) {
      const double down = static_cast<double>(row) / size;
      const MapPoint left = between(cell.corners[0], cell.corners[2], down);
      const MapPoint right = between(cell.corners[1], cell.corners[3], down);
      for (int column = 0; column < size; ++column) {
        put(cell.x + column, cell.y + row, between(left, right, static_cast<double>(column) / size));
      }
    }
  }

  // A cell of two by two: its own pixels are the upper left corner and the middles beside it.
  void fillExactly(const Cell& cell, const Middles& middles) {
    put(cell.x, cell.y, cell.corners[0]);
    put(cell.x + 1, cell.y, middles[0]);
    put(cell.x, cell.y + 1, middles[1]);
    put(cell.x + 1, cell.y + 1, middles[2]);
  }

  const OutputGrid& grid_;
  const RasterPlacing& placing_;
  const Window part_;
  Pixels pixels_;
};

}  // namespace

std::vector<MapPoint> pixelsAt(const OutputGrid& grid, const RasterPlacing& placing, const Window& part) {
  return Net(grid, placing, part).fill();
}

}  // namespace vlclientui::client
