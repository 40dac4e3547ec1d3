#include "client/drawing/MosaicSpacing.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

std::vector<ImageSource> squaresAt(const std::vector<std::pair<double, double>>& corners, double side) {
  std::vector<ImageSource> sources;
  for (const auto& [x, y] : corners) sources.push_back({"f", "1", {}, {}, {x, y, x + side, y + side}});
  return sources;
}

TEST(MosaicSpacing, OfAGridIsItsStepWhateverTheOverlap) {
  const Spacing spacing =
      averageSpacing(squaresAt({{0, 0}, {70, 0}, {140, 0}, {0, 50}, {70, 50}, {140, 50}}, 100));
  EXPECT_DOUBLE_EQ(spacing.across, 70);
  EXPECT_DOUBLE_EQ(spacing.down, 50);
}

TEST(MosaicSpacing, IsTheMeanWhereStepsDiffer) {
  EXPECT_DOUBLE_EQ(averageSpacing(squaresAt({{0, 0}, {60, 0}, {160, 0}}, 100)).across, 80);
}

TEST(MosaicSpacing, IsTheSizeWhereThereIsNoNeighbor) {
  const Spacing alone = averageSpacing(squaresAt({{5, 5}}, 100));
  EXPECT_DOUBLE_EQ(alone.across, 100);
  EXPECT_DOUBLE_EQ(alone.down, 100);
  EXPECT_DOUBLE_EQ(averageSpacing(squaresAt({{0, 0}, {60, 0}}, 100)).down, 100);
}

TEST(MosaicSpacing, PassesOverOtherYearsOfTheSamePlace) {
  EXPECT_DOUBLE_EQ(averageSpacing(squaresAt({{0, 0}, {0, 0}, {3, 1}, {80, 0}}, 100)).across,
                   (80 + 80 + 77) / 3.0);
}

}  // namespace
}  // namespace vlclientui::client
