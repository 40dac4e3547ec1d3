#include "client/drawing/Relief.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

ValueGrid gridOf(int width, int height, const std::vector<float>& values) {
  return {width, height, values, std::vector<std::uint8_t>(values.size(), 255)};
}

int brightness(const std::vector<std::uint8_t>& rgba, std::size_t pixel) {
  return rgba[pixel * 4] + rgba[pixel * 4 + 1] + rgba[pixel * 4 + 2];
}

TEST(Relief, PercentilesCountValidPixelsOnly) {
  ValueGrid grid = gridOf(5, 1, {-9999, 10, 20, 30, 40});
  grid.isValid[0] = 0;
  EXPECT_EQ(percentileRange(grid, 0, 1).low, 10);
  EXPECT_EQ(percentileRange(grid, 0, 1).high, 40);
}

TEST(Relief, RangeOfOneValueOrNoneIsNeverEmpty) {
  EXPECT_GT(percentileRange(gridOf(2, 1, {5, 5}), 0, 1).high, 5);
  ValueGrid none = gridOf(1, 1, {5});
  none.isValid[0] = 0;
  EXPECT_GT(percentileRange(none, 0, 1).high, percentileRange(none, 0, 1).low);
}

TEST(Relief, SlopesTowardsTheLightAreBrighterThanThoseAway) {
  // A ridge from north to south: its west side faces the light.
  const auto rgba =
      drawRelief(gridOf(5, 3, {0, 1, 2, 1, 0, 0, 1, 2, 1, 0, 0, 1, 2, 1, 0}), ReliefTint::Heights, 1);
  EXPECT_GT(brightness(rgba, 6), brightness(rgba, 8));
}

TEST(Relief, PixelsWithoutDataAreTransparentAndCastNoCliff) {
  ValueGrid grid = gridOf(3, 1, {7, -32768, 7});
  grid.isValid[1] = 0;
  const auto rgba = drawRelief(grid, ReliefTint::Heights, 1);
  EXPECT_EQ(rgba[7], 0);
  EXPECT_EQ(rgba[3], 255);
  EXPECT_EQ(brightness(rgba, 0), brightness(rgba, 2));
}

TEST(Relief, DeviationsBelowAndAboveZeroDifferInColor) {
  const auto rgba = drawRelief(gridOf(2, 1, {-50, 50}), ReliefTint::Deviations, 1);
  EXPECT_GT(rgba[2], rgba[0]);
  EXPECT_GT(rgba[4], rgba[6]);
}

TEST(Relief, LevelGroundIsDrawn) {
  const auto rgba = drawRelief(gridOf(2, 2, {3, 3, 3, 3}), ReliefTint::Heights, 1);
  EXPECT_EQ(rgba.size(), 16U);
  EXPECT_EQ(rgba[3], 255);
}

}  // namespace
}  // namespace vlclientui::client
