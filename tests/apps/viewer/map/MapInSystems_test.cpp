// The map in other systems than degrees: where services lie, what it shows, and how a person chooses.

#include <QInputDialog>
#include <QLabel>
#include <QMouseEvent>

#include "apps/viewer/ViewerDocksFixture.h"
#include "client/mapping/MapSystem.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::test {
namespace {

class MapInSystems : public ViewerDocksFixture {
 protected:
  void use(const char* code) {
    map().setSystem(*client::mapSystemOf(code));
    seeDrawn();
  }
  /// As a person who types it into the question of the menu.
  void askFor(const QString& code) {
    act([this] { action("SystemByCode").trigger(); });
    see("the question",
        [] { return dynamic_cast<QInputDialog*>(QApplication::activeModalWidget()) != nullptr; });
    act([code] {
      auto& question = dynamic_cast<QInputDialog&>(modalWindow());
      question.setTextValue(code);
      question.accept();
    });
  }
};

TEST_F(MapInSystems, ShowsTheSamePartOfTheEarthInEachOfThem) {
  map().showExtent({8.0, 46.0, 9.0, 47.0});
  for (const char* code : {"EPSG:3857", "EPSG:32632", "EPSG:2056", "EPSG:3035", "EPSG:4326"}) {
    use(code);
    const auto view = map().view();
    EXPECT_LT(view.xMin, 8.0) << code;
    EXPECT_GT(view.xMax, 9.0) << code;
    EXPECT_LT(view.yMin, 46.0) << code;
    EXPECT_GT(view.yMax, 47.0) << code;
    EXPECT_LT(view.yMax - view.yMin, 3.5) << code;
    const QPointF middle = map().toPixel(8.5, 46.5);
    EXPECT_LT((middle - QPointF(map().width() / 2.0, map().height() / 2.0)).manhattanLength(),
              map().width() / 10.0)
        << code;
  }
}

TEST_F(MapInSystems, DrawsServicesWhereTheirPlaceIs) {
  pickOverlaps();
  for (const char* code : {"EPSG:3857", "EPSG:32632", "EPSG:3035", "EPSG:4326"}) {
    use(code);
    EXPECT_EQ(imageColor(), blue) << code;
  }
}

TEST_F(MapInSystems, DrawsServicesThatAreNotPickedAlike) {
  pickOverlaps();
  const QString reference = map().image().reference;
  const QImage picked = map().picture(reference);
  pickSample("World/EGM96_Geoid");
  seeDrawn();
  EXPECT_EQ(map().picture(reference), picked);
}

TEST_F(MapInSystems, ChoosesThemFromItsMenu) {
  pickOverlaps();
  action("SystemWebMercator").trigger();
  seeDrawn();
  EXPECT_EQ(map().frame().system().id, "EPSG:3857");
  EXPECT_TRUE(action("SystemWebMercator").isChecked());
  action("SystemOfFirst").trigger();
  seeDrawn();
  EXPECT_EQ(map().frame().system().wkt, window_->services().rows()[0].service.drawing->facts().srsWkt);
  EXPECT_TRUE(action("SystemOfFirst").isChecked());
  keepPicture(*window_, "map-of-first");
  action("SystemDegrees").trigger();
  seeDrawn();
  EXPECT_TRUE(map().frame().isInDegrees());
}

TEST_F(MapInSystems, ChoosesAnyByItsCode) {
  askFor("EPSG:2056");
  seeNoWindow();
  run();
  EXPECT_EQ(map().frame().system().id, "EPSG:2056");
}

TEST_F(MapInSystems, KeepsItsSystemWhereACodeIsNone) {
  askFor("EPSG:1");
  seeMessage("Coordinate system of the map", "EPSG:1");
  seeNoWindow();
  run();
  EXPECT_TRUE(map().frame().isInDegrees());
}

TEST_F(MapInSystems, KeepsThePlaceAndTheScaleHoweverOftenTheSystemChanges) {
  seeDrawn();
  map().showExtent({8.0, 46.0, 9.0, 47.0});
  map().zoomIn();
  const double ground = *map().frame().groundPixel();
  for (const char* code : {"EPSG:3857", "EPSG:2056", "EPSG:3413", "EPSG:3035", "EPSG:4326", "EPSG:4258"}) {
    use(code);
    EXPECT_NEAR(*map().frame().groundPixel(), ground, ground * 1e-3) << code;
    const auto place = map().frame().degreesAt({map().width() / 2.0, map().height() / 2.0});
    ASSERT_TRUE(place) << code;
    EXPECT_NEAR(place->x, 8.5, 1e-5) << code;
    EXPECT_NEAR(place->y, 46.5, 1e-5) << code;
  }
}

TEST_F(MapInSystems, ShowsWhatWasShownWholeAsItWasAfterThereAndBack) {
  seeDrawn();
  map().showView({8.0, 46.0, 9.0, 47.0});
  const auto view = map().view();
  for (const char* code : {"EPSG:3413", "EPSG:3857", "EPSG:4326"}) use(code);
  EXPECT_NEAR(map().view().xMin, view.xMin, 1e-9);
  EXPECT_NEAR(map().view().yMax, view.yMax, 1e-9);
}

TEST_F(MapInSystems, TellsWhereNoWayLeadsToASystem) {
  askFor("+proj=longlat +R=1737400 +no_defs");
  seeMessage("Coordinate system of the map", "No way leads");
  seeNoWindow();
  run();
  EXPECT_TRUE(map().frame().isInDegrees());
  EXPECT_TRUE(action("SystemDegrees").isChecked());
}

TEST_F(MapInSystems, KeepsOfADrawnRectangleAllThatItCovers) {
  use("EPSG:3413");
  map().showView({-30, 70, 10, 85});
  action("DrawRectangle").trigger();
  viewer::person::drag(map(), {0.25, 0.25}, {0.75, 0.75});
  const auto kept = map().rectangle();
  ASSERT_TRUE(kept);
  for (double share = 0.25; share <= 0.75; share += 0.05) {
    for (const QPointF edge : {QPointF(share, 0.25), {share, 0.75}, {0.25, share}, {0.75, share}}) {
      const auto place = map().frame().degreesAt({edge.x() * map().width(), edge.y() * map().height()});
      ASSERT_TRUE(place);
      EXPECT_GE(place->x, kept->xMin - 0.2);
      EXPECT_LE(place->x, kept->xMax + 0.2);
      EXPECT_GE(place->y, kept->yMin - 0.2);
      EXPECT_LE(place->y, kept->yMax + 0.2);
    }
  }
}

TEST_F(MapInSystems, TellsThePlaceUnderThePointerInTheSystemOfTheMap) {
  use("EPSG:2056");
  map().showExtent({7.0, 46.0, 9.0, 47.5});
  const QPointF at = map().toPixel(7.438632495, 46.951082877);
  QMouseEvent event(QEvent::MouseMove, at, map().mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&map(), &event);
  const QString text = window_->findChild<QLabel*>("PointerLabel")->text();
  EXPECT_TRUE(text.contains("2600")) << text.toStdString();
  EXPECT_TRUE(text.endsWith(" m")) << text.toStdString();
  EXPECT_EQ(window_->findChild<QLabel*>("SystemLabel")->text(), "EPSG:2056");
}

TEST_F(MapInSystems, TellsTheScaleOfAViewThatKeysHaveChanged) {
  const auto told = [this] { return window_->findChild<QLabel*>("ScaleLabel")->text(); };
  const QString before = told();
  viewer::person::press(map(), Qt::Key_Plus);
  EXPECT_TRUE(told().contains("1:")) << told().toStdString();
  EXPECT_NE(told(), before);
}

}  // namespace
}  // namespace vlclientui::test
