// How the pixels of a coverage are asked for, beside a real server.
#include "client/network/CoverageReader.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

#include "client/network/NetworkAccess.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"

namespace vlclientui::client::network {
namespace {

using vlclientui::test::FaultProxy;
using vlclientui::test::MapServer;
using Tiles = std::map<std::pair<int, int>, std::vector<std::byte>>;

constexpr auto geoid = "World.EGM96_Geoid";
constexpr auto scaling = "http://www.opengis.net/spec/WCS_service-extension_scaling/1.0/conf/scaling";

class CoverageReaderTest : public testing::Test {
 protected:
  [[nodiscard]] std::shared_ptr<CoverageReader> open(NetworkAccess& access) const {
    auto opened = access.reader(proxy_.address("/wcs"), geoid);
    if (const auto* problem = std::get_if<CoverageProblem>(&opened)) ADD_FAILURE() << problem->text;
    return std::get<std::shared_ptr<CoverageReader>>(opened);
  }
  static Tiles read(CoverageReader& reader, const TileRange& range) {
    Tiles tiles;
    EXPECT_EQ(reader.read(range,
                          [&](int column, int row, const auto& pixels) {
                            tiles[{column, row}] = pixels;
                          }),
              "");
    return tiles;
  }
  [[nodiscard]] std::size_t requestsWith(const std::string& text) const {
    const auto requests = proxy_.requests();
    return static_cast<std::size_t>(std::ranges::count_if(
        requests, [&](const std::string& request) { return request.find(text) != std::string::npos; }));
  }

