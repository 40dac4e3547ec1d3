#pragma once

#include <QObject>

#include "viewer/list/ServiceListModel.h"
#include "viewer/map/MapView.h"

namespace vlclientui::viewer {

/// Brings the map to the first services of a list that was empty: into the system of the top one, unless a
/// person has chosen another system, and to its place. Waits until that is read; where a person moves the map
/// meanwhile, or a project shows its own place, nothing is moved.
class FirstServices : public QObject {
  Q_OBJECT

 public:
  FirstServices(const ServiceListModel& services, MapView& map, QObject* parent = nullptr);

 private:
  void begin(int added);
  void go();
  void show(const ServiceListModel::Row& row);

  const ServiceListModel& services_;
  MapView& map_;
  bool isWaiting_ = false;
};

}  // namespace vlclientui::viewer
