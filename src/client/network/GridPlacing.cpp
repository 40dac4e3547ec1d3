#include "client/network/GridPlacing.h"

#include <cmath>

namespace vlclientui::client {
namespace {

// To a tenth of the difference that one pixel more or less would make.
bool isExactly(double step, double told, double count) { return std::abs(step - told) <= 0.1 * told / count; }

// Servers write steps with six digits behind the point.
bool isRounded(double step, double told) { return std::abs(step - told) <= 0.001 * told + 5e-7; }

}  // namespace

std::optional<PlacedAxis> placeAxis(const ToldAxis& told) {
  const double length = told.high - told.low;
  const double step = std::abs(told.step);
  if (!(length > 0) || !(step > 0) || std::isinf(step) || !std::isfinite(length / step) ||
      length / step > mostPixelsAlong || static_cast<double>(told.pixels) > mostPixelsAlong)
    return std::nullopt;
  const auto fitting = static_cast<std::int64_t>(std::llround(length / step));
  const std::int64_t pixels = told.pixels > 0 ? told.pixels : std::max<std::int64_t>(fitting, 1);
  const auto count = static_cast<double>(pixels);
  const PlacedAxis byEdges{told.low, told.high, pixels};
  if (isExactly(length / count, step, count)) return byEdges;
  const bool isShort = pixels > 1 && isExactly(length / (count - 1), step, count);
  if (!isShort && isRounded(length / count, step)) return byEdges;
  if (!isShort && (pixels < 2 || !isRounded(length / (count - 1), step))) return std::nullopt;
  if (told.shortOne == ShortEnvelope::HasOnePixelLess) return PlacedAxis{told.low, told.high, pixels - 1};
  const double half = length / (count - 1) / 2;
  return PlacedAxis{told.low - half, told.high + half, pixels};
}

std::optional<EastNorth> eastNorth(const std::vector<double>& pair, AxisOrder order) {
  if (pair.size() < 2) return std::nullopt;
  return order == AxisOrder::EastNorth ? EastNorth{pair[0], pair[1]} : EastNorth{pair[1], pair[0]};
}

std::optional<GridSteps> gridSteps(const std::vector<double>& first, const std::vector<double>& second,
                                   AxisOrder order) {
  const auto one = eastNorth(first, order);
  const auto other = eastNorth(second, order);
  if (!one || !other) return std::nullopt;
  if (one->north == 0 && other->east == 0 && one->east != 0 && other->north != 0) {
    return GridSteps{one->east, other->north, true};
  }
  if (one->east == 0 && other->north == 0 && one->north != 0 && other->east != 0) {
    return GridSteps{other->east, one->north, false};
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
