#pragma once

class QMenu;

namespace vlclientui::viewer {

class MapView;
class ServiceListModel;

/// Adds the choice of the map's coordinate system to a menu: degrees, Web Mercator, that of the first
/// service, any by its code. The one in use is checked.
void addSystemMenu(QMenu& menu, MapView& map, const ServiceListModel& services);

}  // namespace vlclientui::viewer
