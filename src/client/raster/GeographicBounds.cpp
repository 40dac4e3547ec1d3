#include "client/raster/GeographicBounds.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <ogr_spatialref.h>

namespace vlclientui::client {
namespace {

constexpr int pointsPerEdge = 21;
constexpr double halfTurn = 180.0;
constexpr double wholeTurn = 360.0;
constexpr double pole = 90.0;

using TransformationPtr = std::unique_ptr<OGRCoordinateTransformation>;

OGRSpatialReference inEastNorthOrder(OGRSpatialReference system) {
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  return system;
}

bool isFinite(const Bounds& bounds) {
  return std::isfinite(bounds.xMin) && std::isfinite(bounds.yMin) && std::isfinite(bounds.xMax) &&
         std::isfinite(bounds.yMax);
}

TransformationPtr transformation(const OGRSpatialReference& from, const OGRSpatialReference& to) {
  return TransformationPtr(OGRCreateCoordinateTransformation(&from, &to));
}

// The result may have xMin > xMax: it crosses the antimeridian.
std::optional<Bounds> transformed(const Bounds& bounds, OGRCoordinateTransformation* way) {
  if (way == nullptr) return std::nullopt;
  Bounds out;
  if (!way->TransformBounds(bounds.xMin, bounds.yMin, bounds.xMax, bounds.yMax, &out.xMin, &out.yMin,
                            &out.xMax, &out.yMax, pointsPerEdge)) {
    return std::nullopt;
  }
  if (!isFinite(out)) return std::nullopt;
  return out;
}

// Grids from 0 to 360, and world grids of centered pixels, pass the antimeridian by their numbers alone.
Bounds withinOneTurn(Bounds bounds) {
  if (bounds.xMin >= halfTurn) {
    bounds.xMin -= wholeTurn;
    bounds.xMax -= wholeTurn;
  }
  if (bounds.xMin < -halfTurn || bounds.xMax > halfTurn || bounds.xMin > bounds.xMax) {
    bounds.xMin = -halfTurn;
    bounds.xMax = halfTurn;
  }
  bounds.yMin = std::clamp(bounds.yMin, -pole, pole);
  bounds.yMax = std::clamp(bounds.yMax, -pole, pole);
  return bounds;
}

// A change of datum moves a rectangle by meters, which at the antimeridian may look like a whole turn.
Bounds besideFormer(Bounds bounds, const Bounds& former) {
  const double width = former.xMax - former.xMin;
  if (bounds.xMax - bounds.xMin < width - halfTurn) bounds.xMax += wholeTurn;
  const double turns = std::round((bounds.xMin - former.xMin) / wholeTurn);
  return {bounds.xMin - turns * wholeTurn, bounds.yMin, bounds.xMax - turns * wholeTurn, bounds.yMax};
}

// A billionth of a degree is a tenth of a millimeter; anything smaller is noise of the computation.
double withoutNoise(double degrees) { return std::round(degrees * 1e9) / 1e9; }

Bounds withoutNoise(const Bounds& bounds) {
  return {withoutNoise(bounds.xMin), withoutNoise(bounds.yMin), withoutNoise(bounds.xMax),
          withoutNoise(bounds.yMax)};
}

}  // namespace

OGRSpatialReference wgs84() {
  OGRSpatialReference system;
  system.SetWellKnownGeogCS("WGS84");
  return inEastNorthOrder(system);
}

struct GeographicBounds::Way {
  explicit Way(const OGRSpatialReference& system)
      : isInDegrees(system.IsGeographic() != 0), toWgs84(transformation(inEastNorthOrder(system), wgs84())) {}

  bool isInDegrees;
  TransformationPtr toWgs84;
};

GeographicBounds::GeographicBounds() = default;
GeographicBounds::~GeographicBounds() = default;

std::optional<Bounds> GeographicBounds::of(const Bounds& bounds, const OGRSpatialReference& system,
                                           const std::string& wkt) {
  std::unique_ptr<Way>& way = ways_[wkt];
  if (!way) way = std::make_unique<Way>(system);
  const auto out = transformed(way->isInDegrees ? withinOneTurn(bounds) : bounds, way->toWgs84.get());
  if (!out) return std::nullopt;
  return withoutNoise(withinOneTurn(*out));
}

struct BoundsWay::Parts {
  TransformationPtr way;
  bool staysInDegrees = false;
};

BoundsWay::BoundsWay(const OGRSpatialReference& from, const OGRSpatialReference& to)
    : parts_(std::make_unique<Parts>(Parts{transformation(inEastNorthOrder(from), inEastNorthOrder(to)),
                                           from.IsGeographic() != 0 && to.IsGeographic() != 0})) {}

BoundsWay::~BoundsWay() = default;
BoundsWay::BoundsWay(BoundsWay&&) noexcept = default;
BoundsWay& BoundsWay::operator=(BoundsWay&&) noexcept = default;

std::optional<Bounds> BoundsWay::of(const Bounds& bounds) const {
  const auto out = transformed(bounds, parts_->way.get());
  if (out && parts_->staysInDegrees) return besideFormer(*out, bounds);
  if (out && out->xMin > out->xMax) return std::nullopt;
  return out;
}

std::optional<Bounds> transformBounds(const Bounds& bounds, const OGRSpatialReference& from,
                                      const OGRSpatialReference& to) {
  return BoundsWay(from, to).of(bounds);
}

}  // namespace vlclientui::client
