#include "apps/viewer/EveryWindowFixture.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QThread>
#include <memory>

#include "contracts/Silence.h"
#include "viewer/colors/ColorsWindow.h"
#include "viewer/export/ExportResult.h"
#include "viewer/waiting/ProgressWindow.h"

namespace vlclientui::test {

using viewer::person::find;

namespace {
constexpr int settled = 120;  // milliseconds
}  // namespace

void EveryWindowFixture::visitEveryWindow(const Look& look) {
  look_ = look;
  pickOverlaps();
  visitMainWindow();
  visitColors();
  visitAddServices();
  visitProperties();
  visitExport();
  visitSmallOnes();
  visitMessages();
  visitConnections();
  run();
}

std::vector<QWidget*> EveryWindowFixture::shownIn(const QWidget& window) {
  std::vector<QWidget*> shown;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    if (widget->isVisible() && widget->window() == &window) shown.push_back(widget);
  }
  return shown;
}

void EveryWindowFixture::lookAt(const QString& name, const std::function<QWidget*()>& window) {
  // Taking a picture runs no events, or the next steps would start in the middle of it.
  see(name + " laid out", [since = std::make_shared<QElapsedTimer>()] {
    if (!since->isValid()) since->start();
    return since->hasExpired(settled);
  });
  act([this, name, window] {
    QWidget* const found = window();
    ASSERT_NE(found, nullptr) << name.toStdString();
    look_(*found, name);
    keepPicture(*found, "window-" + name);
  });
}

void EveryWindowFixture::lookAtModal(const QString& name) {
  lookAt(name, [] { return QApplication::activeModalWidget(); });
}

void EveryWindowFixture::leave() {
  act([] { modalWindow().close(); });
  seeNoWindow();
}

void EveryWindowFixture::visitMainWindow() {
  const auto main = [this]() -> QWidget* { return window_.get(); };
  lookAt("viewer", main);
  for (const char* const name : {"PropertiesDock", "ViewPointDock", "MetadataDock", "ValuesDock"}) {
    act([this, name] {
      dock(name).toggleViewAction()->trigger();
      dock(name).raise();
    });
    lookAt(QString("viewer-") + name, main);
    act([this, name] { dock(name).close(); });
  }
  act([this] {
    for (const char* const name : {"PropertiesDock", "MetadataDock", "ViewPointDock"}) open(name);
  });
  lookAt("viewer-all-panes", main);
  act([this] {
    for (const char* const name : {"PropertiesDock", "MetadataDock", "ViewPointDock"}) dock(name).close();
  });
}

void EveryWindowFixture::visitColors() {
  const auto colors = [this] { return window_->findChild<viewer::ColorsWindow*>("ColorsWindow"); };
  act([this] { action("ShowColors").trigger(); });
  see("the colors", [colors] { return colors()->isVisible() && colors()->draft(); });
  lookAt("colors", [colors]() -> QWidget* { return colors(); });
  act([colors] { colors()->close(); });
}

void EveryWindowFixture::visitAddServices() {
  act([this] { action("AddServices").trigger(); });
  see("the services", [] { return find<QAbstractItemView>(modalWindow(), "").model()->rowCount() > 0; });
  lookAtModal("add-services");
  const auto list = []() -> QAbstractItemView& { return find<QAbstractItemView>(modalWindow(), ""); };
  act([list] { viewer::person::doubleClickRow(list(), 0); });
  act([list] { viewer::person::clickRow(list(), 0); });
  act([] { click(modalWindow(), "Info"); });
  see("the information", [] { return viewer::person::modalWindow("Service Properties") != nullptr; });
  lookAtModal("information");
  act([] { modalWindow().close(); });
  see("the services again", [] { return modalWindow().findChild<QPushButton*>("Info") != nullptr; });
  leave();
}

void EveryWindowFixture::goToTab(const char* bar, int tab) {
  act([bar, tab] {
    auto& tabs = find<QTabBar>(modalWindow(), bar);
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(tab).center());
  });
}

