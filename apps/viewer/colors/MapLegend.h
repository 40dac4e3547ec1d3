#pragma once

#include <QObject>
#include <memory>

#include "viewer/colors/ColorsReader.h"
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
  /// Has the words of a service read, unless they are known.
  void learnWords(const ServiceListModel::Row& row);

  const ServiceListModel& services_;
  ServiceList& list_;
  MapView& map_;
  LegendView* view_;
  QAction* toggle_;
  std::weak_ptr<const client::ServiceDrawing> asked_;  ///< whose words are known, or being read
  QString reference_;                                  ///< of the service that they are of
  client::ServiceWords words_;
  ColorsReader reader_;
};

}  // namespace vlclientui::viewer
