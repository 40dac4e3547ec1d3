#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"

namespace vlclientui::client {
namespace {

using test::RasterRecipe;
using Values = std::vector<double>;

// How holes of rasters are drawn and exported to TIFF. All rasters lie at the fixture's place.
class Holes : public test::ServiceFixture {
 protected:
  /// A raster of a whole number of pixels. @param bands the values of each, row after row.
  void raster(const std::string& name, const std::vector<Values>& bands, RasterRecipe recipe = {}) const {
    recipe.bands = static_cast<int>(bands.size());
    recipe.finish = [bands, finish = recipe.finish](GDALDataset& dataset) {
      if (finish) finish(dataset);
      for (std::size_t i = 0; i < bands.size(); ++i) {
        Values values = bands[i];
        EXPECT_EQ(
            dataset.GetRasterBand(static_cast<int>(i) + 1)
                ->RasterIO(GF_Write, 0, 0, dataset.GetRasterXSize(), dataset.GetRasterYSize(), values.data(),
                           dataset.GetRasterXSize(), dataset.GetRasterYSize(), GDT_Float64, 0, 0, nullptr),
            CE_None);
      }
    };
    makeRaster(name, recipe);
  }

  static RasterRecipe recipe(int width, int height, GDALDataType type = GDT_Byte,
                             std::optional<double> noData = std::nullopt) {
    RasterRecipe made;
    made.width = width;
    made.height = height;
    made.type = type;
    if (noData) made.finish = [noData](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(*noData); };
    return made;
  }

  static RasterRecipe withAlpha(RasterRecipe made) {
    made.option = "ALPHA=YES";
    return made;
  }

  void mosaic(const std::vector<std::string>& files) const {
    std::string sources;
    for (const std::string& file : files) sources += "<Source><File>" + file + "</File></Source>";
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Sources>" + sources + "</Sources></MosaicDefinition></Vorlane>");
  }

  /// All values, band after band, of the whole place in so many pixels. @param content of the properties.
  [[nodiscard]] Values exported(const std::string& name, int columns, int rows,
                                const std::string& content = {}) const {
    EXPECT_EQ(exportAs("Tiff", name, columns, rows, content), "");
    return test::valuesOf(file());
  }

  /// @returns the failure's text.
  [[nodiscard]] std::string exportAs(const std::string& format, const std::string& name, int columns,
                                     int rows, const std::string& content = {}) const {
    const auto made = service("ImageService://localhost/" + name);
    if (!content.empty()) {
      made->setServiceProperties("<Vorlane><ImageServiceProperties>" + content +
                                 "</ImageServiceProperties></Vorlane>");
    }
    test::GetImage request;
    request.extent = made->record().facts.envelope;
    request.columns = columns;
    request.rows = rows;
    request.format = format;
    request.quality = "100";
    request.fileName = file();
    made->ExportProperties(request.document());
    return made->ExportImage() ? "" : test::elementContent(made->status(), "Message");
  }

  /// The no-data value in the file of the last export.
  [[nodiscard]] std::optional<double> declared(int band = 1) const {
    auto* dataset = GDALDataset::FromHandle(GDALOpen(file().c_str(), GA_ReadOnly));
    int isSet = 0;
    const double value = dataset->GetRasterBand(band)->GetNoDataValue(&isSet);
    GDALClose(GDALDataset::ToHandle(dataset));
    return isSet != 0 ? std::optional<double>(value) : std::nullopt;
  }

  /// The mask of the file of the last export, row after row.
  [[nodiscard]] Values mask() const {
    auto* dataset = GDALDataset::FromHandle(GDALOpen(file().c_str(), GA_ReadOnly));
    Values values(static_cast<std::size_t>(dataset->GetRasterXSize()) *
                  static_cast<std::size_t>(dataset->GetRasterYSize()));
    EXPECT_EQ(dataset->GetRasterBand(1)->GetMaskBand()->RasterIO(
                  GF_Read, 0, 0, dataset->GetRasterXSize(), dataset->GetRasterYSize(), values.data(),
                  dataset->GetRasterXSize(), dataset->GetRasterYSize(), GDT_Float64, 0, 0, nullptr),
              CE_None);
    GDALClose(GDALDataset::ToHandle(dataset));
    return values;
  }

