// Services beside the raster library's own warping: in several systems, at the south pole, with 16 bits, and
// by the threads of a map, in any order.

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/mapping/DrawerFixture.h"

namespace vlclientui::client {
namespace {

constexpr MapPoint mcmurdo{166.6, -77.8};

/// The system of a service, that of a map, and what lies there.
struct Pairing {
  int service;
  int map;
};

void PrintTo(const Pairing& pairing, std::ostream* out) { *out << pairing.service << "on" << pairing.map; }

double aboutAHundredMeters(int epsg) { return epsg == 4326 ? 0.001 : 100; }

std::vector<Pairing> pairingsOf(const std::vector<int>& systems) {
  std::vector<Pairing> all;
  for (const int service : systems) {
    for (const int map : systems) all.push_back({service, map});
  }
  return all;
}

class WarpedReferences : public test::DrawerFixture, public testing::WithParamInterface<Pairing> {
 protected:
  static constexpr auto exactly = "<Resampling>Nearest</Resampling>";

  /// Each pixel of the map shows the very pixel of the raster that lies there, but where two of them meet.
  /// @param filled the least share of the map that the service covers.
  void expectInPlace(MapPoint middle, double filled) {
    const auto [service, system] = GetParam();
    const std::string file = makePlaced("a.tif", service, middle, aboutAHundredMeters(service));
    const MapGrid map = mapAround(system, middle, aboutAHundredMeters(system), 300, 280);
    const auto reference = warped(file, system, map);
    EXPECT_GT(filledShare(reference), filled);
    EXPECT_GT(likeness(painted(drawingOf("a", exactly), map), reference), 0.99);
  }

  /// A pixel of the raster covers ten by ten of the map: half a pixel beside it would spoil a tenth of them.
  void expectInPlaceWhenEnlarged(MapPoint middle) {
    const auto [service, system] = GetParam();
    const std::string file = makePlaced("a.tif", service, middle, aboutAHundredMeters(service));
    const MapGrid map = mapAround(system, middle, aboutAHundredMeters(system) / 10, 300, 280);
    EXPECT_GT(likeness(painted(drawingOf("a", exactly), map), warped(file, system, map)), 0.99);
  }
};

using ServicesOnMaps = WarpedReferences;

TEST_P(ServicesOnMaps, LieWhereAWarpedReferenceLies) { expectInPlace(bern, 0.2); }

TEST_P(ServicesOnMaps, LieWithinHalfAPixelOfTheMapWhenEnlarged) { expectInPlaceWhenEnlarged(bern); }

INSTANTIATE_TEST_SUITE_P(EverySystem, ServicesOnMaps,
                         testing::ValuesIn(pairingsOf({4326, 32632, 3857, 3995, 2056})),
                         testing::PrintToStringParamName());

using AtTheSouthPole = WarpedReferences;

TEST_P(AtTheSouthPole, ServicesLieWhereTheyAreWarpedTo) { expectInPlace(mcmurdo, 0.05); }

TEST_P(AtTheSouthPole, ServicesLieWithinHalfAPixelWhenEnlarged) { expectInPlaceWhenEnlarged(mcmurdo); }

INSTANTIATE_TEST_SUITE_P(EverySystem, AtTheSouthPole, testing::ValuesIn(pairingsOf({3031, 4326, 32758})),
                         testing::PrintToStringParamName());

using Of16Bits = WarpedReferences;

// The values of the warped raster through the same range.
TEST_P(Of16Bits, ServicesHaveTheColorsOfTheirValues) {
  const auto [service, system] = GetParam();
  const std::string file = makeDeep("a.tif", service, bern, aboutAHundredMeters(service));
  const MapGrid map = mapAround(system, bern, aboutAHundredMeters(system), 300, 280);
  Stretch stretch;
  stretch.bands = {1, 2, 3};
  stretch.lowest = {0, 0, 0};
  stretch.highest.fill(255.0 * deeper);
  auto reference = warped(file, system, map);
  EXPECT_GT(filledShare(reference), 0.2);
  for (Pixel& pixel : reference) {
    for (std::size_t band = 0; band < 3; ++band) pixel[band] /= deeper;
  }
  RasterHandles handles;
  const Drawing drawing = drawingOf("a", exactly);
  EXPECT_GT(nearLikeness(*ServicePainter(drawing, stretch, handles).paint(map), reference), 0.99);
}

INSTANTIATE_TEST_SUITE_P(EverySystem, Of16Bits,
                         testing::ValuesIn(pairingsOf({4326, 32632, 3857, 3995, 2056})),
                         testing::PrintToStringParamName());

class WarpedScenes : public test::DrawerFixture {
 protected:
  /// Of whole tiles in the middle of a scene: the share of pixels that are those of the reference.
  [[nodiscard]] double likenessOf(MapDrawer& drawer, const std::string& layer, const std::string& file,
                                  int system) {
    double worst = 1;
    for (const StoredTile& tile : drawer.tiles(layer)) {
      const MapGrid map{tile.key.wkt, {tile.key.extent(), TileKey::side, TileKey::side}};
      worst = std::min(worst, likeness(*tile.picture, warped(file, system, map)));
    }
    return worst;
  }
};

// Five services at a time, each in a system of its own, whatever lies on top.
TEST_F(WarpedScenes, ShowEachServiceAsItIsWarpedInAnyOrder) {
  const std::vector<int> systems = {4326, 32632, 3857, 3995, 2056};
  std::vector<MapLayer> layers;
  std::vector<std::string> files;
  for (const int system : systems) {
    const std::string name = "s" + std::to_string(system);
    files.push_back(makePlaced(name + ".tif", system, bern, aboutAHundredMeters(system)));
    auto drawing = std::make_shared<const Drawing>(drawingOf(name, "<Resampling>Nearest</Resampling>"));
    layers.push_back({name, [drawing](const auto&) { return drawing; }});
  }
  for (const int system : {3857, 3035}) {
    for (int turn = 0; turn < 3; ++turn) {
      std::ranges::rotate(layers, layers.begin() + 2);
      MapDrawer drawer([this] { bell_.ring(); });
      drawer.show(sceneOf(mapAround(system, bern, 100, 400, 300), layers));
      waitForAll(drawer);
      for (std::size_t i = 0; i < systems.size(); ++i) {
        const std::string name = "s" + std::to_string(systems[i]);
        ASSERT_FALSE(drawer.tiles(name).empty());
        EXPECT_GT(likenessOf(drawer, name, files[i], system), 0.99) << name << " on " << system;
      }
    }
  }
}

}  // namespace
}  // namespace vlclientui::client
