// A coverage whose server is away: what is kept is read, all else is told.
#include <cstdint>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "client/QuickTransport.h"
#include "client/network/CoverageReader.h"
#include "client/network/NetworkAccess.h"
#include "client/network/TileStore.h"
#include "client/transport/Transport.h"

namespace vlclientui::client::network {
namespace {

using Place = std::pair<int, int>;

constexpr auto away = "http://127.0.0.1:1/wcs";

class KeptCoverage : public testing::Test {
 protected:
  std::shared_ptr<CoverageReader> open(std::int64_t columns, std::int64_t rows, int bytesOfPixel = 1) {
    auto coverage = std::make_shared<CoverageDescription>();
    coverage->id = "c";
    coverage->xLabel = "x";
    coverage->yLabel = "y";
    coverage->columns = columns;
    coverage->rows = rows;
    coverage->envelope = {0, 0, static_cast<double>(columns), static_cast<double>(rows)};
    auto format = std::make_shared<CoverageFormat>();
    format->name = "image/tiff";
    format->dataType = "Byte";
    format->bandCount = bytesOfPixel;
    format->bytesOfPixel = bytesOfPixel;
    return std::make_shared<CoverageReader>(client_, coverage, format, store_, passages_);
  }
  /// Tiles that are known by their only byte.
  void keep(int level, int column, int row, int mark) {
    auto tile = std::make_shared<const std::vector<std::byte>>(1, static_cast<std::byte>(mark));
    store_.keep({coverageName(away, "c"), level, column, row}, tile);
  }
  std::string read(CoverageReader& reader, const TileRange& range) {
    told_.clear();
    return reader.read(range, [this](int column, int row, const std::vector<std::byte>& pixels) {
      EXPECT_TRUE(told_.emplace(Place(column, row), static_cast<int>(pixels.at(0))).second) << "told twice";
    });
  }

