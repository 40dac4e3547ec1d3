#include <QAccessible>
#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QWindow>

#include "apps/viewer/FileManager.h"
#include "apps/viewer/ViewerFixture.h"
#include "support/EdgeTransform.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using viewer::person::choose;
using viewer::person::find;

QStringList entries(const QComboBox& list) {
  QStringList texts;
  for (int i = 0; i < list.count(); ++i) texts += list.itemText(i);
  return texts;
}

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class ViewerExport : public ViewerFixture {
 protected:
  /// A service without a limit of columns, so that its export takes a while.
  void pickLargeMosaic() {
    std::ofstream definition(file("Large.VLDef"));
    definition << "<Vorlane><MosaicDefinition><Sources>";
    for (const char* source : {"/World/EGM96_Geoid.tif", "/Landcover/Land_Cover_2021.tif"}) {
      definition << "<Source><File>" << samplesFolder() << source << "</File></Source>";
    }
    definition << "</Sources></MosaicDefinition></Vorlane>";
    definition.close();
    pick(file("Large.VLDef").string());
  }

  /// That which the window shows, moved out to whole pixels of the service at the most.
  static void expectExtent(const client::Bounds& place, double pixel) {
    const auto expectOutside = [pixel](const char* name, double inner, double outwards) {
      const double beyond = (box(name).text().toDouble() - inner) * outwards;
      EXPECT_TRUE(beyond > -0.05 && beyond < pixel) << name << " lies " << beyond << " beyond";
    };
    expectOutside("uiTxtLeft", place.xMin, -1);
    expectOutside("uiTxtRight", place.xMax, 1);
    expectOutside("uiTxtTop", place.yMax, 1);
    expectOutside("uiTxtBottom", place.yMin, -1);
  }
  /// The window begins with them.
  static void expectOwnPixels(double pixel) {
    EXPECT_EQ(box("uiTxtGSDX").text().toDouble(), pixel);
    EXPECT_EQ(box("uiTxtGSDX").text(), box("uiTxtGSDY").text());
    const double width = box("uiTxtRight").text().toDouble() - box("uiTxtLeft").text().toDouble();
    EXPECT_NEAR(box("uiTxtCols").text().toDouble() * pixel, width, 1e-6);
    for (const char* name : {"uiTxtCols", "uiTxtRows", "uiTxtGSDX", "uiTxtGSDY"})
      EXPECT_EQ(box(name).palette().color(QPalette::Text), qApp->palette().color(QPalette::Text)) << name;
  }
  /// Opens the window, looks at it and leaves it.
  void lookAtExport(const std::function<void()>& look) {
    openExport();
    act([look] {
      look();
      viewer::person::press(exportWindow(), Qt::Key_Escape);
    });
    seeNoWindow();
  }
  /// Starts a long export and waits until it runs.
  void startLongExport(const fs::path& target) {
    openExport();
    // Compression takes time, not room.
    act([] { choose(find<QComboBox>(exportWindow(), "FormatCombo"), "TIFF-LZ77"); });
    seeExportWindowInFront();
    act([] { fill("uiTxtCols", "12000"); });
    act([] { fill("uiTxtRows", "12000"); });
    act([target] { fill("uiTxtFileName", target.string()); });
    act([] { click(exportWindow(), "Command1"); });
    if (fs::exists(target)) seeMessage("Overwrite file", "already exists");
    see("progress", [] { return find<QProgressBar>(window("Exporting"), "ProgressBar").value() > 0; });
  }

  /// The export window comes back as it was, and nothing tells of a failure.
  void closeAfterCancel() {
    see("the export window",
        [] { return viewer::person::modalWindow("Export Image Properties") != nullptr; });
    act([] { viewer::person::press(exportWindow(), Qt::Key_Escape); });
    seeNoWindow();
    see("what came of it",
        [this] { return window_->statusBar()->currentMessage() == QLatin1String("Export cancelled"); });
  }
  void cancelAndClose() {
    act([] { click(window("Exporting"), "CancelExport"); });
    closeAfterCancel();
  }
};

