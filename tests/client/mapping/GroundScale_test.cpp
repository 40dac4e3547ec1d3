#include "client/mapping/GroundScale.h"

#include <memory>

#include <gtest/gtest.h>

#include "client/mapping/MapSystem.h"
#include "client/mapping/PointWay.h"

namespace vlclientui::test {
namespace {

using client::groundCell;
using client::groundDistance;

std::unique_ptr<client::PointWay> wayToDegrees(const char* code) {
  return client::PointWay::between(client::mapSystemOf(code)->wkt,
                                   client::mapSystemOf(client::degreesCode)->wkt);
}

// Lengths of a degree as tables of the ellipsoid have them.
TEST(GroundScale, KnowsHowLongADegreeIsAtEachLatitude) {
  EXPECT_NEAR(groundDistance({0, 0}, {1, 0}), 111'319.5, 0.5);
  EXPECT_NEAR(groundDistance({7, 60}, {8, 60}), 55'800.0, 2);
  EXPECT_NEAR(groundDistance({7, -0.5}, {7, 0.5}), 110'574.3, 1);
  EXPECT_NEAR(groundDistance({7, 59.5}, {7, 60.5}), 111'412.3, 1);
}

TEST(GroundScale, TakesTheShortWayAcrossTheAntimeridian) {
  EXPECT_NEAR(groundDistance({179.9, 0}, {-179.9, 0}), 0.2 * 111'319.5, 0.5);
  EXPECT_NEAR(groundDistance({-0.1, 0}, {359.9, 0}), 0, 1e-6);
}

TEST(GroundScale, HalvesWebMercatorAtSixtyDegrees) {
  const auto way = wayToDegrees("EPSG:3857");
  const auto atEquator = groundCell(*way, {0, 0}, 10, 10);
  const auto far = groundCell(*way, {0, 8'399'737.89}, 10, 10);
  ASSERT_TRUE(atEquator && far);
  EXPECT_NEAR(atEquator->across, 10, 0.001);
  EXPECT_NEAR(far->across, 5.01, 0.01);
  EXPECT_NEAR(far->down, 5.0, 0.02);
}

TEST(GroundScale, IsThatOfTheCellInMetersOfATrueSystem) {
  const auto cell = groundCell(*wayToDegrees("EPSG:32632"), {500'000, 5'100'000}, 100, 50);
  ASSERT_TRUE(cell);
  EXPECT_NEAR(cell->across, 100 / 0.9996, 0.01);
  EXPECT_NEAR(cell->down, 50 / 0.9996, 0.01);
}

TEST(GroundScale, IsNothingWhereThereIsNoEarth) {
  EXPECT_FALSE(groundCell(*wayToDegrees("EPSG:4326"), {0, 90}, 1, 0));
  EXPECT_FALSE(groundCell(*wayToDegrees("ESRI:102014"), {1e30, 1e30}, 1, 1));
}

}  // namespace
}  // namespace vlclientui::test
