#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <fstream>

#include "client/facade/CatalogueImageService.h"
#include "documents/NumberText.h"
#include "viewer/tour/Person.h"
#include "viewer/tour/Tour.h"

// The part of the tour that exports: a large image, canceled half way, and a small one, checked pixel by
// pixel.

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;
using client::CatalogueImageService;
using person::Astray;
using person::modalWindow;

constexpr const char* exportWindowTitle = "Export Image Properties";
constexpr const char* geoid = "ImageService://127.0.0.1/World/EGM96_Geoid";
constexpr int geoidRow = 2;
constexpr int mosaicRow = 0;
constexpr int largeRow = 0;

// Pixels of the geoid as they are, a quarter of a degree wide.
constexpr client::Bounds extent{-100.125, -39.875, 99.875, 60.125};
constexpr int columnTotal = 800;
constexpr int rowTotal = 400;

void expect(bool condition, const std::string& otherwise) {
  if (!condition) throw Astray(otherwise);
}

QWidget& window(const QString& title) {
  QWidget* found = modalWindow(title);
  if (found == nullptr) throw Astray("the window " + title.toStdString() + " is not open");
  return *found;
}

QString native(const fs::path& file) { return QString::fromStdString(fs::absolute(file).string()); }

}  // namespace

QString Tour::textOf(const QString& box) const {
  return person::find<QLineEdit>(window(exportWindowTitle), box).text();
}

double Tour::numberIn(const QString& box) const {
  return textToDouble(textOf(box).toStdString(), viewer_.host().platform->system->localeFormat());
}

void Tour::fillNumber(const QString& box, double number) {
  fill(box, QString::fromStdString(doubleToText(number, viewer_.host().platform->system->localeFormat())));
}

void Tour::openExportWindow(int service) {
  runner_.act(QString("pick service %1 and click \"Export...\"").arg(service + 1), [this, service] {
    person::clickRow(person::find<QListView>(viewer_, "ServiceList"), service);
    clickTool("ExportService");
  });
  runner_.see("the export window, filled from the service",
              [this] { return !textOf("uiTxtLeft").isEmpty() && !textOf("uiTxtCols").isEmpty(); });
}

// A window manager would do this when a popup or a message has closed.
void Tour::bringToFront() {
  runner_.see("the export window in front", [] {
    window(exportWindowTitle).activateWindow();
    return window(exportWindowTitle).isActiveWindow();
  });
}

void Tour::chooseIn(const QString& list, const QString& entry) {
  runner_.act("choose \"" + entry + "\"", [list, entry] {
    person::choose(person::find<QComboBox>(window(exportWindowTitle), list), entry);
  });
  bringToFront();
}

void Tour::fill(const QString& box, const QString& text) {
  runner_.act("type " + text + " into " + box + " and press Tab", [box, text] {
    auto& edit = person::find<QLineEdit>(window(exportWindowTitle), box);
    person::typeInto(edit, text);
    person::press(edit, Qt::Key_Tab);
  });
}

void Tour::answer(const QString& title, const QString& part, const QString& pictureName) {
  runner_.see("the message \"" + part + "\"",
              [title, part] { return dynamic_cast<QMessageBox&>(window(title)).text().contains(part); });
  picture(pictureName, [title]() -> QWidget& { return window(title); });
  runner_.act("press Enter", [title] { person::press(window(title), Qt::Key_Return); });
}

void Tour::clickIn(const QString& title, const QString& button) {
  runner_.act("click " + button,
              [title, button] { person::click(person::find<QPushButton>(window(title), button)); });
}

void Tour::planRectangle() {
  runner_.act("draw a rectangle on the map", [this] {
    clickTool("DrawRectangle");
    person::drag(person::find<MapView>(viewer_, "MapView"), {0.4, 0.4}, {0.6, 0.6});
  });
  runner_.see("the rectangle, and the map to be moved again", [this] {
    return person::find<MapView>(viewer_, "MapView").rectangle().has_value() &&
           !viewer_.findChild<QAction*>("DrawRectangle")->isChecked();
  });
  pictureOfViewer("viewer-rectangle");
  openExportWindow(mosaicRow);
  chooseIn("MainCombo", "Current map view");
  runner_.see("the edges of the map in the service's coordinates", [this] {
    const double left = numberIn("uiTxtLeft");
    return left > 400'000 && left < 500'000 && numberIn("uiTxtRight") > left;
  });
  chooseIn("MainCombo", "Drawn rectangle");
  picture("export-window", []() -> QWidget& { return window(exportWindowTitle); });
  runner_.act("press Escape", [] { person::press(window(exportWindowTitle), Qt::Key_Escape); });
  runner_.see("the viewer", [] { return QApplication::activeModalWidget() == nullptr; });
}

void Tour::planRefusals() {
  const auto exportWindow = []() -> QWidget& { return window(exportWindowTitle); };
  openExportWindow(geoidRow);
  chooseIn("MainCombo", "Default Extent of Image Service");
  fill("uiTxtCols", "wide");
  answer("Export Properties", "Cannot enter characters", "export-refusal");
  bringToFront();
  runner_.see("the number that stood there", [this] { return textOf("uiTxtCols") == "1000"; });
  fill("uiTxtCols", "5000");
  picture("export-complaint", exportWindow);
  clickIn(exportWindowTitle, "Command1");
  answer("Warning", "Number of columns cannot be more than the maximum", "export-warning");
  bringToFront();
}

