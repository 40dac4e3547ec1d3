#include "viewer/colors/ColorsIcon.h"

#include <QPainter>

#include "viewer/map/ToolColors.h"
#include "widgets/DrawnIcon.h"

namespace vlclientui::viewer {
namespace {

void drawColors(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(QPen(toolInk(), 1));
  const QPointF middles[] = {{8, 5.6}, {5.4, 10}, {10.6, 10}};
  const QColor colors[] = {{196, 60, 52, 210}, {70, 150, 74, 210}, {58, 96, 186, 210}};
  for (int i = 0; i < 3; ++i) {
    painter.setBrush(colors[i]);
    painter.drawEllipse(middles[i], 4, 4);
  }
}

}  // namespace

QIcon colorsIcon() { return widgets::drawnIcon(drawColors); }

}  // namespace vlclientui::viewer
