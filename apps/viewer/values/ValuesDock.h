#pragma once

#include <QDockWidget>

#include "viewer/values/ValuesPane.h"

class QAction;

namespace vlclientui::viewer {

/// The values pane at the side of the main window, closed at first.
class ValuesDock : public QDockWidget {
  Q_OBJECT

 public:
  ValuesDock(const ServiceListModel& services, MapView& map, QWidget* window);

  /// Opens and closes it.
  [[nodiscard]] QAction& toggle() const { return *toggleViewAction(); }
  /// Opens it with the values of a place, in coordinates of the map.
  void showAt(client::MapPoint place);

 private:
  ValuesPane* pane_;
};

}  // namespace vlclientui::viewer