void EveryWindowFixture::goToNode(int node) {
  act([node] {
    auto& tree = find<QTreeWidget>(modalWindow(), "uiTreeView");
    const QRect place = tree.visualItemRect(tree.topLevelItem(node));
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place.center());
  });
}

void EveryWindowFixture::visitProperties() {
  openPropertiesWindow();
  lookAtModal("properties");
  goToTab("myTab", 1);
  see("the metadata", [] { return find<QTreeWidget>(modalWindow(), "uiTreeView").topLevelItemCount() == 4; });
  for (int node = 0; node < 4; ++node) {
    goToNode(node);
    lookAtModal("metadata-" + QString::number(node));
  }
  see("the sources", [] { return find<QComboBox>(modalWindow(), "RasterList").count() == 3; });
  lookAtModal("metadata-sources");
  leave();
  act([this] { action("ViewPointDialog").trigger(); });
  see("the viewpoint", [] { return find<QLineEdit>(modalWindow(), "uiTxtBoxX").isVisible(); });
  lookAtModal("viewpoint");
  leave();
}

void EveryWindowFixture::visitExport() {
  openExport();
  lookAtModal("export");
  refuseToExport();
  lookAtModal("export-notice");
  act([] {
    fill("uiTxtCols", "999999");
    fill("uiTxtRows", "0");
    fill("uiTxtBottom", "99999999");
    fill("uiTxtLeft", "99999999");
  });
  seeExportWindowInFront();
  lookAtModal("export-complaints");
  leave();
}

/// OK does nothing for a name that no file can have.
void EveryWindowFixture::refuseToExport() {
  act([this] {
    fill("uiTxtFileName", file(std::string(300, 'n') + ".Tif").string());
    click(exportWindow(), "Command1");
  });
  see("why", [] { return find<QLabel>(exportWindow(), "formNotice").isVisible(); });
}

void EveryWindowFixture::visitSmallOnes() {
  act([this] {
    const viewer::ExportOutcome outcome{.request = "<GetImage><Cols>1</Cols></GetImage>",
                                        .attempt = viewer::PickedService::Attempt::Failed,
                                        .file = file("a.Tif"),
                                        .problem = "The disk is full."};
    viewer::ExportResult result(outcome, window_.get());
    result.exec();
  });
  see("the result", [] { return window("Not exported").isVisible(); });
  lookAtModal("export-result");
  leave();
  act([this] {
    viewer::ProgressWindow progress("Writing the image of Terrain", window_.get());
    progress.run([&progress] {
      while (progress.report(0.5)) QThread::msleep(5);
      return false;
    });
  });
  see("the progress", [] { return window("Exporting").isVisible(); });
  lookAtModal("progress");
  leave();
  act([this] { window_->showAbout(); });
  see("the box", [] { return window("About the viewer").isVisible(); });
  lookAtModal("about");
  leave();
}

void EveryWindowFixture::visitConnections() {
  act([this] { action("Connections").trigger(); });
  see("the connections", [] { return window("Connections").isActiveWindow(); });
  lookAtModal("connections");
  act([] { click(window("Connections"), "AddConnection"); });
  see("a new connection", [] { return window("Add connection").isActiveWindow(); });
  act([] {
    auto& way = find<QComboBox>(window("Add connection"), "ConnectionSignIn");
    viewer::person::choose(way, "Token in a parameter");
    click(window("Add connection"), "SaveConnection");
  });
  see("what is missing",
      [] { return find<QLabel>(window("Add connection"), "ConnectionProblem").isVisible(); });
  lookAtModal("connection");
  act([] { viewer::person::press(window("Add connection"), Qt::Key_Escape); });
  see("the connections again", [] {
    window("Connections").activateWindow();
    return window("Connections").isActiveWindow();
  });
  leave();
}

void EveryWindowFixture::visitMessages() {
  act([this] {
    endSilently("no service is picked", "ImageServicesControl::showInformation");
    endSilently("'" + std::string(120, 'n') + "' is too long a name for " + std::string(90, 'm'),
                "Page::save");
    action("SilentEnds").trigger();
  });
  see("the messages", [] { return window("Messages").isActiveWindow(); });
  lookAtModal("messages");
  leave();
}

}  // namespace vlclientui::test
