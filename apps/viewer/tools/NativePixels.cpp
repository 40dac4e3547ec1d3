#include "viewer/tools/NativePixels.h"

#include <cmath>

#include "client/mapping/PointWay.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {
namespace {

using client::MapPoint;

bool contains(const client::Bounds& bounds, MapPoint place) {
  return place.isKnown() && bounds.xMin <= place.x && place.x <= bounds.xMax && bounds.yMin <= place.y &&
         place.y <= bounds.yMax;
}

}  // namespace

std::optional<NativePlace> nativePlace(const MapFrame& frame, const client::RasterFacts& facts,
                                       double density) {
  const auto there = client::PointWay::between(facts.srsWkt, frame.system().wkt);
  const auto back = client::PointWay::between(frame.system().wkt, facts.srsWkt);
  if (!there || !back) return std::nullopt;
  const client::Bounds& whole = facts.envelope;
  MapPoint at = back->of(frame.middle());
  const bool isHere = contains(whole, at);
  if (!isHere) at = {(whole.xMin + whole.xMax) / 2, (whole.yMin + whole.yMax) / 2};
  const MapPoint left = there->of({at.x - facts.pixelSize / 2, at.y});
  const MapPoint right = there->of({at.x + facts.pixelSize / 2, at.y});
  const double pixel = std::hypot(right.x - left.x, right.y - left.y) * density;
  const MapPoint middle = isHere ? frame.middle() : there->of(at);
  if (!middle.isKnown() || !std::isfinite(pixel) || !(pixel > 0)) return std::nullopt;
  return NativePlace{middle, pixel};
}

}  // namespace vlclientui::viewer
