#pragma once

#include <optional>
#include <vector>

#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A rectangle of a map in the coordinates of a service, its edges densified so that curved ones stay inside.
///
/// First it is cut to the area in which the service's coordinate system is valid, joined with the service's
/// own place: a map of the world has no edges in a system for a strip of it. For a system without a code that
/// area is unknown, and the service's place alone counts. Where a service counts degrees beyond 180, a
/// rectangle that would miss it is moved by a whole turn.
/// @param geographic WGS 84 degrees. @param service whose coordinates are wanted.
/// @returns nothing when nothing remains, or when the service has no coordinate system.
[[nodiscard]] std::optional<Bounds> inServiceCoordinates(const Bounds& geographic,
                                                         const RasterFacts& service);

/// A place in coordinates that its owner knows.
struct Point {
  /// To the right, in the units of those coordinates.
  double x = 0;
  /// Upwards.
  double y = 0;
};

/// Places in a service's coordinates as WGS 84 degrees, in order. Where a service counts degrees beyond 180
/// all of them are moved by a whole turn.
/// @returns nothing when one of them has no degrees, or when the service has no coordinate system.
[[nodiscard]] std::optional<std::vector<Point>> inDegrees(std::vector<Point> places,
                                                          const RasterFacts& service);

}  // namespace vlclientui::client
#pragma GCC visibility pop
