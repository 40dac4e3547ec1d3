#include "client/network/TileGroups.h"

#include <set>

#include <gtest/gtest.h>

namespace vlclientui::client::network {
namespace {

constexpr GroupShape four{4, 4};

std::int64_t tilesIn(const std::vector<TileRange>& groups) {
  std::int64_t tiles = 0;
  for (const TileRange& group : groups) tiles += group.columns() * group.rows();
  return tiles;
}

TEST(TileGroups, OfAWindowHoldItsPixelsAndTheirNeighbors) {
  EXPECT_EQ(tilesOfWindow({257, 300, 200, 200}, 0, 4000, 4000), (TileRange{0, 1, 1, 1, 1}));
  EXPECT_EQ(tilesOfWindow({256, 256, 257, 1}, 0, 4000, 4000), (TileRange{0, 0, 0, 2, 1}));
  EXPECT_EQ(tilesOfWindow({0, 0, 4000, 4000}, 0, 4000, 4000), (TileRange{0, 0, 0, 15, 15}));
  EXPECT_EQ(tilesOfWindow({0, 0, 4000, 4000}, 2, 1000, 1000), (TileRange{2, 0, 0, 3, 3}));
  EXPECT_EQ(tilesOfWindow({-100, 3990, 50, 9000}, 0, 4000, 4000), (TileRange{0, 0, 15, 0, 15}));
}

TEST(TileGroups, CoverEachTileOfARangeOnce) {
  for (const TileRange& range :
       {TileRange{0, 0, 0, 15, 15}, TileRange{1, 3, 2, 9, 4}, TileRange{0, 5, 5, 5, 5}}) {
    const auto groups = groupsWithin(range, four);
    EXPECT_EQ(tilesIn(groups), range.columns() * range.rows());
    EXPECT_EQ(static_cast<std::int64_t>(groups.size()), groupCount(range, four));
    std::set<std::pair<int, int>> seen;
    for (const TileRange& group : groups) {
      for (int row = group.top; row <= group.bottom; ++row) {
        for (int column = group.left; column <= group.right; ++column) seen.emplace(column, row);
      }
    }
    EXPECT_EQ(static_cast<std::int64_t>(seen.size()), range.columns() * range.rows());
  }
}

TEST(TileGroups, HaveCornersAtFixedPlaces) {
  const auto groups = groupsWithin({0, 3, 2, 9, 4}, four);
  EXPECT_EQ(groups.front(), (TileRange{0, 3, 2, 3, 3}));
  EXPECT_EQ(groups.at(1), (TileRange{0, 4, 2, 7, 3}));
  EXPECT_EQ(groups.back(), (TileRange{0, 8, 4, 9, 4}));
}

TEST(TileGroups, AreAsHighAsARowOfThemCanBeKept) {
  EXPECT_EQ(shapeFor({0, 0, 0, 15, 99}, four, 128), four);
  EXPECT_EQ(shapeFor({0, 0, 0, 39, 99}, four, 128), (GroupShape{4, 2}));
  EXPECT_EQ(shapeFor({0, 0, 0, 999, 99}, four, 128), (GroupShape{4, 1}));
}

TEST(TileGroups, AheadStayWithinTheAreaAndTheNumberOfTiles) {
  const TileRange area{0, 1, 0, 14, 13};
  EXPECT_EQ(aheadWithin(area, {0, 1, 0, 2, 1}, four, 1000), (TileRange{0, 1, 0, 14, 3}));
  EXPECT_EQ(aheadWithin(area, {0, 6, 13, 6, 13}, four, 8), (TileRange{0, 4, 12, 7, 13}));
  EXPECT_EQ(aheadWithin(area, {0, 1, 0, 2, 1}, four, 28), (TileRange{0, 1, 0, 7, 3}));
}

TEST(TileGroups, ReadRowByRowAreAskedForOnceEach) {
  const TileRange area{0, 0, 0, 19, 11};
  const GroupShape shape = shapeFor(area, four, 64);
  std::set<std::pair<int, int>> fetched;
  for (int row = 0; row <= area.bottom; ++row) {
    for (const TileRange& group : groupsWithin(aheadWithin(area, {0, 0, row, 19, row}, shape, 64), shape)) {
      fetched.emplace(group.left, group.top);
      EXPECT_LE(group.top, row);
    }
  }
  EXPECT_EQ(static_cast<std::int64_t>(fetched.size()), groupCount(area, shape));
}

}  // namespace
}  // namespace vlclientui::client::network
