#include "client/drawing/RasterValues.h"

#include <cstring>

#include <gtest/gtest.h>

#include "client/ColorMosaicFixture.h"

namespace vlclientui::test {
namespace {

using client::OutputGrid;
using client::RasterValues;

const OutputGrid ownPixels{{500000, 5149400, 501400, 5150000}, 14, 6};

class ValuesOfGrids : public ColorMosaicFixture {
 protected:
  [[nodiscard]] static RasterValues valuesOf(const client::CatalogueImageService& made,
                                             const OutputGrid& grid) {
    return client::readValues(*made.drawing().within(grid.extent), grid);
  }
};

TEST_F(ValuesOfGrids, AreThoseThatAnExportWrites) {
  const auto made = mosaic("<MosaicMethod>Lock Raster</MosaicMethod><LockImageID>2</LockImageID>");
  const RasterValues values = valuesOf(*made, ownPixels);
  EXPECT_EQ(values.bands, 3);
  EXPECT_EQ(values.type, "Byte");
  ASSERT_EQ(values.values.size(), 3U * 14U * 6U);
  EXPECT_EQ(std::to_integer<int>(values.values[3]), 10);
  EXPECT_EQ(std::to_integer<int>(values.values[84 + 3]), 180);
  EXPECT_EQ(exported(*made), "...GGGGGGGG...");
}

TEST_F(ValuesOfGrids, TellWhereThereAreNoData) {
  const auto made = mosaic("<MosaicMethod>Lock Raster</MosaicMethod><LockImageID>2</LockImageID>");
  const RasterValues values = valuesOf(*made, ownPixels);
  for (std::size_t column = 0; column < 14; ++column) {
    EXPECT_EQ(values.isValid[column], column >= 3 && column < 11 ? 1 : 0) << column;
  }
}

TEST_F(ValuesOfGrids, HaveNoDataBesideTheService) {
  const RasterValues values = valuesOf(*mosaic(), {{400000, 5149400, 401400, 5150000}, 7, 3});
  EXPECT_EQ(values.isValid, std::vector<std::uint8_t>(3U * 7U * 3U, 0));
}

TEST_F(ValuesOfGrids, HaveTheTypeOfTheRasterAndComplexIntegersAsFloats) {
  RasterRecipe recipe;
  recipe.type = GDT_Float64;
  recipe.finish = [](GDALDataset& dataset) { EXPECT_EQ(dataset.GetRasterBand(1)->Fill(-2.5), CE_None); };
  makeRaster("f.tif", recipe);
  recipe.type = GDT_CInt16;
  makeRaster("c.tif", recipe);
  const OutputGrid grid{{500000, 5149400, 500800, 5150000}, 8, 6};
  const RasterValues floats = valuesOf(*service("ImageService://localhost/f"), grid);
  EXPECT_EQ(floats.type, "Float64");
  double first = 0;
  std::memcpy(&first, floats.values.data(), sizeof first);
  EXPECT_EQ(first, -2.5);
  EXPECT_EQ(valuesOf(*service("ImageService://localhost/c"), grid).type, "CFloat32");
}

}  // namespace
}  // namespace vlclientui::test
