#include "viewer/window/SystemMenu.h"

#include <QAction>
#include <QActionGroup>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <optional>
#include <string>

#include "client/facade/ServiceDrawing.h"
#include "client/mapping/MapSystem.h"
#include "viewer/list/ServiceListModel.h"
#include "viewer/map/MapView.h"

namespace vlclientui::viewer {
namespace {

QString tr(const char* text) { return MapView::tr(text); }

std::string systemOfFirst(const ServiceListModel& services) {
  for (const auto& row : services.rows()) {
    if (row.service.drawing && row.service.envelope) return row.service.drawing->facts().srsWkt;
  }
  return {};
}

/// The actions of the menu; lives as long as it does.
class SystemMenu : public QObject {
 public:
  SystemMenu(QMenu& menu, MapView& map, const ServiceListModel& services)
      : QObject(&menu), map_(map), services_(services), choice_(new QActionGroup(this)) {
    degrees_ =
        add(menu, "SystemDegrees", tr("&Degrees"), [this] { use(client::degreesCode, client::degreesCode); });
    mercator_ = add(menu, "SystemWebMercator", tr("&Web Mercator"),
                    [this] { use(client::webMercatorCode, client::webMercatorCode); });
    first_ = add(menu, "SystemOfFirst", tr("That of the &first service"),
                 [this] { use(systemOfFirst(services_), tr("that of the first service"), false); });
    other_ = add(menu, "SystemByCode", tr("By &code\u2026"), [this] { ask(); });
    connect(&menu, &QMenu::aboutToShow, this, [this] { showChoice(); });
    showChoice();
  }

 private:
  template <class Work>
  QAction* add(QMenu& menu, const char* name, const QString& text, Work work) {
    QAction* const action = menu.addAction(text);
    action->setObjectName(QLatin1String(name));
    action->setCheckable(true);
    choice_->addAction(action);
    connect(action, &QAction::triggered, this, [this, work] {
      work();
      showChoice();
    });
    return action;
  }

  // That of the first service is followed, whichever comes first.
  void use(const std::string& text, const QString& shown, bool isChosen = true) {
    const auto system = client::mapSystemOf(text);
    if (!system) return tell(tr("\"%1\" is no coordinate system of a map.").arg(shown));
    if (!map_.setSystem(*system)) {
      return tell(tr("No way leads from degrees to %1: the map stays as it is.").arg(shown));
    }
    map_.noteSystemChosen(isChosen);
  }

  void tell(const QString& problem) {
    QMessageBox::warning(map_.window(), tr("Coordinate system of the map"), problem);
  }

  void ask() {
    bool isChosen = false;
    const QString code = QInputDialog::getText(map_.window(), tr("Coordinate system of the map"),
                                               tr("&Code, such as EPSG:2056:"), QLineEdit::Normal,
                                               QString::fromStdString(map_.frame().system().id), &isChosen);
    if (isChosen) use(code.toStdString(), code);
  }

  void showChoice() {
    const client::MapSystem& system = map_.frame().system();
    const std::string first = systemOfFirst(services_);
    first_->setEnabled(!first.empty());
    QAction* const shown = system.id == client::degreesCode       ? degrees_
                           : system.id == client::webMercatorCode ? mercator_
                           : system.wkt == first                  ? first_
                                                                  : other_;
    shown->setChecked(true);
  }

  MapView& map_;
  const ServiceListModel& services_;
  QActionGroup* choice_;
  QAction* degrees_ = nullptr;
  QAction* mercator_ = nullptr;
  QAction* first_ = nullptr;
  QAction* other_ = nullptr;
};

}  // namespace

void addSystemMenu(QMenu& menu, MapView& map, const ServiceListModel& services) {
  QMenu* const systems = menu.addMenu(tr("&Coordinate system"));
  systems->setObjectName("CoordinateSystem");
  new SystemMenu(*systems, map, services);
}

}  // namespace vlclientui::viewer
