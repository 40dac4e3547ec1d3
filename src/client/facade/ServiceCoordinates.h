#pragma once

#include <optional>
#include <vector>

#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// A rectangle of a map in the coordinates of a service. Its edges are densified, so that curved edges stay
/// inside.
///
/// It is cut first to where the service's coordinate system is of use, joined with the place of the service
/// itself: a map of the world has no edges in a system that holds a strip of it. Of a system that has no code
/// this is not known; the place of the service has to do then. Where a service counts its degrees beyond half
/// a turn, a rectangle that would miss it is moved by a whole turn to meet it.
/// @param geographic WGS 84 degrees.
/// @returns nothing when nothing is left, or when the service has no coordinate system.
[[nodiscard]] std::optional<Bounds> inServiceCoordinates(const Bounds& geographic,
                                                         const RasterFacts& service);

/// A place in coordinates that the holder names.
struct Point {
  double x = 0;
  double y = 0;
};

/// Places in the coordinates of a service as WGS 84 degrees, in their order. Where a service counts its
/// degrees beyond half a turn they are moved by a whole turn, all together.
/// @returns nothing when one of them has no degrees, or when the service has no coordinate system.
[[nodiscard]] std::optional<std::vector<Point>> inDegrees(std::vector<Point> places,
                                                          const RasterFacts& service);

}  // namespace vlclientui::client