  /// The colors of a drawn picture, four numbers a pixel.
  [[nodiscard]] std::vector<int> drawn(const std::string& name, int columns, int rows) const {
    const auto made = service("ImageService://localhost/" + name);
    const auto rgba = made->drawImage(made->record().facts.envelope, columns, rows).rgba;
    return {rgba.begin(), rgba.end()};
  }

 private:
  [[nodiscard]] std::string file() const { return out("holes.tif"); }
};

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST_F(Holes, OfALoneSourceAreNoPartOfAnAverage) {
  raster("a.tif", {{10, 10, -9999, 10, 10, -9999, -9999, 10}}, recipe(4, 2, GDT_Int16, -9999));
  EXPECT_EQ(exported("a", 2, 1), (Values{10, 10}));
  EXPECT_EQ(declared(), -9999);
  raster("b.tif", {{10, 20, -9999, -9999, 10, 20, -9999, -9999}}, recipe(4, 2, GDT_Int16, -9999));
  EXPECT_EQ(exported("b", 2, 1), (Values{15, -9999}));
}

TEST_F(Holes, OfAChosenValueAreNoPartOfAnAverageEither) {
  raster("a.tif", {{10, 10, 7, 7, 10, 7, 7, 7}}, recipe(4, 2, GDT_Int16));
  EXPECT_EQ(exported("a", 2, 1, "<NoData>7</NoData>"), (Values{10, 7}));
  EXPECT_EQ(declared(), 7);
}

TEST_F(Holes, AreNoPartOfWhatLiesBetweenPixels) {
  raster("a.tif", {{-9999, 10, 20, -9999}}, recipe(4, 1, GDT_Int16, -9999));
  const Values values = exported("a", 6, 1);
  EXPECT_EQ(values.front(), -9999);
  EXPECT_EQ(values.back(), -9999);
  for (std::size_t i = 2; i < 4; ++i) {
    EXPECT_GE(values[i], 10);
    EXPECT_LE(values[i], 20);
  }
}

TEST_F(Holes, AreFoundInFilesOfAnyName) {
  const std::string name = "a +%2B&<b>: \"ä\".tif";
  raster("m.sources/" + name, {{10, -9999}}, recipe(2, 1, GDT_Int16, -9999));
  mosaic({"m.sources/a +%2B&amp;&lt;b>: \"ä\".tif"});
  EXPECT_EQ(exported("m", 1, 1), (Values{10}));
}

TEST_F(Holes, AreSeenInOverviewsToo) {
  RasterRecipe made = recipe(64, 64, GDT_Int16, -9999);
  Values values(64 * 64, 10);
  for (std::size_t i = 0; i < values.size(); i += 3) values[i] = -9999;
  raster("a.tif", {values}, made);
  const std::string file = (folder() / "a.tif").string();
  auto* dataset = GDALDataset::FromHandle(GDALOpen(file.c_str(), GA_Update));
  int level = 4;
  ASSERT_EQ(dataset->BuildOverviews("AVERAGE", 1, &level, 0, nullptr, nullptr, nullptr), CE_None);
  GDALClose(GDALDataset::ToHandle(dataset));
  EXPECT_EQ(exported("a", 8, 8), Values(64, 10));
}

TEST_F(Holes, StayAsTheyAreWhereNothingIsResampled) {
  const Values values = {1, -9999, 3, -9999};
  raster("a.tif", {values}, recipe(4, 1, GDT_Int16, -9999));
  EXPECT_EQ(exported("a", 4, 1), values);
  raster("f.tif", {{1, nan, 3, 4}}, recipe(4, 1, GDT_Float32, nan));
  const Values found = exported("f", 4, 1);
  EXPECT_EQ(found[0], 1);
  EXPECT_TRUE(std::isnan(found[1]));
}

TEST_F(Holes, OfAnotherSourceBecomeTheValueThatIsDeclared) {
  RasterRecipe east = recipe(2, 1, GDT_Int16, 0);
  east.transform[0] += 200;
  raster("m.sources/west.tif", {{1, -9999}}, recipe(2, 1, GDT_Int16, -9999));
  raster("m.sources/east.tif", {{0, 4}}, east);
  mosaic({"m.sources/west.tif", "m.sources/east.tif"});
  EXPECT_EQ(exported("m", 4, 1), (Values{1, -9999, -9999, 4}));
  EXPECT_EQ(declared(), -9999);
  // The same where the other source is alone.
  EXPECT_EQ(exported("m", 4, 1, "<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>"),
            (Values{-9999, -9999, -9999, 4}));
  EXPECT_EQ(declared(), -9999);
}

TEST_F(Holes, AreDeclaredByTheFirstSourceThatDeclaresAny) {
  RasterRecipe east = recipe(2, 1, GDT_Int16, -9999);
  east.transform[0] += 200;
  raster("m.sources/west.tif", {{1, 2}}, recipe(2, 1, GDT_Int16));
  raster("m.sources/east.tif", {{-9999, 4}}, east);
  mosaic({"m.sources/west.tif", "m.sources/east.tif"});
  EXPECT_EQ(exported("m", 4, 1), (Values{1, 2, -9999, 4}));
  EXPECT_EQ(declared(), -9999);
}

TEST_F(Holes, AreNotDeclaredByAValueThatThePixelsCannotHold) {
  RasterRecipe east = recipe(2, 1, GDT_Int16, -9999);
  east.transform[0] += 200;
  raster("m.sources/west.tif", {{1, 2}}, recipe(2, 1));
  raster("m.sources/east.tif", {{-9999, 4}}, east);
  mosaic({"m.sources/west.tif", "m.sources/east.tif"});
  EXPECT_EQ(exported("m", 4, 1), (Values{1, 2, 0, 4}));
  EXPECT_EQ(declared(), 0);
}

TEST_F(Holes, OfATurnedRasterAreItsCornersAndItsOwn) {
  for (const auto& [type, noData] : {std::pair{GDT_Int16, -9999.0}, std::pair{GDT_Float32, nan}}) {
    RasterRecipe made = recipe(40, 40, type, noData);
    made.transform = {500000, 70, 70, 5150000, 70, -70};
    Values values(1600, 9);
    values[20 * 40 + 20] = noData;
    raster("r.tif", {values}, made);
    const Values found = exported("r", 57, 57);
    ASSERT_EQ(found.size(), 57U * 57U);
    int data = 0;
    for (const double value : found) {
      if (value == 9) ++data;
      EXPECT_TRUE(value == 9 || value == noData || (std::isnan(value) && std::isnan(noData))) << value;
    }
    EXPECT_NE(found[28 * 57 + 29], 9);
    EXPECT_EQ(found[28 * 57 + 24], 9);
    EXPECT_NEAR(data, 57 * 57 / 2, 60);
  }
}

TEST_F(Holes, AreTheCornersOfATurnedRasterThatDeclaresNothing) {
  for (const auto& [type, empty] : {std::pair{GDT_Int16, -32768.0}, std::pair{GDT_Float32, nan}}) {
    RasterRecipe made = recipe(40, 40, type);
    made.transform = {500000, 70, 70, 5150000, 70, -70};
    raster("r.tif", {Values(1600, 0)}, made);
    const Values found = exported("r", 56, 56);
    EXPECT_EQ(found[28 * 56 + 28], 0);
    EXPECT_TRUE(found.front() == empty || (std::isnan(found.front()) && std::isnan(empty))) << found.front();
    const auto value = declared();
    ASSERT_TRUE(value.has_value());
    EXPECT_TRUE(*value == empty || (std::isnan(*value) && std::isnan(empty)));
  }
}

TEST_F(Holes, OfATurnedRasterLetLowerSourcesShineThrough) {
  RasterRecipe below = recipe(56, 56, GDT_Int16);
  below.transform = {500000, 100, 0, 5152800, 0, -100};
  raster("m.sources/below.tif", {Values(56 * 56, 5)}, below);
  RasterRecipe above = recipe(40, 40, GDT_Int16, -9999);
  above.transform = {500000, 70, 70, 5150000, 70, -70};
  raster("m.sources/above.tif", {Values(1600, 9)}, above);
  mosaic({"m.sources/below.tif", "m.sources/above.tif"});
  const Values found = exported("m", 56, 56);
  EXPECT_EQ(found.front(), 5);
  EXPECT_EQ(found.back(), 5);
  EXPECT_EQ(found[28 * 56 + 28], 9);
  for (const double value : found) EXPECT_TRUE(value == 5 || value == 9) << value;
}

TEST_F(Holes, OfATransparentSourceLetLowerOnesShineThrough) {
  raster("m.sources/below.tif", {{50, 51}, {60, 61}, {70, 71}}, recipe(2, 1));
  raster("m.sources/above.tif", {{9, 0}, {8, 0}, {7, 0}, {255, 0}}, withAlpha(recipe(2, 1)));
  mosaic({"m.sources/below.tif", "m.sources/above.tif"});
  EXPECT_EQ(exported("m", 2, 1), (Values{9, 51, 8, 61, 7, 71}));
  EXPECT_EQ(declared(), std::nullopt);
  EXPECT_EQ(drawn("m", 2, 1), (std::vector<int>{9, 8, 7, 255, 51, 61, 71, 255}));
}

TEST_F(Holes, AreTransparentWhereTheFirstSourceHasTransparency) {
  raster("m.sources/below.tif", {{50, 0}, {60, 0}, {70, 0}, {255, 0}}, withAlpha(recipe(2, 1)));
  RasterRecipe above = recipe(2, 1);
  above.transform[0] += 100;
  above.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(3); };
  raster("m.sources/above.tif", {{9, 3}, {8, 3}, {7, 3}}, above);
  mosaic({"m.sources/below.tif", "m.sources/above.tif"});
  EXPECT_EQ(exported("m", 3, 1), (Values{50, 9, 0, 60, 8, 0, 70, 7, 0, 255, 255, 0}));
  EXPECT_EQ(declared(), std::nullopt);
}

TEST_F(Holes, OfAChosenValueAreTransparentInALoneSource) {
  raster("a.tif", {{1, 0}, {2, 0}, {3, 0}, {255, 255}}, withAlpha(recipe(2, 1)));
  EXPECT_EQ(exported("a", 2, 1, "<NoData>0</NoData>"), (Values{1, 0, 2, 0, 3, 0, 255, 0}));
}

TEST_F(Holes, OfAMaskInTheFileLetLowerSourcesShineThrough) {
  raster("m.sources/below.tif", {{50, 51}}, recipe(2, 1));
  RasterRecipe above = recipe(2, 1);
  above.finish = [](GDALDataset& d) {
    ASSERT_EQ(d.CreateMaskBand(GMF_PER_DATASET), CE_None);
    std::vector<std::uint8_t> mask = {255, 0};
    ASSERT_EQ(d.GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Write, 0, 0, 2, 1, mask.data(), 2, 1, GDT_Byte,
                                                          0, 0, nullptr),
              CE_None);
  };
  raster("m.sources/above.tif", {{9, 8}}, above);
  mosaic({"m.sources/below.tif", "m.sources/above.tif"});
  EXPECT_EQ(exported("m", 2, 1), (Values{9, 51}));
}

