#pragma once

#include <algorithm>
#include <optional>

#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// Nothing where they do not meet.
[[nodiscard]] inline std::optional<Bounds> commonPart(const Bounds& one, const Bounds& other) {
  if (!overlap(one, other)) return std::nullopt;
  return Bounds{std::max(one.xMin, other.xMin), std::max(one.yMin, other.yMin),
                std::min(one.xMax, other.xMax), std::min(one.yMax, other.yMax)};
}

/// Which part of a place may be seen within a reach. In degrees a whole turn is the same place.
[[nodiscard]] inline std::optional<Bounds> partWithin(const Bounds& place, const Bounds& reach,
                                                      bool isInDegrees) {
  constexpr double turn = 360;
  for (const double by : {0.0, turn, -turn}) {
    if (by != 0 && !isInDegrees) break;
    const Bounds moved{reach.xMin + by, reach.yMin, reach.xMax + by, reach.yMax};
    if (const auto part = commonPart(place, moved)) return part;
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
