#include "widgets/SymbolIcons.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include "widgets/DrawnIcon.h"

namespace vlclientui::widgets {

namespace {

void drawFolder(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(QColor(0xa8, 0x76, 0x1e), 0.9));
  QPainterPath back;
  back.moveTo(1.2, 13);
  back.lineTo(1.2, 3.4);
  back.quadTo(1.2, 2.6, 2, 2.6);
  back.lineTo(6, 2.6);
  back.lineTo(7.6, 4.4);
  back.lineTo(14, 4.4);
  back.quadTo(14.8, 4.4, 14.8, 5.2);
  back.lineTo(14.8, 13);
  back.closeSubpath();
  painter.fillPath(back, QColor(0xdd, 0xa5, 0x3a));
  painter.drawPath(back);
  QLinearGradient front(0, 6, 0, 13.4);
  front.setColorAt(0, QColor(0xff, 0xdd, 0x86));
  front.setColorAt(1, QColor(0xf2, 0xbe, 0x55));
  painter.setBrush(front);
  painter.drawRoundedRect(QRectF(1.2, 6.2, 13.6, 7.4), 0.9, 0.9);
}

void drawService(QPainter& painter, QIcon::State /*state*/) {
  const QRectF frame(1.2, 2.2, 13.6, 11.6);
  QPainterPath clip;
  clip.addRoundedRect(frame, 1.2, 1.2);
  painter.save();
  painter.setClipPath(clip);
  QLinearGradient sky(0, 2, 0, 10);
  sky.setColorAt(0, QColor(0x6f, 0xb4, 0xe8));
  sky.setColorAt(1, QColor(0xd5, 0xec, 0xfa));
  painter.fillRect(frame, sky);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xff, 0xd7, 0x4d));
  painter.drawEllipse(QPointF(11.4, 5.4), 1.5, 1.5);
  painter.setBrush(QColor(0x7f, 0x9d, 0x6b));
  painter.drawPolygon(QPolygonF({{6.5, 14}, {11.2, 7.6}, {16, 14}}));
  painter.setBrush(QColor(0x46, 0x86, 0x4f));
  painter.drawPolygon(QPolygonF({{0, 14}, {5.2, 6.4}, {10.6, 14}}));
  painter.restore();
  painter.setPen(QPen(QColor(0x3d, 0x5f, 0x7d), 0.9));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(frame, 1.2, 1.2);
}

/// A framed picture with a curved horizon.
void drawImage(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(QColor(0x3d, 0x5f, 0x7d), 0.9));
  painter.setBrush(QColor(0xf4, 0xf7, 0xfa));
  painter.drawRect(QRectF(1.2, 2.2, 13.6, 11.6));
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x8f, 0xc3, 0xea));
  painter.drawRect(QRectF(2.8, 3.8, 10.4, 8.4));
  painter.setBrush(QColor(0x55, 0x94, 0x5d));
  painter.drawPolygon(
      QPolygonF({{2.8, 12.2}, {2.8, 9.6}, {6, 7}, {8.6, 9.4}, {10.6, 8}, {13.2, 10}, {13.2, 12.2}}));
}

/// A wheel with eight teeth.
void drawProcess(QPainter& painter, QIcon::State /*state*/) {
  constexpr int teeth = 8;
  const QColor steel(0x5d, 0x74, 0x8a);
  painter.translate(iconDesignSize / 2, iconDesignSize / 2);
  painter.setPen(Qt::NoPen);
  painter.setBrush(steel);
  for (int tooth = 0; tooth < teeth; ++tooth) {
    painter.drawRoundedRect(QRectF(-1.3, -6.9, 2.6, 3.4), 0.6, 0.6);
    painter.rotate(360.0 / teeth);
  }
  painter.drawEllipse(QPointF(), 5.1, 5.1);
  painter.setBrush(QColor(0xd8, 0xe2, 0xeb));
  painter.drawEllipse(QPointF(), 2.2, 2.2);
}

