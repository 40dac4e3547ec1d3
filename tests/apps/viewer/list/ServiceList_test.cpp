// The list of services as a person uses it, and what becomes of the picked service meanwhile.
#include "viewer/list/ServiceList.h"

#include <QSpinBox>
#include <QStatusBar>

#include "apps/viewer/ViewerDocksFixture.h"

namespace vlclientui::test {
namespace {

using viewer::ServiceList;
using viewer::person::clickRow;
using viewer::person::find;
using viewer::person::press;

constexpr const char* geoid = "World/EGM96_Geoid";

class ServiceListTest : public ViewerDocksFixture {
 protected:
  [[nodiscard]] ServiceList& list() const { return find<ServiceList>(*window_, "ServiceList"); }
  [[nodiscard]] const viewer::ServiceListModel::Row& row(std::size_t index) const {
    return window_->services().rows().at(index);
  }
  [[nodiscard]] std::string order() const {
    std::string all;
    for (const auto& each : window_->services().rows()) all += each.name().left(1).toStdString();
    return all;
  }
  void selectAll() { list().selectAll(); }
  /// The mosaic of three plain colors over terrain over the geoid.
  void pickThree() {
    pickSample(geoid);
    pickSample("Elevation/Terrain_30m");
    pickOverlaps();
    list().setFocus();
  }
  void lockToRed() {
    window_->drawWith(
        "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"
        "</ImageServiceProperties></Vorlane>");
    seeDrawn();
  }
  void editMethod() {
    open("PropertiesDock");
    chooseMethod("Closest to Viewpoint");
  }
  static void answerEdits(Qt::Key key) { press(window("Changes that wait"), key); }
};

TEST_F(ServiceListTest, ShowsAndHidesByItsCheckBoxAndKeys) {
  pickThree();
  EXPECT_EQ(screenColor(), blue);
  press(list(), Qt::Key_Space);
  EXPECT_FALSE(row(0).shown.isVisible);
  EXPECT_NE(screenColor(), blue);
  selectAll();
  action("ToggleVisible").trigger();
  EXPECT_TRUE(row(0).shown.isVisible && row(1).shown.isVisible && row(2).shown.isVisible)
      << "where one is hidden all are shown";
  action("ToggleVisible").trigger();
  EXPECT_FALSE(row(0).shown.isVisible || row(1).shown.isVisible || row(2).shown.isVisible);
  keepPicture(*window_, "list-hidden");
}

TEST_F(ServiceListTest, MovesServicesByKeysAndTheMapFollows) {
  pickThree();
  const std::string before = order();
  press(list(), Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(order(), std::string({before[1], before[0], before[2]}));
  EXPECT_EQ(list().currentIndex().row(), 1) << "it stays picked";
  press(list(), Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(order(), std::string({before[1], before[2], before[0]}));
  EXPECT_NE(screenColor(), blue) << "the geoid covers it now";
  EXPECT_EQ(map().image().reference, row(2).reference);
  press(list(), Qt::Key_Up, Qt::ControlModifier);
  press(list(), Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(order(), before);
  EXPECT_EQ(screenColor(), blue);
}

TEST_F(ServiceListTest, TakesAnOpacityForAllThatAreSelected) {
  pickThree();
  selectAll();
  action("Opacity25").trigger();
  for (const auto& each : window_->services().rows()) EXPECT_EQ(each.shown.opacity, 0.25);
  EXPECT_NE(screenColor(), blue);
  EXPECT_TRUE(row(0).name().size() > 0 &&
              list().model()->index(0, 0).data().toString().contains("25 % opaque"));
  act([this] { action("OtherOpacity").trigger(); });
  see("the question", [] { return window("Opacity").isVisible(); });
  act([] {
    auto& box = *window("Opacity").findChild<QSpinBox*>();
    EXPECT_EQ(box.value(), 25);
    box.setValue(100);
    press(window("Opacity"), Qt::Key_Return);
  });
  seeNoWindow();
  run();
  EXPECT_EQ(row(2).shown.opacity, 1);
  EXPECT_EQ(screenColor(), blue);
  keepPicture(*window_, "list-three");
}

TEST_F(ServiceListTest, RenamesTheServiceInItsPlace) {
  pickThree();
  press(list(), Qt::Key_F2);
  auto& line = find<QLineEdit>(list(), "ServiceName");
  EXPECT_EQ(line.text(), row(0).service.title);
  viewer::person::typeInto(line, "Sheets");
  keepPicture(*window_, "list-rename");
  press(line, Qt::Key_Return);
  QCoreApplication::processEvents();
  EXPECT_EQ(row(0).name(), "Sheets");
  EXPECT_EQ(row(0).shown.name, "Sheets");
}

TEST_F(ServiceListTest, RemovesAllThatAreSelected) {
  pickThree();
  list().selectionModel()->select(list().model()->index(1, 0), QItemSelectionModel::Select);
  press(list(), Qt::Key_Delete);
  ASSERT_EQ(window_->services().rowCount(), 1);
  EXPECT_EQ(row(0).reference, QString("ImageService://127.0.0.1/") + geoid);
  seeDrawn();
  EXPECT_EQ(window_->pickedService() != nullptr, true) << "its neighbor is picked";
}

TEST_F(ServiceListTest, ItsContextMenuHasWhatCanBeDone) {
  pickThree();
  QStringList names;
  for (const QAction* each : list().actions()) names += each->objectName();
  for (const char* name :
       {"ToggleVisible", "Opacity", "RenameService", "MoveServiceUp", "MoveServiceToBottom", "ZoomToService",
        "ServiceProperties", "ExportService", "RemoveService"})
    EXPECT_TRUE(names.contains(name)) << name;
  EXPECT_EQ(list().contextMenuPolicy(), Qt::ActionsContextMenu);
}

TEST_F(ServiceListTest, KeepsWhatWasAppliedToEachService) {
  pickThree();
  lockToRed();
  EXPECT_EQ(imageColor(), red);
  clickRow(list(), 2);
  seeDrawn();
  EXPECT_NE(map().image().reference, row(0).reference);
  clickRow(list(), 0);
  seeDrawn();
  EXPECT_EQ(imageColor(), red);
  EXPECT_EQ(servicePropertiesAt("LockImageID"), "1");
}

TEST_F(ServiceListTest, TellsWhatCannotBeAppliedAnyMoreAndShowsTheServiceAllTheSame) {
  pickThree();
  auto& services = const_cast<viewer::ServiceListModel&>(window_->services());
  services.keepProperties(1, "no document");
  clickRow(list(), 1);
  seeDrawn();
  EXPECT_EQ(map().image().reference, row(1).reference);
  EXPECT_FALSE(window_->statusBar()->currentMessage().isEmpty());
}

TEST_F(ServiceListTest, AsksAboutEditsBeforeAnotherServiceIsPicked) {
  pickThree();
  act([this] {
    editMethod();
    clickRow(list(), 2);
  });
  see("the question", [] { return window("Changes that wait").isVisible(); });
  act([] {
    keepPicture(window("Changes that wait"), "edits-question");
    answerEdits(Qt::Key_Escape);
  });
  see("the former row", [this] { return list().currentIndex().row() == 0; });
  act([this] {
    EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "Closest to Viewpoint");
    clickRow(list(), 2);
  });
  see("the question again", [] { return window("Changes that wait").isVisible(); });
  act([] { answerEdits(Qt::Key_A); });
  see("the other service", [this] { return map().image().reference == row(2).reference; });
  run();
  EXPECT_NE(row(0).shown.properties.find("<MosaicMethod>Closest to Viewpoint"), std::string::npos);
}

TEST_F(ServiceListTest, DiscardsEditsWhenAPersonSaysSo) {
  pickThree();
  act([this] {
    editMethod();
    clickRow(list(), 2);
  });
  see("the question", [] { return window("Changes that wait").isVisible(); });
  act([] { answerEdits(Qt::Key_D); });
  see("the other service", [this] { return map().image().reference == row(2).reference; });
  run();
  EXPECT_EQ(row(0).shown.properties, "");
}

TEST_F(ServiceListTest, AsksAboutEditsBeforeTheirServiceIsRemovedOrTheWindowCloses) {
  pickThree();
  act([this] {
    editMethod();
    window_->removeService();
  });
  see("the question", [] { return window("Changes that wait").isVisible(); });
  act([] { answerEdits(Qt::Key_Escape); });
  act([this] {
    EXPECT_EQ(window_->services().rowCount(), 3);
    window_->close();
  });
  see("the question again", [] { return window("Changes that wait").isVisible(); });
  act([] { answerEdits(Qt::Key_Escape); });
  act([this] {
    EXPECT_TRUE(window_->isVisible());
    window_->removeService();
  });
  see("the last question", [] { return window("Changes that wait").isVisible(); });
  act([] { answerEdits(Qt::Key_Y); });
  see("that it is gone", [this] { return window_->services().rowCount() == 2; });
  run();
}

TEST_F(ServiceListTest, MarksTheOutlineOfThePickedServiceAlsoBelowOthersAndHidden) {
  pickThree();
  press(list(), Qt::Key_End, Qt::ControlModifier);
  press(list(), Qt::Key_Space);
  const auto& extent = *row(2).service.envelope;
  const QPointF corner = map().toPixel(extent.xMin, extent.yMax);
  const QColor marked = map().grab().toImage().pixelColor((corner + QPointF(60, 0)).toPoint());
  keepPicture(*window_, "list-outline");
  clickRow(list(), 0);
  seeDrawn();
  EXPECT_NE(map().grab().toImage().pixelColor((corner + QPointF(60, 0)).toPoint()), marked);
}

}  // namespace
}  // namespace vlclientui::test
