#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>

#include "client/mapping/MapPoint.h"
#include "client/mapping/PixelPatch.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Window.h"

namespace vlclientui::client {

/// Pixels of the tile, and what of the raster they show.
struct Reached {
  double left = std::numeric_limits<double>::max();
  double top = std::numeric_limits<double>::max();
  double right = -1;
  double bottom = -1;
  std::size_t count = 0;

  void add(const MapPoint& pixel) {
    left = std::min(left, pixel.x);
    right = std::max(right, pixel.x);
    top = std::min(top, pixel.y);
    bottom = std::max(bottom, pixel.y);
    ++count;
  }
  [[nodiscard]] double area() const { return (right - left + 1) * (bottom - top + 1); }
};

/// How the pixels of a patch become those of the tile.
enum class Taking { Nearest, Between };

/// What is read for a part of the tile.
struct ReadingPlan {
  PatchWish wish;
  Taking taking = Taking::Nearest;
  bool isQuick = false;
  double least = 1;  ///< of a quick reading
};

/// The pixels of a grid that a source may cover, and some around.
[[nodiscard]] inline Window partFor(const std::optional<Bounds>& reach, const OutputGrid& grid) {
  if (!reach) return {0, 0, grid.columns, grid.rows};
  const auto inside = [](double pixel, int most) {
    return static_cast<int>(std::clamp(pixel, 0.0, static_cast<double>(most)));
  };
  const int left = inside((reach->xMin - grid.extent.xMin) / grid.pixelWidth() - 2, grid.columns);
  const int right = inside((reach->xMax - grid.extent.xMin) / grid.pixelWidth() + 3, grid.columns);
  const int top = inside((grid.extent.yMax - reach->yMax) / grid.pixelHeight() - 2, grid.rows);
  const int bottom = inside((grid.extent.yMax - reach->yMin) / grid.pixelHeight() + 3, grid.rows);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace vlclientui::client
