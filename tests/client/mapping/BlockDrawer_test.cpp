#include "client/mapping/BlockDrawer.h"

#include <algorithm>
#include <thread>

#include <gtest/gtest.h>

#include "client/mapping/DrawerFixture.h"
#include "client/mapping/ServiceValues.h"

namespace vlclientui::client {
namespace {

class BlockDrawers : public test::DrawerFixture {
 protected:
  /// Whole tiles of a map, that many each way.
  static AskedBlock blockOf(const TileKey& first, int tilesEachWay) {
    Bounds extent = first.extent();
    extent.xMax = extent.xMin + (extent.xMax - extent.xMin) * tilesEachWay;
    extent.yMin = extent.yMax - (extent.yMax - extent.yMin) * tilesEachWay;
    return {first.wkt, {extent, TileKey::side * tilesEachWay, TileKey::side * tilesEachWay}};
  }
  /// Rows of one tile in a block.
  static std::vector<std::uint8_t> tileIn(const ServicePicture& block, int column, int row) {
    std::vector<std::uint8_t> tile;
    for (int line = 0; line < TileKey::side; ++line) {
      const auto from = (static_cast<std::ptrdiff_t>(row * TileKey::side + line) * block.columns +
                         static_cast<std::ptrdiff_t>(column) * TileKey::side) *
                        4;
      tile.insert(tile.end(), block.rgba.begin() + from, block.rgba.begin() + from + TileKey::side * 4);
    }
    return tile;
  }
};

TEST_F(BlockDrawers, GiveThePixelsOfTheTilesOfAMap) {
  makeDeep("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  MapDrawer tiles([this] { bell_.ring(); });
  tiles.show(sceneOf(mapAround(32632, bern, 40, 700, 600), {layer}));
  waitForAll(tiles);
  BlockDrawer blocks;
  EXPECT_EQ(*blocks.stretch(layer), *tiles.stretch("a"));
  int compared = 0;
  for (const StoredTile& tile : tiles.tiles("a")) {
    if (tile.picture->rgba.empty()) continue;
    const auto block = blocks.draw(layer, blockOf(tile.key, 2));
    ASSERT_TRUE(block.has_value());
    EXPECT_EQ(tileIn(*block, 0, 0), tile.picture->rgba);
    ++compared;
  }
  EXPECT_GE(compared, 4);
}

TEST_F(BlockDrawers, HaveNoPixelsWhereTheServiceDoesNotLie) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapGrid elsewhere = mapAround(3857, {-60, -20}, 100, 300, 300);
  BlockDrawer drawer;
  const auto block = drawer.draw(layerOf("a"), {elsewhere.wkt, elsewhere.grid});
  ASSERT_TRUE(block.has_value());
  EXPECT_TRUE(block->rgba.empty());
}

TEST_F(BlockDrawers, AreGivenUpWithTheWorkOfTheirThread) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapGrid map = mapAround(3857, bern, 100, 600, 600);
  const MapLayer layer = layerOf("a");
  BlockDrawer drawer;
  CancelToken token;
  const WaitScope scope(nullptr, token);
  token.cancel();
  EXPECT_FALSE(drawer.draw(layer, {map.wkt, map.grid}).has_value());
}

TEST_F(BlockDrawers, ServeSeveralThreadsWithTheSamePixels) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapGrid map = mapAround(3857, bern, 60, 600, 600);
  const MapLayer layer = layerOf("a");
  BlockDrawer drawer;
  std::array<std::optional<ServicePicture>, 4> drawn;
  {
    std::vector<std::jthread> threads;
    for (auto& one : drawn) threads.emplace_back([&] { one = drawer.draw(layer, {map.wkt, map.grid}); });
  }
  for (const auto& one : drawn) {
    ASSERT_TRUE(one.has_value());
    EXPECT_FALSE(one->rgba.empty());
    EXPECT_EQ(one->rgba, drawn[0]->rgba);
  }
}

