// The docks of the viewer: the pages of the properties dialog on the picked service, and what they do to the
// map. The sample of three plain colours shows which source lies on top.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QStatusBar>
#include <QTabBar>
#include <QTreeWidget>

#include "Session.h"
#include "apps/ViewerFixture.h"
#include "host/ServiceView.h"

namespace vlclientui::test {
namespace {

using viewer::person::choose;
using viewer::person::find;

constexpr const char* kOverlaps = "Imagery/Overlap_Study";
const QColor kRed(196, 60, 52);
const QColor kGreen(70, 150, 74);
const QColor kBlue(58, 96, 186);
// Where all three sheets lie over each other.
constexpr host::GeographicPoint kMiddle{0.5, 0.5};

class ViewerProperties : public ViewerFixture {
 protected:
  ViewerProperties() { window_->resize(1400, 900); }

  void pickOverlaps() {
    pickSample(kOverlaps);
    seeDrawn();
    window_->zoomToService();
    seeDrawn();
  }
  void seeDrawn() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->isDrawing(); }, 30'000));
    QCoreApplication::processEvents();
  }
  [[nodiscard]] QDockWidget& dock(const char* name) const {
    return *window_->findChild<QDockWidget*>(QLatin1String(name));
  }
  void open(const char* name) {
    dock(name).toggleViewAction()->trigger();
    QCoreApplication::processEvents();
  }
  /// Of the image, as the map got it: shares of its size.
  [[nodiscard]] QColor imageColor(double across = kMiddle.x, double down = kMiddle.y) const {
    const QImage& image = map().image().picture;
    if (image.isNull()) return {};
    return image.pixelColor(static_cast<int>(across * image.width()),
                            static_cast<int>(down * image.height()));
  }
  /// Of the map on the screen, a little aside the viewpoint's mark.
  [[nodiscard]] QColor screenColor() const {
    const auto& corners = map().image().corners;
    const auto upper = map().toPixel(corners[0].x, corners[0].y);
    const auto lower = map().toPixel(corners[2].x, corners[2].y);
    const QPointF middle =
        upper + QPointF((lower.x() - upper.x()) * kMiddle.x, (lower.y() - upper.y()) * kMiddle.y);
    return map().grab().toImage().pixelColor((middle + QPointF(18, 20)).toPoint());
  }
  [[nodiscard]] std::string servicePropertiesAt(const std::string& element) const {
    const auto document = host_.platform->xml->createDocument();
    EXPECT_TRUE(document->loadXml(serviceProperties()));
    const auto node = document->selectSingleNode("//Vorlane/ImageServiceProperties/" + element);
    return node ? node->text() : "(missing)";
  }
  [[nodiscard]] std::string serviceProperties() const {
    return window_->pickedService()->ServiceProperties();
  }
  void chooseMethod(const QString& method) {
    window_->activateWindow();
    choose(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod"), method);
    window_->activateWindow();
  }
  void apply(const char* name) {
    click(dock(name), "ApplyProperties");
    seeDrawn();
  }
  [[nodiscard]] static QWidget& modalWindow() {
    QWidget* const found = QApplication::activeModalWidget();
    if (found == nullptr) throw viewer::person::Astray("there is no window");
    return *found;
  }
  void openPropertiesWindow() {
    act([this] { action("ServiceProperties").trigger(); });
    see("the window", [] { return find<QComboBox>(modalWindow(), "MosaicMethod").isVisible(); });
    seePropertiesWindowInFront();
  }
  /// As a window manager does when a popup has gone.
  void seePropertiesWindowInFront() {
    see("the window in front", [] {
      modalWindow().activateWindow();
      return modalWindow().isActiveWindow();
    });
  }
  static void clickMove(QDockWidget& dock, const char* name) {
    viewer::person::click(find<QAbstractButton>(dock, name));
  }
};

TEST_F(ViewerProperties, TheDocksAreClosedAtFirstAndOpenedByKeysMenuAndToolBar) {
  for (const char* name : {"PropertiesDock", "ViewPointDock", "MetadataDock"}) {
    EXPECT_TRUE(dock(name).isHidden()) << name;
    EXPECT_FALSE(dock(name).toggleViewAction()->shortcut().isEmpty()) << name;
    open(name);
    EXPECT_TRUE(dock(name).isVisible()) << name;
  }
}

TEST_F(ViewerProperties, EachDockHoldsThePageOfThePickedServiceInItsLayout) {
  pickOverlaps();
  for (const auto& [name, page] : {std::pair{"PropertiesDock", "ServiceProperties"},
                                   {"ViewPointDock", "ViewPoint"},
                                   {"MetadataDock", "SourceMetadata"}}) {
    open(name);
    auto* const place = dock(name).findChild<QWidget*>(QLatin1String(name) + "Place");
    const auto* const shown = place->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_NE(shown, nullptr) << name;
    EXPECT_FALSE(shown->isWindow()) << name;
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown->geometry() == place->rect(); }, 2000)) << page;
    EXPECT_GE(place->height(), shown->minimumSizeHint().height()) << page;
  }
  EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "None");
}

