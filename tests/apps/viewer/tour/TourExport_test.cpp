// What the viewer's tour exported from the geoid, read by the raster library alone.

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "support/TestFolders.h"

namespace {

constexpr int columnTotal = 800;
constexpr int rowTotal = 400;
constexpr double pixel = 0.25;
constexpr double left = -100.125;
constexpr double top = 60.125;

class TourExport : public testing::Test {
 protected:
  using Dataset = std::unique_ptr<GDALDataset>;

  static void SetUpTestSuite() { GDALAllRegister(); }

  [[nodiscard]] static Dataset open(const std::string& file) {
    return Dataset(GDALDataset::FromHandle(GDALOpen(file.c_str(), GA_ReadOnly)));
  }

  [[nodiscard]] static std::vector<float> read(GDALDataset& dataset, int column, int row) {
    std::vector<float> values(static_cast<std::size_t>(columnTotal) * rowTotal);
    const CPLErr error =
        dataset.GetRasterBand(1)->RasterIO(GF_Read, column, row, columnTotal, rowTotal, values.data(),
                                           columnTotal, rowTotal, GDT_Float32, 0, 0, nullptr);
    EXPECT_EQ(error, CE_None);
    return values;
  }

  Dataset exported = open(VL_TOUR_DIR "/exported.Tif");
  Dataset source = open(vlclientui::samplesFolder() + "/World/EGM96_Geoid.tif");
};

TEST_F(TourExport, HasTheSizeThatWasTyped) {
  ASSERT_TRUE(exported);
  EXPECT_EQ(exported->GetRasterXSize(), columnTotal);
  EXPECT_EQ(exported->GetRasterYSize(), rowTotal);
  EXPECT_EQ(exported->GetRasterCount(), 1);
  EXPECT_EQ(exported->GetRasterBand(1)->GetRasterDataType(), GDT_Float32);
}

TEST_F(TourExport, LiesWhereItWasTyped) {
  ASSERT_TRUE(exported);
  double transform[6] = {};
  ASSERT_EQ(exported->GetGeoTransform(transform), CE_None);
  const double expected[6] = {left, pixel, 0, top, 0, -pixel};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(transform[i], expected[i]) << i;
  ASSERT_NE(exported->GetSpatialRef(), nullptr);
  EXPECT_TRUE(exported->GetSpatialRef()->IsSame(source->GetSpatialRef()));
}

TEST_F(TourExport, HasTheFormatThatWasChosen) {
  ASSERT_TRUE(exported);
  EXPECT_STREQ(exported->GetDriver()->GetDescription(), "GTiff");
  EXPECT_STREQ(exported->GetMetadataItem("COMPRESSION", "IMAGE_STRUCTURE"), "DEFLATE");
}

TEST_F(TourExport, HasEveryValueOfTheSource) {
  ASSERT_TRUE(exported);
  double transform[6] = {};
  ASSERT_EQ(source->GetGeoTransform(transform), CE_None);
  const int column = static_cast<int>(std::lround((left - transform[0]) / transform[1]));
  const int row = static_cast<int>(std::lround((top - transform[3]) / transform[5]));
  EXPECT_TRUE(read(*exported, 0, 0) == read(*source, column, row));
}

}  // namespace
