#include <vector>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"

namespace vlclientui::client {
namespace {

constexpr int kSize = 160;

/// A raster whose values are the numbers of its columns, in images that are smaller than it.
class Reduction : public test::ServiceFixture {
 protected:
  Reduction() {
    test::RasterRecipe recipe;
    recipe.width = recipe.height = kSize;
    recipe.finish = [](GDALDataset& dataset) {
      std::vector<double> values;
      for (int at = 0; at < kSize * kSize; ++at) values.push_back(at % kSize);
      EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, kSize, kSize, values.data(), kSize, kSize,
                                                   GDT_Float64, 0, 0, nullptr),
                CE_None);
    };
    makeRaster("columns.tif", recipe);
  }

  /// @param beyond pixels of the source on the right of it and below it
  [[nodiscard]] std::vector<double> reduced(int columns, int rows, double beyond) const {
    test::GetImage request;
    const double side = 100 * (kSize + beyond);
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

}  // namespace
}  // namespace vlclientui::client
