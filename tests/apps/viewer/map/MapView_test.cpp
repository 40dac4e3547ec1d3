// Pointer and wheel on the map.

#include <QMouseEvent>
#include <QWheelEvent>

#include "apps/viewer/ViewerFixture.h"

namespace vlclientui::test {
namespace {

constexpr int notch = 120;  // of a wheel

class MapView : public ViewerFixture {
 protected:
  void turnWheel(QPointF at, int turn) {
    QWheelEvent event(at, map().mapToGlobal(at), {}, {0, turn}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&map(), &event);
  }
  void move(QPoint to, Qt::MouseButtons buttons) {
    QMouseEvent event(QEvent::MouseMove, to, map().mapToGlobal(QPointF(to)), Qt::NoButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(&map(), &event);
  }
};

TEST_F(MapView, TheWheelKeepsThePlaceUnderThePointer) {
  map().showExtent({0, 0, 40, 30});
  const QPointF pointer = map().toPixel(10, 10);
  turnWheel(pointer, notch);
  EXPECT_LT((map().toPixel(10, 10) - pointer).manhattanLength(), 0.01);
}

TEST_F(MapView, TheWheelMovesNothingWhereTheZoomEnds) {
  for (const double zoom : {1e12, 1e-12}) {
    map().showWorld();
    map().zoom(zoom);
    const auto view = map().view();
    turnWheel({20, 20}, zoom > 1 ? notch : -notch);
    EXPECT_EQ(map().view(), view) << zoom;
  }
}

TEST_F(MapView, ARightPressWhileARectangleIsDrawnLeavesItsCornerAlone) {
  map().showExtent({0, 0, 40, 30});
  map().setDrawing(true);
  const QPoint first(60, 60);
  const QPoint last(200, 160);
  const QPointF corner = map().toPixel(0, 0);
  QTest::mousePress(&map(), Qt::LeftButton, Qt::NoModifier, first);
  move({120, 100}, Qt::LeftButton);
  QTest::mousePress(&map(), Qt::RightButton, Qt::NoModifier, QPoint(150, 120));
  QTest::mouseRelease(&map(), Qt::RightButton, Qt::NoModifier, QPoint(150, 120));
  move({160, 130}, Qt::LeftButton);
  QTest::mouseRelease(&map(), Qt::LeftButton, Qt::NoModifier, last);
  ASSERT_TRUE(map().rectangle());
  EXPECT_EQ(map().toPixel(0, 0), corner);
  EXPECT_LT((map().toPixel(map().rectangle()->xMin, map().rectangle()->yMax) - first).manhattanLength(), 1);
  EXPECT_LT((map().toPixel(map().rectangle()->xMax, map().rectangle()->yMin) - last).manhattanLength(), 1);
}

TEST_F(MapView, ARightPressAloneMovesNothing) {
  map().showExtent({0, 0, 40, 30});
  const auto view = map().view();
  const QCursor pointer = map().cursor();
  QTest::mousePress(&map(), Qt::RightButton, Qt::NoModifier, QPoint(60, 60));
  EXPECT_EQ(map().cursor().shape(), pointer.shape());
  move({100, 100}, Qt::RightButton);
  QTest::mouseRelease(&map(), Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
  EXPECT_EQ(map().view(), view);
}

}  // namespace
}  // namespace vlclientui::test
