#include "viewer/map/Footprints.h"

#include <QLineF>
#include <QList>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <span>
#include <tuple>
#include <utility>

namespace vlclientui::viewer {
namespace {

constexpr std::size_t mostBroad = 100;
constexpr std::size_t cornersOfOne = std::tuple_size_v<host::GeographicCorners>;
constexpr int marginShare = 8;  // of the view, on each side

const QColor shade(0, 0, 0, 130);
const QColor ink(0xff, 0xd5, 0x4a);

// Light and dark together, to be visible on any picture.
void drawBroad(QPainter& painter, const std::vector<QPolygonF>& outlines) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  for (const QPen& pen : {QPen(shade, 2.5), QPen(ink, 1.2, Qt::DashLine)}) {
    painter.setPen(pen);
    for (const QPolygonF& outline : outlines) painter.drawPolygon(outline);
  }
}

// Broad lines of very many would hide what lies below, and take long to paint.
void drawFine(QPainter& painter, const std::vector<QPolygonF>& outlines) {
  QList<QLineF> edges;
  for (const QPolygonF& outline : outlines) {
    for (qsizetype i = 0; i < outline.size(); ++i) {
      edges.append({outline[i], outline[(i + 1) % outline.size()]});
    }
  }
  for (const QPen& pen : {QPen(shade, 1), QPen(ink, 1, Qt::DashLine)}) {
    painter.setPen(pen);
    painter.drawLines(edges);
  }
}

bool holds(const client::Bounds& whole, const client::Bounds& part) {
  return part.xMin >= whole.xMin && part.xMax <= whole.xMax && part.yMin >= whole.yMin &&
         part.yMax <= whole.yMax;
}

}  // namespace

void Footprints::show(std::vector<host::GeographicCorners> footprints) {
  if (footprints == footprints_) return;
  footprints_ = std::move(footprints);
  corners_.clear();
  picture_ = {};
}

void Footprints::draw(QPainter& painter, const MapFrame& frame) {
  const double density = painter.device()->devicePixelRatioF();
  if (!isKept(frame, density)) {
    follow(frame);
    const std::vector<QPolygonF> shown = within(frame);
    picture_ = {};
    if (shown.size() <= mostBroad) return drawBroad(painter, shown);
    keep(frame, density);
  }
  const client::Bounds area = kept_.area();
  const QPointF corner = frame.toPixel({area.xMin, area.yMax}) * density;
  painter.drawPixmap(QPointF(std::round(corner.x()), std::round(corner.y())) / density, picture_);
}

void Footprints::follow(const MapFrame& frame) {
  const std::size_t count = footprints_.size() * cornersOfOne;
  if (wkt_ == frame.system().wkt && corners_.size() == count) return;
  wkt_ = frame.system().wkt;
  std::vector<client::MapPoint> degrees;
  degrees.reserve(count);
  for (const auto& footprint : footprints_) {
    for (const auto& corner : footprint) degrees.push_back({corner.x, corner.y});
  }
  corners_ = frame.places(std::move(degrees));
}

std::vector<QPolygonF> Footprints::within(const MapFrame& frame) const {
  const QRectF window(QPointF(0, 0), QSizeF(frame.size()));
  std::vector<QPolygonF> shown;
  for (std::size_t first = 0; first < corners_.size(); first += cornersOfOne) {
    const auto corners = std::span(corners_).subspan(first, cornersOfOne);
    if (!std::ranges::all_of(corners, &client::MapPoint::isKnown)) continue;
    QPolygonF outline;
    for (const client::MapPoint& corner : corners) outline << frame.toPixel(corner);
    if (outline.boundingRect().intersects(window)) shown.push_back(std::move(outline));
  }
  return shown;
}

bool Footprints::isKept(const MapFrame& frame, double density) const {
  return !picture_.isNull() && density == density_ && frame.pixel() == kept_.pixel() &&
         frame.system() == kept_.system() && holds(kept_.area(), frame.area());
}

void Footprints::keep(const MapFrame& frame, double density) {
  kept_ = frame;
  // Whole pixels on each side, so that it lies on those of the view.
  kept_.resize(frame.size() + 2 * (frame.size() / marginShare));
  density_ = density;
  picture_ = QPixmap((QSizeF(kept_.size()) * density).toSize());
  picture_.setDevicePixelRatio(density);
  picture_.fill(Qt::transparent);
  QPainter painter(&picture_);
  drawFine(painter, within(kept_));
}

}  // namespace vlclientui::viewer
