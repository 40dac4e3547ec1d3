#include "client/raster/OutlineWay.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

OGRSpatialReference systemBy(const std::string& text) {
  OGRSpatialReference system;
  system.SetFromUserInput(text.c_str());
  return system;
}

std::optional<Bounds> aroundIn(const std::string& from, const std::string& to, const Bounds& bounds) {
  return OutlineWay(systemBy(from), systemBy(to)).around(bounds);
}

struct OutlineCase {
  std::string from;
  std::string to;
  Bounds bounds;
};

class OutlineWayBetween : public testing::TestWithParam<OutlineCase> {};

// The library's own way looks less closely between the corners, so it may lie within a little.
TEST_P(OutlineWayBetween, SystemsAgreesWithTheRasterLibrary) {
  const OutlineCase& given = GetParam();
  const GdalScope scope;
  const TransformationPtr way = transformation(systemBy(given.from), systemBy(given.to));
  Bounds peer;
  constexpr int points = 1000;
  ASSERT_TRUE(way->TransformBounds(given.bounds.xMin, given.bounds.yMin, given.bounds.xMax, given.bounds.yMax,
                                   &peer.xMin, &peer.yMin, &peer.xMax, &peer.yMax, points));
  const auto found = aroundIn(given.from, given.to, given.bounds);
  ASSERT_TRUE(found.has_value());
  const double tolerance = 1e-5 * std::max(peer.xMax - peer.xMin, peer.yMax - peer.yMin);
  EXPECT_NEAR(found->xMin, peer.xMin, tolerance);
  EXPECT_NEAR(found->yMin, peer.yMin, tolerance);
  EXPECT_NEAR(found->xMax, peer.xMax, tolerance);
  EXPECT_NEAR(found->yMax, peer.yMax, tolerance);
}

INSTANTIATE_TEST_SUITE_P(
    All, OutlineWayBetween,
    testing::Values(OutlineCase{"EPSG:32632", "EPSG:32631", {300000, 4890200, 409800, 5000000}},
                    OutlineCase{"EPSG:32632", "EPSG:4326", {300000, 5000000, 700000, 5400000}},
                    OutlineCase{"EPSG:4326", "EPSG:32632", {6, 40, 12, 41}},
                    OutlineCase{"EPSG:4326", "EPSG:3857", {-180, -80, 180, 80}},
                    OutlineCase{"EPSG:3857", "EPSG:4326", {-20037508, -20037508, 20037508, 20037508}},
                    OutlineCase{"EPSG:4326", "EPSG:3035", {-10, 30, 40, 70}},
                    OutlineCase{"EPSG:4326", "EPSG:3413", {-180, 60, 180, 90}},
                    OutlineCase{"EPSG:3413", "EPSG:4326", {-3e6, -3e6, 3e6, 3e6}},
                    OutlineCase{"EPSG:3031", "EPSG:4326", {-3e6, -3e6, 3e6, 3e6}},
                    OutlineCase{"EPSG:32632", "EPSG:32732", {100000, 5000000, 400000, 5100000}},
                    OutlineCase{"EPSG:2056", "EPSG:32632", {2600000, 1100000, 2700000, 1200000}},
                    OutlineCase{"EPSG:4326", "EPSG:4258", {6, 40, 7, 41}}),
    [](const auto& row) {
      std::string name = row.param.from + "To" + row.param.to;
      std::erase(name, ':');
      return name;
    });

TEST(OutlineWay, FindsWhereAnEdgeReachesFarthestBetweenTwoOfItsPlaces) {
  // A parallel lies lowest at the middle of the zone, which no even division of this edge meets.
  const auto found = aroundIn("EPSG:4326", "EPSG:32632", {6.3, 47, 12.1, 48});
  double x = 9;
  double y = 47;
  ASSERT_TRUE(transformation(systemBy("EPSG:4326"), systemBy("EPSG:32632"))->Transform(1, &x, &y));
  ASSERT_TRUE(found.has_value());
  EXPECT_NEAR(found->yMin, y, 1e-3);
}

TEST(OutlineWay, GoesOnBeyondTheAntimeridian) {
  const auto found = aroundIn("EPSG:32601", "EPSG:4326", {100000, 5000000, 400000, 5100000});
  ASSERT_TRUE(found.has_value());
  EXPECT_NEAR(found->xMax - found->xMin, 4, 0.3);
  const double west = std::remainder(found->xMin, 360);
  EXPECT_NEAR(west, 177.8, 0.2);
}

TEST(OutlineWay, CountsInTheUnitsOfTheSystem) {
  const OutlineWay degrees(systemBy("EPSG:32631"), systemBy("EPSG:4326"));
  const OutlineWay grads(systemBy("EPSG:27572"), systemBy("EPSG:4807"));
  EXPECT_EQ(degrees.turn(), 360);
  EXPECT_EQ(grads.turn(), 400);
  EXPECT_EQ(OutlineWay(systemBy("EPSG:4326"), systemBy("EPSG:32631")).turn(), 0);
  const auto found = grads.around({600000, 2200000, 610000, 2210000});
  ASSERT_TRUE(found.has_value());
  EXPECT_NEAR(found->xMin, 0, 0.01);
  EXPECT_NEAR(found->yMin, 52, 0.1);
}

TEST(OutlineWay, HasNothingWhereNoPlaceOfTheEdgesCanBeBrought) {
  const GdalScope scope;
  EXPECT_EQ(aroundIn("EPSG:32632", "EPSG:32633", {1e12, 1e12, 2e12, 2e12}), std::nullopt);
  EXPECT_EQ(OutlineWay(OGRSpatialReference(), systemBy("EPSG:4326")).around({0, 0, 1, 1}), std::nullopt);
}

}  // namespace
}  // namespace vlclientui::client
