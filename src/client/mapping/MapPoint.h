#pragma once

#include <cmath>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A place in coordinates that its owner knows.
struct MapPoint {
  /// To the right; in degrees the longitude.
  double x = 0;
  /// Upwards; in degrees the latitude.
  double y = 0;

  /// False where a projection has no place for it.
  [[nodiscard]] bool isKnown() const { return std::isfinite(x) && std::isfinite(y); }

  /// Whether both coordinates are equal; an unknown place equals none.
  bool operator==(const MapPoint&) const = default;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
