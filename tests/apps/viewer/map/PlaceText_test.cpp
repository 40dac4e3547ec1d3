// What the status bar and the scale bar tell of a map.

#include "viewer/map/PlaceText.h"

#include <QLocale>

#include <gtest/gtest.h>

#include "viewer/map/MapFrame.h"
#include "viewer/map/ScaleBar.h"

namespace vlclientui::test {
namespace {

using viewer::scaleBarFor;

// A person's numbers may be grouped.
QString ungrouped(QString text) { return text.remove(QLocale().groupSeparator()); }

viewer::MapFrame frameIn(const char* code, client::MapPoint middle, double pixel) {
  viewer::MapFrame frame;
  frame.setSystem(*client::mapSystemOf(code));
  frame.resize({800, 600});
  frame.place(middle, pixel);
  return frame;
}

TEST(PlaceText, HasTheLettersOfTheHalvesInDegrees) {
  const auto frame = frameIn("EPSG:4326", {0, 0}, 0.01);
  EXPECT_EQ(placeText(frame, {7.5, 46.25}), "7.500\u00b0 E, 46.250\u00b0 N");
  EXPECT_EQ(placeText(frame, {-7.5, -46.25}), "7.500\u00b0 W, 46.250\u00b0 S");
  EXPECT_EQ(placeText(frame, {-0.0001, -0.0001}), "0.000\u00b0 E, 0.000\u00b0 N");
}

TEST(PlaceText, HasTheUnitOfOtherSystems) {
  EXPECT_EQ(placeText(frameIn("EPSG:2056", {2.6e6, 1.2e6}, 1), {2600000.04, 1200000.5}),
            "2600000.0, 1200000.5 m");
  EXPECT_EQ(placeText(frameIn("EPSG:2263", {1e6, 2e5}, 10), {1000000, 200000}), "1000000, 200000 ftUS");
}

TEST(PlaceText, IsEmptyBesideTheWorld) {
  const auto frame = frameIn("EPSG:4326", {0, 0}, 1);
  EXPECT_EQ(placeText(frame, {180.5, 0}), "");
  EXPECT_EQ(placeText(frame, {0, -90.5}), "");
}

TEST(PlaceText, TellsTheViewWithLettersOnBothSides) {
  const auto frame = frameIn("EPSG:4326", {0, 0}, 0.01);
  EXPECT_EQ(extentText(frame), "4.00\u00b0 W to 4.00\u00b0 E, 3.00\u00b0 S to 3.00\u00b0 N");
}

TEST(ScaleText, IsThatOnTheGroundInTheMiddleOfTheMap) {
  // A pixel is 10 m wide: 10 m * 96 / 0.0254 m.
  EXPECT_EQ(ungrouped(scaleText(frameIn("EPSG:32632", {500'000, 0.0}, 10 * 0.9996), 96)), "1:37795");
  const auto atSixty = frameIn("EPSG:3857", {0, 8'399'737.89}, 20);
  const auto scale = ungrouped(scaleText(atSixty, 96)).mid(2).toDouble();
  EXPECT_NEAR(scale, 37'795 * 1.0025, 50);
}

TEST(ScaleBar, IsTheLongestRoundLengthThatFits) {
  EXPECT_EQ(scaleBarFor(1, 100).text(), "100 m");
  EXPECT_EQ(scaleBarFor(1, 99).text(), "50 m");
  EXPECT_EQ(scaleBarFor(10, 140).text(), "1 km");
  EXPECT_EQ(scaleBarFor(0.001, 140).text(), "10 cm");
  EXPECT_EQ(scaleBarFor(40'000, 140).text(), "5000 km");
  EXPECT_NEAR(scaleBarFor(3, 140).pixels, 200 / 3.0, 1e-9);
}

TEST(ScaleBar, IsNeverLongerThanWantedNorShorterThanTwoFifths) {
  for (double ground = 0.07; ground < 1e5; ground *= 1.37) {
    const double pixels = scaleBarFor(ground, 120).pixels;
    EXPECT_LE(pixels, 120 + 1e-6) << ground;
    EXPECT_GT(pixels, 120 * 0.4 - 1e-6) << ground;
  }
}

}  // namespace
}  // namespace vlclientui::test
