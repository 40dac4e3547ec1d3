#include "viewer/tools/ToolPictures.h"

#include <QPainter>

#include "viewer/map/ToolColors.h"
#include "widgets/DrawnIcon.h"

namespace vlclientui::viewer {
namespace {

void drawLens(QPainter& painter, QPointF middle, double radius) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(toolInk(), 1.4));
  painter.drawEllipse(middle, radius, radius);
  painter.setPen(QPen(toolInk(), 2.2, Qt::SolidLine, Qt::RoundCap));
  const double edge = radius * 0.75;
  painter.drawLine(middle + QPointF(edge, edge), QPointF(14.2, 14.2));
}

void drawZoomBox(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(toolAccent(), 1.2, Qt::DashLine));
  painter.drawRect(QRectF(1.5, 1.5, 9.5, 8));
  drawLens(painter, {9.5, 9.5}, 3.4);
}

void drawZoomIn(QPainter& painter, QIcon::State /*state*/) {
  drawLens(painter, {6.8, 6.8}, 5);
  painter.setPen(QPen(toolAccent(), 1.6));
  painter.drawLine(QPointF(4.3, 6.8), QPointF(9.3, 6.8));
  painter.drawLine(QPointF(6.8, 4.3), QPointF(6.8, 9.3));
}

void drawZoomOut(QPainter& painter, QIcon::State /*state*/) {
  drawLens(painter, {6.8, 6.8}, 5);
  painter.setPen(QPen(toolAccent(), 1.6));
  painter.drawLine(QPointF(4.3, 6.8), QPointF(9.3, 6.8));
}

// To the right; turned around for the other.
void drawArrow(QPainter& painter) {
  painter.setPen(QPen(toolInk(), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawLine(QPointF(2.5, 8), QPointF(13, 8));
  const QPointF head[] = {{9, 4}, {13, 8}, {9, 12}};
  painter.drawPolyline(head, 3);
}

void drawNext(QPainter& painter, QIcon::State /*state*/) { drawArrow(painter); }

void drawPrevious(QPainter& painter, QIcon::State /*state*/) {
  painter.translate(widgets::iconDesignSize, 0);
  painter.scale(-1, 1);
  drawArrow(painter);
}

void drawNativePixels(QPainter& painter, QIcon::State /*state*/) {
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const QRectF square(2 + 4.0 * column, 2 + 4.0 * row, 4, 4);
      if ((row + column) % 2 == 0) painter.fillRect(square, toolAccent());
    }
  }
  painter.setPen(QPen(toolInk(), 1));
  painter.drawRect(QRectF(2, 2, 12, 12));
}

}  // namespace

QIcon zoomBoxIcon() { return widgets::drawnIcon(drawZoomBox); }

QIcon zoomInIcon() { return widgets::drawnIcon(drawZoomIn); }

QIcon zoomOutIcon() { return widgets::drawnIcon(drawZoomOut); }

QIcon previousIcon() { return widgets::drawnIcon(drawPrevious); }

QIcon nextIcon() { return widgets::drawnIcon(drawNext); }

QIcon nativePixelsIcon() { return widgets::drawnIcon(drawNativePixels); }

}  // namespace vlclientui::viewer