TEST_F(Holes, AreHolesInAllBands) {
  raster("m.sources/below.tif", {{100, 100}, {100, 100}, {100, 100}}, recipe(2, 1));
  raster("m.sources/above.tif", {{0, 0}, {200, 0}, {200, 0}}, recipe(2, 1, GDT_Byte, 0));
  mosaic({"m.sources/below.tif", "m.sources/above.tif"});
  EXPECT_EQ(exported("m", 2, 1), (Values{0, 100, 200, 100, 200, 100}));
  EXPECT_EQ(drawn("m", 2, 1), (std::vector<int>{0, 200, 200, 255, 100, 100, 100, 255}));
}

TEST_F(Holes, AreNotMadeByAveragesOfOneBand) {
  raster("a.tif", {{0, 100}, {200, 100}, {200, 100}}, recipe(2, 1, GDT_Byte, 0));
  EXPECT_EQ(exported("a", 1, 1), (Values{50, 150, 150}));
}

// The bands declare 0 and 255; a TIFF holds one value for all bands.
constexpr auto twoValues =
    "<VRTDataset rasterXSize='4' rasterYSize='1'><SRS>EPSG:32632</SRS>"
    "<GeoTransform>500000,100,0,5150000,0,-100</GeoTransform>"
    "<VRTRasterBand dataType='Byte' band='1'><NoDataValue>0</NoDataValue><SimpleSource>"
    "<SourceFilename relativeToVRT='1'>two.tif</SourceFilename><SourceBand>1</SourceBand></SimpleSource>"
    "</VRTRasterBand>"
    "<VRTRasterBand dataType='Byte' band='2'><NoDataValue>255</NoDataValue><SimpleSource>"
    "<SourceFilename relativeToVRT='1'>two.tif</SourceFilename><SourceBand>2</SourceBand></SimpleSource>"
    "</VRTRasterBand></VRTDataset>";

