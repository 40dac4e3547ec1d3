#include "client/mapping/PictureStore.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

TileKey tileAt(std::int64_t column, const std::string& wkt = {}) { return {"a", wkt, 1, column, 0}; }

PicturePtr pictureOf(std::size_t bytes) {
  ServicePicture made;
  made.rgba.resize(bytes);
  return std::make_shared<const ServicePicture>(std::move(made));
}

TEST(PictureStores, KeepWhatWasUsedLastWithinTheirBound) {
  PictureStore store(3 * 1600);
  for (int column = 0; column < 3; ++column) store.put(tileAt(column), pictureOf(1000));
  EXPECT_TRUE(store.find(tileAt(0)));
  store.put(tileAt(3), pictureOf(1000));
  EXPECT_TRUE(store.find(tileAt(0)));
  EXPECT_FALSE(store.find(tileAt(1)));
  EXPECT_LE(store.bytes(), 3U * 1600);
  store.forget("a");
  EXPECT_EQ(store.bytes(), 0U);
}

// A definition of a system is long, and an empty picture short.
TEST(PictureStores, CountTheirKeysToo) {
  PictureStore store(100'000);
  const std::string wkt(2000, 'w');
  for (int column = 0; column < 1000; ++column) store.put(tileAt(column, wkt), pictureOf(0));
  EXPECT_FALSE(store.find(tileAt(975, wkt)));
  EXPECT_TRUE(store.find(tileAt(999, wkt)));
}

TEST(PictureStores, KeepWhatIsShownWhateverItTakesAndNothingElseThen) {
  PictureStore store(2000);
  store.keepAtLeast(4);
  for (int column = 0; column < 5; ++column) store.put(tileAt(column), pictureOf(1000));
  EXPECT_FALSE(store.find(tileAt(0)));
  for (int column = 1; column < 5; ++column) EXPECT_TRUE(store.find(tileAt(column)));
  store.keepAtLeast(0);
  EXPECT_LE(store.bytes(), 2000U);
}

TEST(PictureStores, ListTheTilesThatAnAreaTouches) {
  EXPECT_EQ(tilesOf("a", "", 1, {0, 0, 512, 256}, 100).size(), 2U);
  EXPECT_EQ(tilesOf("a", "", 1, {-1, -1, 1, 1}, 100).size(), 4U);
  EXPECT_EQ(tilesOf("a", "", 1e-9, {0, 0, 1, 1}, 100).size(), 0U);
  EXPECT_EQ(tilesOf("a", "", 2, {0, 0, 1, 1}, 100).front().extent(), (Bounds{0, 0, 512, 512}));
}

}  // namespace
}  // namespace vlclientui::client
