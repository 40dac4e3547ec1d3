#include "viewer/map/Graticule.h"

#include <QLineF>
#include <QList>
#include <QPainter>
#include <QRectF>
#include <algorithm>
#include <cmath>
#include <optional>

#include "viewer/map/HaloedText.h"
#include "viewer/map/MapColors.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {
namespace {

constexpr int stepsOfMeridian = 64;
constexpr int stepsOfParallel = 128;

// The smallest round step that leaves about 90 pixels between lines.
double graticuleStep(double degreesPerPixel) {
  const double least = degreesPerPixel * 90;
  for (const double step :
       {0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 15.0, 30.0}) {
    if (step >= least) return step;
  }
  return 60;
}

QString degreesText(double value, char positive, char negative, double step) {
  const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
  const QString number = QString::number(std::abs(value), 'f', decimals) + QChar(0x00B0);
  if (std::abs(value) < step / 2) return number;
  return number + QChar(value > 0 ? positive : negative);
}

double stepOf(const MapFrame& frame) {
  const auto& system = frame.system();
  return graticuleStep(system.isInDegrees ? frame.pixel() : frame.pixel() * system.metersPerUnit / 111'319.5);
}

void drawStraight(QPainter& painter, const MapFrame& frame, const MapColors& colors) {
  const host::GeographicEnvelope view = frame.view();
  const double step = stepOf(frame);
  const QRectF world(frame.toPixel({-180, 90}), frame.toPixel({180, -90}));
  const double bottom = std::min<double>(frame.size().height(), world.bottom()) - 5;
  const double left = std::max(0.0, world.left()) + 5;
  painter.setPen(QPen(colors.line, 1));
  for (double x = std::ceil(view.xMin / step) * step; x <= view.xMax; x += step) {
    const double pixel = frame.toPixel({x, 0}).x();
    painter.drawLine(QPointF(pixel, world.top()), QPointF(pixel, world.bottom()));
    drawWithHalo(painter, {pixel + 3, bottom}, degreesText(x, 'E', 'W', step), colors);
  }
  for (double y = std::ceil(view.yMin / step) * step; y <= view.yMax; y += step) {
    const double pixel = frame.toPixel({0, y}).y();
    painter.drawLine(QPointF(world.left(), pixel), QPointF(world.right(), pixel));
    drawWithHalo(painter, {left, pixel - 3}, degreesText(y, 'N', 'S', step), colors);
  }
}

// With half of it more on each side, so that a drag needs no other lines at once.
client::Bounds around(const client::Bounds& area) {
  const double across = (area.xMax - area.xMin) / 4;
  const double down = (area.yMax - area.yMin) / 4;
  return {area.xMin - across, area.yMin - down, area.xMax + across, area.yMax + down};
}

bool isWithin(const client::Bounds& area, const client::Bounds& covered) {
  return area.xMin >= covered.xMin && area.xMax <= covered.xMax && area.yMin >= covered.yMin &&
         area.yMax <= covered.yMax;
}

bool touches(const QRectF& window, QPointF from, QPointF to) {
  return std::min(from.x(), to.x()) <= window.right() && std::max(from.x(), to.x()) >= window.left() &&
         std::min(from.y(), to.y()) <= window.bottom() && std::max(from.y(), to.y()) >= window.top();
}

}  // namespace

void Graticule::draw(QPainter& painter, const MapFrame& frame, const MapColors& colors) {
  if (frame.isInDegrees()) return drawStraight(painter, frame, colors);
  follow(frame);
  for (const Line& line : lines_) drawLine(painter, frame, colors, line);
}

void Graticule::follow(const MapFrame& frame) {
  const bool isKnown =
      wkt_ == frame.system().wkt && step_ == stepOf(frame) && isWithin(frame.area(), covered_);
  if (!isKnown) learn(frame);
}

// From pole to pole and around the earth wherever the map reaches so far.
void Graticule::learn(const MapFrame& frame) {
  wkt_ = frame.system().wkt;
  step_ = stepOf(frame);
  covered_ = around(frame.area());
  lines_.clear();
  const host::GeographicEnvelope view = frame.degreesOf(covered_);
  for (double x = std::ceil(view.xMin / step_) * step_; x <= view.xMax; x += step_) {
    lines_.push_back({frame.line({x, view.yMin}, {x, view.yMax}, stepsOfMeridian),
                      degreesText(x, 'E', 'W', step_), Edge::Bottom});
  }
  for (double y = std::ceil(view.yMin / step_) * step_; y <= view.yMax; y += step_) {
    lines_.push_back({frame.line({view.xMin, y}, {view.xMax, y}, stepsOfParallel),
                      degreesText(y, 'N', 'S', step_), Edge::Left});
  }
}

void Graticule::drawLine(QPainter& painter, const MapFrame& frame, const MapColors& colors,
                         const Line& line) {
  painter.setPen(QPen(colors.line, 1));
  const QRectF window(QPointF(0, 0), QSizeF(frame.size()));
  const double longest = window.width() + window.height();
  std::optional<QPointF> former;
  std::optional<QPointF> label;
  QList<QLineF> pieces;
  for (const client::MapPoint& place : line.places) {
    const QPointF at = frame.toPixel(place);
    // A longer one jumps around the earth.
    if (former && (at - *former).manhattanLength() < longest && touches(window, *former, at))
      pieces.append({*former, at});
    former = at;
    if (!window.contains(at)) continue;
    const bool isNearer = !label || (line.edge == Edge::Bottom ? at.y() > label->y() : at.x() < label->x());
    if (isNearer) label = at;
  }
  painter.drawLines(pieces);
  if (label) drawWithHalo(painter, *label + QPointF(3, -3), line.name, colors);
}

}  // namespace vlclientui::viewer
