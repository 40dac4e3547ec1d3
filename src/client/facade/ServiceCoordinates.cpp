#include "client/facade/ServiceCoordinates.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/Transformation.h"

namespace vlclientui::client {
namespace {

constexpr Bounds world{-180, -90, 180, 90};
constexpr double wholeTurn = 360;

std::optional<Bounds> commonPart(const Bounds& one, const Bounds& other) {
  const Bounds part{std::max(one.xMin, other.xMin), std::max(one.yMin, other.yMin),
                    std::min(one.xMax, other.xMax), std::min(one.yMax, other.yMax)};
  if (!(part.xMin < part.xMax) || !(part.yMin < part.yMax)) return std::nullopt;
  return part;
}

// Known by the system's code; nothing for a system without one. An area across the antimeridian limits
// latitudes only.
std::optional<Bounds> areaOfUse(const std::string& code) {
  OGRSpatialReference system;
  if (code.empty() || system.SetFromUserInput(code.c_str()) != OGRERR_NONE) return std::nullopt;
  Bounds area;
  const char* name = nullptr;
  if (!system.GetAreaOfUse(&area.xMin, &area.yMin, &area.xMax, &area.yMax, &name)) return std::nullopt;
  if (area.xMin < world.xMin || area.yMin < world.yMin) return std::nullopt;
  if (area.xMin > area.xMax) return Bounds{world.xMin, area.yMin, world.xMax, area.yMax};
  return area;
}

Bounds placeToUse(const OGRSpatialReference& system, const RasterFacts& service) {
  if (system.IsGeographic() != 0) return world;
  const auto area = areaOfUse(service.srsId);
  const auto& own = service.geographicEnvelope;
  if (!area) return own.value_or(world);
  return own ? unite(*area, *own) : *area;
}

Bounds movedToMeet(const Bounds& bounds, const Bounds& service) {
  if (commonPart(bounds, service)) return bounds;
  for (const double turn : {wholeTurn, -wholeTurn}) {
    const Bounds moved{bounds.xMin + turn, bounds.yMin, bounds.xMax + turn, bounds.yMax};
    if (commonPart(moved, service)) return moved;
  }
  return bounds;
}

void moveByWholeTurn(std::vector<Point>& places) {
  const auto all = [&](auto isBeyond) { return std::all_of(places.begin(), places.end(), isBeyond); };
  double turn = 0;
  if (all([](const Point& place) { return place.x >= world.xMax; })) turn = -wholeTurn;
  if (all([](const Point& place) { return place.x <= world.xMin; })) turn = wholeTurn;
  for (Point& place : places) place.x += turn;
}

}  // namespace

std::optional<Bounds> inServiceCoordinates(const Bounds& geographic, const RasterFacts& service) {
  const GdalScope scope;
  const OGRSpatialReference system(service.srsWkt.c_str());
  if (system.IsEmpty()) return std::nullopt;
  const auto part = commonPart(geographic, placeToUse(system, service));
  if (!part) return std::nullopt;
  const auto bounds = transformBounds(*part, wgs84(), system);
  if (!bounds || system.IsGeographic() == 0) return bounds;
  return movedToMeet(*bounds, service.envelope);
}

std::optional<std::vector<Point>> inDegrees(std::vector<Point> places, const RasterFacts& service) {
  const GdalScope scope;
  const OGRSpatialReference system(service.srsWkt.c_str());
  if (system.IsEmpty()) return std::nullopt;
  const TransformationPtr way = transformation(system, wgs84());
  if (!way) return std::nullopt;
  for (Point& place : places) {
    if (!way->Transform(1, &place.x, &place.y) || !std::isfinite(place.x) || !std::isfinite(place.y)) {
      return std::nullopt;
    }
  }
  if (system.IsGeographic() != 0) moveByWholeTurn(places);
  return places;
}

}  // namespace vlclientui::client
