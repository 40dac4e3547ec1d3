#include "client/mapping/PointWay.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

struct TransformationCloser {
  void operator()(OGRCoordinateTransformation* way) const { OGRCoordinateTransformation::DestroyCT(way); }
};

bool readSystem(OGRSpatialReference& system, const std::string& wkt) {
  if (system.importFromWkt(wkt.c_str()) != OGRERR_NONE) return false;
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  return true;
}

}  // namespace

struct PointWay::Parts {
  std::unique_ptr<OGRCoordinateTransformation, TransformationCloser> transformation;
};

PointWay::PointWay(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
PointWay::~PointWay() = default;

std::unique_ptr<PointWay> PointWay::between(const std::string& from, const std::string& to) {
  auto parts = std::make_unique<Parts>();
  if (from != to && !from.empty() && !to.empty()) {
    const GdalScope scope;
    OGRSpatialReference one;
    OGRSpatialReference other;
    if (!readSystem(one, from) || !readSystem(other, to)) return nullptr;
    if (one.IsSame(&other) == 0) {
      parts->transformation.reset(OGRCreateCoordinateTransformation(&one, &other));
      if (!parts->transformation) return nullptr;
    }
  }
  return std::unique_ptr<PointWay>(new PointWay(std::move(parts)));
}

bool PointWay::changesNothing() const { return parts_->transformation == nullptr; }

void PointWay::apply(std::vector<MapPoint>& places) const {
  if (changesNothing() || places.empty()) return;
  std::vector<double> xs;
  std::vector<double> ys;
  xs.reserve(places.size());
  ys.reserve(places.size());
  for (const MapPoint& place : places) {
    xs.push_back(place.x);
    ys.push_back(place.y);
  }
  std::vector<int> isDone(places.size());
  const GdalScope scope;  // a place that has none is no failure
  parts_->transformation->Transform(static_cast<int>(places.size()), xs.data(), ys.data(), nullptr,
                                    isDone.data());
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool isPlaced = isDone[i] != 0 && std::isfinite(xs[i]) && std::isfinite(ys[i]);
    places[i] = isPlaced ? MapPoint{xs[i], ys[i]} : MapPoint{unknown, unknown};
  }
}

MapPoint PointWay::of(MapPoint place) const {
  std::vector<MapPoint> places = {place};
  apply(places);
  return places.front();
}

namespace {

constexpr int reachSteps = 16;

// The widest step between neighbors: so far the area may reach beyond the places that were tried.
struct Reach {
  Bounds bounds;
  double across = 0;
  double down = 0;
  bool isEmpty = true;
  bool isWhole = true;

  void add(const MapPoint& place) {
    if (!place.isKnown()) {
      isWhole = false;
      return;
    }
    const Bounds one{place.x, place.y, place.x, place.y};
    bounds = isEmpty ? one : unite(bounds, one);
    isEmpty = false;
  }

  void step(const MapPoint& from, const MapPoint& to) {
    if (!from.isKnown() || !to.isKnown()) return;
    across = std::max(across, std::abs(to.x - from.x));
    down = std::max(down, std::abs(to.y - from.y));
  }
};

}  // namespace

std::vector<MapPoint> netOf(const Bounds& area, int steps) {
  std::vector<MapPoint> net;
  for (int row = 0; row <= steps; ++row) {
    for (int column = 0; column <= steps; ++column) {
      net.push_back({area.xMin + (area.xMax - area.xMin) * column / steps,
                     area.yMin + (area.yMax - area.yMin) * row / steps});
    }
  }
  return net;
}

std::optional<Bounds> reachOf(const Bounds& area, const PointWay& way) {
  if (way.changesNothing()) return area;
  std::vector<MapPoint> net = netOf(area, reachSteps);
  way.apply(net);
  Reach reach;
  constexpr std::size_t row = reachSteps + 1;
  for (std::size_t i = 0; i < net.size(); ++i) {
    reach.add(net[i]);
    if (i % row != 0) reach.step(net[i - 1], net[i]);
    if (i >= row) reach.step(net[i - row], net[i]);
  }
  if (reach.isEmpty) return std::nullopt;
  constexpr double anywhere = std::numeric_limits<double>::max();
  if (!reach.isWhole) return Bounds{-anywhere, -anywhere, anywhere, anywhere};
  return Bounds{reach.bounds.xMin - reach.across, reach.bounds.yMin - reach.down,
                reach.bounds.xMax + reach.across, reach.bounds.yMax + reach.down};
}

}  // namespace vlclientui::client
