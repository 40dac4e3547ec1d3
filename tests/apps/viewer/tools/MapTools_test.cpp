// The tools that move the map, by their actions, keys and the pointer.

#include "viewer/tools/MapTools.h"

#include <QClipboard>
#include <QMenu>

#include "apps/viewer/ViewerDocksFixture.h"
#include "client/facade/ServiceDrawing.h"
#include "client/mapping/PointWay.h"

namespace vlclientui::test {
namespace {

using viewer::person::drag;
using viewer::person::press;

class MapTools : public ViewerDocksFixture {
 protected:
  // As a person who looks before moving on.
  void showAtRest(const host::GeographicEnvelope& extent) {
    map().showExtent(extent);
    rest();
  }
  void rest() { QTest::qWait(500); }
  [[nodiscard]] client::MapPoint middle() const { return map().frame().middle(); }
  [[nodiscard]] QPoint at(double across, double down) const {
    return QPointF(map().width() * across, map().height() * down).toPoint();
  }
};

TEST_F(MapTools, TheZoomBoxFillsTheMapAndTheToolStays) {
  map().showExtent({0, 0, 40, 30});
  const auto wanted = map().frame().toMap(at(0.625, 0.375));
  const double pixel = map().frame().pixel();
  action("ZoomBox").trigger();
  EXPECT_TRUE(action("ZoomBox").isChecked());
  drag(map(), {0.5, 0.25}, {0.75, 0.5});
  EXPECT_NEAR(middle().x, wanted.x, 2 * pixel);
  EXPECT_NEAR(middle().y, wanted.y, 2 * pixel);
  EXPECT_NEAR(map().frame().pixel(), pixel / 4, pixel / 100);
  EXPECT_TRUE(action("ZoomBox").isChecked());
  press(map(), Qt::Key_Escape);
  EXPECT_FALSE(action("ZoomBox").isChecked());
}

TEST_F(MapTools, ABoxWithTheShiftKeyNeedsNoTool) {
  map().showExtent({0, 0, 40, 30});
  const double pixel = map().frame().pixel();
  QTest::mousePress(&map(), Qt::LeftButton, Qt::ShiftModifier, at(0.25, 0.25));
  QTest::mouseMove(&map(), at(0.5, 0.5));
  QTest::mouseRelease(&map(), Qt::LeftButton, Qt::ShiftModifier, at(0.75, 0.75));
  EXPECT_NEAR(map().frame().pixel(), pixel / 2, pixel / 50);
}

TEST_F(MapTools, AClickWithTheZoomBoxMovesNothing) {
  map().showExtent({0, 0, 40, 30});
  const auto view = map().view();
  action("ZoomBox").trigger();
  QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier, at(0.25, 0.25));
  EXPECT_EQ(map().view(), view);
}

TEST_F(MapTools, OneToolAtATimeIsOn) {
  action("ZoomBox").trigger();
  action("DrawRectangle").trigger();
  EXPECT_FALSE(action("ZoomBox").isChecked());
  action("ZoomBox").trigger();
  EXPECT_FALSE(action("DrawRectangle").isChecked());
  EXPECT_TRUE(action("ZoomBox").isChecked());
}

TEST_F(MapTools, GoesToThePreviousAndTheNextView) {
  showAtRest({0, 0, 10, 10});
  const auto first = middle();
  showAtRest({20, 20, 30, 30});
  const auto second = middle();
  EXPECT_TRUE(action("PreviousView").isEnabled());
  EXPECT_FALSE(action("NextView").isEnabled());
  press(map(), Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(middle(), first);
  press(map(), Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(middle(), second);
  EXPECT_FALSE(action("NextView").isEnabled());
}

TEST_F(MapTools, SeveralMovesTogetherAreOneView) {
  showAtRest({0, 0, 10, 10});
  const auto first = middle();
  for (int i = 0; i < 5; ++i) press(map(), Qt::Key_Right);
  action("PreviousView").trigger();
  EXPECT_EQ(middle(), first);
}

TEST_F(MapTools, TheFirstViewHasNoPreviousOne) {
  rest();
  EXPECT_FALSE(action("PreviousView").isEnabled());
  EXPECT_FALSE(action("NextView").isEnabled());
  window_->resize(1000, 700);
  rest();
  EXPECT_FALSE(action("PreviousView").isEnabled());
}

TEST_F(MapTools, ThePreviousViewIsShownInTheSystemOfNow) {
  showAtRest({8, 46, 9, 47});
  showAtRest({20, 40, 30, 50});
  map().setSystem(*client::mapSystemOf("EPSG:3857"));
  rest();
  action("PreviousView").trigger();
  EXPECT_EQ(map().frame().system().id, "EPSG:3857");
  const auto place = map().frame().degreesAt(QPointF(map().width() / 2.0, map().height() / 2.0));
  ASSERT_TRUE(place);
  EXPECT_NEAR(place->x, 8.5, 0.01);
  EXPECT_NEAR(place->y, 46.5, 0.01);
}

TEST_F(MapTools, NativePixelsAreThoseOfThePickedService) {
  EXPECT_FALSE(action("NativePixels").isEnabled());
  pickOverlaps();
  EXPECT_TRUE(action("NativePixels").isEnabled());
  const auto& facts = window_->services().rows()[0].service.drawing->facts();
  action("NativePixels").trigger();
  EXPECT_EQ(map().frame().system().wkt, facts.srsWkt);
  EXPECT_NEAR(map().frame().pixel(), facts.pixelSize, facts.pixelSize * 1e-6);
}

TEST_F(MapTools, NativePixelsOfAServiceElsewhereAreShownWhereItLies) {
  pickOverlaps();
  map().setSystem(*client::mapSystemOf("EPSG:3857"));
  map().showExtent({-60, -20, -50, -10});
  action("NativePixels").trigger();
  const auto& envelope = *window_->services().rows()[0].service.envelope;
  const auto place = map().frame().degreesAt(QPointF(map().width() / 2.0, map().height() / 2.0));
  ASSERT_TRUE(place);
  EXPECT_NEAR(place->x, (envelope.xMin + envelope.xMax) / 2, 0.01);
  EXPECT_NEAR(place->y, (envelope.yMin + envelope.yMax) / 2, 0.01);
}

TEST_F(MapTools, TheContextMenuCopiesThePlace) {
  map().showExtent({0, 0, 40, 30});
  QContextMenuEvent event(QContextMenuEvent::Keyboard, map().rect().center(),
                          map().mapToGlobal(map().rect().center()));
  QApplication::sendEvent(&map(), &event);
  auto* const menu = window_->findChild<QMenu*>("MapMenu");
  ASSERT_TRUE(menu != nullptr);
  EXPECT_TRUE(menu->actions().contains(&action("ZoomToService")));
  action("CopyPlace").trigger();
  menu->close();
  const QString text = QGuiApplication::clipboard()->text();
  EXPECT_TRUE(text.contains("E, ")) << text.toStdString();
}

TEST_F(MapTools, EveryToolHasATextAnIconAndATip) {
  for (const char* name : {"ZoomIn", "ZoomOut", "ZoomBox", "PreviousView", "NextView", "NativePixels"}) {
    EXPECT_FALSE(action(name).icon().isNull()) << name;
    EXPECT_FALSE(action(name).shortcut().isEmpty()) << name;
    EXPECT_FALSE(action(name).toolTip().isEmpty()) << name;
  }
  keepPicture(*window_, "map-tools");
}

}  // namespace
}  // namespace vlclientui::test
