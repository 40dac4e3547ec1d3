#include "client/raster/MaskedRaster.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <ogr_spatialref.h>

#include "client/RasterFixture.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using Values = std::vector<double>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Rasters of four pixels in a row, opened by the name that masks their holes.
class MaskedRasters : public test::RasterFixture {
 protected:
  using Finish = std::function<void(GDALDataset&)>;

  [[nodiscard]] std::string raster(const std::vector<Values>& bands, const Finish& finish = {},
                                   GDALDataType type = GDT_Byte, const std::string& option = {}) const {
    test::RasterRecipe recipe;
    recipe.width = static_cast<int>(bands[0].size());
    recipe.height = 1;
    recipe.bands = static_cast<int>(bands.size());
    recipe.type = type;
    recipe.option = option;
    recipe.finish = [&](GDALDataset& dataset) {
      if (finish) finish(dataset);
      for (std::size_t i = 0; i < bands.size(); ++i) {
        Values values = bands[i];
        EXPECT_EQ(dataset.GetRasterBand(static_cast<int>(i) + 1)
                      ->RasterIO(GF_Write, 0, 0, recipe.width, 1, values.data(), recipe.width, 1, GDT_Float64,
                                 0, 0, nullptr),
                  CE_None);
      }
    };
    return makeRaster("a.tif", recipe).string();
  }

  static Finish noData(double value) {
    return [value](GDALDataset& dataset) {
      for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
        dataset.GetRasterBand(band)->SetNoDataValue(value);
      }
    };
  }

  void open(const std::string& name) {
    opened_ = openRaster(name);
    ASSERT_NE(opened_, nullptr) << scope_.firstFailure("");
  }

  /// In so many pixels; as many as there are for 0.
  static Values read(GDALRasterBand& band, int columns = 0,
                     GDALRIOResampleAlg resampling = GRIORA_NearestNeighbour) {
    if (columns == 0) columns = band.GetXSize();
    Values values(static_cast<std::size_t>(columns), -1);
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.eResampleAlg = resampling;
    EXPECT_EQ(band.RasterIO(GF_Read, 0, 0, band.GetXSize(), band.GetYSize(), values.data(), columns, 1,
                            GDT_Float64, 0, 0, &extra),
              CE_None);
    return values;
  }

  /// 1 where there is data, 0 in holes.
  static Values dataIn(GDALRasterBand& band, int columns = 0,
                       GDALRIOResampleAlg resampling = GRIORA_NearestNeighbour) {
    Values marks = read(*band.GetMaskBand(), columns, resampling);
    for (double& mark : marks) mark = mark > 0 ? 1 : 0;
    return marks;
  }

  Values maskOf(const std::string& file, std::optional<double> value = std::nullopt) {
    open(maskedName(file, value));
    return opened_ ? dataIn(*opened_->GetRasterBand(1)) : Values();
  }

  GDALRasterBand& band(int number) { return *opened_->GetRasterBand(number); }

  GdalScope scope_;
  DatasetPtr opened_;
};

TEST_F(MaskedRasters, AreHolesWhereThePixelHasTheDeclaredValue) {
  EXPECT_EQ(maskOf(raster({{1, 0, 2, 0}}, noData(0))), (Values{1, 0, 1, 0}));
}

TEST_F(MaskedRasters, AreHolesWhereThePixelHasTheValueOfAPersonInstead) {
  EXPECT_EQ(maskOf(raster({{1, 0, 2, 0}}, noData(0)), 2), (Values{1, 1, 0, 1}));
  EXPECT_EQ(maskOf(raster({{0.5, -0.5, 2, -0.5}}, {}, GDT_Float32), -0.5), (Values{1, 0, 1, 0}));
}

TEST_F(MaskedRasters, AreHolesWhereAllBandsHaveTheValue) {
  EXPECT_EQ(maskOf(raster({{0, 0, 5, 5}, {0, 5, 0, 5}}, noData(0))), (Values{0, 1, 1, 1}));
}

TEST_F(MaskedRasters, AskOnlyBandsThatCanHaveTheValue) {
  EXPECT_EQ(maskOf(raster({{1, 2, 3, 4}}), 300), (Values{1, 1, 1, 1}));
}

