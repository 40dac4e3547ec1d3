#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"

namespace vlclientui::client {
namespace {

constexpr int sideLength = 160;

/// A raster whose values are the numbers of its columns, in images that are smaller than it.
class Reduction : public test::ServiceFixture {
 protected:
  Reduction() {
    test::RasterRecipe recipe;
    recipe.width = recipe.height = sideLength;
    recipe.finish = [](GDALDataset& dataset) {
      std::vector<double> values;
      for (int at = 0; at < sideLength * sideLength; ++at) values.push_back(at % sideLength);
      EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, sideLength, sideLength, values.data(),
                                                   sideLength, sideLength, GDT_Float64, 0, 0, nullptr),
                CE_None);
    };
    makeRaster("columns.tif", recipe);
  }

  /// @param beyond pixels of the source on the right of it and below it
  [[nodiscard]] std::vector<double> reduced(int columns, int rows, double beyond) const {
    test::GetImage request;
    const double side = 100 * (sideLength + beyond);
    request.extent = {500000, 5150000 - side, 500000 + side, 5150000};
    request.columns = columns;
    request.rows = rows;
    request.fileName = out("reduced.tif");
    EXPECT_EQ(exportFrom("columns", request), "");
    return test::valuesOf(request.fileName);
  }
};

TEST_F(Reduction, AveragesOverThePixelsUnderneath) {
  const auto values = reduced(4, 1, 0);
  for (std::size_t column = 0; column < 4; ++column) {
    EXPECT_NEAR(values[column], 40 * (static_cast<double>(column) + 0.5) - 0.5, 1) << column;
  }
}

TEST_F(Reduction, TakesNoPixelFromBeyondTheSource) {
  constexpr double perPixel = 280.0 / 11;
  for (const int rows : {1, 11}) {
    const auto values = reduced(11, rows, 120);
    ASSERT_EQ(values.size(), 11U * static_cast<unsigned>(rows));
    for (std::size_t column = 0; column < 6; ++column) {
      EXPECT_NEAR(values[column], perPixel * (static_cast<double>(column) + 0.5) - 0.5, 1) << column;
    }
    EXPECT_EQ(values[7], 0);
  }
}

TEST_F(Reduction, InSeveralWindowsHasEveryRowAtItsPlace) {
  constexpr int size = 2048;
  test::RasterRecipe recipe;
  recipe.width = recipe.height = size;
  recipe.type = GDT_Float32;
  recipe.finish = [](GDALDataset& dataset) {
    for (int row = 0; row < size; ++row) {
      std::vector<float> values(size, static_cast<float>(row + 1));
      EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, row, size, 1, values.data(), size, 1,
                                                   GDT_Float32, 0, 0, nullptr),
                CE_None);
    }
  };
  makeRaster("rows.tif", recipe);
  for (const int rows : {1500, 1365}) {
    test::GetImage request;
    request.extent = {500000, 5150000 - 100.0 * size, 500000 + 100.0 * size, 5150000};
    request.columns = request.rows = rows;
    request.compression = "LZ77";
    request.tileSize = rows == 1500 ? "256" : "None";
    request.fileName = out("rows.tif");
    ASSERT_EQ(exportFrom("rows", request), "");
    const auto values = test::valuesOf(request.fileName);
    const double perRow = static_cast<double>(size) / rows;
    double most = 0;
    for (int row = 0; row < rows; ++row) {
      const double value = values[static_cast<std::size_t>(row) * static_cast<std::size_t>(rows)];
      most = std::max(most, std::abs(value - (perRow * (row + 0.5) + 0.5)));
    }
    EXPECT_LT(most, 0.3) << rows;
  }
}

TEST_F(Reduction, TakesOverviewsWhereThereAreSome) {
  test::RasterRecipe recipe;
  recipe.width = recipe.height = 256;
  recipe.finish = [](GDALDataset& dataset) {
    const int factor = 4;
    ASSERT_EQ(dataset.BuildOverviews("NEAREST", 1, &factor, 0, nullptr, nullptr, nullptr), CE_None);
    // A value that only the overview has.
    ASSERT_EQ(dataset.GetRasterBand(1)->GetOverview(0)->Fill(77), CE_None);
  };
  makeRaster("overviews.tif", recipe);
  test::GetImage request;
  request.extent = {500000, 5150000 - 25600, 500000 + 25600, 5150000};
  request.columns = request.rows = 30;
  request.fileName = out("overviews.tif");
  ASSERT_EQ(exportFrom("overviews", request), "");
  for (const double value : test::valuesOf(request.fileName)) EXPECT_EQ(value, 77);
}

TEST_F(Reduction, KeepsOnePixelOfDataAmongManyHoles) {
  test::RasterRecipe recipe;
  recipe.width = recipe.height = 100;
  recipe.type = GDT_Float32;
  recipe.finish = [](GDALDataset& dataset) {
    GDALRasterBand& band = *dataset.GetRasterBand(1);
    ASSERT_EQ(band.SetNoDataValue(-9999), CE_None);
    ASSERT_EQ(band.Fill(-9999), CE_None);
    float value = 5;
    ASSERT_EQ(band.RasterIO(GF_Write, 50, 50, 1, 1, &value, 1, 1, GDT_Float32, 0, 0, nullptr), CE_None);
  };
  makeRaster("lonely.tif", recipe);
  test::GetImage request;
  request.extent = {500000, 5140000, 510000, 5150000};
  request.columns = request.rows = 1;
  request.fileName = out("lonely.tif");
  ASSERT_EQ(exportFrom("lonely", request), "");
  EXPECT_EQ(test::valuesOf(request.fileName), std::vector<double>{5});
}

}  // namespace
}  // namespace vlclientui::client
