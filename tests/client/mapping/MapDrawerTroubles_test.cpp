#include <chrono>

#include <gtest/gtest.h>

#include "client/mapping/DrawerFixture.h"

namespace vlclientui::client {
namespace {

using MapDrawerTroubles = test::DrawerFixture;

MapDrawer::Settings retryingAfter(std::chrono::milliseconds pause) {
  MapDrawer::Settings settings;
  settings.retry = pause;
  return settings;
}

TEST_F(MapDrawerTroubles, ZoomingGivesUpTilesAndNotTheDecisionOfTheStretch) {
  makePlaced("a.tif", 32632, bern, 100);
  isHeld_ = true;
  MapDrawer drawer([this] { bell_.ring(); });
  const MapLayer layer = moodyLayer("a");
  drawer.show(sceneOf(mapAround(3857, bern, 100), {layer}));
  bell_.waitUntil([&] { return begun_ == 1; });
  for (const double pixel : {80.0, 60.0, 40.0}) drawer.show(sceneOf(mapAround(3857, bern, pixel), {layer}));
  EXPECT_EQ(begun_, 1);
  isHeld_ = false;
  waitForAll(drawer);
  EXPECT_EQ(drawer.counts().decided, 1U);
  drawer.show(sceneOf(mapAround(2056, bern, 30), {layer}));
  waitForAll(drawer);
  EXPECT_EQ(drawer.counts().decided, 1U);
}

TEST_F(MapDrawerTroubles, AServiceKeepsItsStretchWithOtherProperties) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); });
  MapLayer layer = layerOf("a");
  layer.service = "a";
  for (const std::string id : {"a#1", "a#2", "a#3"}) {
    layer.id = id;
    drawer.show(sceneOf(mapAround(3857, bern, 100), {layer}));
    waitForAll(drawer);
    EXPECT_NE(drawer.stretch(id), nullptr);
  }
  EXPECT_EQ(drawer.counts().decided, 1U);
}

TEST_F(MapDrawerTroubles, ADecisionThatWasGivenUpIsTakenUpAgain) {
  makePlaced("a.tif", 32632, bern, 100);
  isHeld_ = true;
  MapDrawer drawer([this] { bell_.ring(); });
  const MapGrid map = mapAround(3857, bern, 100);
  const MapLayer layer = moodyLayer("a");
  drawer.show(sceneOf(map, {layer}));
  bell_.waitUntil([&] { return begun_ == 1; });
  drawer.show(sceneOf(map, {}));
  bell_.waitUntil([&] { return drawer.counts().givenUp == 1; });
  EXPECT_EQ(drawer.counts().decided, 0U);
  isHeld_ = false;
  drawer.show(sceneOf(map, {layer}));
  waitForAll(drawer);
  EXPECT_EQ(drawer.counts().decided, 1U);
  EXPECT_FALSE(drawer.tiles("a").empty());
}

TEST_F(MapDrawerTroubles, ADecisionEndsWithItsDrawer) {
  {
    MapDrawer drawer([this] { bell_.ring(); });
    drawer.show(sceneOf(mapAround(3857, bern, 100), {undecidedLayer()}));
    bell_.waitUntil([&] { return begun_ == 1; });
  }
  EXPECT_EQ(begun_, 1);
  EXPECT_EQ(ended_, 1);
}

TEST_F(MapDrawerTroubles, WhatFailedIsToldAndTriedAgain) {
  makePlaced("a.tif", 32632, bern, 100);
  isBroken_ = true;
  MapDrawer drawer([this] { bell_.ring(); }, retryingAfter(std::chrono::milliseconds(1)));
  drawer.show(sceneOf(mapAround(3857, bern, 100), {moodyLayer("a")}));
  bell_.waitUntil([&] { return drawer.problem("a") == "The server is silent"; });
  EXPECT_TRUE(drawer.tiles("a").empty());
  isBroken_ = false;
  bell_.waitUntil([&] { return !drawer.isBusy() && drawer.problem("a").empty(); });
  EXPECT_FALSE(drawer.tiles("a").empty());
}

TEST_F(MapDrawerTroubles, TilesThatFailLaterComeBackToo) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); }, retryingAfter(std::chrono::milliseconds(1)));
  const MapLayer layer = moodyLayer("a");
  drawer.show(sceneOf(mapAround(3857, bern, 100), {layer}));
  waitForAll(drawer);
  isBroken_ = true;
  drawer.show(sceneOf(mapAround(3857, bern, 50), {layer}));
  bell_.waitUntil([&] { return !drawer.problem("a").empty(); });
  EXPECT_EQ(drawer.tiles("a").front().key.pixel, 100);
  isBroken_ = false;
  bell_.waitUntil([&] { return !drawer.isBusy() && drawer.problem("a").empty(); });
  for (const StoredTile& tile : drawer.tiles("a")) EXPECT_EQ(tile.key.pixel, 50);
}

TEST_F(MapDrawerTroubles, AServiceThatIsGoneIsNotAskedForEachTile) {
  makePlaced("a.tif", 32632, bern, 100);
  isBroken_ = true;
  MapDrawer drawer([this] { bell_.ring(); }, retryingAfter(std::chrono::hours(1)));
  const MapScene scene = sceneOf(mapAround(3857, bern, 100, 2000, 2000), {moodyLayer("a")});
  ASSERT_GT(tilesOf("a", scene.wkt, scene.pixel, scene.area, 1000).size(), 50U);
  drawer.show(scene);
  waitForAll(drawer);
  EXPECT_EQ(begun_, 1);
  EXPECT_EQ(drawer.problem("a"), "The server is silent");
}