TEST_F(MaskedRasters, AreHolesWhereThePixelIsNoNumberIfThatIsDeclared) {
  const std::string file = raster({{notANumber, 1, 2, notANumber}}, noData(notANumber), GDT_Float32);
  EXPECT_EQ(maskOf(file), (Values{0, 1, 1, 0}));
}

TEST_F(MaskedRasters, AreHolesWhereThePixelIsWhollyTransparent) {
  EXPECT_EQ(maskOf(raster({{1, 2, 3, 4}, {0, 1, 254, 255}}, {}, GDT_Byte, "ALPHA=YES")),
            (Values{0, 1, 1, 1}));
}

TEST_F(MaskedRasters, AreHolesWhereTheMaskOfTheFileLeavesThePixelOut) {
  const std::string file = raster({{1, 2, 3, 4}}, [](GDALDataset& dataset) {
    EXPECT_EQ(dataset.CreateMaskBand(GMF_PER_DATASET), CE_None);
    std::vector<std::uint8_t> mask = {255, 255, 0, 255};
    EXPECT_EQ(dataset.GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Write, 0, 0, 4, 1, mask.data(), 4, 1,
                                                                GDT_Byte, 0, 0, nullptr),
              CE_None);
  });
  EXPECT_EQ(maskOf(file), (Values{1, 1, 0, 1}));
  EXPECT_EQ(maskOf(file, 4), (Values{1, 1, 0, 0}));
}

TEST_F(MaskedRasters, HaveOneMaskForAllBands) {
  open(maskedName(raster({{0, 0, 5}, {0, 5, 5}, {0, 5, 5}}, noData(0)), std::nullopt));
  for (int number = 1; number <= 3; ++number) {
    EXPECT_EQ(band(number).GetMaskFlags(), GMF_PER_DATASET) << number;
    EXPECT_EQ(dataIn(band(number)), (Values{0, 1, 1})) << number;
  }
}

TEST_F(MaskedRasters, KeepTheValuesOfPixels) {
  open(maskedName(raster({{1, 0, 2, 0}}, noData(0)), std::nullopt));
  EXPECT_EQ(read(band(1)), (Values{1, 0, 2, 0}));
}

TEST_F(MaskedRasters, MakeHolesByValueTransparentToo) {
  open(maskedName(raster({{7, 0, 7, 7}, {200, 200, 0, 255}}, {}, GDT_Byte, "ALPHA=YES"), 0));
  EXPECT_EQ(read(band(2)), (Values{200, 0, 0, 255}));
  EXPECT_EQ(band(2).GetMaskFlags(), GMF_ALL_VALID);
  EXPECT_EQ(dataIn(band(1)), (Values{1, 0, 0, 1}));
}

TEST_F(MaskedRasters, LeaveHolesOutOfAverages) {
  open(maskedName(raster({{10, 0, 20, 40}}, noData(0)), std::nullopt));
  EXPECT_EQ(read(band(1), 2, GRIORA_Average), (Values{10, 30}));
}

TEST_F(MaskedRasters, AreDataWhereAnyAveragedPixelIs) {
  Values values(400, 0);
  values[3] = 9;
  open(maskedName(raster({values}, noData(0)), std::nullopt));
  EXPECT_EQ(dataIn(band(1), 2, GRIORA_Average), (Values{1, 0}));
}

TEST_F(MaskedRasters, HaveNothingBetweenDataAndHole) {
  open(maskedName(raster({{10, 0, 0, 10}}, noData(0)), std::nullopt));
  const Values marks = read(*band(1).GetMaskBand(), 7, GRIORA_Bilinear);
  for (const double mark : marks) EXPECT_TRUE(mark == 0 || mark == 65535) << mark;
  EXPECT_EQ(marks.front(), 65535);
  EXPECT_EQ(marks[3], 0);
}

