// The list of services of the viewer, and the files that are opened into it.

#include <QComboBox>
#include <QDockWidget>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QThread>
#include <QToolBar>
#include <QTranslator>

#include <gdal_priv.h>

#include "apps/viewer/ViewerDocksFixture.h"
#include "contracts/RuntimeFailure.h"
#include "frame/Saving.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using viewer::person::find;
using viewer::person::press;

constexpr const char* geoid = "World/EGM96_Geoid";
constexpr const char* geoidPicked =
    "<SelectedImageServices><Name>ImageService://127.0.0.1/World/EGM96_Geoid</Name></SelectedImageServices>";

std::string lockedTo(const std::string& raster) {
  return "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>" + raster +
         "</LockImageID></ImageServiceProperties></Vorlane>";
}

class ViewerWindow : public ViewerDocksFixture {
 protected:
  [[nodiscard]] int rows() const { return window_->services().rowCount(); }
  [[nodiscard]] QListView& list() const { return find<QListView>(*window_, "ServiceList"); }
  void saveLockedTo(const std::string& raster, const char* name) {
    window_->drawWith(lockedTo(raster));
    seeDrawn();
    ASSERT_TRUE(window_->pickedService()->SaveProperties(file(name).string()));
  }
  void openSaved() {
    window_->openFile(file("locked.VLRef"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
    seeDrawn();
  }
};

TEST_F(ViewerWindow, DeleteInAPaneRemovesNoService) {
  pickOverlaps();
  open("PropertiesDock");
  window_->activateWindow();
  auto& method = find<QComboBox>(dock("PropertiesDock"), "MosaicMethod");
  method.setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(method.hasFocus());
  press(method, Qt::Key_Delete);
  EXPECT_EQ(rows(), 1);
}

TEST_F(ViewerWindow, DeleteInTheListRemovesThePickedService) {
  pickSample(geoid);
  pickSample(overlaps);
  list().setFocus();
  press(list(), Qt::Key_Delete);
  EXPECT_EQ(rows(), 1);
}

TEST_F(ViewerWindow, AddsServicesAlsoWhereTheFolderOfTheirDocumentCannotBeMade) {
  std::ofstream(file("plain")) << "no folder";
  viewer::ViewerWindow other(host_, file("plain") / "documents");
  other.takeSelectedServices(geoidPicked);
  EXPECT_EQ(other.services().rowCount(), 1);
  const QString told = other.statusBar()->currentMessage();
  EXPECT_TRUE(told.contains("selected-services.xml cannot be written: ")) << told.toStdString();
}

TEST_F(ViewerWindow, AddsServicesAlsoWhereTheirDocumentCannotBeWritten) {
  fs::create_directories(window_->selectedServicesFile());
  window_->takeSelectedServices(geoidPicked);
  EXPECT_EQ(rows(), 1);
  const QString told = window_->statusBar()->currentMessage();
  EXPECT_TRUE(told.startsWith("1 service added; ")) << told.toStdString();
  EXPECT_TRUE(told.contains("selected-services.xml cannot be written: ")) << told.toStdString();
  EXPECT_EQ(std::distance(fs::directory_iterator(home_.path()), {}), 1) << "nothing is left half written";
}

TEST_F(ViewerWindow, AFileThatWasSavedAnewIsReadAnewWhenItIsOpenedAgain) {
  pickOverlaps();
  saveLockedTo("2", "second.VLRef");
  saveLockedTo("1", "locked.VLRef");
  openSaved();
  ASSERT_EQ(servicePropertiesAt("LockImageID"), "1");
  const QImage picture = window_->services().rows().front().service.picture;
  fs::copy_file(file("second.VLRef"), file("locked.VLRef"), fs::copy_options::overwrite_existing);
  openSaved();
  EXPECT_EQ(servicePropertiesAt("LockImageID"), "2");
  EXPECT_NE(window_->services().rows().front().service.picture, picture);
  EXPECT_EQ(imageColor(), green);
  EXPECT_EQ(rows(), 2);
  EXPECT_EQ(list().currentIndex().row(), 0);
}

/// A raster without a coordinate system.
void writePlainRaster(const fs::path& target, int columns = 20) {
  GDALAllRegister();
  auto* const driver = GetGDALDriverManager()->GetDriverByName("GTiff");
  std::unique_ptr<GDALDataset> raster(driver->Create(target.c_str(), columns, 10, 1, GDT_Byte, nullptr));
  ASSERT_NE(raster, nullptr);
  ASSERT_EQ(raster->GetRasterBand(1)->Fill(128), CE_None);
}

TEST_F(ViewerWindow, TellsThatARasterHasNoPlaceOnTheMapAndDoesNotZoomToIt) {
  writePlainRaster(file("plain.tif"));
  pickSample(geoid);
  EXPECT_TRUE(action("ZoomToService").isEnabled());
  pick(file("plain.tif").string());
  EXPECT_EQ(window_->services().rows().front().state, viewer::ServiceListModel::State::Ready);
  EXPECT_FALSE(action("ZoomToService").isEnabled());
  EXPECT_TRUE(action("ExportService").isEnabled());
  const auto isTold = [this] {
    return window_->statusBar()->currentMessage().contains("no place on the map");
  };
  EXPECT_TRUE(isTold());
  keepPicture(*window_, "viewer-no-place");
  window_->statusBar()->clearMessage();
  window_->zoomToService();
  EXPECT_TRUE(isTold());
  window_->statusBar()->clearMessage();
  viewer::person::clickRow(list(), 1);
  EXPECT_TRUE(action("ZoomToService").isEnabled());
  EXPECT_FALSE(isTold());
  viewer::person::clickRow(list(), 0);
  EXPECT_TRUE(isTold());
}

TEST_F(ViewerWindow, WhatWasReadOfAFileBeforeItWasListedAnewIsDropped) {
  writePlainRaster(file("plain.tif"), 20);
  window_->openFile(file("plain.tif"));
  // The service is read, but its signal has not reached this thread yet.
  QThread::sleep(1);
  writePlainRaster(file("plain.tif"), 30);
  window_->openFile(file("plain.tif"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  EXPECT_EQ(window_->services().rows().front().service.details, "1 band, Byte, 30 x 10");
}

TEST_F(ViewerWindow, EveryActionOfTheToolBarHasAPicture) {
  const auto* const bar = window_->findChild<QToolBar*>("ServiceBar");
  for (const QAction* each : bar->actions()) {
    EXPECT_TRUE(each->isSeparator() || !each->icon().isNull()) << each->text().toStdString();
  }
  // Every icon differs from the others and is not blank.
  const auto picture = [this](const char* name) {
    return dock(name).toggleViewAction()->icon().pixmap(32).toImage();
  };
  QImage empty(32, 32, picture("PropertiesDock").format());
  empty.fill(Qt::transparent);
  EXPECT_NE(picture("PropertiesDock"), empty);
  EXPECT_NE(picture("PropertiesDock"), picture("ViewPointDock"));
  EXPECT_NE(picture("ViewPointDock"), picture("MetadataDock"));
}

TEST_F(ViewerWindow, WhatItTellsGoesAwayAfterAWhile) {
  window_->takeSelectedServices("<SelectedImageServices/>");
  auto* const bar = window_->statusBar();
  EXPECT_FALSE(bar->currentMessage().isEmpty());
  auto* const clock = bar->findChild<QTimer*>();
  ASSERT_NE(clock, nullptr);
  EXPECT_TRUE(clock->isActive());
  EXPECT_LE(clock->interval(), 15'000);
  QMetaObject::invokeMethod(clock, "timeout");
  EXPECT_TRUE(bar->currentMessage().isEmpty());
}

TEST_F(ViewerWindow, TellsWhatTheWindowsOfTheLibraryTellInPassing) {
  tellInPassing(*host_.platform->toolkit, "Saved to 'C:\\a.VLRef'");
  EXPECT_EQ(window_->statusBar()->currentMessage().toStdString(),
            "Saved to '" + file("a.VLRef").string() + "'");
}

TEST_F(ViewerWindow, TellsWhyAServiceCouldNotBeSaved) {
  pickOverlaps();
  EXPECT_FALSE(window_->pickedService()->SaveProperties(file("missing/a.VLRef").string()));
  const QString told = window_->statusBar()->currentMessage();
  EXPECT_TRUE(told.startsWith("Not saved: ")) << told.toStdString();
  EXPECT_GT(told.size(), 20);
}

TEST_F(ViewerWindow, ShowsAFileOfADriveByItsPathOnThisSystem) {
  writePlainRaster(file("plain.tif"));
  pick("C:\\plain.tif");
  const QModelIndex row = window_->services().index(0);
  EXPECT_EQ(row.data(Qt::ToolTipRole).toString().toStdString(), file("plain.tif").string());
  EXPECT_FALSE(row.data().toString().contains('\\'));
  EXPECT_FALSE(window_->findChild<QPlainTextEdit*>("SelectedServicesDocument")->isVisible());
  action("ShowHandedOver").trigger();
  const auto& document = find<QPlainTextEdit>(*window_, "SelectedServicesDocument");
  EXPECT_TRUE(document.toPlainText().contains(QString::fromStdString(file("plain.tif").string())));
  EXPECT_FALSE(document.toPlainText().contains("C:"));
}

TEST_F(ViewerWindow, TheHelpMenuHasEveryPage) {
  QStringList pages;
  for (const auto& entry : fs::directory_iterator(fs::path(sourceFolder()) / "help")) {
    if (entry.path().extension() == ".htm") pages += QString::fromStdString(entry.path().stem().string());
  }
  std::ofstream(file("browser")) << "#!/bin/sh\necho \"$1\" >> " << file("opened") << "\n";
  fs::permissions(file("browser"), fs::perms::owner_all);
  const EnvironmentKeeper browser("BROWSER", file("browser").string());
  for (const char* const name : {"ViewerHelp", "AddingServicesHelp", "PropertiesHelp", "ViewPointHelp",
                                 "MetadataHelp", "ExportHelp", "ConnectionsHelp"}) {
    action(name).trigger();
  }
  const auto opened = [this] {
    std::ifstream stream(file("opened"));
    return QString::fromStdString({std::istreambuf_iterator<char>(stream), {}});
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return opened().count('\n') == pages.size(); }, 10'000));
  for (const QString& page : pages) EXPECT_TRUE(opened().contains("/" + page + ".htm")) << page.toStdString();
}

/// Counts the documents that pass through it.
class MarkingTranslator : public QTranslator {
 public:
  [[nodiscard]] QString translate(const char* /*context*/, const char* text, const char* /*disambiguation*/,
                                  int /*count*/) const override {
    return "~" + QString::fromUtf8(text);
  }
  [[nodiscard]] bool isEmpty() const override { return false; }
};

TEST_F(ViewerWindow, TextsOfMapAndListCanBeTranslated) {
  MarkingTranslator translator;
  QCoreApplication::installTranslator(&translator);
  viewer::ViewerWindow other(host_, home_.path());
  EXPECT_EQ(other.findChild<viewer::MapView*>()->accessibleName(), "~Map");
  other.takeSelectedServices(geoidPicked);
  const auto details = [&] { return other.services().index(0).data().toString().section('\n', 1); };
  EXPECT_EQ(details(), "~reading...");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !other.services().isLoading(); }, 30'000));
  EXPECT_TRUE(details().startsWith("~~1 band, ")) << details().toStdString();
  QCoreApplication::removeTranslator(&translator);
}

}  // namespace
}  // namespace vlclientui::test
