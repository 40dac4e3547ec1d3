// The docks of the viewer: the pages of the properties dialog on the picked service, and what they do to the
// map.

#include <QAbstractButton>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QPointer>

#include "apps/viewer/ViewerDocksFixture.h"
#include "viewer/window/Session.h"

namespace vlclientui::test {
namespace {

using viewer::person::choose;
using viewer::person::find;
using viewer::person::typeInto;

class ViewerProperties : public ViewerDocksFixture {};

TEST_F(ViewerProperties, TheDocksAreClosedAtFirstAndOpenedByKeysMenuAndToolBar) {
  for (const char* name : {"PropertiesDock", "ViewPointDock", "MetadataDock"}) {
    EXPECT_TRUE(dock(name).isHidden()) << name;
    EXPECT_FALSE(dock(name).toggleViewAction()->shortcut().isEmpty()) << name;
    open(name);
    EXPECT_TRUE(dock(name).isVisible()) << name;
  }
}

TEST_F(ViewerProperties, ADockWithoutAServiceSaysWhatComesToStandInIt) {
  const auto& dock = ViewerProperties::dock("PropertiesDock");
  const auto hints = [&dock] {
    QStringList texts;
    for (const auto* const label : dock.findChildren<QLabel*>())
      if (label->isVisible() && label->text().startsWith("Pick a service")) texts += label->text();
    return texts.size();
  };
  open("PropertiesDock");
  EXPECT_EQ(hints(), 1);
  keepPicture(*window_, "viewer-empty-pane");
  pickOverlaps();
  EXPECT_EQ(hints(), 0);
  EXPECT_TRUE(find<QComboBox>(dock, "MosaicMethod").isVisible());
  window_->removeService();
  EXPECT_EQ(hints(), 1);
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
  EXPECT_EQ(imageColor(), blue);
  EXPECT_EQ(screenColor(), blue);
  EXPECT_EQ(map().image().marks.footprints.size(), 3U);
  ASSERT_TRUE(map().image().marks.viewPoint);
}

TEST_F(ViewerProperties, ApplyDrawsTheServiceWithTheEditedMethod) {
  pickOverlaps();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  EXPECT_EQ(imageColor(), blue);
  choose(find<QComboBox>(dock("PropertiesDock"), "TileOrderField"), "CloudCover");
  window_->activateWindow();
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "By Attribute");
  EXPECT_EQ(imageColor(), green);
  EXPECT_EQ(screenColor(), green);
}

TEST_F(ViewerProperties, ATextTypedWhileAnAppliedOneIsDrawnIsKept) {
  pickOverlaps();
  open("PropertiesDock");
  auto& noData = find<QLineEdit>(dock("PropertiesDock"), "NoData");
  typeInto(noData, "7");
  click(dock("PropertiesDock"), "ApplyProperties");
  typeInto(noData, "75");
  seeDrawn();
  EXPECT_EQ(servicePropertiesAt("NoData"), "7");
  EXPECT_EQ(noData.text(), "75");
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
  EXPECT_EQ(imageColor(), red);
  clickMove(dock("ViewPointDock"), "MoveRight");
  apply("ViewPointDock");
  EXPECT_EQ(imageColor(), blue);
  ASSERT_TRUE(before && map().image().marks.viewPoint);
  EXPECT_GT(map().image().marks.viewPoint->x, before->x);
}

TEST_F(ViewerProperties, AStepOfTheViewpointOutlastsThatTheMapIsDrawn) {
  pickOverlaps();
  open("MetadataDock");
  open("ViewPointDock");
  seeDrawn();
  clickMove(dock("ViewPointDock"), "MoveLeft");
  const QString chosen = find<QLineEdit>(dock("ViewPointDock"), "uiTxtBoxX").text();
  map().zoom(1.5);
  seeDrawn();
  EXPECT_EQ(find<QLineEdit>(dock("ViewPointDock"), "uiTxtBoxX").text(), chosen);
  apply("ViewPointDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), chosen.toStdString());
}

TEST_F(ViewerProperties, RevertTakesAStepOfTheViewpointBack) {
  pickOverlaps();
  open("ViewPointDock");
  const std::string before = servicePropertiesAt("ViewPointX");
  clickMove(dock("ViewPointDock"), "MoveLeft");
  EXPECT_NE(find<QLineEdit>(dock("ViewPointDock"), "uiTxtBoxX").text(), "");
  click(dock("ViewPointDock"), "RevertProperties");
  EXPECT_EQ(find<QLineEdit>(dock("ViewPointDock"), "uiTxtBoxX").text(), "");
  apply("ViewPointDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), before);
}

TEST_F(ViewerProperties, PickingAnotherServiceSwapsThePages) {
  pickOverlaps();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  apply("PropertiesDock");
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
    viewer::person::clickRow(list, 1);
    QCoreApplication::processEvents();
    viewer::person::clickRow(list, 0);
  }
  seeDrawn();
  EXPECT_EQ(map().image().reference, window_->services().rows()[0].reference);
  EXPECT_EQ(imageColor(), blue);
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
  EXPECT_FALSE(map().image().isShown);
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
  QList<QPointer<QWidget>> pages;
  for (const char* name : {"PropertiesDock", "ViewPointDock", "MetadataDock"}) {
    open(name);
    auto* const place = dock(name).findChild<QWidget*>(QLatin1String(name) + "Place");
    pages += place->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_FALSE(pages.last().isNull()) << name;
  }
  const std::weak_ptr<viewer::PickedService> service = window_->pickedService();
  EXPECT_TRUE(window_->close());
  window_.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  for (const auto& page : pages) EXPECT_TRUE(page.isNull());
  EXPECT_TRUE(service.expired());
  EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
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
  EXPECT_EQ(imageColor(), red);
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
  EXPECT_EQ(imageColor(), green);
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
  EXPECT_EQ(imageColor(), red);
}

TEST_F(ViewerProperties, AViewpointOfOneServiceReachesNoOther) {
  pickOverlaps();
  open("ViewPointDock");
  clickMove(dock("ViewPointDock"), "MoveLeft");
  apply("ViewPointDock");
  open("ViewPointDock");
  pickSample("Imagery/Valley/Ortho_Mosaic");
  seeDrawn();
  const std::string before = servicePropertiesAt("ViewPointX");
  open("PropertiesDock");
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), before);
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
  EXPECT_EQ(imageColor(), green);
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
  const auto& opened = window_->services().rows().front();
  EXPECT_EQ(opened.state, viewer::ServiceListModel::State::Ready);
  EXPECT_EQ(opened.name(), "locked");
  EXPECT_TRUE(opened.service.envelope);
  EXPECT_EQ(servicePropertiesAt("LockImageID"), "1");
  EXPECT_EQ(imageColor(0.2, 0.5), red);
}

