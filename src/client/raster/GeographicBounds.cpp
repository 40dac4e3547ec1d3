#include "client/raster/GeographicBounds.h"

#include <algorithm>
#include <cmath>

#include <ogr_spatialref.h>

#include "client/raster/OutlineWay.h"
#include "client/raster/Transformation.h"

namespace vlclientui::client {
namespace {

constexpr double halfTurn = 180.0;
constexpr double wholeTurn = 360.0;
constexpr double pole = 90.0;
// A billionth of a degree is a tenth of a millimeter; anything smaller is noise of the computation.
constexpr double noise = 1e-9;

// Longitudes of the usual turn; those that pass the antimeridian end beyond it.
Bounds fromUsualTurn(Bounds bounds, double turn) {
  if (bounds.xMax - bounds.xMin >= turn) return {-turn / 2, bounds.yMin, turn / 2, bounds.yMax};
  const double turns = std::floor((bounds.xMin + turn / 2 + noise) / turn);
  return {bounds.xMin - turns * turn, bounds.yMin, bounds.xMax - turns * turn, bounds.yMax};
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

Bounds besideFormer(const Bounds& bounds, const Bounds& former, double turn) {
  const double turns = std::round((bounds.xMin - former.xMin) / turn);
  return {bounds.xMin - turns * turn, bounds.yMin, bounds.xMax - turns * turn, bounds.yMax};
}

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
      : isInDegrees(system.IsGeographic() != 0), toWgs84(system, wgs84()) {}

  bool isInDegrees;
  OutlineWay toWgs84;
};

GeographicBounds::GeographicBounds() = default;
GeographicBounds::~GeographicBounds() = default;

std::optional<Bounds> GeographicBounds::of(const Bounds& bounds, const OGRSpatialReference& system,
                                           const std::string& wkt) {
  std::unique_ptr<Way>& way = ways_[wkt];
  if (!way) way = std::make_unique<Way>(system);
  const auto out = way->toWgs84.around(way->isInDegrees ? withinOneTurn(bounds) : bounds);
  if (!out) return std::nullopt;
  return withinOneTurn(withoutNoise(fromUsualTurn(*out, wholeTurn)));
}

struct BoundsWay::Parts {
  OutlineWay way;
  bool staysInDegrees = false;
};

BoundsWay::BoundsWay(const OGRSpatialReference& from, const OGRSpatialReference& to)
    : parts_(std::make_unique<Parts>(
          Parts{OutlineWay(from, to), from.IsGeographic() != 0 && to.IsGeographic() != 0})) {}

BoundsWay::~BoundsWay() = default;
BoundsWay::BoundsWay(BoundsWay&&) noexcept = default;
BoundsWay& BoundsWay::operator=(BoundsWay&&) noexcept = default;

std::optional<Bounds> BoundsWay::of(const Bounds& bounds) const {
  const auto out = parts_->way.around(bounds);
  const double turn = parts_->way.turn();
  if (!out || turn == 0) return out;
  if (parts_->staysInDegrees) return besideFormer(*out, bounds, turn);
  const Bounds usual = fromUsualTurn(*out, turn);
  if (usual.xMax > turn / 2 + noise) return std::nullopt;
  return usual;
}

std::optional<Bounds> transformBounds(const Bounds& bounds, const OGRSpatialReference& from,
                                      const OGRSpatialReference& to) {
  return BoundsWay(from, to).of(bounds);
}

}  // namespace vlclientui::client
