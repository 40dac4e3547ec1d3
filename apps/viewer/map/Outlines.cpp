#include "viewer/map/Outlines.h"

namespace vlclientui::viewer {
namespace {

constexpr std::size_t mostKnown = 20'000;
constexpr int stepsOfEdge = 16;

using Places = std::vector<client::MapPoint>;

Places placesOf(const MapFrame& frame, const host::GeographicEnvelope& extent) {
  const std::array<client::MapPoint, 5> corners = {{{extent.xMin, extent.yMax},
                                                    {extent.xMax, extent.yMax},
                                                    {extent.xMax, extent.yMin},
                                                    {extent.xMin, extent.yMin},
                                                    {extent.xMin, extent.yMax}}};
  Places places;
  for (std::size_t i = 0; i + 1 < corners.size(); ++i) {
    const Places edge = frame.line(corners[i], corners[i + 1], frame.isInDegrees() ? 1 : stepsOfEdge);
    places.insert(places.end(), edge.begin(), edge.end());
  }
  return places;
}

QPolygonF pixelsOf(const MapFrame& frame, const Places& places) {
  QPolygonF pixels;
  pixels.reserve(static_cast<qsizetype>(places.size()));
  for (const client::MapPoint& place : places) pixels << frame.toPixel(place);
  return pixels;
}

}  // namespace

void Outlines::follow(const MapFrame& frame) {
  if (wkt_ == frame.system().wkt && extents_.size() < mostKnown) return;
  wkt_ = frame.system().wkt;
  extents_.clear();
}

QPolygonF Outlines::of(const MapFrame& frame, const host::GeographicEnvelope& extent) {
  follow(frame);
  const auto [known, isNew] = extents_.try_emplace({extent.xMin, extent.yMin, extent.xMax, extent.yMax});
  if (isNew) known->second = placesOf(frame, extent);
  return pixelsOf(frame, known->second);
}

}  // namespace vlclientui::viewer
