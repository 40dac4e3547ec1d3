#include "viewer/tour/Tour.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QToolBar>
#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>

#include "viewer/tour/Person.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;
using person::Astray;
using person::modalWindow;

constexpr int listColumns = 8;
constexpr int settled = 100;  // milliseconds

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void tellOfExport(const fs::path& file) {
  std::cout << "Exported from the samples: " << fs::absolute(file).string() << ", " << fs::file_size(file)
            << " bytes" << std::endl;
}

void expect(bool condition, const std::string& otherwise) {
  if (!condition) throw Astray(otherwise);
}

}  // namespace

Tour::Tour(ViewerWindow& viewer, fs::path folder, fs::path settingsFolder)
    : viewer_(viewer),
      folder_(std::move(folder)),
      emptyFolder_(folder_ / "empty-folder"),
      largeFolder_(folder_ / "large-folder"),
      settingsFile_(settingsFolder / "VLClientUI.VLConfig.Xml"),
      exportedFile_(folder_ / "exported.Tif"),
      canceledFile_(folder_ / "cancelled.Tif") {}

int Tour::run() {
  fs::create_directories(emptyFolder_);
  planFirstLook();
  planBrowsing();
  planInformation();
  planSilentServers();
  planPicking();
  planViewer();
  planProperties();
  planLock();
  planRectangle();
  planRefusals();
  planExport();
  planLargeService();
  planCanceledExport();
  planFilter();
  planEnd();
  runner_.onFailure([this] {
    QWidget* window = QApplication::activeModalWidget();
    savePicture("failed", window != nullptr ? *window : viewer_);
  });
  viewer_.show();
  viewer_.activateWindow();
  const int result = runner_.run();
  std::cout << (result == 0 ? "The tour is over" : "The tour broke off") << "; pictures and documents are in "
            << folder_.string() << std::endl;
  if (result == 0) tellOfExport(exportedFile_);
  return result;
}

QWidget& Tour::dialog() const {
  QWidget* window = modalWindow("Add Vor Lane Connection");
  if (window == nullptr) throw Astray("the add-service window is not open");
  return *window;
}

QAbstractItemView& Tour::list() const {
  for (auto* view : dialog().findChildren<QAbstractItemView*>()) {
    if (view->isVisible() && view->model() != nullptr && view->model()->columnCount() == listColumns) {
      return *view;
    }
  }
  throw Astray("there is no list of services");
}

int Tour::rowOf(const QString& name) const {
  const qsizetype row = person::rowNames(list()).indexOf(name);
  if (row < 0) throw Astray("the list has no " + name.toStdString());
  return static_cast<int>(row);
}

// Runs no events: the next steps would begin in the middle of it.
void Tour::savePicture(const QString& name, QWidget& widget) const {
  const QString file = QDir(QString::fromStdString(folder_.string())).filePath(name + ".png");
  expect(widget.grab().save(file), "cannot write " + file.toStdString());
}

void Tour::pictureOfViewer(const QString& name) {
  runner_.see("the map drawn", [this] { return !viewer_.isDrawing(); });
  picture(name, [this]() -> QWidget& { return viewer_; });
}

void Tour::picture(const QString& name, std::function<QWidget&()> widget) {
  runner_.see("all laid out", [since = std::make_shared<QElapsedTimer>()] {
    if (!since->isValid()) since->start();
    return since->hasExpired(settled);
  });
  runner_.act("picture: " + name + ".png",
              [this, name, widget = std::move(widget)] { savePicture(name, widget()); });
}

void Tour::pictureOfDialog(const QString& name) {
  picture(name, [this]() -> QWidget& { return dialog(); });
}

void Tour::ask(const QString& server) {
  runner_.act("type " + server + " and press Enter", [this, server] {
    auto& box = person::find<QComboBox>(dialog(), "uiTxtBoxServerName");
    person::typeInto(*box.lineEdit(), server);
    person::press(box, Qt::Key_Return);
  });
}

