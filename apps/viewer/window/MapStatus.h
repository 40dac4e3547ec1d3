#pragma once

#include <QObject>
#include <QTimer>

#include "client/mapping/MapPoint.h"

class QLabel;
class QStatusBar;

namespace vlclientui::viewer {

class MapView;

/// Tells in a status bar the place under the pointer, the map's scale and its system. Lives as long as the
/// bar.
class MapStatus : public QObject {
  Q_OBJECT

 public:
  MapStatus(const MapView& map, QStatusBar& bar);

 private:
  void showView();
  void describe();
  void showPointer(client::MapPoint place);

  const MapView& map_;
  QLabel* pointer_;
  QLabel* scale_;
  QLabel* system_;
  QTimer atRest_;  ///< tool tips cost more than a move of the mouse may
};

}  // namespace vlclientui::viewer