TEST(Session, FilesOfTheCommandLineAreToBeOpened) {
  const auto session = viewer::planSession({"one.VLRef", "--catalogue", ".", "/two.VLDef"});
  EXPECT_EQ(session.files,
            (std::vector<std::filesystem::path>{std::filesystem::absolute("one.VLRef"), "/two.VLDef"}));
  EXPECT_EQ(viewer::planSession({"--server", "maps.example"}).server, "maps.example");
  EXPECT_EQ(viewer::planSession({"--server"}).kind, viewer::Session::Kind::WrongUsage);
  EXPECT_EQ(viewer::planSession({"--allow-outside", "/", "--allow-outside", "/tmp"}).allowedFolders.size(),
            2U);
  EXPECT_EQ(viewer::planSession({"--allow-outside", "/none"}).kind, viewer::Session::Kind::WrongUsage);
  EXPECT_EQ(viewer::planSession({"--unknown"}).kind, viewer::Session::Kind::WrongUsage);
}

TEST(Session, ACatalogueThatIsNoFolderIsNamed) {
  const auto session = viewer::planSession({"--catalogue", "/no/such/folder"});
  EXPECT_EQ(session.kind, viewer::Session::Kind::WrongUsage);
  EXPECT_EQ(session.problem, "the catalogue '/no/such/folder' is no folder");
}

}  // namespace
}  // namespace vlclientui::test