void Tour::planExport() {
  for (const auto& [box, value] : {std::pair{"uiTxtCols", columnTotal * 1.0},
                                   {"uiTxtRows", rowTotal * 1.0},
                                   {"uiTxtLeft", extent.xMin},
                                   {"uiTxtRight", extent.xMax},
                                   {"uiTxtTop", extent.yMax},
                                   {"uiTxtBottom", extent.yMin}}) {
    fillNumber(box, value);
  }
  runner_.see("the pixel size of the source",
              [this] { return numberIn("uiTxtGSDX") == 0.25 && numberIn("uiTxtGSDY") == 0.25; });
  chooseIn("FormatCombo", "TIFF-LZ77");
  fill("uiTxtFileName", native(exportedFile_));
  picture("export-filled", []() -> QWidget& { return window(exportWindowTitle); });
  runner_.act("lay another file in its place", [this] { std::ofstream(exportedFile_) << "an earlier file"; });
  clickIn(exportWindowTitle, "Command1");
  answer("Overwrite file", "already exists. Overwrite file?", "export-overwrite");
  runner_.see("what came of it", [] { return modalWindow("Exported") != nullptr; });
  picture("export-result", []() -> QWidget& { return window("Exported"); });
  clickIn("Exported", "AddToMap");
  runner_.see("the exported image on the map", [this] {
    const auto& rows = viewer_.services().rows();
    return rows.size() == 4 && rows.front().state == ServiceListModel::State::Ready;
  });
  runner_.act("hold the exported file against the service", [this] { checkExportedFile(); });
  runner_.act("zoom to it", [this] { clickTool("ZoomToService"); });
  pictureOfViewer("viewer-exported");
}

// What is fine here and wide there makes a service without a limit of columns.
void Tour::planLargeService() {
  runner_.act("define a large mosaic", [this] { defineLargeMosaic(); });
  runner_.act("click \"Add services...\"", [this] { clickTool("AddServices"); });
  seeRows("the folders of the catalogue", &Tour::rootRows_);
  ask(native(largeFolder_));
  runner_.see("the large mosaic", [this] { return person::rowNames(list()) == QStringList{"Large"}; });
  runner_.act("double-click it", [this] { person::doubleClickRow(list(), 0); });
  seeSelected(1);
  // The server that is asked last comes first the next time.
  ask("127.0.0.1");
  seeRows("the folders of the catalogue again", &Tour::rootRows_);
  runner_.act("click \"OK\"", [this] { person::click(person::find<QPushButton>(dialog(), "uibtnok")); });
  runner_.see("four services",
              [this] { return viewer_.services().rowCount() == 5 && !viewer_.services().isLoading(); });
}

void Tour::defineLargeMosaic() const {
  const fs::path catalogue = viewer_.host().installation.catalogue;
  fs::create_directories(largeFolder_);
  std::ofstream file(largeFolder_ / "Large.VLDef");
  file << "<Vorlane><MosaicDefinition><Title>Geoid and land cover</Title><Sources>";
  for (const char* source : {"World/EGM96_Geoid.tif", "Landcover/Land_Cover_2021.tif"}) {
    file << "<Source><File>"
         << QString::fromStdString((catalogue / source).string()).toHtmlEscaped().toStdString()
         << "</File></Source>";
  }
  file << "</Sources></MosaicDefinition></Vorlane>";
}

void Tour::planCanceledExport() {
  openExportWindow(largeRow);
  fill("uiTxtCols", "12000");
  fill("uiTxtRows", "12000");
  chooseIn("FormatCombo", "TIFF-LZ77");
  fill("uiTxtFileName", native(canceledFile_));
  clickIn(exportWindowTitle, "Command1");
  runner_.see("the image being written",
              [] { return person::find<QProgressBar>(window("Exporting"), "ProgressBar").value() > 300; });
  picture("export-progress", []() -> QWidget& { return window("Exporting"); });
  clickIn("Exporting", "CancelExport");
  bringToFront();
  runner_.act("press Escape", [] { person::press(window(exportWindowTitle), Qt::Key_Escape); });
  runner_.see("the viewer, and no word of a failure", [this] {
    return QApplication::activeModalWidget() == nullptr &&
           viewer_.statusBar()->currentMessage() == ViewerWindow::tr("Export cancelled");
  });
  runner_.act("check that nothing was left behind", [this] { checkCanceledExport(); });
  runner_.act("remove the large mosaic", [this] { viewer_.findChild<QAction*>("RemoveService")->trigger(); });
  runner_.see("four services again", [this] { return viewer_.services().rowCount() == 4; });
}

void Tour::checkCanceledExport() const {
  for (const auto& entry : fs::directory_iterator(folder_)) {
    expect(
        entry.path().string().find("cancelled.") == std::string::npos || entry.path().extension() == ".png",
        "the cancelled export left " + entry.path().string());
  }
}

// Reads it by the client. Both are drawn pixel by pixel, so equal values give equal pictures.
void Tour::checkExportedFile() const {
  const auto& host = viewer_.host();
  CatalogueImageService source(host.catalogue, *host.platform->xml, geoid);
  CatalogueImageService exported(host.catalogue, *host.platform->xml, fs::absolute(exportedFile_).string());
  const auto& facts = exported.facts();
  expect(facts.columns == columnTotal && facts.rows == rowTotal, "the exported file has another size");
  expect(facts.envelope == extent, "the exported file has another extent");
  expect(facts.pixelType == source.facts().pixelType, "the exported file has other pixels");
  expect(facts.srsWkt == source.facts().srsWkt, "the exported file has another coordinate system");
  expect(exported.drawImage(extent, columnTotal, rowTotal).rgba ==
             source.drawImage(extent, columnTotal, rowTotal).rgba,
         "the exported file shows another image");
}

}  // namespace vlclientui::viewer
