#include "viewer/colors/ColorsDesk.h"

#include <QAction>

#include "viewer/colors/ColorsIcon.h"

namespace vlclientui::viewer {
ColorsDesk::ColorsDesk(ServiceListModel& services, ServiceList& list, MapView& map, QWidget& window)
    : QObject(&window),
      services_(services),
      list_(list),
      window_(new ColorsWindow(*new ListedColors(services, this), &window)),
      legend_(new MapLegend(services, list, map)),
      change_(new QAction(colorsIcon(), tr("&Colors\u2026"), this)) {
  change_->setObjectName("ShowColors");
  change_->setShortcut(Qt::CTRL | Qt::Key_L);
  change_->setToolTip(tr("Choose bands, contrast and colors of the picked service"));
  connect(change_, &QAction::triggered, this, &ColorsDesk::open);
  connect(list_.selectionModel(), &QItemSelectionModel::currentChanged, this, &ColorsDesk::follow);
  connect(&services_, &QAbstractItemModel::dataChanged, this,
          [this] { change_->setEnabled(!picked().isEmpty()); });
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &ColorsDesk::follow, Qt::QueuedConnection);
  follow();
}

QString ColorsDesk::picked() const {
  const int row = list_.currentIndex().row();
  const bool isThere = row >= 0 && row < services_.rowCount();
  return isThere ? services_.rows()[static_cast<std::size_t>(row)].reference : QString();
}

void ColorsDesk::follow() {
  change_->setEnabled(!picked().isEmpty());
  if (window_->isVisible()) window_->showService(picked());
}

void ColorsDesk::open() {
  window_->showService(picked());
  window_->show();
  window_->raise();
  window_->activateWindow();
}

}  // namespace vlclientui::viewer