TEST_F(ViewerProperties, TheMapShowsTheMosaicAsTheClientDrawsItWithOutlinesAndViewpoint) {
  pickOverlaps();
  EXPECT_EQ(imageColor(), kBlue);
  EXPECT_EQ(screenColor(), kBlue);
  EXPECT_EQ(map().image().marks.footprints.size(), 3U);
  ASSERT_TRUE(map().image().marks.viewPoint);
}

TEST_F(ViewerProperties, ApplyDrawsTheServiceWithTheEditedMethod) {
  pickOverlaps();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  EXPECT_EQ(imageColor(), kBlue);
  choose(find<QComboBox>(dock("PropertiesDock"), "TileOrderField"), "CloudCover");
  window_->activateWindow();
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "By Attribute");
  EXPECT_EQ(imageColor(), kGreen);
  EXPECT_EQ(screenColor(), kGreen);
}

TEST_F(ViewerProperties, RevertShowsWhatTheServiceHas) {
  pickOverlaps();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  click(dock("PropertiesDock"), "RevertProperties");
  EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "None");
}

TEST_F(ViewerProperties, MovingTheMapKeepsEditsThatNobodyApplied) {
  pickOverlaps();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  map().zoom(1.5);
  seeDrawn();
  EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "By Attribute");
}

TEST_F(ViewerProperties, AStepOfTheViewpointAndApplyChangeWhatLiesOnTop) {
  pickOverlaps();
  open("PropertiesDock");
  open("ViewPointDock");
  chooseMethod("Closest to Viewpoint");
  apply("PropertiesDock");
  const auto before = map().image().marks.viewPoint;
  clickMove(dock("ViewPointDock"), "MoveLeft");
  apply("ViewPointDock");
  EXPECT_EQ(imageColor(), kRed);
  clickMove(dock("ViewPointDock"), "MoveRight");
  apply("ViewPointDock");
  EXPECT_EQ(imageColor(), kBlue);
  ASSERT_TRUE(before && map().image().marks.viewPoint);
  EXPECT_GT(map().image().marks.viewPoint->x, before->x);
}

/// Where pictures of the metadata page go; empty when nobody wants them.
QString pictureFolder() { return qEnvironmentVariable("VLCLIENTUI_PICTURES"); }

