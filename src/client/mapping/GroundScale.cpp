#include "client/mapping/GroundScale.h"

#include <cmath>
#include <numbers>
#include <vector>

#include "client/mapping/PointWay.h"

namespace vlclientui::client {
namespace {

// WGS 84: NIMA TR8350.2, table 3.1.
constexpr double semiMajor = 6'378'137.0;
constexpr double flattening = 1 / 298.257223563;
constexpr double radians = std::numbers::pi / 180;

}  // namespace

// Radii of curvature along the meridian and across it.
double groundDistance(MapPoint one, MapPoint other) {
  constexpr double eccentricity = flattening * (2 - flattening);
  constexpr double turn = 360;
  const double latitude = (one.y + other.y) / 2 * radians;
  const double root = 1 - eccentricity * std::sin(latitude) * std::sin(latitude);
  const double across = semiMajor / std::sqrt(root);
  const double along = across * (1 - eccentricity) / root;
  const double east = std::remainder(other.x - one.x, turn) * radians * across * std::cos(latitude);
  return std::hypot(east, (other.y - one.y) * radians * along);
}

std::optional<GroundCell> groundCell(const PointWay& toDegrees, MapPoint place, double width, double height) {
  std::vector<MapPoint> ends = {{place.x - width / 2, place.y},
                                {place.x + width / 2, place.y},
                                {place.x, place.y - height / 2},
                                {place.x, place.y + height / 2}};
  toDegrees.apply(ends);
  for (const MapPoint& end : ends) {
    if (!end.isKnown()) return std::nullopt;
  }
  const GroundCell cell{groundDistance(ends[0], ends[1]), groundDistance(ends[2], ends[3])};
  constexpr double least = 1e-9;
  if (!(cell.across > least) || !(cell.down > least)) return std::nullopt;
  return cell;
}

}  // namespace vlclientui::client
