// What lies over the services on a map: outlines of sources, and the graticule.
#include "viewer/map/Footprints.h"

#include <QImage>
#include <QPainter>
#include <QPalette>

#include <gtest/gtest.h>

#include "viewer/map/Graticule.h"
#include "viewer/map/MapColors.h"
#include "viewer/map/Outlines.h"

namespace vlclientui::viewer {
namespace {

constexpr int side = 300;

MapFrame frameAround(double x, double y) {
  MapFrame frame;
  frame.resize({side, side});
  frame.place({x, y}, 0.01);
  return frame;
}

// Rectangles in rows around 8 E 46 N, each a tenth of a degree wide.
std::vector<host::GeographicCorners> rectangles(int across) {
  std::vector<host::GeographicCorners> all;
  for (int i = 0; i < across * across; ++i) {
    const double x = 8 + (i % across - across / 2.0) * 0.1;
    const double y = 46 + (i / across - across / 2.0) * 0.1;
    all.push_back({{{x, y + 0.08}, {x + 0.08, y + 0.08}, {x + 0.08, y}, {x, y}}});
  }
  return all;
}

QImage blank() {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

QImage drawn(Footprints& footprints, const MapFrame& frame) {
  QImage image = blank();
  QPainter painter(&image);
  footprints.draw(painter, frame);
  return image;
}

TEST(ManyFootprints, MoveAlongWithTheMap) {
  Footprints footprints;
  footprints.show(rectangles(30));
  const QImage first = drawn(footprints, frameAround(8, 46));
  EXPECT_NE(first.pixelColor(150, 149).alpha() + first.pixelColor(151, 150).alpha() +
                first.pixelColor(150, 150).alpha() + first.pixelColor(150, 151).alpha(),
            0);
  const QImage moved = drawn(footprints, frameAround(8.2, 46));
  EXPECT_EQ(moved.copy(0, 0, side - 20, side), first.copy(20, 0, side - 20, side));
  EXPECT_EQ(drawn(footprints, frameAround(8, 46)), first);
}

TEST(ManyFootprints, AreDrawnAnewBeyondWhatIsKeptAndAtOtherScales) {
  Footprints footprints;
  footprints.show(rectangles(30));
  static_cast<void>(drawn(footprints, frameAround(8, 46)));
  Footprints fresh;
  fresh.show(rectangles(30));
  EXPECT_EQ(drawn(footprints, frameAround(8, 47.4)), drawn(fresh, frameAround(8, 47.4)));
  MapFrame coarser = frameAround(8, 46);
  coarser.place({8, 46}, 0.02);
  Footprints others;
  others.show(rectangles(30));
  EXPECT_EQ(drawn(footprints, coarser), drawn(others, coarser));
}

TEST(ManyFootprints, AreThoseThatWereShownLast) {
  Footprints footprints;
  footprints.show(rectangles(30));
  static_cast<void>(drawn(footprints, frameAround(8, 46)));
  footprints.show({});
  EXPECT_EQ(drawn(footprints, frameAround(8, 46)), blank());
}

TEST(ManyFootprints, FollowTheSystemOfTheMap) {
  Footprints footprints;
  footprints.show(rectangles(30));
  const MapFrame degrees = frameAround(8, 46);
  const QImage before = drawn(footprints, degrees);
  MapFrame meters = degrees;
  ASSERT_TRUE(meters.setSystem(*client::mapSystemOf("EPSG:32632")));
  Footprints fresh;
  fresh.show(rectangles(30));
  EXPECT_EQ(drawn(footprints, meters), drawn(fresh, meters));
  EXPECT_NE(drawn(footprints, meters), before);
  EXPECT_EQ(drawn(footprints, degrees), before);
}

TEST(ManyFootprints, LieWhereTheMapHasTheirCornersAndNowhereElse) {
  const host::GeographicCorners square{{{7.5, 46.5}, {8.5, 46.5}, {8.5, 45.5}, {7.5, 45.5}}};
  const host::GeographicCorners beyondThePole{{{7.5, 95}, {8.5, 95}, {8.5, 45.5}, {7.5, 45.5}}};
  Footprints footprints;
  footprints.show({square, beyondThePole});
  MapFrame frame = frameAround(8, 46);
  ASSERT_TRUE(frame.setSystem(*client::mapSystemOf("EPSG:3857")));
  const QImage image = drawn(footprints, frame);
  Footprints one;
  one.show({square});
  EXPECT_EQ(image, drawn(one, frame)) << "there is nothing beyond the pole";
  const QPoint corner = frame.pixelOf(7.5, 46.5)->toPoint();
  EXPECT_GT(image.pixelColor(corner).alpha() + image.pixelColor(corner - QPoint(1, 1)).alpha(), 0);
}

TEST(OutlinesOnMaps, FollowTheSystemOfTheMap) {
  Outlines outlines;
  MapFrame frame = frameAround(8, 46);
  const host::GeographicEnvelope extent{7.9, 45.9, 8.1, 46.1};
  EXPECT_EQ(outlines.of(frame, extent).boundingRect(), QRectF(140, 140, 20, 20));
  ASSERT_TRUE(frame.setSystem(*client::mapSystemOf("EPSG:32632")));
  const QPolygonF bent = outlines.of(frame, extent);
  EXPECT_EQ(bent.size(), 4 * 17);
  EXPECT_EQ(bent.front(), *frame.pixelOf(7.9, 46.1));
  frame.place({frame.middle().x + 10 * frame.pixel(), frame.middle().y}, frame.pixel());
  EXPECT_NEAR(outlines.of(frame, extent).front().x(), bent.front().x() - 10, 1e-6);
}

TEST(GraticulesOfBentSystems, AreTheSameAfterADragAsDrawnAnew) {
  MapFrame frame = frameAround(8, 46);
  ASSERT_TRUE(frame.setSystem(*client::mapSystemOf("EPSG:32632")));
  const auto picture = [&](Graticule& graticule) {
    QImage image = blank();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    graticule.draw(painter, frame, mapColorsBy(QPalette()));
    return image;
  };
  Graticule kept;
  EXPECT_NE(picture(kept), blank());
  frame.place({frame.middle().x + side * frame.pixel(), frame.middle().y}, frame.pixel());
  Graticule fresh;
  EXPECT_EQ(picture(kept), picture(fresh)) << "beyond what is known all is learnt anew";
}

}  // namespace
}  // namespace vlclientui::viewer
