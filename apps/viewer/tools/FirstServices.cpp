#include "viewer/tools/FirstServices.h"

#include "client/mapping/MapSystem.h"

namespace vlclientui::viewer {

FirstServices::FirstServices(const ServiceListModel& services, MapView& map, QObject* parent)
    : QObject(parent), services_(services), map_(map) {
  connect(&services_, &QAbstractItemModel::rowsInserted, this,
          [this](const QModelIndex&, int first, int last) { begin(last - first + 1); });
  connect(&services_, &QAbstractItemModel::dataChanged, this, &FirstServices::go);
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &FirstServices::go);
  connect(&map_, &MapView::moved, this, [this] { isWaiting_ = false; });
}

void FirstServices::begin(int added) {
  if (services_.rowCount() == added) isWaiting_ = true;
}

// Those that have no place, or cannot be read, do not count.
void FirstServices::go() {
  if (!isWaiting_) return;
  for (const auto& row : services_.rows()) {
    if (row.state == ServiceListModel::State::Loading && !row.service.drawing) return;
    if (row.service.envelope && row.service.drawing) return show(row);
  }
  isWaiting_ = false;
}

void FirstServices::show(const ServiceListModel::Row& row) {
  isWaiting_ = false;
  if (!map_.isSystemChosen()) {
    if (const auto system = client::mapSystemOf(row.service.drawing->facts().srsWkt)) map_.setSystem(*system);
  }
  map_.showExtent(*row.service.envelope);
}

}  // namespace vlclientui::viewer
