#include "viewer/window/MapStatus.h"

#include <QCursor>
#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <algorithm>
#include <cmath>

#include "viewer/map/MapView.h"

namespace vlclientui::viewer {

MapStatus::MapStatus(const MapView& map, QStatusBar& bar)
    : QObject(&bar), map_(map), pointer_(new QLabel), view_(new QLabel) {
  pointer_->setObjectName("PointerLabel");
  bar.addPermanentWidget(pointer_);
  bar.addPermanentWidget(view_);
  connect(&map_, &MapView::pointerMoved, this, &MapStatus::showPointer);
  connect(&map_, &MapView::viewChanged, this, &MapStatus::showView);
}

void MapStatus::showView() {
  const auto view = map_.view();
  const QLocale locale = map_.locale();
  view_->setText(tr("View: %1 to %2 E, %3 to %4 N")
                     .arg(locale.toString(view.xMin, 'f', 2), locale.toString(view.xMax, 'f', 2),
                          locale.toString(view.yMin, 'f', 2), locale.toString(view.yMax, 'f', 2)));
  if (map_.underMouse()) return showPointer(map_.frame().toMap(map_.mapFromGlobal(QCursor::pos())));
  pointer_->setText(scaleText());
}

// That of the screen as the desktop tells it.
QString MapStatus::scaleText() const {
  const double dot = 0.0254 / std::max(1, map_.logicalDpiX());
  const MapFrame& frame = map_.frame();
  const double scale = frame.pixel() * frame.system().metersPerUnit / dot;
  return "1:" + map_.locale().toString(static_cast<qlonglong>(scale));
}

// With a digit for each tenth of a pixel.
void MapStatus::showPointer(client::MapPoint place) {
  const int digits = std::clamp(static_cast<int>(std::ceil(1 - std::log10(map_.frame().pixel()))), 0, 8);
  pointer_->setText(
      tr("%1, %2   %3")
          .arg(QString::number(place.x, 'f', digits), QString::number(place.y, 'f', digits), scaleText()));
}

}  // namespace vlclientui::viewer