/// Sheets that lie over each other.
void drawSources(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(QColor(0x3d, 0x5f, 0x7d), 0.9));
  const QColor shades[] = {QColor(0x55, 0x94, 0x5d), QColor(0x8f, 0xc3, 0xea), QColor(0xff, 0xdd, 0x86)};
  qreal middle = 11;
  for (const QColor& shade : shades) {
    painter.setBrush(shade);
    painter.drawPolygon(QPolygonF({{1, middle}, {8, middle - 3.2}, {15, middle}, {8, middle + 3.2}}));
    middle -= 3;
  }
}

/// A closed padlock.
void drawLock(QPainter& painter, QIcon::State /*state*/) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0x5d, 0x74, 0x8a), 1.7));
  QPainterPath shackle;
  shackle.moveTo(4.7, 8);
  shackle.lineTo(4.7, 5);
  shackle.arcTo(QRectF(4.7, 1.7, 6.6, 6.6), 180, -180);
  shackle.lineTo(11.3, 8);
  painter.drawPath(shackle);
  painter.setPen(QPen(QColor(0xa8, 0x76, 0x1e), 0.9));
  QLinearGradient body(0, 7, 0, 14.6);
  body.setColorAt(0, QColor(0xff, 0xdd, 0x86));
  body.setColorAt(1, QColor(0xe2, 0xab, 0x42));
  painter.setBrush(body);
  painter.drawRoundedRect(QRectF(2.6, 7.2, 10.8, 7.4), 1.1, 1.1);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x6b, 0x4a, 0x12));
  painter.drawEllipse(QPointF(8, 10.3), 1.2, 1.2);
  painter.drawRect(QRectF(7.5, 10.6, 1, 2.2));
}

/// The color of button texts, highlighted while the button is checked.
QColor symbolColor(QIcon::State state) {
  return QGuiApplication::palette().color(state == QIcon::On ? QPalette::Highlight : QPalette::ButtonText);
}

/// @tparam degrees clockwise from straight up.
template <int degrees>
void drawArrow(QPainter& painter, QIcon::State state) {
  painter.translate(iconDesignSize / 2, iconDesignSize / 2);
  painter.rotate(degrees);
  painter.setPen(Qt::NoPen);
  painter.setBrush(symbolColor(state));
  painter.drawPolygon(
      QPolygonF({{0, -6.4}, {5.2, -0.6}, {1.6, -0.6}, {1.6, 6.2}, {-1.6, 6.2}, {-1.6, -0.6}, {-5.2, -0.6}}));
}

/// A point in a ring.
void drawCenter(QPainter& painter, QIcon::State state) {
  const QPointF middle(iconDesignSize / 2, iconDesignSize / 2);
  painter.setPen(QPen(symbolColor(state), 1.4));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(middle, 5, 5);
  painter.setPen(Qt::NoPen);
  painter.setBrush(symbolColor(state));
  painter.drawEllipse(middle, 2, 2);
}

struct Symbol {
  const char* name;
  IconDrawing drawing;
};

constexpr Symbol symbols[] = {
    {"service", drawService},   {"image", drawImage},         {"process", drawProcess},
    {"sources", drawSources},   {"lock", drawLock},           {"up", drawArrow<0>},
    {"upRight", drawArrow<45>}, {"right", drawArrow<90>},     {"downRight", drawArrow<135>},
    {"down", drawArrow<180>},   {"downLeft", drawArrow<225>}, {"left", drawArrow<270>},
    {"upLeft", drawArrow<315>}, {"centre", drawCenter}};

}  // namespace

QIcon symbolIcon(const QString& name) {
  for (const Symbol& symbol : symbols) {
    if (name == QLatin1String(symbol.name)) return drawnIcon(symbol.drawing);
  }
  return {};
}

QIcon folderIcon() { return drawnIcon(drawFolder); }

QIcon serviceIcon() { return drawnIcon(drawService); }

}  // namespace vlclientui::widgets
