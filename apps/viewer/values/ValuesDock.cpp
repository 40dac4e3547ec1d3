#include "viewer/values/ValuesDock.h"

#include <QAction>
#include <QPainter>

#include "viewer/map/ToolColors.h"
#include "widgets/DrawnIcon.h"

namespace vlclientui::viewer {
namespace {

// An arrow at a pixel, and its number.
void drawValues(QPainter& painter, QIcon::State /*state*/) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(toolAccent());
  painter.drawRoundedRect(QRectF(7, 1.5, 7.5, 7), 1, 1);
  painter.setPen(QPen(Qt::white, 1.2));
  painter.drawLine(QPointF(9.2, 4), QPointF(12.3, 4));
  painter.drawLine(QPointF(9.2, 6.2), QPointF(12.3, 6.2));
  const QPointF arrow[] = {{1.5, 4.5}, {10, 10.2}, {6.3, 10.8}, {4.6, 14.2}};
  painter.setPen(QPen(Qt::white, 0.6));
  painter.setBrush(toolInk());
  painter.drawPolygon(arrow, 4);
}

}  // namespace

ValuesDock::ValuesDock(const ServiceListModel& services, MapView& map, QWidget* window)
    : QDockWidget(tr("Values"), window), pane_(new ValuesPane(services, map)) {
  setObjectName("ValuesDock");
  setWidget(pane_);
  QAction& action = toggle();
  action.setObjectName("ShowValues");
  action.setText(tr("Va&lues"));
  action.setIcon(widgets::drawnIcon(drawValues));
  action.setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_I);
  action.setToolTip(tr("Show or hide the values of all bands under a click on the map"));
  hide();
}

void ValuesDock::showAt(client::MapPoint place) {
  show();
  raise();
  pane_->ask(place);
}

}  // namespace vlclientui::viewer