  Transport transport_{vlclientui::test::quickSettings()};
  std::shared_ptr<CoverageClient> client_ = std::make_shared<CoverageClient>(transport_, away);
  TileStore store_{std::size_t{1} << 20U};
  CoveragePassages passages_;
  std::map<Place, int> told_;  ///< marks of tiles
};

TEST_F(KeptCoverage, HasReductionsUntilItsShorterSideIsSmall) {
  struct Row {
    std::int64_t columns;
    std::int64_t rows;
    int levels;
  };
  for (const auto& [columns, rows, levels] : std::vector<Row>{{1, 1, 1},
                                                              {255, 255, 1},
                                                              {256, 256, 2},
                                                              {256, 255, 1},
                                                              {100000, 512, 3},
                                                              {1440, 721, 3},
                                                              {1000000, 1000000, 13}}) {
    EXPECT_EQ(open(columns, rows)->levels(), levels) << columns << ' ' << rows;
  }
}

TEST_F(KeptCoverage, CountsPartsOfPixelsAtTheEdgesOfReductions) {
  const auto reader = open(1441, 721);
  const std::vector<std::pair<std::int64_t, std::int64_t>> sizes = {{1441, 721}, {721, 361}, {361, 181}};
  ASSERT_EQ(reader->levels(), 3);
  for (int level = 0; level < 3; ++level) {
    EXPECT_EQ(reader->columns(level), sizes.at(static_cast<std::size_t>(level)).first) << level;
    EXPECT_EQ(reader->rows(level), sizes.at(static_cast<std::size_t>(level)).second) << level;
  }
}

TEST_F(KeptCoverage, PlansRequestsForTheGroupsOfAWindow) {
  const auto reader = open(4096, 4096);
  EXPECT_EQ(reader->requestsFor({0, 0, 4096, 4096}, 0), 16);
  EXPECT_EQ(reader->pixelsFor({0, 0, 4096, 4096}, 0), 4096 * 4096);
  EXPECT_EQ(reader->requestsFor({0, 0, 4096, 4096}, 2), 1);
  EXPECT_EQ(reader->pixelsFor({0, 0, 4096, 4096}, 2), 1024 * 1024);
  EXPECT_EQ(reader->requestsFor({0, 0, 100, 100}, 0), 1);
  EXPECT_EQ(reader->requestsFor({1000, 1000, 100, 100}, 0), 4) << "across the corner of four groups";
  client_->takeFewerTiles();
  EXPECT_TRUE(client_->isLimited());
  EXPECT_EQ(reader->requestsFor({0, 0, 4096, 4096}, 0), 64);
}

TEST_F(KeptCoverage, AsksForLowerGroupsWhereARowOfThemIsWide) {
  const auto reader = open(65536, 4096, 8);
  EXPECT_EQ(reader->requestsFor({0, 0, 1000, 4096}, 0), 4);
  EXPECT_EQ(reader->requestsFor({0, 0, 65536, 4096}, 0), 64 * 16) << "256 tiles of half a MiB are too many";
}

TEST_F(KeptCoverage, TellsAPartFromTheMiddleOfAWindow) {
  const auto reader = open(4096, 4096);
  const CoveragePart part = reader->middlePart({0, 0, 4096, 4096}, 1);
  EXPECT_EQ(part.window, (PixelWindow{0, 2048, 2048, 2048}));
  EXPECT_EQ(part.columns, 1024);
  EXPECT_EQ(part.rows, 1024);
}

TEST_F(KeptCoverage, AsksForTwoPixelsWhereOneIsLeft) {
  const auto reader = open(257, 600);
  const CoveragePart part = reader->middlePart({256, 0, 1, 600}, 0);
  EXPECT_GE(part.window.width, 2);
  EXPECT_EQ(part.window.column + part.window.width, 257);
  EXPECT_EQ(open(1, 1)->middlePart({0, 0, 1, 1}, 0).window, (PixelWindow{0, 0, 1, 1}));
}

TEST_F(KeptCoverage, ReadsWhatIsKeptWithoutARequest) {
  const auto reader = open(1024, 1024);
  keep(0, 1, 1, 11);
  keep(0, 2, 1, 21);
  keep(1, 1, 1, 99);
  EXPECT_EQ(read(*reader, {0, 1, 1, 2, 1}), "");
  EXPECT_EQ(told_, (std::map<Place, int>{{{1, 1}, 11}, {{2, 1}, 21}}));
}

TEST_F(KeptCoverage, TellsWhatIsKeptAndWhyTheRestIsMissing) {
  const auto reader = open(1024, 1024);
  keep(0, 0, 0, 7);
  const std::string problem = read(*reader, {0, 0, 0, 1, 0});
  EXPECT_NE(problem.find("127.0.0.1"), std::string::npos) << problem;
  EXPECT_EQ(told_, (std::map<Place, int>{{{0, 0}, 7}}));
}

TEST_F(KeptCoverage, IsNotMixedUpWithAnother) {
  const auto reader = open(1024, 1024);
  const auto tile = std::make_shared<const std::vector<std::byte>>(1);
  store_.keep({coverageName(away, "d"), 0, 0, 0}, tile);
  store_.keep({coverageName("http://127.0.0.1:2/wcs", "c"), 0, 0, 0}, tile);
  EXPECT_NE(read(*reader, {0, 0, 0, 0, 0}), "");
  EXPECT_TRUE(told_.empty());
}

TEST_F(KeptCoverage, IsGoneWhenTheStoreForgets) {
  const auto reader = open(1024, 1024);
  keep(0, 0, 0, 7);
  store_.forget();
  EXPECT_NE(read(*reader, {0, 0, 0, 0, 0}), "");
  keep(0, 0, 0, 8);
  EXPECT_EQ(read(*reader, {0, 0, 0, 0, 0}), "");
  EXPECT_EQ(told_.at({0, 0}), 8);
}

TileStore::Bytes bytes(std::size_t size) { return std::make_shared<const std::vector<std::byte>>(size); }

TEST(TileStores, KnowTilesByRasterLevelColumnAndRow) {
  TileStore store(100);
  store.keep({"r", 1, 2, 3}, bytes(5));
  EXPECT_TRUE(store.find({"r", 1, 2, 3}));
  for (const TileStore::Key& other :
       {TileStore::Key{"s", 1, 2, 3}, {"r", 0, 2, 3}, {"r", 1, 3, 3}, {"r", 1, 2, 2}, {"r", 2, 1, 3}})
    EXPECT_FALSE(store.find(other));
}

TEST(TileStores, LeaveBytesToThoseWhoHoldThem) {
  TileStore store(10);
  store.keep({"r", 0, 0, 0}, bytes(9));
  const TileStore::Bytes held = store.find({"r", 0, 0, 0});
  store.keep({"r", 0, 1, 0}, bytes(9));
  EXPECT_FALSE(store.find({"r", 0, 0, 0}));
  EXPECT_EQ(held->size(), 9U);
}

TEST(TileStores, CountWhatIsReplacedOnce) {
  TileStore store(100);
  store.keep({"r", 0, 9, 0}, bytes(40));
  for (int times = 0; times < 20; ++times) store.keep({"r", 0, 0, 0}, bytes(50));
  EXPECT_TRUE(store.find({"r", 0, 9, 0}));
  store.keep({"r", 0, 0, 0}, bytes(61));
  EXPECT_FALSE(store.find({"r", 0, 9, 0}));
  store.keep({"r", 0, 0, 0}, bytes(10));
  store.keep({"r", 0, 1, 0}, bytes(90));
  EXPECT_TRUE(store.find({"r", 0, 0, 0}));
}

TEST(TileStores, MakeRoomForALargeTileByForgettingSeveral) {
  TileStore store(100);
  for (int column = 0; column < 4; ++column) store.keep({"r", 0, column, 0}, bytes(25));
  store.keep({"r", 0, 4, 0}, bytes(60));
  for (int column = 0; column < 3; ++column) EXPECT_FALSE(store.find({"r", 0, column, 0})) << column;
  EXPECT_TRUE(store.find({"r", 0, 3, 0}));
  store.keep({"r", 0, 5, 0}, bytes(1000));
  EXPECT_FALSE(store.find({"r", 0, 4, 0}));
  EXPECT_TRUE(store.find({"r", 0, 5, 0})) << "the newest stays";
}

}  // namespace
}  // namespace vlclientui::client::network