TEST_F(ViewerExport, IsOfferedWhereAServiceIsPickedOnly) {
  EXPECT_FALSE(action("ExportService").isEnabled());
  pickSample("World/EGM96_Geoid");
  EXPECT_TRUE(action("ExportService").isEnabled());
  window_->removeService();
  EXPECT_FALSE(action("ExportService").isEnabled());
}

TEST_F(ViewerExport, StandsInTheFileMenuAndOnTheToolBarAndHasAKey) {
  const QMenu* const menu = window_->menuBar()->actions().first()->menu();
  EXPECT_EQ(menu->title(), "&File");
  EXPECT_TRUE(menu->actions().contains(&action("ExportService")));
  EXPECT_TRUE(window_->findChild<QToolBar*>("ServiceBar")->actions().contains(&action("ExportService")));
  EXPECT_EQ(action("ExportService").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_E));
}

TEST_F(ViewerExport, EveryKeyBelongsToOneAction) {
  QList<QKeySequence> keys;
  for (const QAction* each : window_->findChildren<QAction*>()) {
    if (each->shortcut().isEmpty()) continue;
    EXPECT_FALSE(keys.contains(each->shortcut())) << each->text().toStdString();
    keys += each->shortcut();
  }
}

TEST_F(ViewerExport, ShowsTheMapViewInTheCoordinatesOfTheService) {
  pickSample("Elevation/Terrain_30m");
  map().showExtent({8.45, 46.50, 8.60, 46.60});
  const auto view = map().view();
  const auto expected = boundsOfEdges({view.xMin, view.yMin, view.xMax, view.yMax}, 32632);
  openExport();
  act([&] {
    auto& list = find<QComboBox>(exportWindow(), "MainCombo");
    EXPECT_EQ(entries(list), (QStringList{"Current View Extent", "Default Extent of Image Service",
                                          "Custom Extent", "Current map view"}));
    choose(list, "Current map view");
    expectExtent(expected, 30);
    viewer::person::press(exportWindow(), Qt::Key_Escape);
  });
  run();
}

TEST_F(ViewerExport, OffersTheRectangleThatWasDrawnLast) {
  pickSample("World/EGM96_Geoid");
  map().showExtent({0, 0, 40, 30});
  map().setDrawing(true);
  viewer::person::drag(map(), {0.25, 0.25}, {0.75, 0.5});
  const auto drawn = map().rectangle();
  ASSERT_TRUE(drawn);
  openExport();
  act([&] {
    EXPECT_EQ(find<QComboBox>(exportWindow(), "MainCombo").currentText(), "Drawn rectangle");
    expectExtent({drawn->xMin, drawn->yMin, drawn->xMax, drawn->yMax}, 0.25);
    viewer::person::press(exportWindow(), Qt::Key_Escape);
  });
  run();
}

TEST_F(ViewerExport, BeginsWithTheServicesOwnSquarePixelsWhateverIsPreselected) {
  pickSample("Elevation/Terrain_30m");
  static constexpr int columns = 768;
  lookAtExport([] {
    EXPECT_EQ(find<QComboBox>(exportWindow(), "MainCombo").currentText(), "Current map view");
    expectOwnPixels(30);
    EXPECT_EQ(box("uiTxtCols").text().toInt(), columns) << "of the whole service under a map of the world";
  });
  act([this] { map().showExtent({8.45, 46.50, 8.60, 46.60}); });
  lookAtExport([] {
    expectOwnPixels(30);
    EXPECT_LT(box("uiTxtCols").text().toInt(), columns);
    keepPicture(exportWindow(), "export-own-pixels");
  });
  act([this] {
    map().setDrawing(true);
    viewer::person::drag(map(), {0.25, 0.25}, {0.75, 0.5});
  });
  lookAtExport([] {
    EXPECT_EQ(find<QComboBox>(exportWindow(), "MainCombo").currentText(), "Drawn rectangle");
    expectOwnPixels(30);
  });
  act([this] {
    map().clearRectangle();
    map().showExtent({100, -40, 110, -30});
  });
  lookAtExport([] {
    EXPECT_EQ(find<QComboBox>(exportWindow(), "MainCombo").currentText(), "Current View Extent");
    expectOwnPixels(30);
  });
  run();
}