  FaultProxy proxy_{MapServer::shared().address().substr(7)};
  NetworkAccess access_;
  CancelToken readers_;  ///< of an export
};

TEST_F(CoverageReaderTest, MakesReductionsItselfWhereTheServerDoesNot) {
  proxy_.always(std::string("without=") + vlclientui::test::encoded(scaling));
  const auto reader = open(access_);
  ASSERT_FALSE(reader->client().canScale());
  const Tiles full = read(*reader, {0, 0, 0, 5, 2});
  for (const int level : {1, 2}) {
    const Tiles reduced = read(*reader, {level, 0, 0, 5, 2});
    ASSERT_EQ(reduced.size(), level == 1 ? 6U : 2U);
    const int ratio = 1 << level;
    for (std::int64_t y = 0; y < reader->rows(level); ++y) {
      for (std::int64_t x = 0; x < reader->columns(level); ++x) {
        const auto at = [](const Tiles& tiles, std::int64_t column, std::int64_t row) {
          const auto& tile = tiles.at({static_cast<int>(column / 256), static_cast<int>(row / 256)});
          return tile.data() + static_cast<std::size_t>((row % 256) * 256 + column % 256) * sizeof(float);
        };
        const std::int64_t column = std::min(x * ratio + ratio / 2, reader->columns(0) - 1);
        const std::int64_t row = std::min(y * ratio + ratio / 2, reader->rows(0) - 1);
        ASSERT_TRUE(std::equal(at(reduced, x, y), at(reduced, x, y) + sizeof(float), at(full, column, row)))
            << x << ' ' << y;
      }
    }
  }
  EXPECT_EQ(requestsWith("SCALE"), 0U);
}

TEST_F(CoverageReaderTest, AsksForEachGroupOfAPassageOnceAndForNothingBesides) {
  const auto reader = open(access_);
  const PixelWindow window{300, 100, 900, 500};
  const auto passage = access_.passages().begin(coverageName(proxy_.address("/wcs"), geoid), window,
                                                CoveragePassage::Kind::Through, readers_);
  const WaitScope reading(nullptr, readers_);
  proxy_.clear();
  const TileRange area = reader->area(window, 0);
  for (int row = area.top; row <= area.bottom; ++row) {
    for (int column = area.left; column <= area.right; ++column) read(*reader, {0, column, row, column, row});
  }
  EXPECT_EQ(static_cast<std::int64_t>(requestsWith("GetCoverage")), reader->requestsFor(window, 0));
  EXPECT_EQ(passage->requests(), requestsWith("GetCoverage"));
  EXPECT_EQ(passage->level(), 0);
  EXPECT_GE(passage->bytes(), 900U * 500 * sizeof(float));
}

TEST_F(CoverageReaderTest, KnowsAPassageOnlyWhileItLasts) {
  const std::string name = coverageName("http://h/wcs", "A");
  auto passage = access_.passages().begin(name, {0, 0, 10, 10}, CoveragePassage::Kind::Sample, readers_);
  EXPECT_EQ(access_.passages().find(name), nullptr) << "this thread does not read for it yet";
  const WaitScope reading(nullptr, readers_);
  EXPECT_EQ(access_.passages().find(name), passage);
  EXPECT_EQ(access_.passages().find(coverageName("http://h/wcs", "B")), nullptr);
  passage.reset();
  EXPECT_EQ(access_.passages().find(name), nullptr);
}

TEST_F(CoverageReaderTest, LeavesAMapAloneThatReadsTheCoverageOfAnExport) {
  const auto reader = open(access_);
  auto passage = access_.passages().begin(coverageName(proxy_.address("/wcs"), geoid), {0, 0, 1440, 721},
                                          CoveragePassage::Kind::Through, readers_);
  proxy_.clear();
  read(*reader, {1, 0, 0, 0, 0});
  EXPECT_EQ(requestsWith("GetCoverage"), 1U) << "what the map shows, and nothing ahead of it";
  EXPECT_EQ(passage->requests(), 0U);
  EXPECT_EQ(passage->level(), -1);
  passage->giveUp();
  read(*reader, {0, 3, 1, 3, 1});
  passage.reset();
  read(*reader, {0, 5, 2, 5, 2});
}

TEST_F(CoverageReaderTest, FetchesEachLevelOfAPassageAhead) {
  const auto reader = open(access_);
  const PixelWindow window{0, 0, 1440, 721};
  const auto passage = access_.passages().begin(coverageName(proxy_.address("/wcs"), geoid), window,
                                                CoveragePassage::Kind::Through, readers_);
  const WaitScope reading(nullptr, readers_);
  std::int64_t planned = 0;
  proxy_.clear();
  for (const int level : {1, 0}) {
    planned += reader->requestsFor(window, level);
    const TileRange area = reader->area(window, level);
    for (int row = area.top; row <= area.bottom; ++row) read(*reader, {level, 0, row, area.right, row});
  }
  EXPECT_EQ(static_cast<std::int64_t>(requestsWith("GetCoverage")), planned);
  EXPECT_EQ(static_cast<std::int64_t>(passage->requests()), planned);
}

TEST_F(CoverageReaderTest, TellsTheSameFingerprintUntilTheSourceChanges) {
  const auto reader = open(access_);
  const auto print = [&] {
    auto told = reader->client().fingerprint(reader->coverage(), reader->format());
    return std::holds_alternative<std::string>(told) ? std::get<std::string>(told) : std::string("none");
  };
  const std::string first = print();
  EXPECT_EQ(first.size(), 16U);
  EXPECT_EQ(print(), first);
  proxy_.always("header=ETag:%22another%22");
  EXPECT_NE(print(), first);
  proxy_.always("header=" + vlclientui::test::encoded("Last-Modified:Tue, 03 Mar 2020 10:00:00 GMT"));
  EXPECT_NE(print(), first);
  proxy_.always("exception");
  EXPECT_EQ(print(), "none");
  proxy_.clear();
  EXPECT_EQ(print(), first);
}

TEST_F(CoverageReaderTest, ForgetsWhatWasFetched) {
  read(*open(access_), {0, 0, 0, 0, 0});
  proxy_.clear();
  read(*open(access_), {0, 0, 0, 0, 0});
  EXPECT_EQ(proxy_.counts().requests, 0U);
  access_.forget();
  read(*open(access_), {0, 0, 0, 0, 0});
  EXPECT_GT(requestsWith("GetCoverage"), 0U);
}

}  // namespace
}  // namespace vlclientui::client::network
