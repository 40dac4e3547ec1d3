// Services of the list dragged by a mouse.
#include <QStyleFactory>
#include <QWindow>

#include "apps/viewer/ViewerDocksFixture.h"
#include "viewer/list/ServiceList.h"

namespace vlclientui::test {
namespace {

class DraggedServices : public ViewerDocksFixture {
 protected:
  DraggedServices() {
    pickSample("World/EGM96_Geoid");
    pickSample("Elevation/Terrain_30m");
    pickOverlaps();
  }

  [[nodiscard]] viewer::ServiceList& list() const {
    return viewer::person::find<viewer::ServiceList>(*window_, "ServiceList");
  }
  [[nodiscard]] std::string order() const {
    std::string all;
    for (const auto& each : window_->services().rows()) all += each.name().left(1).toStdString();
    return all;
  }
  /// @param share of the row's height, from its top.
  [[nodiscard]] QPoint placeIn(int row, double share) const {
    const QRect place = list().visualRect(list().model()->index(row, 0));
    const QPoint inList(place.center().x(), place.top() + static_cast<int>(place.height() * share));
    return list().viewport()->mapTo(window_.get(), inList);
  }
  /// A press, moves in small steps and a release, as the window system tells them. The drag runs events of
  /// its own, so the later steps come by themselves.
  void drag(QPoint from, QPoint to) {
    QWindow* const window = window_->windowHandle();
    constexpr int steps = 12;
    constexpr int pause = 25;
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    for (int step = 1; step <= steps; ++step) {
      const QPoint at = from + (to - from) * step / steps;
      QTimer::singleShot(pause * step, window, [window, at] { QTest::mouseMove(window, at); });
    }
    bool isOver = false;
    QTimer::singleShot(pause * (steps + 2), window, [&, window] {
      QTest::mouseRelease(window, Qt::LeftButton, {}, to);
      isOver = true;
    });
    ASSERT_TRUE(QTest::qWaitFor([&isOver] { return isOver; }, 20'000));
    QTest::qWait(50);
  }
};

TEST_F(DraggedServices, LieWhereTheyAreDropped) {
  const std::string before = order();
  drag(placeIn(0, 0.5), placeIn(2, 0.8));
  EXPECT_EQ(order(), std::string({before[1], before[2], before[0]}));
  EXPECT_EQ(list().currentIndex().row(), 2) << "it stays picked";
  drag(placeIn(2, 0.5), placeIn(0, 0.2));
  EXPECT_EQ(order(), before);
}

TEST_F(DraggedServices, MoveTogetherWhereSeveralAreSelected) {
  const std::string before = order();
  list().selectionModel()->select(list().model()->index(1, 0), QItemSelectionModel::Select);
  drag(placeIn(1, 0.5), placeIn(2, 0.9));
  EXPECT_EQ(order(), std::string({before[2], before[0], before[1]}));
}

TEST_F(DraggedServices, ChangeTheMap) {
  EXPECT_EQ(screenColor(), blue);
  drag(placeIn(0, 0.5), placeIn(2, 0.9));
  seeDrawn();
  EXPECT_NE(screenColor(), blue) << "others lie above it now";
}

}  // namespace
}  // namespace vlclientui::test

// The platform without a screen drags nothing; this one leaves dragging to the toolkit itself.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts");
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
