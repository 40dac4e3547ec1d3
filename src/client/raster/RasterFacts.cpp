#include "client/raster/RasterFacts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace vlclientui::client {
namespace {

std::string degrees(double value, char positive, char negative) {
  std::array<char, 32> text{};
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), std::abs(value), std::chars_format::fixed, 1);
  // What does not fit in is no number of degrees.
  return std::string(text.data(), error == std::errc() ? end : text.data()) + ' ' +
         (value < 0 ? negative : positive);
}

}  // namespace

Bounds unite(const Bounds& one, const Bounds& other) {
  return {std::min(one.xMin, other.xMin), std::min(one.yMin, other.yMin), std::max(one.xMax, other.xMax),
          std::max(one.yMax, other.yMax)};
}

std::string regionText(const Bounds& geographic) {
  if (geographic.xMax - geographic.xMin >= 360.0 && geographic.yMax - geographic.yMin >= 170.0)
    return worldRegion;
  return degrees((geographic.yMin + geographic.yMax) / 2, 'N', 'S') + ' ' +
         degrees((geographic.xMin + geographic.xMax) / 2, 'E', 'W');
}

}  // namespace vlclientui::client