/// A person who leafs through the metadata page of the overlaps.
class ViewerMetadata : public ViewerProperties {
 protected:
  void openMetadata() {
    pickOverlaps();
    open("MetadataDock");
    seeDrawn();
    ASSERT_EQ(nodes().topLevelItemCount(), 4);
  }
  [[nodiscard]] QTreeWidget& nodes() const { return find<QTreeWidget>(dock("MetadataDock"), "uiTreeView"); }
  void clickNode(int node) {
    window_->activateWindow();
    QTest::mouseClick(nodes().viewport(), Qt::LeftButton, Qt::NoModifier,
                      nodes().visualItemRect(nodes().topLevelItem(node)).center());
  }
  void clickTab(const char* strip, const QString& caption) {
    auto& tabs = find<QTabBar>(dock("MetadataDock"), strip);
    int tab = 0;
    while (tab < tabs.count() && tabs.tabText(tab) != caption) ++tab;
    ASSERT_LT(tab, tabs.count()) << caption.toStdString();
    QTest::mouseClick(&tabs, Qt::LeftButton, Qt::NoModifier, tabs.tabRect(tab).center());
  }
  /// The fields of a page and the rows of a list or a tree, below its root, that a person can read.
  [[nodiscard]] int shownTexts() const {
    int count = 0;
    for (const auto* const label : dock("MetadataDock").findChildren<QLabel*>())
      count += label->isVisible() && !label->text().isEmpty();
    for (const auto* const view : dock("MetadataDock").findChildren<QAbstractItemView*>()) {
      if (!view->isVisible() || view == &nodes()) continue;
      const QModelIndex root =
          view->objectName() == QLatin1String("tree") ? view->model()->index(0, 0) : QModelIndex();
      count += view->model()->rowCount(root);
    }
    return count;
  }
  /// @param least as many texts as a page of a real service has at the least
  void look(const QString& page, int least) {
    QCoreApplication::processEvents();
    EXPECT_GE(shownTexts(), least) << page.toStdString();
    if (!pictureFolder().isEmpty())
      dock("MetadataDock").grab().save(pictureFolder() + "/metadata-" + page + ".png");
  }
};

TEST_F(ViewerMetadata, EveryNodeAndTabShowsWhatIsKnownOfARealService) {
  openMetadata();
  clickNode(0);
  look("service-information", 8);
  clickTab("TabStrip2", "Properties");
  look("service-properties", 20);
  clickTab("TabStrip2", "Metadata");
  look("service-metadata", 16);
  clickNode(1);
  look("image", 20);
  clickNode(2);
  look("process", 4);
  clickNode(3);
  look("source-information", 20);
  clickTab("TabStrip1", "Metadata");
  look("source-metadata", 8);
  clickTab("TabStrip1", "Attributes");
  look("source-attributes", 3);
  clickTab("TabStrip1", "Process");
  look("source-process", 3);
}

TEST_F(ViewerMetadata, TabsOfASourceShowItsDocumentsAfterTheMapHasMoved) {
  openMetadata();
  clickNode(3);
  clickTab("TabStrip1", "Attributes");
  for (int time = 0; time < 2; ++time) {
    map().zoom(1.5);
    seeDrawn();
  }
  clickTab("TabStrip1", "Process");
  look("source-process-after-a-move", 3);
}

TEST_F(ViewerMetadata, TheDockKeepsItsWidthWhileAPersonLeafsThroughThePages) {
  openMetadata();
  const int width = dock("MetadataDock").width();
  for (int node = 0; node < nodes().topLevelItemCount(); ++node) {
    clickNode(node);
    QTest::qWait(20);
    EXPECT_EQ(dock("MetadataDock").width(), width) << node;
  }
  clickNode(0);
  for (const char* tab : {"Properties", "Metadata", "Information"}) {
    clickTab("TabStrip2", tab);
    QTest::qWait(20);
    EXPECT_EQ(dock("MetadataDock").width(), width) << tab;
  }
}

TEST_F(ViewerProperties, ALockOnTheMetadataPageReachesTheMap) {
  pickOverlaps();
  open("MetadataDock");
  auto& tree = find<QTreeWidget>(dock("MetadataDock"), "uiTreeView");
  QTreeWidgetItem* sources = nullptr;
  for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) sources = *at;
  ASSERT_NE(sources, nullptr);
  tree.setFocus();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(sources).center());
  auto& rasters = find<QComboBox>(dock("MetadataDock"), "RasterList");
  ASSERT_EQ(rasters.count(), 3);
  choose(rasters, rasters.itemText(1));
  window_->activateWindow();
  viewer::person::click(find<QAbstractButton>(dock("MetadataDock"), "Command7"));
  seeDrawn();
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "LockRaster");
  EXPECT_EQ(imageColor(), kGreen);
}

