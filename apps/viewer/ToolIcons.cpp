#include "ToolIcons.h"

#include <QPainter>
#include <QPixmap>

namespace vlclientui::viewer {
namespace {

constexpr double kDesignSize = 16;  // side of the square in which the pictures are designed

const QColor kInk(0x4a, 0x5f, 0x6b);
const QColor kRectangle(0xc2, 0x41, 0x0c);
const QColor kKnob(0x17, 0x60, 0x7a);
const QColor kViewPoint(0xd8, 0x1b, 0x60);

using Drawing = void (*)(QPainter&);

QIcon drawn(Drawing drawing) {
  QIcon icon;
  for (const int side : {16, 24, 32, 48}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / kDesignSize, side / kDesignSize);
    drawing(painter);
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

void drawRectangle(QPainter& painter) {
  painter.setPen(QPen(kRectangle, 1, Qt::DashLine));
  painter.drawRect(QRectF(1.5, 3.5, 13, 10));
}

void drawSliders(QPainter& painter) {
  double y = 3;
  for (const double knob : {10.5, 4.5, 8.5}) {
    painter.setPen(QPen(kInk, 1.3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(1.5, y), QPointF(14.5, y));
    painter.setPen(QPen(Qt::white, 0.8));
    painter.setBrush(kKnob);
    painter.drawEllipse(QPointF(knob, y), 2.2, 2.2);
    y += 5;
  }
}

void drawViewPoint(QPainter& painter) {
  constexpr double middle = kDesignSize / 2;
  painter.setPen(QPen(kViewPoint, 1.4));
  painter.drawEllipse(QPointF(middle, middle), 3.6, 3.6);
  painter.drawLine(QPointF(1, middle), QPointF(15, middle));
  painter.drawLine(QPointF(middle, 1), QPointF(middle, 15));
}

void drawSheet(QPainter& painter) {
  painter.setPen(QPen(kInk, 1));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(QRectF(2.5, 1.5, 11, 13), 1, 1);
  painter.fillRect(QRectF(4.5, 3.5, 7, 2.2), kKnob);
  for (const double y : {8.0, 10.2, 12.4}) painter.drawLine(QPointF(4.5, y), QPointF(11.5, y));
}

}  // namespace

QIcon rectangleIcon() { return drawn(drawRectangle); }

QIcon propertiesIcon() { return drawn(drawSliders); }

QIcon viewPointIcon() { return drawn(drawViewPoint); }

QIcon metadataIcon() { return drawn(drawSheet); }

}  // namespace vlclientui::viewer
