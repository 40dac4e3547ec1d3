#include "client/mapping/MapDrawer.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "client/mapping/DrawerFixture.h"
#include "client/mapping/StretchChoice.h"

namespace vlclientui::client {
namespace {

using MapDrawers = test::DrawerFixture;

TEST_F(MapDrawers, GiveTheTilesOfASceneAsThePainterPaintsThem) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100, 500, 400), {layer}));
  waitForAll(drawer);
  const auto tiles = drawer.tiles("a");
  ASSERT_GE(tiles.size(), 4U);
  RasterHandles handles;
  const auto drawing = layer.source(std::nullopt);
  const auto stretch = chosenStretch(*drawing, handles);
  EXPECT_EQ(*drawer.stretch("a"), *stretch);
  for (const StoredTile& tile : tiles) {
    const MapGrid map{tile.key.wkt, {tile.key.extent(), TileKey::side, TileKey::side}};
    EXPECT_EQ(tile.picture->rgba, ServicePainter(*drawing, *stretch, handles).paint(map)->rgba);
  }
}

TEST_F(MapDrawers, DrawNothingAgainThatIsInMemory) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); });
  const MapScene scene = sceneOf(mapAround(3857, bern, 100, 500, 400), {layerOf("a")});
  drawer.show(scene);
  waitForAll(drawer);
  const std::size_t drawn = drawer.counts().drawn;
  drawer.show({scene.wkt, scene.pixel, scene.area, {}});
  drawer.show(scene);
  EXPECT_FALSE(drawer.isBusy());
  EXPECT_FALSE(drawer.tiles("a").empty());
  EXPECT_EQ(drawer.counts().drawn, drawn);
}

TEST_F(MapDrawers, GiveUpWhatNobodyNeedsAnyMore) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); });
  const MapGrid map = mapAround(3857, bern, 100, 500, 400);
  drawer.show(sceneOf(map, {endlessLayer()}));
  bell_.waitUntil([&] { return begun_ == 2; });
  drawer.show(sceneOf(map, {layerOf("a")}));
  waitForAll(drawer);
  EXPECT_EQ(begun_, 2);
  EXPECT_EQ(ended_, 2);
  EXPECT_EQ(drawer.counts().givenUp, 2U);
}

TEST_F(MapDrawers, GoOnWithWhatIsNeededStill) {
  MapDrawer drawer([this] { bell_.ring(); });
  const MapGrid map = mapAround(3857, bern, 100, 200, 200);
  MapScene scene = sceneOf(map, {endlessLayer()});
  drawer.show(scene);
  bell_.waitUntil([&] { return begun_ == 2; });
  scene.area.xMax += 10;
  drawer.show(scene);
  EXPECT_EQ(drawer.counts().givenUp, 0U);
  EXPECT_EQ(ended_, 0);
}

TEST_F(MapDrawers, KeepAThreadForLayersThatDoNotWait) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100, 500, 400), {layerOf("a"), endlessLayer()}));
  bell_.waitUntil([&] { return begun_ == 2 && drawer.tiles("a").size() >= 4; });
  EXPECT_TRUE(drawer.isBusy());
  EXPECT_EQ(ended_, 0);
}

TEST_F(MapDrawers, EndInTheMiddleOfWork) {
  {
    MapDrawer drawer([this] { bell_.ring(); });
    drawer.show(sceneOf(mapAround(3857, bern, 100), {endlessLayer()}));
    bell_.waitUntil([&] { return begun_ == 2; });
  }
  EXPECT_EQ(ended_, 2);
}

