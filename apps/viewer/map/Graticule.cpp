#include "viewer/map/Graticule.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRectF>
#include <algorithm>
#include <cmath>

#include "viewer/map/MapColors.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {
namespace {

// The smallest round step that leaves about 90 pixels between lines.
double graticuleStep(double degreesPerPixel) {
  const double least = degreesPerPixel * 90;
  for (const double step :
       {0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 15.0, 30.0}) {
    if (step >= least) return step;
  }
  return 60;
}

// Readable on any picture.
void drawWithHalo(QPainter& painter, QPointF at, const QString& text, const MapColors& colors) {
  QPainterPath path;
  path.addText(at, painter.font(), text);
  painter.strokePath(path, QPen(colors.halo, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(path, colors.ink);
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

class Graticule {
 public:
  Graticule(QPainter& painter, const MapFrame& frame, const MapColors& colors)
      : painter_(painter), frame_(frame), colors_(colors), view_(frame.view()), step_(stepOf(frame)) {
    const client::Bounds area = frame.area();
    const QPointF upper = frame.toPixel({area.xMin, area.yMax});
    const QPointF lower = frame.toPixel({area.xMax, area.yMin});
    window_ = QRectF(upper, lower);
  }

  void draw() {
    if (frame_.isInDegrees()) return drawStraight();
    // From pole to pole and around the earth wherever the map reaches so far.
    for (double x = std::ceil(view_.xMin / step_) * step_; x <= view_.xMax; x += step_) {
      drawBent(frame_.line({x, view_.yMin}, {x, view_.yMax}, 64), degreesText(x, 'E', 'W', step_),
               Edge::Bottom);
    }
    for (double y = std::ceil(view_.yMin / step_) * step_; y <= view_.yMax; y += step_) {
      drawBent(frame_.line({view_.xMin, y}, {view_.xMax, y}, 128), degreesText(y, 'N', 'S', step_),
               Edge::Left);
    }
  }

 private:
  enum class Edge { Bottom, Left };

  void drawStraight() {
    const QRectF world(frame_.toPixel({-180, 90}), frame_.toPixel({180, -90}));
    const double bottom = std::min(window_.bottom(), world.bottom()) - 5;
    const double left = std::max(0.0, world.left()) + 5;
    for (double x = std::ceil(view_.xMin / step_) * step_; x <= view_.xMax; x += step_) {
      const double pixel = frame_.toPixel({x, 0}).x();
      drawLine({pixel, world.top()}, {pixel, world.bottom()});
      drawWithHalo(painter_, {pixel + 3, bottom}, degreesText(x, 'E', 'W', step_), colors_);
    }
    for (double y = std::ceil(view_.yMin / step_) * step_; y <= view_.yMax; y += step_) {
      const double pixel = frame_.toPixel({0, y}).y();
      drawLine({world.left(), pixel}, {world.right(), pixel});
      drawWithHalo(painter_, {left, pixel - 3}, degreesText(y, 'N', 'S', step_), colors_);
    }
  }

  void drawLine(QPointF from, QPointF to) {
    painter_.setPen(QPen(colors_.line, 1));
    painter_.drawLine(from, to);
  }

  // Named where it comes next to the edge.
  void drawBent(const std::vector<QPointF>& places, const QString& name, Edge edge) {
    painter_.setPen(QPen(colors_.line, 1));
    const double longest = window_.width() + window_.height();
    const QPointF* label = nullptr;
    for (std::size_t i = 0; i < places.size(); ++i) {
      // A longer one jumps around the earth.
      if (i > 0 && (places[i] - places[i - 1]).manhattanLength() < longest) {
        painter_.drawLine(places[i - 1], places[i]);
      }
      if (!window_.contains(places[i])) continue;
      const bool isNearer = label == nullptr ||
                            (edge == Edge::Bottom ? places[i].y() > label->y() : places[i].x() < label->x());
      if (isNearer) label = &places[i];
    }
    if (label != nullptr) drawWithHalo(painter_, *label + QPointF(3, -3), name, colors_);
  }

  QPainter& painter_;
  const MapFrame& frame_;
  const MapColors& colors_;
  const host::GeographicEnvelope view_;
  const double step_;
  QRectF window_;
};

}  // namespace

void drawGraticule(QPainter& painter, const MapFrame& frame, const MapColors& colors) {
  Graticule(painter, frame, colors).draw();
}

}  // namespace vlclientui::viewer