TEST_F(Holes, AreToldByEachBandWithItsOwnValue) {
  raster("m.sources/below.tif", {{50, 50, 50, 50}, {60, 60, 60, 60}}, recipe(4, 1));
  raster("m.sources/two.tif", {{0, 0, 7, 7}, {255, 8, 255, 8}}, recipe(4, 1));
  writeText("m.sources/two.vrt", twoValues);
  mosaic({"m.sources/below.tif", "m.sources/two.vrt"});
  ASSERT_EQ(exportAs("JPEG2000", "m", 4, 1), "");
  EXPECT_EQ(test::valuesOf(out("holes.tif")), (Values{50, 0, 7, 7, 60, 8, 255, 8}));
}

TEST_F(Holes, WithAValueForEachBandAreToldByAMask) {
  raster("two.tif", {{0, 0, 7, 7}, {255, 8, 255, 8}}, recipe(4, 1));
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><Sources><Source><File>two.vrt</File></Source></Sources>"
            "</MosaicDefinition></Vorlane>");
  writeText("two.vrt", twoValues);
  // The first pixel alone is a hole; 0 and 255 are data where the other band holds no such value.
  for (const char* format : {"JPEG2000", "Tiff"}) {
    ASSERT_EQ(exportAs(format, "m", 4, 1), "");
    EXPECT_EQ(declared(1), std::nullopt) << format;
    EXPECT_EQ(declared(2), std::nullopt) << format;
    EXPECT_EQ(test::valuesOf(out("holes.tif")), (Values{0, 0, 7, 7, 255, 8, 255, 8})) << format;
    EXPECT_EQ(mask(), (Values{0, 255, 255, 255})) << format;
  }
  EXPECT_EQ(exported("m", 4, 1, "<NoData>255</NoData>"), (Values{0, 0, 7, 7, 255, 8, 255, 8}));
  EXPECT_EQ(declared(2), std::nullopt);
}

