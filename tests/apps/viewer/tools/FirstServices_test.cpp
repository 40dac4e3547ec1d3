// What the map shows when the first services come onto it.

#include "viewer/tools/FirstServices.h"

#include "apps/viewer/ViewerDocksFixture.h"
#include "client/facade/ServiceDrawing.h"

namespace vlclientui::test {
namespace {

class FirstServices : public ViewerDocksFixture {
 protected:
  [[nodiscard]] bool shows(const host::GeographicEnvelope& extent) const {
    const auto view = map().view();
    return view.xMin <= extent.xMin && view.xMax >= extent.xMax && view.yMin <= extent.yMin &&
           view.yMax >= extent.yMax && view.xMax - view.xMin < 6 * (extent.xMax - extent.xMin) + 0.01;
  }
  [[nodiscard]] const viewer::ServiceListModel::Row& row(std::size_t number) const {
    return window_->services().rows()[number];
  }
};

TEST_F(FirstServices, AreShownInTheirOwnSystem) {
  pickSample(overlaps);
  EXPECT_EQ(map().frame().system().wkt, row(0).service.drawing->facts().srsWkt);
  EXPECT_TRUE(shows(*row(0).service.envelope));
}

TEST_F(FirstServices, LaterOnesMoveNothing) {
  pickSample(overlaps);
  const auto view = map().view();
  const auto system = map().frame().system();
  pickSample("World/EGM96_Geoid");
  EXPECT_EQ(map().view(), view);
  EXPECT_EQ(map().frame().system(), system);
}

TEST_F(FirstServices, LeaveASystemThatAPersonHasChosen) {
  action("SystemWebMercator").trigger();
  pickSample(overlaps);
  EXPECT_EQ(map().frame().system().id, "EPSG:3857");
  EXPECT_TRUE(shows(*row(0).service.envelope));
}

TEST_F(FirstServices, OfAListThatWasEmptiedAreShownAnew) {
  pickSample(overlaps);
  window_->removeService();
  ASSERT_EQ(window_->services().rowCount(), 0);
  pickSample("World/EGM96_Geoid");
  EXPECT_EQ(map().frame().system().wkt, row(0).service.drawing->facts().srsWkt);
}

TEST_F(FirstServices, MoveNothingWhereAPersonMovedTheMapMeanwhile) {
  seeDrawn();
  window_->takeSelectedServices("<SelectedImageServices><Name>ImageService://127.0.0.1/" +
                                std::string(overlaps) + "</Name></SelectedImageServices>");
  map().showExtent({100, 10, 120, 20});
  const auto middle = map().frame().middle();
  seeDrawn();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  EXPECT_EQ(map().frame().middle(), middle);
  EXPECT_TRUE(map().frame().isInDegrees());
}

TEST_F(FirstServices, ThatCannotBeReadAreSteppedOver) {
  const std::string prefix = "<Name>ImageService://127.0.0.1/";
  window_->takeSelectedServices("<SelectedImageServices>" + prefix + overlaps + "</Name>" + prefix +
                                "Imagery/None</Name></SelectedImageServices>");
  ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  EXPECT_EQ(row(0).state, viewer::ServiceListModel::State::Unreadable);
  EXPECT_TRUE(shows(*row(1).service.envelope));
}

TEST_F(FirstServices, ThatAreThereAlreadyArePickedAgain) {
  pickSample(overlaps);
  pickSample("World/EGM96_Geoid");
  auto& list = *window_->findChild<QListView*>();
  EXPECT_EQ(list.currentIndex().row(), 0);
  pickSample(overlaps);
  EXPECT_EQ(window_->services().rowCount(), 2);
  EXPECT_EQ(list.currentIndex().row(), 1);
}

TEST_F(FirstServices, OfANewProjectBeginInDegreesAgain) {
  action("SystemWebMercator").trigger();
  pickSample(overlaps);
  act([this] { action("NewProject").trigger(); });
  see("the question", [] { return QApplication::activeModalWidget() != nullptr; });
  act([] { dynamic_cast<QMessageBox&>(modalWindow()).button(QMessageBox::Discard)->click(); });
  seeNoWindow();
  run();
  EXPECT_TRUE(map().frame().isInDegrees());
  pickSample(overlaps);
  EXPECT_EQ(map().frame().system().wkt, row(0).service.drawing->facts().srsWkt);
}

}  // namespace
}  // namespace vlclientui::test
