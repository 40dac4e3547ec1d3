#pragma once

#include <QAction>
#include <QList>

class QMenu;
class QSettings;

namespace vlclientui::viewer {

class ColorsDesk;
class MapTools;
class MapView;
class ServiceList;
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

/// What the actions act on.
struct ActedOn {
  MapView& map;
  MapTools& tools;                 ///< in the view menu and on the tool bar
  ColorsDesk& colors;              ///< in the menus, and on the tool bar
  ServiceList& list;               ///< has the keys of its own actions to itself
  QList<QAction*> paneToggles;     ///< shown in the view menu and on the tool bar; each gets a key
  QAction& valuesToggle;           ///< in the view menu and on the tool bar
  QAction& handedOverToggle;       ///< in the view menu
  QList<QAction*> projectActions;  ///< in the file menu
  QAction& smallCopies;            ///< in the view menu
  QMenu& recentProjects;
  QMenu& recentServers;
  QSettings& settings;  ///< outlive the window's menus
};

/// Makes the actions of the window, its menus and its tool bar.
[[nodiscard]] ViewerActions buildActions(ViewerWindow& window, const ActedOn& parts);

}  // namespace vlclientui::viewer
