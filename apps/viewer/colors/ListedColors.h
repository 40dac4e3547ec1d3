#pragma once

#include "viewer/colors/ColoredServices.h"
#include "viewer/list/ServiceListModel.h"

namespace vlclientui::viewer {

/// The services of the list. It keeps what was chosen.
class ListedColors : public ColoredServices {
  Q_OBJECT

 public:
  explicit ListedColors(ServiceListModel& services, QObject* parent = nullptr);

  [[nodiscard]] std::optional<Service> find(const QString& reference) const override;
  void keep(const QString& reference, const std::string& stretch) override;

 private:
  ServiceListModel& services_;
};

}  // namespace vlclientui::viewer