void Tour::seeRows(const QString& what, QStringList Tour::*expected) {
  runner_.see(what, [this, expected] { return person::rowNames(list()) == this->*expected; });
}

void Tour::seeSelected(int count) {
  runner_.see(QString("selected services: %1").arg(count), [this, count] {
    return person::find<QListView>(dialog(), "ListBox").model()->rowCount() == count;
  });
}

// By double click or, every other time, by the keyboard.
void Tour::enterFolder(const QString& name) {
  const bool byKeyboard = name.size() % 2 == 0;
  runner_.act((byKeyboard ? "press Enter on the folder " : "double-click the folder ") + name, [=, this] {
    rowsBefore_ = person::rowNames(list());
    if (byKeyboard) {
      person::clickRow(list(), rowOf(name));
      person::press(list(), Qt::Key_Return);
    } else {
      person::doubleClickRow(list(), rowOf(name));
    }
  });
  runner_.see("what is in " + name, [this] { return person::rowNames(list()) != rowsBefore_; });
}

void Tour::goUp() {
  runner_.act("click the list and press Backspace", [this] {
    person::clickRow(list(), 0);
    person::press(list(), Qt::Key_Backspace);
  });
  seeRows("the folders of the server again", &Tour::rootRows_);
}

void Tour::clickTool(const QString& action) {
  auto& bar = person::find<QToolBar>(viewer_, "ServiceBar");
  person::click(*bar.widgetForAction(viewer_.findChild<QAction*>(action)));
}

void Tour::planFirstLook() {
  runner_.see("the viewer, without services", [this] { return viewer_.isVisible(); });
  picture("viewer-empty", [this]() -> QWidget& { return viewer_; });
  runner_.act("click \"Add services...\"", [this] { clickTool("AddServices"); });
  runner_.see("the folders of 127.0.0.1", [this] {
    rootRows_ = person::rowNames(list());
    return rootRows_.size() > 2;
  });
  pictureOfDialog("add-service-services");
}

void Tour::planBrowsing() {
  enterFolder("Elevation");
  runner_.act("click the first service", [this] { person::clickRow(list(), 0); });
  runner_.see("its title", [this] { return !person::find<QLineEdit>(dialog(), "Desc").text().isEmpty(); });
  pictureOfDialog("add-service-folder");
}

void Tour::planInformation() {
  runner_.act("click \"Properties...\"",
              [this] { person::click(person::find<QPushButton>(dialog(), "Info")); });
  runner_.see("the information of the service", [] { return modalWindow("Service Properties") != nullptr; });
  picture("add-service-information", []() -> QWidget& { return *modalWindow("Service Properties"); });
  runner_.act("press Escape", [] { person::press(*modalWindow("Service Properties"), Qt::Key_Escape); });
  runner_.see("the add-service window again", [this] { return dialog().isEnabled(); });
  goUp();
}

void Tour::planSilentServers() {
  ask("maps.invalid");
  runner_.see("\"(Server not found)\"",
              [this] { return person::rowNames(list()) == QStringList{"(Server not found)"}; });
  pictureOfDialog("add-service-not-found");
  ask(QString::fromStdString(emptyFolder_.string()));
  runner_.see("\"(empty)\"", [this] { return person::rowNames(list()) == QStringList{"(empty)"}; });
  pictureOfDialog("add-service-empty");
  ask("127.0.0.1");
  seeRows("the catalogue again", &Tour::rootRows_);
}

void Tour::planPicking() {
  enterFolder("World");
  runner_.act("double-click the first service", [this] { person::doubleClickRow(list(), 0); });
  seeSelected(1);
  goUp();
  enterFolder("Landcover");
  runner_.act("click the first service, then \"Select\"", [this] {
    person::clickRow(list(), 0);
    person::click(person::find<QPushButton>(dialog(), "SelectButton"));
  });
  seeSelected(2);
  goUp();
  enterFolder("Imagery");
  enterFolder("Valley");
  runner_.act("double-click the mosaic", [this] { person::doubleClickRow(list(), rowOf("Ortho_Mosaic")); });
  seeSelected(3);
  pictureOfDialog("add-service-selected");
  runner_.act("click \"OK\"", [this] { person::click(person::find<QPushButton>(dialog(), "uibtnok")); });
}

