#pragma once

#include <QObject>

#include "viewer/colors/ColorsWindow.h"
#include "viewer/colors/ListedColors.h"
#include "viewer/colors/MapLegend.h"

class QAction;

namespace vlclientui::viewer {

/// The colors of the picked service: the window that changes them, and the legend on the map.
class ColorsDesk : public QObject {
  Q_OBJECT

 public:
  /// @param window that the colors window stands before.
  ColorsDesk(ServiceListModel& services, ServiceList& list, MapView& map, QWidget& window);

  /// Opens the window; enabled while a service is picked.
  [[nodiscard]] QAction& change() const { return *change_; }
  /// Shows and hides the legend.
  [[nodiscard]] QAction& legend() const { return legend_->toggle(); }

 private:
  void follow();
  void open();
  /// Empty for none.
  [[nodiscard]] QString picked() const;

  const ServiceListModel& services_;
  ServiceList& list_;
  ColorsWindow* window_;
  MapLegend* legend_;
  QAction* change_;
};

}  // namespace vlclientui::viewer