TEST_F(ViewerProperties, PickingAnotherServiceSwapsThePages) {
  pickOverlaps();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  pickSample("World/EGM96_Geoid");
  seeDrawn();
  auto& place = *dock("PropertiesDock").findChild<QWidget*>("PropertiesDockPlace");
  EXPECT_EQ(place.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
  const auto* const method = dock("PropertiesDock").findChild<QComboBox*>("MosaicMethod");
  EXPECT_TRUE(method == nullptr || method->currentText() == "None");
  EXPECT_EQ(map().image().reference, "ImageService://127.0.0.1/World/EGM96_Geoid");
}

TEST_F(ViewerProperties, OfServicesPickedInHasteTheLastOneIsShown) {
  pickSample("World/EGM96_Geoid");
  pickOverlaps();
  for (const char* name : {"PropertiesDock", "MetadataDock"}) open(name);
  auto& list = find<QListView>(*window_, "ServiceList");
  for (int time = 0; time < 5; ++time) {
    viewer::person::clickRow(list, 0);
    QCoreApplication::processEvents();
    viewer::person::clickRow(list, 1);
  }
  seeDrawn();
  EXPECT_EQ(map().image().reference, window_->services().rows()[1].reference);
  EXPECT_EQ(imageColor(), kBlue);
}

TEST_F(ViewerProperties, ARemovedServiceTakesItsPagesAndItsImageAlong) {
  pickOverlaps();
  open("PropertiesDock");
  window_->removeService();
  auto& place = *dock("PropertiesDock").findChild<QWidget*>("PropertiesDockPlace");
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return place.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly).isEmpty(); }, 2000));
  EXPECT_FALSE(find<QPushButton>(dock("PropertiesDock"), "ApplyProperties").isEnabled());
  EXPECT_FALSE(action("ServiceProperties").isEnabled());
  EXPECT_TRUE(map().image().picture.isNull());
}

TEST_F(ViewerProperties, ADockThatIsClosedLetsItsPageGoAndShowsItAgain) {
  pickOverlaps();
  for (int time = 0; time < 3; ++time) {
    for (const char* name : {"PropertiesDock", "ViewPointDock", "MetadataDock"}) open(name);
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(find<QWidget>(dock("PropertiesDock"), "SaveAs").isVisible());
}

TEST_F(ViewerProperties, TheViewerClosesWithItsDocksOpen) {
  pickOverlaps();
  for (const char* name : {"PropertiesDock", "ViewPointDock", "MetadataDock"}) open(name);
  window_->close();
  window_.reset();
  QCoreApplication::processEvents();
  SUCCEED();
}

TEST_F(ViewerProperties, TellsInWordsThatATextIsNoPropertiesDocument) {
  pickOverlaps();
  const std::string before = serviceProperties();
  act([this] { EXPECT_FALSE(window_->drawWith("no document")); });
  see("a message", [] { return !dynamic_cast<QMessageBox&>(window("Service properties")).text().isEmpty(); });
  act([] { viewer::person::press(window("Service properties"), Qt::Key_Return); });
  seeNoWindow();
  run();
  EXPECT_EQ(serviceProperties(), before);
}

TEST_F(ViewerProperties, TheViewpointWindowMovesTheViewpointOfTheService) {
  pickOverlaps();
  window_->drawWith(
      "<Vorlane><ImageServiceProperties><MosaicMethod>Closest to Viewpoint</MosaicMethod>"
      "</ImageServiceProperties></Vorlane>");
  seeDrawn();
  act([this] { window_->showViewPointDialog(); });
  see("the window", [] { return window("ViewPoint").isVisible(); });
  act([] { viewer::person::click(find<QAbstractButton>(window("ViewPoint"), "MoveLeft")); });
  act([] { click(window("ViewPoint"), "uibtnok"); });
  seeNoWindow();
  run();
  seeDrawn();
  EXPECT_EQ(imageColor(), kRed);
}

TEST_F(ViewerProperties, OkInTheOneWindowDialogDrawsTheServiceWithWhatItHolds) {
  pickOverlaps();
  open("PropertiesDock");
  openPropertiesWindow();
  act([] { choose(find<QComboBox>(modalWindow(), "MosaicMethod"), "By Attribute"); });
  seePropertiesWindowInFront();
  act([] { choose(find<QComboBox>(modalWindow(), "TileOrderField"), "CloudCover"); });
  seePropertiesWindowInFront();
  act([] { click(modalWindow(), "uibtnok"); });
  seeNoWindow();
  run();
  seeDrawn();
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "By Attribute");
  EXPECT_EQ(imageColor(), kGreen);
  EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "By Attribute");
}

