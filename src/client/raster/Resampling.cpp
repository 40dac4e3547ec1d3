#include "client/raster/Resampling.h"

#include <cmath>

namespace vlclientui::client {
namespace {

constexpr double snap = 1e-3;
constexpr double ratioTolerance = 1e-6;

double snapped(double pixel) {
  const double whole = std::round(pixel);
  return std::abs(pixel - whole) < snap ? whole : pixel;
}

bool isWhole(double number) { return number == std::round(number); }

bool isWholeMultiple(double ratio) {
  const double whole = std::round(ratio);
  return whole >= 1 && std::abs(ratio - whole) < ratioTolerance * whole;
}

bool isSame(double ratio) { return std::abs(ratio - 1) < ratioTolerance; }

}  // namespace

GridPlace placeInGrid(const Bounds& source, const OutputGrid& grid) {
  const double left = snapped((source.xMin - grid.extent.xMin) / grid.pixelWidth());
  const double right = snapped((source.xMax - grid.extent.xMin) / grid.pixelWidth());
  const double top = snapped((grid.extent.yMax - source.yMax) / grid.pixelHeight());
  const double bottom = snapped((grid.extent.yMax - source.yMin) / grid.pixelHeight());
  return {left, top, right - left, bottom - top};
}

Resampling chooseResampling(const GridPlace& place, int columns, int rows, PixelMeaning meaning,
                            std::optional<Resampling> wish) {
  if (meaning == PixelMeaning::Label) return Resampling::Nearest;
  if (wish) return *wish;
  const double across = place.width / columns;
  const double down = place.height / rows;
  if (isSame(across) && isSame(down)) {
    return isWhole(place.left) && isWhole(place.top) ? Resampling::Nearest : Resampling::Bilinear;
  }
  if (isWholeMultiple(across) && isWholeMultiple(down)) return Resampling::Nearest;
  const bool reduces = across < 1 - ratioTolerance || down < 1 - ratioTolerance;
  return reduces ? Resampling::Average : Resampling::Bilinear;
}

}  // namespace vlclientui::client