TEST_F(ViewerExport, TellsInItsTitleWhatIsExportedAndInWhichSystem) {
  pickSample("Elevation/Terrain_30m");
  find<QListView>(*window_, "ServiceList")
      .model()
      ->setData(find<QListView>(*window_, "ServiceList").model()->index(0, 0), "Peaks");
  lookAtExport(
      [] { EXPECT_EQ(exportWindow().windowTitle(), "Export Image Properties \u2013 Peaks (EPSG:32632)"); });
  run();
}

TEST_F(ViewerExport, EscapeExportsNothingAndShowsNothing) {
  pickSample("World/EGM96_Geoid");
  openExport();
  act([] { viewer::person::press(exportWindow(), Qt::Key_Escape); });
  seeNoWindow();
  run();
  EXPECT_EQ(window_->statusBar()->currentMessage(), "Nothing exported");
}

TEST_F(ViewerExport, WritesTheFileAndOffersWhatToDoWithIt) {
  pickSample("Elevation/Terrain_30m");
  FileManager fileManager;
  openExport();
  act([this] { fill("uiTxtFileName", file("out.tif").string()); });
  act([] { click(exportWindow(), "Command1"); });
  see("the result", [] { return window("Exported").isVisible(); });
  act([&] {
    auto& line = find<QLineEdit>(window("Exported"), "ExportedFile");
    EXPECT_EQ(line.text().toStdString(), file("out.Tif").string());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&line)->text(QAccessible::Name), "File:");
    EXPECT_FALSE(window("Exported").findChild<QPlainTextEdit*>("GetImageDocument")->isVisible());
    EXPECT_TRUE(find<QLabel>(window("Exported"), "ExportTime").text().endsWith(" seconds"));
    keepPicture(window("Exported"), "exported");
    viewer::person::click(find<QToolButton>(window("Exported"), "Details"));
    keepPicture(window("Exported"), "exported-details");
    const auto request = find<QPlainTextEdit>(window("Exported"), "GetImageDocument").toPlainText();
    EXPECT_TRUE(request.startsWith("<GetImage>"));
    EXPECT_TRUE(request.contains("\n  <Cols>768</Cols>"));
    click(window("Exported"), "OpenFolder");
    EXPECT_EQ(fileManager.opened, QUrl::fromLocalFile(QString::fromStdString(home_.path().string())));
    click(window("Exported"), "CopyPath");
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), file("out.Tif").string());
    click(window("Exported"), "AddToMap");
  });
  seeNoWindow();
  see("the file on the map",
      [this] { return window_->services().rowCount() == 2 && !window_->services().isLoading(); });
  run();
  EXPECT_EQ(window_->services().rows().front().reference.toStdString(), file("out.Tif").string());
  EXPECT_EQ(window_->services().rows().front().state, viewer::ServiceListModel::State::Ready);
  EXPECT_TRUE(
      window_->statusBar()->currentMessage().contains(QString::fromStdString(file("out.Tif").string())));
}

TEST_F(ViewerExport, ProposesTheFolderThatWasUsedLast) {
  pickSample("Elevation/Terrain_30m");
  const fs::path folder = file("my images");
  fs::create_directory(folder);
  openExport();
  act([this, folder] {
    EXPECT_FALSE(box("uiTxtFileName").text().contains("my images"));
    fill("uiTxtFileName", (folder / "out.tif").string());
  });
  act([] { click(exportWindow(), "Command1"); });
  see("the result", [] { return window("Exported").isVisible(); });
  act([] { viewer::person::press(window("Exported"), Qt::Key_Escape); });
  seeNoWindow();
  openExport();
  act([folder] {
    EXPECT_EQ(box("uiTxtFileName").text().toStdString(), (folder / "Untitled.tif").string());
    click(exportWindow(), "Command1");
  });
  see("the second result", [] { return window("Exported").isVisible(); });
  act([] { viewer::person::press(window("Exported"), Qt::Key_Escape); });
  seeNoWindow();
  run();
  EXPECT_TRUE(fs::exists(folder / "Untitled.Tif"));
}

