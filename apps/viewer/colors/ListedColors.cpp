#include "viewer/colors/ListedColors.h"

namespace vlclientui::viewer {

ListedColors::ListedColors(ServiceListModel& services, QObject* parent)
    : ColoredServices(parent), services_(services) {
  connect(&services_, &QAbstractItemModel::dataChanged, this, &ColoredServices::changed);
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &ColoredServices::changed);
}

std::optional<ColoredServices::Service> ListedColors::find(const QString& reference) const {
  const int row = reference.isEmpty() ? -1 : services_.rowOf(reference);
  if (row < 0) return std::nullopt;
  const ServiceListModel::Row& listed = services_.rows()[static_cast<std::size_t>(row)];
  const bool isUnreadable = listed.state == ServiceListModel::State::Unreadable;
  return Service{listed.name(), listed.service.drawing, isUnreadable, listed.shown.stretch};
}

void ListedColors::keep(const QString& reference, const std::string& stretch) {
  if (const int row = services_.rowOf(reference); row >= 0) services_.keepStretch(row, stretch);
}

}  // namespace vlclientui::viewer
