#pragma once

#include <QStackedWidget>

#include "viewer/list/ServiceList.h"

namespace vlclientui::viewer {

/// The list of services, or, while there is none, what to do about that.
class ServicePane : public QStackedWidget {
  Q_OBJECT

 public:
  explicit ServicePane(ServiceListModel& services, QWidget* parent = nullptr);

  [[nodiscard]] ServiceList& list() const { return *list_; }

 private:
  void showWhatIsThere();

  const ServiceListModel& services_;
  ServiceList* list_;
};

}  // namespace vlclientui::viewer
