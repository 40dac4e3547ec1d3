#pragma once

#include <QAction>
#include <QList>

class QWidget;

namespace vlclientui::viewer {

class MapView;
class ViewerWindow;

/// The actions of the viewer that are not always there to be used.
struct ViewerActions {
  QAction* remove;
  QAction* zoomToService;
  QAction* exportService;
  QAction* clearRectangle;
  QAction* properties;
  QAction* viewPoint;
};

/// Makes the actions of the window, its menus and its tool bar.
/// @param list has the key that removes a service to itself. @param paneToggles shown in the view menu and on
/// the tool bar; each gets a key.
[[nodiscard]] ViewerActions buildActions(ViewerWindow& window, MapView& map, QWidget& list,
                                         const QList<QAction*>& paneToggles);

}  // namespace vlclientui::viewer
