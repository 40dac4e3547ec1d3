#include <QSignalSpy>

#include "apps/viewer/ViewerFixture.h"

namespace vlclientui::test {
namespace {

using viewer::person::drag;
using viewer::person::press;

class MapRectangle : public ViewerFixture {
 protected:
  MapRectangle() { map().showExtent({0, 0, 40, 30}); }
};

TEST_F(MapRectangle, IsThePlaceUnderThePointer) {
  const auto view = map().view();
  action("DrawRectangle").trigger();
  drag(map(), {0.75, 0.25}, {0.25, 0.5});
  const auto drawn = map().rectangle();
  ASSERT_TRUE(drawn);
  const double width = view.xMax - view.xMin;
  const double height = view.yMax - view.yMin;
  const double pixel = width / map().width();
  EXPECT_NEAR(drawn->xMin, view.xMin + 0.25 * width, pixel);
  EXPECT_NEAR(drawn->xMax, view.xMin + 0.75 * width, pixel);
  EXPECT_NEAR(drawn->yMax, view.yMax - 0.25 * height, pixel);
  EXPECT_NEAR(drawn->yMin, view.yMax - 0.5 * height, pixel);
  EXPECT_EQ(map().view(), view);
}

TEST_F(MapRectangle, EndsTheDrawingSoThatDraggingMovesTheMapAgain) {
  action("DrawRectangle").trigger();
  EXPECT_TRUE(action("DrawRectangle").isChecked());
  drag(map(), {0.25, 0.25}, {0.5, 0.5});
  EXPECT_FALSE(action("DrawRectangle").isChecked());
  const auto view = map().view();
  const auto drawn = map().rectangle();
  drag(map(), {0.25, 0.25}, {0.5, 0.5});
  EXPECT_NE(map().view(), view);
  EXPECT_EQ(map().rectangle(), drawn);
}

TEST_F(MapRectangle, StaysUntilItIsCleared) {
  EXPECT_FALSE(action("ClearRectangle").isEnabled());
  action("DrawRectangle").trigger();
  drag(map(), {0.25, 0.25}, {0.5, 0.5});
  map().showWorld();
  EXPECT_TRUE(map().rectangle());
  EXPECT_TRUE(action("ClearRectangle").isEnabled());
  action("ClearRectangle").trigger();
  EXPECT_FALSE(map().rectangle());
  EXPECT_FALSE(action("ClearRectangle").isEnabled());
}

TEST_F(MapRectangle, IsSeenOnTheMap) {
  const QImage before = map().grab().toImage();
  action("DrawRectangle").trigger();
  drag(map(), {0.25, 0.25}, {0.5, 0.5});
  EXPECT_NE(map().grab().toImage(), before);
  map().clearRectangle();
  EXPECT_EQ(map().grab().toImage(), before);
}

TEST_F(MapRectangle, AClickDrawsNothingAndKeepsTheFormerOne) {
  action("DrawRectangle").trigger();
  drag(map(), {0.25, 0.25}, {0.5, 0.5});
  const auto drawn = map().rectangle();
  action("DrawRectangle").trigger();
  QTest::mouseClick(&map(), Qt::LeftButton);
  EXPECT_EQ(map().rectangle(), drawn);
  EXPECT_TRUE(action("DrawRectangle").isChecked());
}

TEST_F(MapRectangle, EscapeGivesUp) {
  action("DrawRectangle").trigger();
  map().setFocus();
  press(map(), Qt::Key_Escape);
  EXPECT_FALSE(action("DrawRectangle").isChecked());
  const auto view = map().view();
  drag(map(), {0.25, 0.25}, {0.5, 0.5});
  EXPECT_FALSE(map().rectangle());
  EXPECT_NE(map().view(), view);
}

TEST_F(MapRectangle, IsCutToTheWorld) {
  map().showWorld();
  map().zoom(0.5);
  action("DrawRectangle").trigger();
  drag(map(), {0.05, 0.05}, {0.95, 0.95});
  EXPECT_EQ(map().rectangle(), host::GeographicEnvelope{});
}

}  // namespace
}  // namespace vlclientui::test