TEST_F(MaskedRasters, KeepWhatTheRasterTellsOfItself) {
  open(maskedName(raster({{1, 2}},
                         [](GDALDataset& dataset) {
                           dataset.SetMetadataItem("COLOR", "none at all");
                           dataset.GetRasterBand(1)->SetDescription("the first");
                           dataset.GetRasterBand(1)->SetUnitType("m");
                           dataset.GetRasterBand(1)->SetColorInterpretation(GCI_GrayIndex);
                         }),
                  std::nullopt));
  EXPECT_STREQ(opened_->GetMetadataItem("COLOR"), "none at all");
  EXPECT_STREQ(band(1).GetDescription(), "the first");
  EXPECT_STREQ(band(1).GetUnitType(), "m");
  EXPECT_EQ(band(1).GetColorInterpretation(), GCI_GrayIndex);
  std::array<double, 6> transform{};
  EXPECT_EQ(opened_->GetGeoTransform(transform.data()), CE_None);
  EXPECT_EQ(transform, (std::array<double, 6>{500000, 100, 0, 5150000, 0, -100}));
  ASSERT_NE(opened_->GetSpatialRef(), nullptr);
  EXPECT_STREQ(opened_->GetSpatialRef()->GetAuthorityCode(nullptr), "32632");
}

TEST_F(MaskedRasters, MaskTheirOverviewsToo) {
  Values values(64, 5);
  for (std::size_t i = 0; i < 32; ++i) values[i] = 0;
  const std::string file = raster({values, values}, noData(0));
  {
    const ChosenName chosen(file);
    const DatasetPtr plain(GDALDataset::FromHandle(GDALOpen(file.c_str(), GA_Update)));
    const std::array<int, 2> levels = {2, 4};
    ASSERT_EQ(plain->BuildOverviews("NEAREST", 2, levels.data(), 0, nullptr, nullptr, nullptr), CE_None);
  }
  open(maskedName(file, std::nullopt));
  ASSERT_EQ(band(2).GetOverviewCount(), 2);
  EXPECT_EQ(band(2).GetOverview(2), nullptr);
  EXPECT_EQ(band(2).GetOverview(-1), nullptr);
  GDALRasterBand& overview = *band(2).GetOverview(1);
  EXPECT_EQ(overview.GetXSize(), 16);
  Values expected(8, 0);
  expected.resize(16, 1);
  EXPECT_EQ(dataIn(overview), expected);
}

TEST_F(MaskedRasters, MayHideTheBandThatTellsOfHoles) {
  open(maskedByLastBandName(raster({{1, 0, 3, 4}, {1, 1, 0, 9}}, noData(1))));
  ASSERT_EQ(opened_->GetRasterCount(), 1);
  EXPECT_EQ(read(band(1)), (Values{1, 0, 3, 4}));
  EXPECT_EQ(dataIn(band(1)), (Values{1, 1, 0, 1}));
}

TEST_F(MaskedRasters, MayHaveADocumentForAName) {
  const std::string source = raster({{0, 8}});
  const ChosenName chosen(source);
  const std::string document =
      "<VRTDataset rasterXSize=\"2\" rasterYSize=\"1\"><VRTRasterBand dataType=\"Byte\" band=\"1\">"
      "<NoDataValue>0</NoDataValue><SimpleSource><SourceFilename>" +
      source + "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>";
  EXPECT_EQ(maskOf(document), (Values{0, 1}));
}

TEST_F(MaskedRasters, AreNoneWhereTheRasterIsNone) {
  EXPECT_EQ(openRaster(maskedName((folder() / "missing.tif").string(), std::nullopt)), nullptr);
  EXPECT_EQ(openRaster(maskedName(writeText("a.txt", "no pixels").string(), 3)), nullptr);
  EXPECT_EQ(openRaster("VLMASKED:declared"), nullptr);
  EXPECT_EQ(openRaster("VLMASKED:declared:"), nullptr);
}

TEST_F(MaskedRasters, AreNotWritten) {
  const std::string name = maskedName(raster({{1, 2}}), std::nullopt);
  EXPECT_EQ(GDALOpen(name.c_str(), GA_Update), nullptr);
  open(name);
}

TEST(MaskedNames, DifferByRasterAndByRule) {
  EXPECT_EQ(maskedName("a.tif", 1), maskedName("a.tif", 1));
  EXPECT_NE(maskedName("a.tif", 1), maskedName("b.tif", 1));
  EXPECT_NE(maskedName("a.tif", 1), maskedName("a.tif", 2));
  EXPECT_NE(maskedName("a.tif", 0), maskedName("a.tif", std::nullopt));
  EXPECT_NE(maskedName("a.tif", std::nullopt), maskedByLastBandName("a.tif"));
}

}  // namespace
}  // namespace vlclientui::client