TEST_F(MapDrawerTroubles, ForgettingEndsWorkThatGoesOnAndDrawsAnew) {
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100, 500, 400), {endlessLayer()}));
  bell_.waitUntil([&] { return begun_ == 2; });
  drawer.forget("endless");
  bell_.waitUntil([&] { return begun_ == 4; });
  EXPECT_EQ(ended_, 2);
  EXPECT_TRUE(drawer.isBusy());
}

TEST_F(MapDrawerTroubles, ForgettingShowsAFileThatWasWrittenAnew) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100), {layerOf("a")}));
  waitForAll(drawer);
  const auto before = drawer.tiles("a").front().picture->rgba;
  makePlaced("a.tif", 32632, bern, 100,
             [](GDALDataset& dataset) { EXPECT_EQ(dataset.GetRasterBand(1)->Fill(250), CE_None); });
  drawer.forget("a");
  waitForAll(drawer);
  EXPECT_NE(drawer.tiles("a").front().picture->rgba, before);
}

TEST_F(MapDrawerTroubles, FillOnlyGapsFromBeneath) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = moodyLayer("a");
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, bern, 100, 500, 500), {layer}));
  waitForAll(drawer);
  drawer.show(sceneOf(mapAround(3857, bern, 50, 10, 10), {layer}));
  waitForAll(drawer);
  isHeld_ = true;
  drawer.show(sceneOf(mapAround(3857, bern, 50, 1000, 1000), {layer}));
  std::vector<Bounds> whole;
  std::vector<Bounds> parts;
  for (const StoredTile& tile : drawer.tiles("a")) {
    if (tile.part)
      parts.push_back(*tile.part);
    else
      whole.push_back(tile.key.extent());
    EXPECT_EQ(tile.key.pixel, tile.part ? 100 : 50);
  }
  EXPECT_FALSE(whole.empty());
  EXPECT_FALSE(parts.empty());
  for (const Bounds& part : parts) {
    for (const Bounds& tile : whole) EXPECT_FALSE(overlap(part, tile));
  }
  isHeld_ = false;
}

/// A service that is drawn, and whose next pictures do not come.
class FormerPictures : public MapDrawerTroubles {
 protected:
  FormerPictures() {
    makePlaced("a.tif", 32632, bern, 100);
    layer_ = moodyLayer("a");
    layer_.service = "a";
    show("a#1");
    waitForAll(drawer_);
    isHeld_ = true;
  }
  ~FormerPictures() override { isHeld_ = false; }
  void show(const std::string& id) {
    layer_.id = id;
    drawer_.show(sceneOf(mapAround(3857, bern, 100), {layer_}));
  }

  MapLayer layer_;
  MapDrawer drawer_{[this] { bell_.ring(); }};
};

TEST_F(FormerPictures, StayUntilThereAreNewOnes) {
  const std::size_t count = drawer_.tiles("a#1").size();
  show("a#2");
  const auto meanwhile = drawer_.tiles("a#2");
  EXPECT_EQ(meanwhile.size(), count);
  for (const StoredTile& tile : meanwhile) EXPECT_EQ(tile.key.layer, "a#1");
  isHeld_ = false;
  waitForAll(drawer_);
  EXPECT_EQ(drawer_.tiles("a#2").size(), count);
  for (const StoredTile& tile : drawer_.tiles("a#2")) EXPECT_EQ(tile.key.layer, "a#2");
}

TEST_F(FormerPictures, StayWhereAServiceChangesFasterThanItIsDrawn) {
  for (const std::string id : {"a#2", "a#3"}) {
    show(id);
    ASSERT_FALSE(drawer_.tiles(id).empty()) << id;
    EXPECT_EQ(drawer_.tiles(id).front().key.layer, "a#1");
  }
}

TEST_F(MapDrawerTroubles, ServicesInDegreesBesideTheViewNeedNoSources) {
  makePlaced("a.tif", 4326, bern, 0.001);
  MapLayer layer = layerOf("a");
  layer.source = [this, source = layer.source](const auto& area) {
    if (area) ++begun_;
    return source(area);
  };
  MapDrawer drawer([this] { bell_.ring(); });
  drawer.show(sceneOf(mapAround(3857, {100, 10}, 100), {layer}));
  waitForAll(drawer);
  EXPECT_EQ(begun_, 0);
  drawer.show(sceneOf(mapAround(3857, bern, 100), {layer}));
  waitForAll(drawer);
  EXPECT_GT(begun_, 0);
  EXPECT_FALSE(drawer.tiles("a").empty());
}

TEST_F(MapDrawerTroubles, LayersOfOneIdAreDrawnOnce) {
  makePlaced("a.tif", 32632, bern, 100);
  MapDrawer drawer([this] { bell_.ring(); });
  const MapScene scene = sceneOf(mapAround(3857, bern, 100), {layerOf("a"), layerOf("a")});
  drawer.show(scene);
  waitForAll(drawer);
  const std::size_t most = tilesOf("a", scene.wkt, scene.pixel, scene.area, 1000).size();
  EXPECT_LE(drawer.tiles("a").size(), most);
  EXPECT_EQ(drawer.counts().drawn, most);
}

}  // namespace
}  // namespace vlclientui::client