TEST_F(Holes, OfATurnedRasterAreToldByEachBandToo) {
  std::string turned = twoValues;
  turned.replace(turned.find("0,5150000,0,-100"), 16, "0,5149900,0,100");
  raster("two.tif", {{0, 0, 7, 7}, {255, 8, 255, 8}}, recipe(4, 1));
  raster("below.tif", {{50, 50, 50, 50}, {60, 60, 60, 60}}, recipe(4, 1));
  writeText("two.vrt", turned);
  mosaic({"below.tif", "two.vrt"});
  ASSERT_EQ(exportAs("JPEG2000", "m", 4, 1), "");
  EXPECT_EQ(test::valuesOf(out("holes.tif")), (Values{50, 0, 7, 7, 60, 8, 255, 8}));
}

TEST_F(Holes, AreTheSameInThePictureAndInWhatIsToldOfIt) {
  raster("m.sources/below.tif", {{100}, {100}, {100}}, recipe(1, 1));
  raster("m.sources/above.tif", {{0}, {200}, {200}}, recipe(1, 1, GDT_Byte, 0));
  mosaic({"m.sources/below.tif", "m.sources/above.tif"});
  const auto visible = [&] {
    const auto made = service("ImageService://localhost/m");
    static_cast<void>(made->drawImage(made->record().facts.envelope, 1, 1));
    return test::elementContent(made->GetImageMetadata("Full"), "SourcesVisible");
  };
  EXPECT_EQ(visible(), "1");
  raster("m.sources/above.tif", {{0}, {0}, {0}, {0}}, withAlpha(recipe(1, 1)));
  EXPECT_EQ(visible(), "1");
  raster("m.sources/above.tif", {{1, 0}, {1, 0}, {1, 0}, {255, 0}}, withAlpha(recipe(2, 1)));
  raster("m.sources/below.tif", {{100, 100}, {100, 100}, {100, 100}}, recipe(2, 1));
  const auto made = service("ImageService://localhost/m");
  static_cast<void>(made->drawImage(made->record().facts.envelope, 2, 1));
  EXPECT_EQ(test::elementContent(made->GetImageMetadata("Full"), "SourcesVisible"), "2");
}

}  // namespace
}  // namespace vlclientui::client