void Tour::planViewer() {
  runner_.see("three services with pictures in the viewer", [this] {
    const auto& rows = viewer_.services().rows();
    return rows.size() == 3 && std::all_of(rows.begin(), rows.end(), [](const auto& row) {
             return row.state == ServiceListModel::State::Ready;
           });
  });
  runner_.act("check the documents", [this] { checkDocuments(); });
  pictureOfViewer("viewer-world");
  runner_.act("double-click the land cover to zoom to it",
              [this] { person::doubleClickRow(person::find<QListView>(viewer_, "ServiceList"), 1); });
  runner_.see("the map at the valley", [this] {
    const auto view = person::find<MapView>(viewer_, "MapView").view();
    return view.xMin > 7 && view.xMax < 10;
  });
  pictureOfViewer("viewer");
}

void Tour::planFilter() {
  runner_.act("show the whole world and zoom to its middle", [this] {
    clickTool("WholeWorld");
    auto& map = person::find<MapView>(viewer_, "MapView");
    person::click(map);
    for (int i = 0; i < 6; ++i) person::press(map, Qt::Key_Plus);
  });
  runner_.act("click \"Add services...\" again", [this] { clickTool("AddServices"); });
  seeRows("every folder, the filter being off", &Tour::rootRows_);
  runner_.act("tick \"Only show services available in the current view's extent\"",
              [this] { person::click(person::find<QCheckBox>(dialog(), "Check1")); });
  runner_.see("the folder World alone", [this] { return person::rowNames(list()) == QStringList{"World"}; });
  pictureOfDialog("add-service-filter");
  runner_.act("clear it again", [this] { person::click(person::find<QCheckBox>(dialog(), "Check1")); });
  seeRows("every folder again", &Tour::rootRows_);
  runner_.act("click \"Cancel\"",
              [this] { person::click(person::find<QPushButton>(dialog(), "uibtncancel")); });
  runner_.see("the viewer, with its services",
              [this] { return !QApplication::activeModalWidget() && viewer_.services().rowCount() == 4; });
}

void Tour::planEnd() {
  // A window manager would do this when a dialog has closed.
  runner_.act("go back to the viewer", [this] { viewer_.activateWindow(); });
  runner_.see("the viewer in front", [this] { return viewer_.isActiveWindow(); });
  runner_.act("remove the first service", [this] {
    person::clickRow(person::find<QListView>(viewer_, "ServiceList"), 0);
    person::press(viewer_, Qt::Key_Delete);
  });
  runner_.see("three services left", [this] { return viewer_.services().rowCount() == 3; });
  runner_.act("open the about box", [this] { viewer_.findChild<QAction*>("About")->trigger(); });
  runner_.see("the about box", [] { return modalWindow("About the viewer") != nullptr; });
  picture("viewer-about", []() -> QWidget& { return *modalWindow("About the viewer"); });
  runner_.act("press Escape", [] { person::press(*modalWindow("About the viewer"), Qt::Key_Escape); });
}

// Compares what the host got and what the library saved with the list.
void Tour::checkDocuments() const {
  const std::string selected = contentOf(viewer_.selectedServicesFile());
  for (const auto& row : viewer_.services().rows()) {
    expect(selected.find("<Name>" + row.reference.toStdString() + "</Name>") != std::string::npos,
           "the document of selected services lacks " + row.reference.toStdString());
  }
  const std::string settings = contentOf(settingsFile_);
  expect(settings.find("<ServerName>127.0.0.1</ServerName>") != std::string::npos,
         "the settings file lacks the server: " + settingsFile_.string());
  expect(settings.find("maps.invalid") == std::string::npos,
         "the settings file has a server that never answered");
  fs::copy_file(settingsFile_, folder_ / settingsFile_.filename(), fs::copy_options::overwrite_existing);
}

}  // namespace vlclientui::viewer
