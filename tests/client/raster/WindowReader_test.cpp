#include "client/raster/WindowReader.h"

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/raster/GdalScope.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Windows = std::vector<Window>;

TEST(Windows, AreWholeBlocksWithinTheSize) {
  EXPECT_EQ(windowsAlongBlocks({0, 0, 10, 5}, 4, 4, 1, 32),
            (Windows{{0, 0, 8, 4}, {8, 0, 2, 4}, {0, 4, 8, 1}, {8, 4, 2, 1}}));
}

TEST(Windows, TakeSeveralRowsOfBlocksWhereTheyFit) {
  EXPECT_EQ(windowsAlongBlocks({0, 0, 10, 10}, 4, 2, 1, 40),
            (Windows{{0, 0, 10, 4}, {0, 4, 10, 4}, {0, 8, 10, 2}}));
}

TEST(Windows, OfRowsHoldOneRowAtLeast) {
  EXPECT_EQ(windowsOfRows({0, 0, 10, 2}, 1, 3), (Windows{{0, 0, 10, 1}, {0, 1, 10, 1}}));
  EXPECT_EQ(windowsOfRows({0, 0, 10, 3}, 1, 20), (Windows{{0, 0, 10, 2}, {0, 2, 10, 1}}));
}

class WindowReading : public test::RasterFixture {};

TEST_F(WindowReading, GivesWindowsInOrderWithBandsOneAfterTheOther) {
  test::RasterRecipe recipe;
  recipe.bands = 2;
  recipe.finish = [](GDALDataset& d) {
    d.GetRasterBand(1)->Fill(1);
    d.GetRasterBand(2)->Fill(2);
  };
  const DatasetPtr raster = openRaster(makeRaster("a.tif", recipe).string());
  WindowReader reader(*raster, {{0, 0, 2, 1}, {2, 0, 1, 1}, {0, 1, 1, 1}, {1, 1, 1, 1}, {2, 1, 1, 1}}, 1000);
  const WindowPixels first = reader.take();
  EXPECT_EQ(first.values, (std::vector<std::byte>{std::byte{1}, std::byte{1}, std::byte{2}, std::byte{2}}));
  EXPECT_EQ(reader.take().window, (Window{2, 0, 1, 1}));
}

TEST_F(WindowReading, GivesTheSamePixelsWhateverIsReadAtOnce) {
  test::RasterRecipe recipe;
  recipe.bands = 2;
  recipe.finish = [](GDALDataset& d) {
    for (int i = 0; i < 96; ++i) {
      auto value = static_cast<std::uint8_t>(i);
      EXPECT_EQ(d.GetRasterBand(i / 48 + 1)
                    ->RasterIO(GF_Write, i % 8, i % 48 / 8, 1, 1, &value, 1, 1, GDT_Byte, 0, 0, nullptr),
                CE_None);
    }
  };
  const DatasetPtr raster = openRaster(makeRaster("a.tif", recipe).string());
  const Window part{1, 1, 5, 3};
  const auto whole = WindowReader(*raster, {part}, 1000).take().values;
  ASSERT_EQ(whole.size(), 30U);
  EXPECT_EQ(whole[0], std::byte{9});
  EXPECT_EQ(whole[29], std::byte{48 + 29});
  for (const std::size_t bytes : {std::size_t{1}, std::size_t{7}, std::size_t{20}}) {
    EXPECT_EQ(WindowReader(*raster, {part}, bytes).take().values, whole) << bytes;
  }
}

TEST_F(WindowReading, MayBeGivenUpAtAnyTime) {
  const DatasetPtr raster = openRaster(makeRaster("a.tif").string());
  const WindowReader reader(*raster, {{0, 0, 1, 1}, {1, 0, 1, 1}, {2, 0, 1, 1}, {3, 0, 1, 1}}, 1000);
}

TEST_F(WindowReading, EndsWhenTheWorkOfWhoeverMadeItIsGivenUp) {
  const DatasetPtr raster = openRaster(makeRaster("a.tif").string());
  CancelToken token;
  const WaitScope scope(nullptr, token);
  WindowReader reader(*raster, {{0, 0, 1, 1}, {1, 0, 1, 1}, {2, 0, 1, 1}, {3, 0, 1, 1}}, 1000);
  token.cancel();
  EXPECT_THROW(
      {
        for (int i = 0; i < 4; ++i) static_cast<void>(reader.take());
      },
      RuntimeFailure);
}

TEST_F(WindowReading, TellsHowMuchOfAWindowIsReadToWhoeverWaits) {
  test::RasterRecipe recipe;
  recipe.width = 4000;
  recipe.height = 4000;
  const DatasetPtr raster = openRaster(makeRaster("a.tif", recipe).string());
  WindowReader reader(*raster, {{0, 0, 4000, 4000}}, 40000);
  double last = -1;
  int told = 0;
  const auto pixels = reader.take([&](double share) {
    EXPECT_GE(share, last);
    EXPECT_LE(share, 1);
    if (share > 0) ++told;
    last = share;
    return true;
  });
  EXPECT_GT(told, 1);
  EXPECT_EQ(pixels.values.size(), 16000000U);
}

TEST_F(WindowReading, IsGivenUpByWhoeverWaits) {
  test::RasterRecipe recipe;
  recipe.width = 4000;
  recipe.height = 4000;
  const DatasetPtr raster = openRaster(makeRaster("a.tif", recipe).string());
  WindowReader reader(*raster, {{0, 0, 4000, 4000}}, 4000);
  EXPECT_THROW((void)reader.take([](double) { return false; }), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
