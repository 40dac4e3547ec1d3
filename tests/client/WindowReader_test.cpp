#include "client/WindowReader.h"

#include <gtest/gtest.h>

#include "client/GdalScope.h"
#include "client/RasterFixture.h"

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
  test::RasterSpec spec;
  spec.bands = 2;
  spec.finish = [](GDALDataset& d) {
    d.GetRasterBand(1)->Fill(1);
    d.GetRasterBand(2)->Fill(2);
  };
  const DatasetPtr raster = openRaster(makeRaster("a.tif", spec).string());
  WindowReader reader(*raster, {{0, 0, 2, 1}, {2, 0, 1, 1}, {0, 1, 1, 1}, {1, 1, 1, 1}, {2, 1, 1, 1}});
  const WindowPixels first = reader.take();
  EXPECT_EQ(first.values, (std::vector<std::byte>{std::byte{1}, std::byte{1}, std::byte{2}, std::byte{2}}));
  EXPECT_EQ(reader.take().window, (Window{2, 0, 1, 1}));
}

TEST_F(WindowReading, MayBeGivenUpAtAnyTime) {
  const DatasetPtr raster = openRaster(makeRaster("a.tif").string());
  const WindowReader reader(*raster, {{0, 0, 1, 1}, {1, 0, 1, 1}, {2, 0, 1, 1}, {3, 0, 1, 1}});
}

}  // namespace
}  // namespace vlclientui::client
