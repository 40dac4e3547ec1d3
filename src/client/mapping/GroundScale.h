#pragma once

#include <optional>

#include "client/mapping/MapPoint.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

class PointWay;

/// What a step on a map is on the ground.
struct GroundCell {
  double across = 0;  ///< meters, above 0
  /// Meters, above 0.
  double down = 0;
};

/// How far two places near each other lie apart, in meters, by the radii of the ellipsoid at the latitude
/// between them. @param one,other WGS 84 degrees, x before y; longitudes may be a whole turn apart.
[[nodiscard]] double groundDistance(MapPoint one, MapPoint other);

/// Around a place of a map. @param place in coordinates of the map. @param toDegrees from the map's system to
/// WGS 84 degrees. @param width,height of the step, in units of the map, above 0.
/// @returns nothing where the map shows no place of the earth, nor at a pole that it shows as a line.
[[nodiscard]] std::optional<GroundCell> groundCell(const PointWay& toDegrees, MapPoint place, double width,
                                                   double height);

}  // namespace vlclientui::client
#pragma GCC visibility pop