TEST_F(MapDrawers, ShowPicturesOfOtherSizesWhileTheWantedOnesAreMissing) {
  makePlaced("a.tif", 32632, bern, 100);
  MapLayer layer = layerOf("a");
  std::atomic<bool> isHeld = false;
  layer.source = [this, &isHeld, source = layer.source](const auto& area) {
    while (isHeld && !WaitScope::isGivenUp()) std::this_thread::yield();
    return source(area);
  };
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100), {layer}));
  waitForAll(drawer);
  isHeld = true;
  drawer.show(sceneOf(mapAround(3857, bern, 50), {layer}));
  EXPECT_TRUE(drawer.isBusy());
  ASSERT_FALSE(drawer.tiles("a").empty());
  EXPECT_EQ(drawer.tiles("a").front().key.pixel, 100);
  isHeld = false;
  waitForAll(drawer);
  for (const StoredTile& tile : drawer.tiles("a")) EXPECT_EQ(tile.key.pixel, 50);
}

// Without overviews much would have to be read: first some blocks, then all.
TEST_F(MapDrawers, DrawQuicklyFirstAndFinelyThen) {
  test::RasterRecipe recipe;
  recipe.width = recipe.height = 6000;
  recipe.option = "TILED=YES";
  recipe.finish = [](GDALDataset& dataset) { EXPECT_EQ(dataset.GetRasterBand(1)->Fill(77), CE_None); };
  makeRaster("large.tif", recipe);
  const MapLayer layer = layerOf("large");
  const RasterFacts& facts = layer.source(std::nullopt)->service->facts;
  std::atomic<int> quick = 0;
  MapDrawer* drawing = nullptr;
  MapDrawer drawer([this] { bell_.ring(); }, {1, 1 << 26});
  drawing = &drawer;
  MapScene scene{facts.srsWkt, 6000 * 100.0 / 256, facts.envelope, {layer}};
  drawer.show(scene);
  bell_.waitUntil([&] {
    for (const StoredTile& tile : drawing->tiles("large")) quick += tile.picture->isQuick ? 1 : 0;
    return !drawing->isBusy();
  });
  EXPECT_GT(quick, 0);
  const auto tiles = drawer.tiles("large");
  EXPECT_GT(drawer.counts().drawn, tiles.size());
  for (const StoredTile& tile : tiles) EXPECT_FALSE(tile.picture->isQuick);
  EXPECT_EQ(drawer.takeSlowFiles(), std::vector{(folder() / "large.tif").string()});
  EXPECT_TRUE(drawer.takeSlowFiles().empty());
}

TEST_F(MapDrawers, TellWhyALayerCannotBeDrawn) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  std::filesystem::remove(folder() / "a.tif");
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100), {layer}));
  waitForAll(drawer);
  EXPECT_NE(drawer.problem("a"), "");
  EXPECT_TRUE(drawer.tiles("a").empty());
}

TEST_F(MapDrawers, HoldLayersApartWhateverTheirOrder) {
  makePlaced("a.tif", 32632, bern, 100);
  makePlaced("b.tif", 2056, bern, 150);
  const MapGrid map = mapAround(4326, bern, 0.001, 300, 300);
  std::vector<std::vector<std::uint8_t>> seen;
  for (const auto& order :
       {std::vector{layerOf("a"), layerOf("b")}, std::vector{layerOf("b"), layerOf("a")}}) {
    MapDrawer drawer([this] { bell_.ring(); });
    drawer.show(sceneOf(map, order));
    waitForAll(drawer);
    for (const StoredTile& tile : drawer.tiles("a")) seen.push_back(tile.picture->rgba);
  }
  ASSERT_FALSE(seen.empty());
  const std::size_t half = seen.size() / 2;
  std::ranges::sort(seen.begin(), seen.begin() + static_cast<std::ptrdiff_t>(half));
  std::ranges::sort(seen.begin() + static_cast<std::ptrdiff_t>(half), seen.end());
  EXPECT_TRUE(std::equal(seen.begin(), seen.begin() + static_cast<std::ptrdiff_t>(half),
                         seen.begin() + static_cast<std::ptrdiff_t>(half), seen.end()));
}

}  // namespace
}  // namespace vlclientui::client
