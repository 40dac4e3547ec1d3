#pragma once

#include <QObject>

#include "viewer/list/ServiceList.h"
#include "viewer/map/MapView.h"

class QAction;

namespace vlclientui::viewer {

class LegendView;

/// The legend of the picked service in the upper left corner of the map, where that shows the service.
class MapLegend : public QObject {
  Q_OBJECT

 public:
  MapLegend(const ServiceListModel& services, ServiceList& list, MapView& map);

  /// Shows and hides it.
  [[nodiscard]] QAction& toggle() const { return *toggle_; }

 private:
  void follow();

  const ServiceListModel& services_;
  ServiceList& list_;
  MapView& map_;
  LegendView* view_;
  QAction* toggle_;
};

}  // namespace vlclientui::viewer