TEST_F(ViewerExport, TellsInWordsWhyNothingWasWritten) {
  pickSample("Elevation/Terrain_30m");
  openExport();
  act([] { choose(find<QComboBox>(exportWindow(), "FormatCombo"), "JPEG"); });
  seeExportWindowInFront();
  act([this] { fill("uiTxtFileName", file("out.jpg").string()); });
  act([] { click(exportWindow(), "Command1"); });
  seeMessage("Error", "JPEG cannot hold this service's 1 band of type Int16");
  act([] { viewer::person::press(exportWindow(), Qt::Key_Escape); });
  see("the outcome", [] { return window("Not exported").isVisible(); });
  act([] {
    EXPECT_TRUE(find<QLabel>(window("Not exported"), "ExportProblem").text().startsWith("JPEG cannot hold"));
    EXPECT_EQ(window("Not exported").findChild<QPushButton*>("AddToMap"), nullptr);
    viewer::person::press(window("Not exported"), Qt::Key_Escape);
  });
  run();
  EXPECT_FALSE(fs::exists(file("out.JPG")));
}

TEST_F(ViewerExport, TellsThatAServiceCannotBeRead) {
  pick(file("nowhere.tif").string());
  act([this] { window_->exportPickedService(); });
  see("a message", [] { return !dynamic_cast<QMessageBox&>(window("Export")).text().isEmpty(); });
  act([] { viewer::person::press(window("Export"), Qt::Key_Return); });
  seeNoWindow();
  run();
}

TEST_F(ViewerExport, ACancelInTheMiddleLeavesNoFile) {
  pickLargeMosaic();
  startLongExport(file("large.Tif"));
  cancelAndClose();
  run();
  for (const auto& entry : fs::recursive_directory_iterator(home_.path())) {
    EXPECT_EQ(entry.path().string().find("large.Tif"), std::string::npos) << entry.path();
  }
}

TEST_F(ViewerExport, ACancelIsNoFailureAndTheExportCanBeTriedAgain) {
  pickSample("Elevation/Terrain_30m");
  pickLargeMosaic();
  startLongExport(file("large.Tif"));
  act([] { click(window("Exporting"), "CancelExport"); });
  seeExportWindowInFront();
  act([] {
    fill("uiTxtCols", "20");
    fill("uiTxtRows", "20");
    click(exportWindow(), "Command1");
  });
  see("the result", [] { return window("Exported").isVisible(); });
  act([] { viewer::person::press(window("Exported"), Qt::Key_Escape); });
  run();
  EXPECT_TRUE(fs::exists(file("large.Tif")));
}

TEST_F(ViewerExport, AnOverwriteThatWasRefusedIsNoFailureEither) {
  pickSample("Elevation/Terrain_30m");
  std::ofstream(file("former.Tif")) << "what was there before";
  openExport();
  act([this] { fill("uiTxtFileName", file("former.Tif").string()); });
  act([] { click(exportWindow(), "Command1"); });
  see("the question", [] { return window("Overwrite file").isVisible(); });
  act([] { viewer::person::press(window("Overwrite file"), Qt::Key_Escape); });
  seeExportWindowInFront();
  act([] { viewer::person::press(exportWindow(), Qt::Key_Escape); });
  seeNoWindow();
  run();
  EXPECT_EQ(window_->statusBar()->currentMessage(), "Nothing exported");
  EXPECT_EQ(contentOf(file("former.Tif")), "what was there before");
}

