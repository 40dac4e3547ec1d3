#include "viewer/tools/MapTools.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include "viewer/map/PlaceText.h"
#include "viewer/tools/NativePixels.h"
#include "viewer/tools/ToolPictures.h"

namespace vlclientui::viewer {
namespace {

constexpr int rest = 400;  // milliseconds without a move

}  // namespace

MapTools::MapTools(MapView& map, ServiceList& list, const ServiceListModel& services, QObject* parent)
    : QObject(parent), map_(map), list_(list), services_(services) {
  makeZooms();
  makeViews();
  atRest_.setSingleShot(true);
  atRest_.setInterval(rest);
  connect(&atRest_, &QTimer::timeout, this, &MapTools::settle);
  connect(&map_, &MapView::moved, this, [this] {
    if (!isGoing_) atRest_.start();
    enable();
  });
  connect(&map_, &MapView::menuWanted, this, &MapTools::openMenu);
  connect(&services_, &QAbstractItemModel::dataChanged, this, &MapTools::enable);
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &MapTools::enable);
  connect(list_.selectionModel(), &QItemSelectionModel::currentChanged, this, &MapTools::enable);
  enable();
}

QAction* MapTools::make(const char* name, const QString& text, const QKeySequence& key, const QIcon& icon) {
  auto* const action = new QAction(icon, text, this);
  action->setObjectName(QLatin1String(name));
  action->setShortcut(key);
  return action;
}

void MapTools::makeZooms() {
  zoomIn_ = make("ZoomIn", tr("Zoom &in"), QKeySequence::ZoomIn, zoomInIcon());
  connect(zoomIn_, &QAction::triggered, &map_, &MapView::zoomIn);
  zoomOut_ = make("ZoomOut", tr("Zoom &out"), QKeySequence::ZoomOut, zoomOutIcon());
  connect(zoomOut_, &QAction::triggered, &map_, &MapView::zoomOut);
  zoomBox_ = make("ZoomBox", tr("Zoom &box"), Qt::CTRL | Qt::Key_B, zoomBoxIcon());
  zoomBox_->setToolTip(tr("Drag a box on the map to zoom to it; with the Shift key at any time"));
  zoomBox_->setCheckable(true);
  connect(zoomBox_, &QAction::toggled, &map_, &MapView::setZoomBox);
  connect(&map_, &MapView::zoomBoxEnded, zoomBox_, [action = zoomBox_] { action->setChecked(false); });
  nativePixels_ = make("NativePixels", tr("&Native pixels"), Qt::CTRL | Qt::Key_2, nativePixelsIcon());
  nativePixels_->setToolTip(tr("Show the picked service pixel by pixel"));
  connect(nativePixels_, &QAction::triggered, this, &MapTools::showNativePixels);
}

void MapTools::makeViews() {
  previous_ = make("PreviousView", tr("Pre&vious view"), Qt::ALT | Qt::Key_Left, previousIcon());
  previous_->setToolTip(tr("What the map showed before"));
  connect(previous_, &QAction::triggered, this, &MapTools::goBack);
  next_ = make("NextView", tr("Ne&xt view"), Qt::ALT | Qt::Key_Right, nextIcon());
  next_->setToolTip(tr("What the map showed before going back"));
  connect(next_, &QAction::triggered, this, &MapTools::goOn);
  copyPlace_ = make("CopyPlace", tr("&Copy coordinates"), {}, {});
  connect(copyPlace_, &QAction::triggered, this,
          [this] { QGuiApplication::clipboard()->setText(placeText(map_.frame(), menuPlace_)); });
}

void MapTools::settle() {
  atRest_.stop();
  history_.note(map_.frame());
  enable();
}

void MapTools::goBack() {
  settle();
  if (!history_.hasPrevious()) return;
  isGoing_ = true;
  map_.showFrame(history_.previous());
  isGoing_ = false;
  enable();
}

void MapTools::goOn() {
  settle();
  if (!history_.hasNext()) return;
  isGoing_ = true;
  map_.showFrame(history_.next());
  isGoing_ = false;
  enable();
}

const ServiceListModel::Row* MapTools::picked() const {
  const int row = list_.currentIndex().row();
  return row < 0 || row >= services_.rowCount() ? nullptr : &services_.rows()[static_cast<std::size_t>(row)];
}

void MapTools::showNativePixels() {
  const auto* const row = picked();
  if (row == nullptr || !row->service.drawing) return;
  const auto place = nativePlace(map_.frame(), row->service.drawing->facts(), map_.devicePixelRatioF());
  if (place) map_.showPlace(place->middle, place->pixel);
}

// A move that has not come to rest yet is one to go back from.
void MapTools::enable() {
  previous_->setEnabled(history_.hasPrevious() || (atRest_.isActive() && history_.isBegun()));
  next_->setEnabled(history_.hasNext() && !atRest_.isActive());
  const auto* const row = picked();
  nativePixels_->setEnabled(row != nullptr && row->service.drawing && row->service.envelope);
}

void MapTools::openMenu(client::MapPoint place, QPoint onScreen) {
  menuPlace_ = place;
  auto* const menu = new QMenu(&map_);
  menu->setObjectName("MapMenu");
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addActions(ofOthers_);
  menu->addSeparator();
  menu->addAction(nativePixels_);
  menu->addSeparator();
  menu->addActions(views());
  menu->addSeparator();
  menu->addAction(copyPlace_);
  menu->popup(onScreen);
}

}  // namespace vlclientui::viewer
