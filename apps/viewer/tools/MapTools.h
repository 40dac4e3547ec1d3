#pragma once

#include <QList>
#include <QObject>
#include <QTimer>

#include "viewer/list/ServiceList.h"
#include "viewer/map/MapView.h"
#include "viewer/tools/ViewHistory.h"

class QAction;

namespace vlclientui::viewer {

/// The tools that move the map: zoom box, previous and next view, native pixels. Each is an action that is
/// enabled where it does something.
class MapTools : public QObject {
  Q_OBJECT

 public:
  MapTools(MapView& map, ServiceList& list, const ServiceListModel& services, QObject* parent = nullptr);

  /// Groups of the view menu.
  [[nodiscard]] QList<QAction*> zooms() const { return {zoomIn_, zoomOut_, zoomBox_}; }
  [[nodiscard]] QList<QAction*> views() const { return {previous_, next_}; }
  [[nodiscard]] QAction& nativePixels() const { return *nativePixels_; }
  [[nodiscard]] QList<QAction*> onToolBar() const { return {zoomBox_, previous_, next_}; }
  /// Of the map's context menu, above its own actions.
  void addToMenu(const QList<QAction*>& actions) { ofOthers_ += actions; }
  /// Where the context menu was opened, in coordinates of the map.
  [[nodiscard]] client::MapPoint menuPlace() const { return menuPlace_; }

 private:
  QAction* make(const char* name, const QString& text, const QKeySequence& key, const QIcon& icon);
  void makeZooms();
  void makeViews();
  void settle();
  void goBack();
  void goOn();
  void showNativePixels();
  /// Null for none.
  [[nodiscard]] const ServiceListModel::Row* picked() const;
  void enable();
  void openMenu(client::MapPoint place, QPoint onScreen);

  MapView& map_;
  ServiceList& list_;
  const ServiceListModel& services_;
  ViewHistory history_;
  QTimer atRest_;  ///< several moves together are one view
  bool isGoing_ = false;
  client::MapPoint menuPlace_;
  QList<QAction*> ofOthers_;
  QAction* zoomIn_ = nullptr;
  QAction* zoomOut_ = nullptr;
  QAction* zoomBox_ = nullptr;
  QAction* previous_ = nullptr;
  QAction* next_ = nullptr;
  QAction* nativePixels_ = nullptr;
  QAction* copyPlace_ = nullptr;
};

}  // namespace vlclientui::viewer
