#include "client/raster/OutlineWay.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t stepsOfEdge = 22;
constexpr std::size_t edges = 4;
// Each one looks 11 times closer, which brings meters down to fractions of a millimeter.
constexpr int closerLooks = 3;
constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

// Systems count in degrees, a few in grads; the units are told in rounded radians.
double turnOf(const OGRSpatialReference& system) {
  if (system.IsGeographic() == 0) return 0;
  return std::round(2 * std::numbers::pi / system.GetAngularUnits() * 1e6) / 1e6;
}

bool isInside(double x, double y, const Bounds& bounds) {
  return bounds.xMin < x && x < bounds.xMax && bounds.yMin < y && y < bounds.yMax;
}

}  // namespace

OutlineWay::OutlineWay(const OGRSpatialReference& from, const OGRSpatialReference& to)
    : way_(transformation(from, to)), turn_(turnOf(to)) {
  if (way_ && turn_ > 0 && from.IsGeographic() == 0) findPoles(from, to);
}

void OutlineWay::findPoles(const OGRSpatialReference& from, const OGRSpatialReference& to) {
  const TransformationPtr back = transformation(to, from);
  if (!back) return;
  const auto pole = [&](double latitude) -> std::optional<Place> {
    Place place{0, latitude};
    if (!back->Transform(1, &place.x, &place.y)) return std::nullopt;
    if (!std::isfinite(place.x) || !std::isfinite(place.y)) return std::nullopt;
    return place;
  };
  northPole_ = pole(turn_ / 4);
  southPole_ = pole(-turn_ / 4);
}

// Edges are counted from the lower left corner on, counterclockwise; whole numbers are corners.
std::vector<OutlineWay::Place> OutlineWay::imageOf(const Bounds& bounds, double from, double to,
                                                   std::size_t steps) const {
  std::vector<double> x(steps + 1);
  std::vector<double> y(steps + 1);
  for (std::size_t i = 0; i <= steps; ++i) {
    const double at = std::max(from + (to - from) * static_cast<double>(i) / static_cast<double>(steps), 0.0);
    const double edge = std::floor(at);
    const auto side = static_cast<std::size_t>(edge) % edges;
    const bool goesBack = side >= 2;
    const double share = goesBack ? 1 - (at - edge) : at - edge;
    const bool isLevel = side % 2 == 0;
    x[i] = isLevel ? std::lerp(bounds.xMin, bounds.xMax, share) : (goesBack ? bounds.xMin : bounds.xMax);
    y[i] = isLevel ? (goesBack ? bounds.yMax : bounds.yMin) : std::lerp(bounds.yMin, bounds.yMax, share);
  }
  std::vector<int> isThere(steps + 1);
  way_->Transform(static_cast<int>(steps + 1), x.data(), y.data(), nullptr, isThere.data());
  std::vector<Place> places(steps + 1);
  for (std::size_t i = 0; i <= steps; ++i) {
    const bool isPlace = isThere[i] != 0 && std::isfinite(x[i]) && std::isfinite(y[i]);
    places[i] = isPlace ? Place{x[i], y[i]} : Place{nowhere, nowhere};
  }
  return places;
}

// No step along the edges is as long as half a turn.
void OutlineWay::joinTurns(std::vector<Place>& places, const Place& first) const {
  if (turn_ == 0) return;
  double former = first.x;
  for (Place& place : places) {
    if (!std::isnan(former) && !std::isnan(place.x))
      place.x -= turn_ * std::round((place.x - former) / turn_);
    if (!std::isnan(place.x)) former = place.x;
  }
}

// An edge may reach farthest between two of the places, so there it is looked at more closely.
double OutlineWay::least(const Bounds& bounds, const std::vector<Place>& outline, Measure measure) const {
  const auto leastOf = [&](const std::vector<Place>& places) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < places.size(); ++i) {
      const double value = measure(places[i]);
      if (value < measure(places[best]) || std::isnan(measure(places[best]))) best = i;
    }
    return best;
  };
  const std::size_t found = leastOf(outline);
  double value = measure(outline[found]);
  if (found % stepsOfEdge == 0) return value;
  const Place guide = outline[found];
  double step = 1.0 / stepsOfEdge;
  double middle = static_cast<double>(found) * step;
  for (int look = 0; look < closerLooks; ++look) {
    auto closer = imageOf(bounds, middle - step, middle + step, stepsOfEdge);
    joinTurns(closer, guide);
    const std::size_t best = leastOf(closer);
    if (!(measure(closer[best]) < value)) break;
    value = measure(closer[best]);
    middle += step * (2.0 * static_cast<double>(best) / stepsOfEdge - 1);
    step *= 2.0 / stepsOfEdge;
  }
  return value;
}

Bounds OutlineWay::withPoles(Bounds image, const Bounds& bounds) const {
  const bool hasNorth = northPole_ && isInside(northPole_->x, northPole_->y, bounds);
  const bool hasSouth = southPole_ && isInside(southPole_->x, southPole_->y, bounds);
  if (hasNorth) image.yMax = turn_ / 4;
  if (hasSouth) image.yMin = -turn_ / 4;
  if (!hasNorth && !hasSouth) return image;
  return {-turn_ / 2, image.yMin, turn_ / 2, image.yMax};
}

std::optional<Bounds> OutlineWay::around(const Bounds& bounds) const {
  if (!way_) return std::nullopt;
  // Places outside of a projection are passed over, and nobody's complaint.
  const GdalScope scope;
  auto outline = imageOf(bounds, 0, edges, edges * stepsOfEdge);
  joinTurns(outline, {nowhere, nowhere});
  const Bounds image{least(bounds, outline, [](const Place& place) { return place.x; }),
                     least(bounds, outline, [](const Place& place) { return place.y; }),
                     -least(bounds, outline, [](const Place& place) { return -place.x; }),
                     -least(bounds, outline, [](const Place& place) { return -place.y; })};
  if (std::isnan(image.xMin)) return std::nullopt;
  return withPoles(image, bounds);
}

}  // namespace vlclientui::client
