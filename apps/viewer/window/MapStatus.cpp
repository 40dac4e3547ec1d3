#include "viewer/window/MapStatus.h"

#include <QCursor>
#include <QLabel>
#include <QStatusBar>

#include "viewer/map/MapView.h"
#include "viewer/map/PlaceText.h"

namespace vlclientui::viewer {
namespace {

constexpr qsizetype mostOfName = 30;
constexpr int rest = 300;  // milliseconds without a move

}  // namespace

MapStatus::MapStatus(const MapView& map, QStatusBar& bar)
    : QObject(&bar), map_(map), pointer_(new QLabel), scale_(new QLabel), system_(new QLabel) {
  pointer_->setObjectName("PointerLabel");
  pointer_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  // News beside it stay where they are while the pointer moves.
  pointer_->setMinimumWidth(pointer_->fontMetrics().horizontalAdvance("000.00000\u00b0 W, 00.00000\u00b0 N"));
  pointer_->setToolTip(tr("The place under the pointer, in the coordinate system of the map"));
  scale_->setObjectName("ScaleLabel");
  system_->setObjectName("SystemLabel");
  for (QLabel* const label : {pointer_, scale_, system_}) bar.addPermanentWidget(label);
  connect(&map_, &MapView::pointerMoved, this, &MapStatus::showPointer);
  connect(&map_, &MapView::pointerLeft, pointer_, &QLabel::clear);
  connect(&map_, &MapView::viewChanged, this, &MapStatus::showView);
  atRest_.setSingleShot(true);
  atRest_.setInterval(rest);
  connect(&atRest_, &QTimer::timeout, this, &MapStatus::describe);
}

// The scale is that of the screen as the desktop tells it.
void MapStatus::showView() {
  const MapFrame& frame = map_.frame();
  scale_->setText(scaleText(frame, map_.logicalDpiX()));
  const QString name = QString::fromStdString(frame.system().name);
  system_->setText(frame.system().id.empty() ? name.left(mostOfName)
                                             : QString::fromStdString(frame.system().id));
  atRest_.start();
  if (map_.underMouse()) showPointer(frame.toMap(map_.mapFromGlobal(QCursor::pos())));
}

void MapStatus::describe() {
  const MapFrame& frame = map_.frame();
  scale_->setToolTip(tr("Scale across the middle of the map, which shows %1").arg(extentText(frame)));
  system_->setToolTip(
      tr("Coordinate system of the map: %1").arg(QString::fromStdString(frame.system().name)));
}

void MapStatus::showPointer(client::MapPoint place) { pointer_->setText(placeText(map_.frame(), place)); }

}  // namespace vlclientui::viewer