TEST_F(BlockDrawers, FailWhereNothingOfTheServiceCanBeRead) {
  const std::string file = makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  std::filesystem::remove(file);
  const MapGrid map = mapAround(3857, bern, 100, 300, 300);
  BlockDrawer drawer;
  EXPECT_THROW(static_cast<void>(drawer.draw(layer, {map.wkt, map.grid})), RuntimeFailure);
}

/// A mosaic of a northern source and one a hundred kilometers further south, whose file has gone.
class HalfGoneMosaics : public test::DrawerFixture {
 protected:
  static constexpr MapPoint south{7.44, 46.0};
  static constexpr MapPoint between{7.44, 46.475};

  HalfGoneMosaics() {
    makePlaced("north.tif", 32632, bern, 100);
    const std::string gone = makePlaced("south.tif", 32632, south, 100);
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Sources><Source><File>north.tif</File></Source>"
              "<Source><File>south.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
    layer_ = layerOf("m");
    layer_.stretch = BlockDrawer().stretch(layer_);
    std::filesystem::remove(gone);
  }
  [[nodiscard]] std::optional<ServicePicture> drawn(MapPoint middle, int rows) const {
    const MapGrid map = mapAround(32632, middle, 100, 300, rows);
    return BlockDrawer().draw(layer_, {map.wkt, map.grid});
  }

  MapLayer layer_;
};

TEST_F(HalfGoneMosaics, FailWhereNothingIsSeenAlsoInABlockThatIsLargerThanThem) {
  EXPECT_THROW(static_cast<void>(drawn(south, 200)), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(drawn(south, 900)), RuntimeFailure);
}

TEST_F(HalfGoneMosaics, ShowTheOtherSourceAndTellOfTheOneThatIsGone) {
  const auto block = drawn(between, 1400);
  ASSERT_TRUE(block.has_value());
  EXPECT_TRUE(std::ranges::any_of(block->rgba, [](std::uint8_t value) { return value != 0; }));
  ASSERT_FALSE(block->missing.empty());
  EXPECT_NE(block->missing.begin()->second.find("south"), std::string::npos)
      << block->missing.begin()->second;
}

using ServiceValues = test::DrawerFixture;

TEST_F(ServiceValues, AreThoseOfTheFileOnItsOwnPixels) {
  makeDeep("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  const Bounds all = layer.source(std::nullopt)->service->facts.envelope;
  const auto band = bandPixels(layer.source, {all, side, side}, 1);
  ASSERT_TRUE(band.has_value());
  for (int column = 0; column < side; ++column) {
    EXPECT_EQ(band->values[static_cast<std::size_t>(column)], (column % 250 + 1) * deeper) << column;
  }
  EXPECT_EQ(std::ranges::count(band->mask, 0), 0);
}

TEST_F(ServiceValues, AreHolesBesideTheService) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  Bounds beside = layer.source(std::nullopt)->service->facts.envelope;
  beside.xMin += 1e6;
  beside.xMax += 1e6;
  const auto band = bandPixels(layer.source, {beside, 10, 10}, 1);
  ASSERT_TRUE(band.has_value());
  EXPECT_EQ(std::ranges::count(band->mask, 0), 100);
}

TEST_F(ServiceValues, OfABandThatIsNotThereAreAFailure) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  const Bounds all = layer.source(std::nullopt)->service->facts.envelope;
  EXPECT_THROW(static_cast<void>(bandPixels(layer.source, {all, 10, 10}, 9)), RuntimeFailure);
}

TEST_F(ServiceValues, AreGivenUpWithTheWorkOfTheirThread) {
  makePlaced("a.tif", 32632, bern, 100);
  const MapLayer layer = layerOf("a");
  const Bounds all = layer.source(std::nullopt)->service->facts.envelope;
  CancelToken token;
  const WaitScope scope(nullptr, token);
  token.cancel();
  EXPECT_FALSE(bandPixels(layer.source, {all, 100, 100}, 1).has_value());
}

}  // namespace
}  // namespace vlclientui::client
