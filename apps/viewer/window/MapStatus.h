#pragma once

#include <QObject>
#include <QString>

#include "client/mapping/MapPoint.h"

class QLabel;
class QStatusBar;

namespace vlclientui::viewer {

class MapView;

/// Tells in a status bar what the map shows, its scale, and the place under the pointer. Lives as long as the
/// bar.
class MapStatus : public QObject {
  Q_OBJECT

 public:
  MapStatus(const MapView& map, QStatusBar& bar);

 private:
  void showView();
  void showPointer(client::MapPoint place);
  [[nodiscard]] QString scaleText() const;

  const MapView& map_;
  QLabel* pointer_;
  QLabel* view_;
};

}  // namespace vlclientui::viewer
