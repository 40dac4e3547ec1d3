#include "client/raster/RasterFacts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace vlclientui::client {
namespace {

std::string degrees(double value, char positive, char negative) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", std::abs(value));
  // The process locale may have written a comma.
  std::replace(text.begin(), text.end(), ',', '.');
  return std::string(text.data()) + ' ' + (value < 0 ? negative : positive);
}

}  // namespace

Bounds unite(const Bounds& one, const Bounds& other) {
  return {std::min(one.xMin, other.xMin), std::min(one.yMin, other.yMin), std::max(one.xMax, other.xMax),
          std::max(one.yMax, other.yMax)};
}

std::string regionText(const Bounds& geographic) {
  if (geographic.xMax - geographic.xMin >= 360.0 && geographic.yMax - geographic.yMin >= 170.0)
    return "World";
  return degrees((geographic.yMin + geographic.yMax) / 2, 'N', 'S') + ' ' +
         degrees((geographic.xMin + geographic.xMax) / 2, 'E', 'W');
}

}  // namespace vlclientui::client
