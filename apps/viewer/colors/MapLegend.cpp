#include "viewer/colors/MapLegend.h"

#include <QAction>

#include "viewer/colors/LegendView.h"

namespace vlclientui::viewer {
namespace {

constexpr int corner = 8;  // pixels from the map's edges

}  // namespace

MapLegend::MapLegend(const ServiceListModel& services, ServiceList& list, MapView& map)
    : QObject(&map),
      services_(services),
      list_(list),
      map_(map),
      view_(new LegendView(&map)),
      toggle_(new QAction(tr("L&egend"), this)) {
  toggle_->setObjectName("ShowLegend");
  toggle_->setCheckable(true);
  toggle_->setChecked(true);
  toggle_->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_L);
  toggle_->setToolTip(tr("Show or hide what the colors of the picked service mean"));
  // Clicks and drags are the map's.
  view_->setAttribute(Qt::WA_TransparentForMouseEvents);
  view_->hide();
  connect(toggle_, &QAction::toggled, this, &MapLegend::follow);
  connect(&reader_, &ColorsReader::wordsRead, this, [this](const client::ServiceWords& words) {
    words_ = words;
    follow();
  });
  connect(&map_, &MapView::layersChanged, this, &MapLegend::follow);
  connect(&services_, &QAbstractItemModel::dataChanged, this, &MapLegend::follow);
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &MapLegend::follow);
  connect(list_.selectionModel(), &QItemSelectionModel::currentChanged, this, &MapLegend::follow);
}

void MapLegend::follow() {
  const int number = list_.currentIndex().row();
  const bool isThere = number >= 0 && number < services_.rowCount() && toggle_->isChecked();
  const auto* const row = isThere ? &services_.rows()[static_cast<std::size_t>(number)] : nullptr;
  const auto stretch = row != nullptr && row->shown.isVisible ? map_.stretch(row->reference) : nullptr;
  view_->setVisible(stretch != nullptr);
  if (!stretch) return;
  learnWords(*row);
  view_->showLines(row->name(), legendOf(*stretch, words_));
  view_->setGeometry(QRect(QPoint(corner, corner), view_->sizeHint()));
}

// Numbers stand for the names until these are there; of a service that is drawn anew the former ones do.
void MapLegend::learnWords(const ServiceListModel::Row& row) {
  if (row.service.drawing == nullptr || asked_.lock() == row.service.drawing) return;
  if (reference_ != row.reference) words_ = {};
  reference_ = row.reference;
  asked_ = row.service.drawing;
  reader_.readWords(row.service.drawing);
}

}  // namespace vlclientui::viewer
