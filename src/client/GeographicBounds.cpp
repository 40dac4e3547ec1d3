#include "client/GeographicBounds.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <ogr_spatialref.h>

namespace vlclientui::client {
namespace {

constexpr int kPointsPerEdge = 21;
constexpr double kHalfTurn = 180.0;
constexpr double kTurn = 360.0;
constexpr double kPole = 90.0;

using TransformationPtr = std::unique_ptr<OGRCoordinateTransformation>;

OGRSpatialReference inEastNorthOrder(OGRSpatialReference system) {
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  return system;
}

OGRSpatialReference wgs84() {
  OGRSpatialReference system;
  system.SetWellKnownGeogCS("WGS84");
  return inEastNorthOrder(system);
}

bool isFinite(const Bounds& bounds) {
  return std::isfinite(bounds.xMin) && std::isfinite(bounds.yMin) && std::isfinite(bounds.xMax) &&
         std::isfinite(bounds.yMax);
}

// The result may have xMin > xMax, which stands for a crossing of the antimeridian.
std::optional<Bounds> transformed(const Bounds& bounds, const OGRSpatialReference& from,
                                  const OGRSpatialReference& to) {
  const TransformationPtr transformation(OGRCreateCoordinateTransformation(&from, &to));
  if (!transformation) return std::nullopt;
  Bounds out;
  if (!transformation->TransformBounds(bounds.xMin, bounds.yMin, bounds.xMax, bounds.yMax, &out.xMin,
                                       &out.yMin, &out.xMax, &out.yMax, kPointsPerEdge)) {
    return std::nullopt;
  }
  if (!isFinite(out)) return std::nullopt;
  return out;
}

// Grids from 0 to 360 and pixel-centred world grids step over the antimeridian by their numbers alone.
Bounds withinOneTurn(Bounds bounds) {
  if (bounds.xMin >= kHalfTurn) {
    bounds.xMin -= kTurn;
    bounds.xMax -= kTurn;
  }
  if (bounds.xMin < -kHalfTurn || bounds.xMax > kHalfTurn || bounds.xMin > bounds.xMax) {
    bounds.xMin = -kHalfTurn;
    bounds.xMax = kHalfTurn;
  }
  bounds.yMin = std::clamp(bounds.yMin, -kPole, kPole);
  bounds.yMax = std::clamp(bounds.yMax, -kPole, kPole);
  return bounds;
}

}  // namespace

std::optional<Bounds> geographicBounds(const Bounds& bounds, const OGRSpatialReference& system) {
  const OGRSpatialReference from = inEastNorthOrder(system);
  const bool inDegrees = from.IsGeographic() != 0;
  const auto out = transformed(inDegrees ? withinOneTurn(bounds) : bounds, from, wgs84());
  if (!out) return std::nullopt;
  return withinOneTurn(*out);
}

std::optional<Bounds> transformBounds(const Bounds& bounds, const OGRSpatialReference& from,
                                      const OGRSpatialReference& to) {
  return transformed(bounds, inEastNorthOrder(from), inEastNorthOrder(to));
}

}  // namespace vlclientui::client
