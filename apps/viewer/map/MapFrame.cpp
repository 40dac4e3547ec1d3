#include "viewer/map/MapFrame.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "client/mapping/GroundScale.h"

namespace vlclientui::viewer {
namespace {

constexpr double finest = 1e-6;  // degrees per pixel
constexpr double coarsest = 2.0;
constexpr double metersPerDegree = 111'319.5;
constexpr int steps = 24;  // of the net of places that stands for an area

using client::MapPoint;

// Around all that are known.
std::optional<client::Bounds> around(const std::vector<MapPoint>& places) {
  std::optional<client::Bounds> bounds;
  for (const MapPoint& place : places) {
    if (!place.isKnown()) continue;
    const client::Bounds one{place.x, place.y, place.x, place.y};
    bounds = bounds ? client::unite(*bounds, one) : one;
  }
  return bounds;
}

}  // namespace

MapFrame::MapFrame() {
  if (const auto degrees = client::mapSystemOf(client::degreesCode)) system_ = *degrees;
  toDegrees_ = client::PointWay::between(system_.wkt, system_.wkt);
  fromDegrees_ = toDegrees_;
}

bool MapFrame::setSystem(const client::MapSystem& system) {
  const auto degrees = client::mapSystemOf(client::degreesCode);
  if (!degrees) return false;
  std::shared_ptr<const client::PointWay> there = client::PointWay::between(degrees->wkt, system.wkt);
  std::shared_ptr<const client::PointWay> back = client::PointWay::between(system.wkt, degrees->wkt);
  if (!there || !back) return false;
  const MapFrame former = *this;
  system_ = system;
  fromDegrees_ = std::move(there);
  toDegrees_ = std::move(back);
  takeOver(former);
  return true;
}

void MapFrame::takeOver(const MapFrame& former) {
  const auto wanted = former.groundPixel();
  const MapPoint middle = fromDegrees_->of(former.toDegrees_->of(former.middle_));
  if (!wanted || !middle.isKnown()) return show(former.view(), 1);
  // Scales change with the place, so the size is mended by what it is on the ground.
  place(middle, *wanted / system_.metersPerUnit);
  if (const auto there = groundPixel()) place(middle, pixel_ * *wanted / *there);
}

std::optional<double> MapFrame::groundPixel() const {
  const auto cell = client::groundCell(*toDegrees_, middle_, pixel_, pixel_);
  return cell ? std::optional(cell->across) : std::nullopt;
}

double MapFrame::nearestPixel(double pixel) const {
  const double unit = system_.isInDegrees ? 1 : metersPerDegree / system_.metersPerUnit;
  return std::clamp(pixel, finest * unit, coarsest * unit);
}

void MapFrame::place(MapPoint middle, double pixel) {
  const double most = 400 * metersPerDegree / system_.metersPerUnit;
  const double across = system_.isInDegrees ? 180 : most;
  const double down = system_.isInDegrees ? 90 : most;
  middle_ = {std::clamp(middle.x, -across, across), std::clamp(middle.y, -down, down)};
  pixel_ = nearestPixel(pixel);
}

void MapFrame::show(const host::GeographicEnvelope& extent, double margin) {
  client::Bounds area{extent.xMin, extent.yMin, extent.xMax, extent.yMax};
  if (!isInDegrees()) {
    std::vector<MapPoint> net = client::netOf(area, steps);
    fromDegrees_->apply(net);
    const auto known = around(net);
    if (!known) return;
    area = *known;
  }
  showArea(area, margin);
}

void MapFrame::showArea(const client::Bounds& area, double margin) {
  const double across = (area.xMax - area.xMin) * margin / std::max(1, size_.width());
  const double down = (area.yMax - area.yMin) * margin / std::max(1, size_.height());
  place({(area.xMin + area.xMax) / 2, (area.yMin + area.yMax) / 2}, std::max(across, down));
}

client::Bounds MapFrame::area() const {
  const double across = size_.width() * pixel_ / 2;
  const double down = size_.height() * pixel_ / 2;
  return {middle_.x - across, middle_.y - down, middle_.x + across, middle_.y + down};
}

host::GeographicEnvelope MapFrame::degreesOf(const client::Bounds& area) const {
  client::Bounds shown = area;
  if (!isInDegrees()) {
    std::vector<MapPoint> net = client::netOf(area, steps);
    toDegrees_->apply(net);
    const auto known = around(net);
    if (!known) return {};
    shown = *known;
  }
  return {std::max(-180.0, shown.xMin), std::max(-90.0, shown.yMin), std::min(180.0, shown.xMax),
          std::min(90.0, shown.yMax)};
}

QPointF MapFrame::toPixel(MapPoint place) const {
  return {size_.width() / 2.0 + (place.x - middle_.x) / pixel_,
          size_.height() / 2.0 - (place.y - middle_.y) / pixel_};
}

MapPoint MapFrame::toMap(QPointF pixel) const {
  return {middle_.x + (pixel.x() - size_.width() / 2.0) * pixel_,
          middle_.y - (pixel.y() - size_.height() / 2.0) * pixel_};
}

std::optional<QPointF> MapFrame::pixelOf(double longitude, double latitude) const {
  const MapPoint place = fromDegrees_->of({longitude, latitude});
  return place.isKnown() ? std::optional(toPixel(place)) : std::nullopt;
}

std::optional<MapPoint> MapFrame::degreesAt(QPointF pixel) const {
  const MapPoint place = toDegrees_->of(toMap(pixel));
  return place.isKnown() ? std::optional(place) : std::nullopt;
}

std::vector<MapPoint> MapFrame::places(std::vector<MapPoint> degrees) const {
  fromDegrees_->apply(degrees);
  return degrees;
}

std::vector<MapPoint> MapFrame::line(MapPoint from, MapPoint to, int count) const {
  std::vector<MapPoint> stops;
  for (int i = 0; i <= count; ++i) {
    stops.push_back({from.x + (to.x - from.x) * i / count, from.y + (to.y - from.y) * i / count});
  }
  stops = places(std::move(stops));
  std::erase_if(stops, [](const MapPoint& place) { return !place.isKnown(); });
  return stops;
}

}  // namespace vlclientui::viewer