TEST_F(ViewerExport, ProposesAFileInTheDocumentsFolder) {
  fs::create_directories(file("Documents"));
  pickSample("Elevation/Terrain_30m");
  openExport();
  act([this] {
    const fs::path proposed = box("uiTxtFileName").text().toStdString();
    EXPECT_EQ(proposed, file("Documents") / "Ostrel" / "Vor Lane" / "Untitled.tif");
    click(exportWindow(), "OpenFile");
  });
  see("the file dialog", [] { return window("Export image to:").isVisible(); });
  act([this] {
    auto& dialog = dynamic_cast<QFileDialog&>(window("Export image to:"));
    // The nearest folder above the proposed file that is there.
    EXPECT_TRUE(
        dialog.directory().absolutePath().startsWith(QString::fromStdString(file("Documents").string())));
    dialog.reject();
  });
  seeExportWindowInFront();
  act([] { viewer::person::press(exportWindow(), Qt::Key_Escape); });
  seeNoWindow();
  run();
}

TEST_F(ViewerExport, ACoordinateSystemAndItsUnitStandBesideTheExtents) {
  pickSample("Elevation/Terrain_30m");
  openExport();
  act([] {
    EXPECT_EQ(find<QLabel>(exportWindow(), "Frame1Note").text(),
              "Coordinate system: WGS 84 / UTM zone 32N (EPSG:32632); unit: metre");
    viewer::person::press(exportWindow(), Qt::Key_Escape);
  });
  seeNoWindow();
  run();
}

TEST_F(ViewerExport, TheResultTellsPathsOfThisSystem) {
  pickSample("Elevation/Terrain_30m");
  openExport();
  act([this] { fill("uiTxtFileName", file("out.tif").string()); });
  act([] { click(exportWindow(), "Command1"); });
  see("the result", [] { return window("Exported").isVisible(); });
  act([this] {
    viewer::person::click(find<QToolButton>(window("Exported"), "Details"));
    const auto request = find<QPlainTextEdit>(window("Exported"), "GetImageDocument").toPlainText();
    EXPECT_TRUE(request.contains(QString::fromStdString("<FileName>" + file("out.Tif").string() + "<")))
        << request.toStdString();
    viewer::person::press(window("Exported"), Qt::Key_Escape);
  });
  run();
}

TEST_F(ViewerExport, ACancelInTheMiddleKeepsTheFormerFile) {
  pickLargeMosaic();
  std::ofstream(file("large.Tif")) << "what was there before";
  startLongExport(file("large.Tif"));
  cancelAndClose();
  run();
  EXPECT_EQ(contentOf(file("large.Tif")), "what was there before");
}

// Through the window system's queue, as a real pointer and real keys come, so that modality is at work.
TEST_F(ViewerExport, NoInputButCancelReachesAnythingWhileAFileIsWritten) {
  pickLargeMosaic();
  startLongExport(file("large.Tif"));
  const auto view = map().view();
  act([&] {
    QWidget* const form = find<QPushButton>(*QApplication::activeModalWidget(), "CancelExport").window();
    QWidget* const exporting = form->parentWidget()->window();
    const auto clickThrough = [](QWidget& widget) {
      QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                        widget.mapTo(widget.window(), widget.rect().center()));
    };
    clickThrough(find<QPushButton>(*exporting, "Command2"));
    QTest::keyClick(exporting->windowHandle(), Qt::Key_Escape);
    clickThrough(map());
    QTest::keyClick(window_->windowHandle(), Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(window_->windowHandle(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(map().view(), view);
    EXPECT_TRUE(exporting->isVisible());
    EXPECT_EQ(QApplication::activeModalWidget(), form);
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(find<QPushButton>(*form, "CancelExport").isEnabled());
  });
  see("the export go on", [] { return find<QProgressBar>(window("Exporting"), "ProgressBar").isVisible(); });
  act([] {
    auto& cancel = find<QPushButton>(window("Exporting"), "CancelExport");
    QTest::mouseClick(cancel.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      cancel.mapTo(cancel.window(), cancel.rect().center()));
  });
  closeAfterCancel();
  run();
}

}  // namespace
}  // namespace vlclientui::test