TEST_F(ViewerProperties, CancelInTheOneWindowDialogChangesNothing) {
  pickOverlaps();
  const std::string before = serviceProperties();
  openPropertiesWindow();
  act([] { choose(find<QComboBox>(modalWindow(), "MosaicMethod"), "By Attribute"); });
  seePropertiesWindowInFront();
  act([] { click(modalWindow(), "uibtncancel"); });
  seeNoWindow();
  run();
  EXPECT_EQ(serviceProperties(), before);
}

TEST_F(ViewerProperties, TheDocksWorkAfterTheOneWindowDialog) {
  pickOverlaps();
  open("PropertiesDock");
  openPropertiesWindow();
  act([] { click(modalWindow(), "uibtncancel"); });
  seeNoWindow();
  run();
  chooseMethod("By Attribute");
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "By Attribute");
}

TEST_F(ViewerProperties, ApplyKeepsAViewpointThatNobodyMoved) {
  pickOverlaps();
  window_->drawWith(
      "<Vorlane><ImageServiceProperties><MosaicMethod>None</MosaicMethod><ViewPointX>462000</ViewPointX>"
      "<ViewPointY>5153500</ViewPointY></ImageServiceProperties></Vorlane>");
  seeDrawn();
  open("PropertiesDock");
  chooseMethod("Closest to Viewpoint");
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), "462000");
  EXPECT_EQ(imageColor(), kRed);
}

TEST_F(ViewerProperties, TheMetadataPageFollowsTheImageLastDrawn) {
  pickOverlaps();
  open("MetadataDock");
  seeDrawn();
  auto& tree = find<QTreeWidget>(dock("MetadataDock"), "uiTreeView");
  tree.setFocus();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree.visualItemRect(tree.topLevelItem(0)).center());
  QTreeWidgetItem* sources = nullptr;
  for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) sources = *at;
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(sources).center());
  auto& rasters = find<QComboBox>(dock("MetadataDock"), "RasterList");
  ASSERT_EQ(rasters.count(), 3);
  EXPECT_FALSE(rasters.itemText(0).startsWith("*"));
  window_->drawWith(
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>3</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  seeDrawn();
  EXPECT_TRUE(rasters.itemText(0).startsWith("*"));
  EXPECT_FALSE(rasters.itemText(2).startsWith("*"));
}

TEST_F(ViewerProperties, AnExportFollowsThePropertiesOfTheMap) {
  pickOverlaps();
  window_->drawWith(
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  openExport();
  act([this] { fill("uiTxtFileName", file("locked.tif").string()); });
  act([] { click(exportWindow(), "Command1"); });
  see("the result", [] { return window("Exported").isVisible(); });
  act([] { click(window("Exported"), "AddToMap"); });
  seeNoWindow();
  see("the file on the map",
      [this] { return window_->services().rowCount() == 2 && !window_->services().isLoading(); });
  run();
  seeDrawn();
  window_->zoomToService();
  seeDrawn();
  EXPECT_EQ(imageColor(), kGreen);
}

TEST_F(ViewerProperties, ASavedServiceOpensAgainWithItsProperties) {
  pickOverlaps();
  window_->drawWith(
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  ASSERT_TRUE(window_->pickedService()->SaveProperties(file("locked.VLRef").string()));
  window_->openFile(file("locked.VLRef"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  seeDrawn();
  const auto& opened = window_->services().rows().back();
  EXPECT_EQ(opened.state, viewer::ServiceListModel::State::Ready);
  EXPECT_EQ(opened.name(), "locked");
  EXPECT_TRUE(opened.service.envelope);
  EXPECT_EQ(servicePropertiesAt("LockImageID"), "1");
  EXPECT_EQ(imageColor(0.2, 0.5), kRed);
}

TEST(Session, FilesOfTheCommandLineAreToBeOpened) {
  const auto session = viewer::planSession({"one.VLRef", "--catalogue", ".", "/two.VLDef"});
  EXPECT_EQ(session.files,
            (std::vector<std::filesystem::path>{std::filesystem::absolute("one.VLRef"), "/two.VLDef"}));
  EXPECT_EQ(viewer::planSession({"--unknown"}).kind, viewer::Session::Kind::WrongUsage);
}

}  // namespace
}  // namespace vlclientui::test
