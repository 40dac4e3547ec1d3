#include "client/Resampling.h"

#include <algorithm>
#include <cmath>

namespace vlclientui::client {
namespace {

constexpr double kSnap = 1e-3;
constexpr double kRatioTolerance = 1e-6;

double snapped(double pixel) {
  const double whole = std::round(pixel);
  return std::abs(pixel - whole) < kSnap ? whole : pixel;
}

bool isWhole(double number) { return number == std::round(number); }

bool isWholeMultiple(double ratio) {
  const double whole = std::round(ratio);
  return whole >= 1 && std::abs(ratio - whole) < kRatioTolerance * whole;
}

/// A stretch of one axis.
struct Span {
  double begin;
  double length;
};

/// The pixels whose centres lie in the span, at least one.
Span wholePixelsOf(const Span& span) {
  const double begin = std::round(span.begin);
  const double end = std::round(span.begin + span.length);
  if (end > begin) return {begin, end - begin};
  return {std::floor(span.begin + span.length / 2), 1};
}

/// What of a source of so many pixels, lying in the span, lies in the whole pixels.
Span sourceIn(const Span& whole, const Span& span, int pixels) {
  const double scale = pixels / span.length;
  const auto inSource = [&](double at) { return std::clamp((at - span.begin) * scale, 0.0, pixels * 1.0); };
  const double begin = inSource(whole.begin);
  return {begin, inSource(whole.begin + whole.length) - begin};
}

bool isSame(double ratio) { return std::abs(ratio - 1) < kRatioTolerance; }

}  // namespace

GridPlace placeInGrid(const Bounds& source, const OutputGrid& grid) {
  const double left = snapped((source.xMin - grid.extent.xMin) / grid.pixelWidth());
  const double right = snapped((source.xMax - grid.extent.xMin) / grid.pixelWidth());
  const double top = snapped((grid.extent.yMax - source.yMax) / grid.pixelHeight());
  const double bottom = snapped((grid.extent.yMax - source.yMin) / grid.pixelHeight());
  return {left, top, right - left, bottom - top};
}

WholePixels wholePixelsOf(const GridPlace& place, int columns, int rows) {
  const Span across{place.left, place.width};
  const Span down{place.top, place.height};
  const Span left = wholePixelsOf(across);
  const Span top = wholePixelsOf(down);
  const Span sourceLeft = sourceIn(left, across, columns);
  const Span sourceTop = sourceIn(top, down, rows);
  return {{sourceLeft.begin, sourceTop.begin, sourceLeft.length, sourceTop.length},
          {left.begin, top.begin, left.length, top.length}};
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
  const bool reduces = across < 1 - kRatioTolerance || down < 1 - kRatioTolerance;
  return reduces ? Resampling::Average : Resampling::Bilinear;
}

}  // namespace vlclientui::client
