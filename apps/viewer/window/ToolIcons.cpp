#include "viewer/window/ToolIcons.h"

#include <QPainter>

#include "viewer/map/ToolColors.h"
#include "widgets/DrawnIcon.h"

namespace vlclientui::viewer {
namespace {

const QColor paperInk(0x4a, 0x5f, 0x6b);
const QColor rectangle(0xc2, 0x41, 0x0c);
const QColor knobColor(0x17, 0x60, 0x7a);
const QColor viewPointColor(0xd8, 0x1b, 0x60);

void drawRectangle(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(seenOnButtons(rectangle), 1, Qt::DashLine));
  painter.drawRect(QRectF(1.5, 3.5, 13, 10));
}

void drawSliders(QPainter& painter, QIcon::State /*state*/) {
  double y = 3;
  for (const double knob : {10.5, 4.5, 8.5}) {
    painter.setPen(QPen(toolInk(), 1.3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(1.5, y), QPointF(14.5, y));
    painter.setPen(QPen(Qt::white, 0.8));
    painter.setBrush(knobColor);
    painter.drawEllipse(QPointF(knob, y), 2.2, 2.2);
    y += 5;
  }
}

void drawViewPoint(QPainter& painter, QIcon::State /*state*/) {
  constexpr double middle = widgets::iconDesignSize / 2;
  painter.setPen(QPen(seenOnButtons(viewPointColor), 1.4));
  painter.drawEllipse(QPointF(middle, middle), 3.6, 3.6);
  painter.drawLine(QPointF(1, middle), QPointF(15, middle));
  painter.drawLine(QPointF(middle, 1), QPointF(middle, 15));
}

void drawSheet(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(paperInk, 1));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(QRectF(2.5, 1.5, 11, 13), 1, 1);
  painter.fillRect(QRectF(4.5, 3.5, 7, 2.2), knobColor);
  for (const double y : {8.0, 10.2, 12.4}) painter.drawLine(QPointF(4.5, y), QPointF(11.5, y));
}

void drawWorld(QPainter& painter, QIcon::State /*state*/) {
  const QPointF middle(8, 8);
  painter.setPen(QPen(seenOnButtons(knobColor), 1.3));
  painter.drawEllipse(middle, 6.3, 6.3);
  painter.drawEllipse(middle, 2.6, 6.3);
  for (const double y : {5.0, 8.0, 11.0}) {
    const double half = y == 8 ? 6.3 : 5.5;
    painter.drawLine(QPointF(8 - half, y), QPointF(8 + half, y));
  }
}

}  // namespace

QIcon worldIcon() { return widgets::drawnIcon(drawWorld); }

QIcon rectangleIcon() { return widgets::drawnIcon(drawRectangle); }

QIcon propertiesIcon() { return widgets::drawnIcon(drawSliders); }

QIcon viewPointIcon() { return widgets::drawnIcon(drawViewPoint); }

QIcon metadataIcon() { return widgets::drawnIcon(drawSheet); }

}  // namespace vlclientui::viewer
