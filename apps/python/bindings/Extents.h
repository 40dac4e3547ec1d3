#pragma once

#include <cmath>
#include <tuple>

#include "client/facade/ServiceCoordinates.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::python {

/// A rectangle as Python tells it: xmin, ymin, xmax, ymax.
using Extent = std::tuple<double, double, double, double>;

[[nodiscard]] inline Extent extentOf(const client::Bounds& bounds) {
  return {bounds.xMin, bounds.yMin, bounds.xMax, bounds.yMax};
}

/// @throws RuntimeFailure for one without an area.
[[nodiscard]] inline client::Bounds boundsOf(const Extent& extent) {
  const auto& [xMin, yMin, xMax, yMax] = extent;
  const bool isFinite =
      std::isfinite(xMin) && std::isfinite(yMin) && std::isfinite(xMax) && std::isfinite(yMax);
  if (!isFinite || !(xMin < xMax) || !(yMin < yMax)) {
    throw RuntimeFailure("An extent is (xmin, ymin, xmax, ymax), the smaller numbers first");
  }
  return {xMin, yMin, xMax, yMax};
}

}  // namespace vlclientui::python
