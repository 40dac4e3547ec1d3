#include "client/raster/RasterReader.h"

#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"

namespace vlclientui::client {
namespace {

using test::RasterFixture;
using test::RasterRecipe;

class RasterReader : public RasterFixture {
 protected:
  [[nodiscard]] RasterFacts facts(const RasterRecipe& recipe = {}) const {
    const RasterResult result = readRasterFacts(makeRaster("raster.tif", recipe));
    if (const auto* problem = std::get_if<RasterProblem>(&result)) ADD_FAILURE() << problem->reason;
    return std::holds_alternative<RasterFacts>(result) ? std::get<RasterFacts>(result) : RasterFacts();
  }

  [[nodiscard]] ColorSpace colorSpace(const std::vector<GDALColorInterp>& bands) const {
    RasterRecipe recipe;
    recipe.bands = static_cast<int>(bands.size());
    recipe.finish = [&](GDALDataset& dataset) {
      int number = 1;
      for (const GDALColorInterp band : bands) {
        dataset.GetRasterBand(number++)->SetColorInterpretation(band);
      }
    };
    return facts(recipe).colorSpace;
  }

  [[nodiscard]] ColorSpace declared(const std::string& word) const {
    RasterRecipe recipe;
    recipe.bands = 3;
    recipe.finish = [&](GDALDataset& dataset) { dataset.SetMetadataItem("COLOR_SPACE", word.c_str()); };
    return facts(recipe).colorSpace;
  }
};

TEST_F(RasterReader, TitleIsTheFilesOwnElseItsDescriptionElseItsName) {
  EXPECT_EQ(facts().title, "raster");
  RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.SetMetadataItem("TIFFTAG_IMAGEDESCRIPTION", "Words\nand more"); };
  EXPECT_EQ(facts(recipe).title, "Words");
  recipe.finish = [](GDALDataset& d) {
    d.SetMetadataItem("TIFFTAG_IMAGEDESCRIPTION", "Words");
    d.SetMetadataItem("TITLE", " A title ");
  };
  EXPECT_EQ(facts(recipe).title, "A title");
}

TEST_F(RasterReader, RegionIsTheProducersElseTheCenterInDegrees) {
  RasterRecipe recipe;
  recipe.epsg = 4326;
  recipe.transform = {8, 0.1, 0, 46.8, 0, -0.1};
  EXPECT_EQ(facts(recipe).region, "46.5 N 8.4 E");
  recipe.transform = {-71, 0.1, 0, -33, 0, -0.1};
  EXPECT_EQ(facts(recipe).region, "33.3 S 70.6 W");
  recipe.finish = [](GDALDataset& d) { d.SetMetadataItem("REGION", "Somewhere"); };
  EXPECT_EQ(facts(recipe).region, "Somewhere");
}

TEST_F(RasterReader, RegionOfARasterAcrossTheAntimeridianOrAPoleIsItsOwnCenter) {
  RasterRecipe recipe;
  recipe.epsg = 4326;
  recipe.transform = {179, 0.5, 0, 10, 0, -0.5};
  EXPECT_EQ(facts(recipe).region, "8.5 N 179.0 W");
  recipe.epsg = 3031;
  recipe.transform = {-400000, 100000, 0, 300000, 0, -100000};
  EXPECT_EQ(facts(recipe).region.substr(0, 6), "90.0 S");
}

TEST_F(RasterReader, RegionOfAWholeWorldIsTheWorld) {
  RasterRecipe recipe;
  recipe.epsg = 4326;
  recipe.transform = {-180, 45, 0, 90, 0, -30};
  EXPECT_EQ(facts(recipe).region, "World");
}

TEST_F(RasterReader, PixelUnitIsTheBandsElseNumbersOrClasses) {
  EXPECT_EQ(facts().pixelUnit, "DN");
  RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetUnitType("metre"); };
  EXPECT_EQ(facts(recipe).pixelUnit, "m");
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetUnitType("K"); };
  EXPECT_EQ(facts(recipe).pixelUnit, "K");
  recipe.finish = [](GDALDataset& d) {
    GDALColorTable table;
    const GDALColorEntry entry{200, 100, 50, 255};
    table.SetColorEntry(1, &entry);
    d.GetRasterBand(1)->SetColorTable(&table);
  };
  EXPECT_EQ(facts(recipe).pixelUnit, "class");
}

TEST_F(RasterReader, PixelSourceIsTheSensorElseTheSourceElseTheFormat) {
  EXPECT_EQ(facts().pixelSource, "GeoTIFF");
  RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.SetMetadataItem("SOURCE", "Survey"); };
  EXPECT_EQ(facts(recipe).pixelSource, "Survey");
  recipe.finish = [](GDALDataset& d) {
    d.SetMetadataItem("SOURCE", "Survey");
    d.SetMetadataItem("SENSOR", "Camera");
  };
  EXPECT_EQ(facts(recipe).pixelSource, "Camera");
}

TEST_F(RasterReader, ColorSpaceFollowsTheBands) {
  EXPECT_EQ(colorSpace({GCI_GrayIndex}), ColorSpace::Gray);
  EXPECT_EQ(colorSpace({GCI_GrayIndex, GCI_AlphaBand}), ColorSpace::Gray);
  EXPECT_EQ(colorSpace({GCI_GrayIndex, GCI_Undefined}), ColorSpace::Unknown);
  EXPECT_EQ(colorSpace({GCI_RedBand, GCI_GreenBand, GCI_BlueBand}), ColorSpace::Rgb);
  EXPECT_EQ(colorSpace({GCI_RedBand, GCI_GreenBand, GCI_BlueBand, GCI_AlphaBand}), ColorSpace::Rgb);
  EXPECT_EQ(colorSpace({GCI_CyanBand, GCI_MagentaBand, GCI_YellowBand, GCI_BlackBand}), ColorSpace::Cmyk);
  EXPECT_EQ(colorSpace({GCI_YCbCr_YBand, GCI_YCbCr_CbBand, GCI_YCbCr_CrBand}), ColorSpace::YCbCr);
  EXPECT_EQ(colorSpace({GCI_LightnessBand, GCI_HueBand, GCI_SaturationBand}), ColorSpace::Lhs);
  EXPECT_EQ(colorSpace({GCI_GrayIndex, GCI_Undefined, GCI_Undefined}), ColorSpace::Unknown);
}

TEST_F(RasterReader, ColorSpaceOfAPaletteIsPalette) {
  RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) {
    GDALColorTable table;
    const GDALColorEntry entry{200, 100, 50, 255};
    table.SetColorEntry(1, &entry);
    d.GetRasterBand(1)->SetColorTable(&table);
  };
  EXPECT_EQ(facts(recipe).colorSpace, ColorSpace::Palette);
}

TEST_F(RasterReader, ColorSpaceThatTheProducerDeclaresWins) {
  EXPECT_EQ(declared("YUV"), ColorSpace::Yuv);
  EXPECT_EQ(declared("ycck"), ColorSpace::Ycck);
  EXPECT_EQ(declared("CMYK"), ColorSpace::Cmyk);
  EXPECT_EQ(declared("YCbCr"), ColorSpace::YCbCr);
}

TEST_F(RasterReader, ColorSpaceFollowsTheBandsWhereTheDeclaredWordIsUnknown) {
  EXPECT_EQ(declared("no such space"), ColorSpace::Rgb);
}

TEST_F(RasterReader, PixelTypesBearTheirWords) {
  const std::vector<std::pair<GDALDataType, std::string>> words = {
      {GDT_Byte, "Byte"},     {GDT_UInt16, "UInt16"},     {GDT_Int16, "Int16"},      {GDT_UInt32, "UInt32"},
      {GDT_Int32, "Int32"},   {GDT_Float32, "Float32"},   {GDT_Float64, "Float64"},  {GDT_CInt16, "CInt16"},
      {GDT_CInt32, "CInt32"}, {GDT_CFloat32, "CFloat32"}, {GDT_CFloat64, "CFloat64"}};
  for (const auto& [type, word] : words) {
    RasterRecipe recipe;
    recipe.type = type;
    EXPECT_EQ(facts(recipe).pixelType, word);
    EXPECT_EQ(facts(recipe).bitDepth, GDALGetDataTypeSizeBits(type));
  }
}

TEST_F(RasterReader, BitDepthIsThatInUse) {
  RasterRecipe recipe;
  recipe.type = GDT_UInt16;
  recipe.option = "NBITS=11";
  EXPECT_EQ(facts(recipe).bitDepth, 11);
}

TEST_F(RasterReader, PlaceIsReadInTheRastersOwnCoordinates) {
  const RasterFacts read = facts();
  EXPECT_EQ(read.envelope, (Bounds{500000, 5149400, 500800, 5150000}));
  EXPECT_EQ(read.pixelSize, 100);
  EXPECT_EQ(read.columns, 8);
  EXPECT_EQ(read.rows, 6);
  EXPECT_EQ(read.srsName, "WGS 84 / UTM zone 32N");
  EXPECT_EQ(read.srsId, "EPSG:32632");
}

TEST_F(RasterReader, EnvelopeOfARotatedRasterHoldsItsCorners) {
  RasterRecipe recipe;
  recipe.transform = {1000, 30, 40, 2000, 40, -30};
  const RasterFacts read = facts(recipe);
  EXPECT_EQ(read.envelope, (Bounds{1000, 1820, 1480, 2320}));
  EXPECT_EQ(read.pixelSize, 50);
}

TEST_F(RasterReader, RasterWithoutSystemHasNoGeographicEnvelope) {
  RasterRecipe recipe;
  recipe.epsg = 0;
  const RasterFacts read = facts(recipe);
  EXPECT_EQ(read.geographicEnvelope, std::nullopt);
  EXPECT_EQ(read.srsName, "");
  EXPECT_EQ(read.region, "");
}

TEST_F(RasterReader, PlaceThatMakesNoSenseIsReadAsPixels) {
  for (const char* transform : {"0,0,0,0,0,0", "nan,1,0,0,0,-1", "5,inf,0,0,0,-1", "0,1,0,4,0,0",
                                "0,1,2,4,1,2", "1e300,1,0,0,0,-1", "0,1e308,0,0,0,-1e308"}) {
    const auto file = writeText(
        "odd.vrt", std::string("<VRTDataset rasterXSize='20' rasterYSize='10'><GeoTransform>") + transform +
                       "</GeoTransform><VRTRasterBand dataType='Byte' band='1'/></VRTDataset>");
    const RasterResult result = readRasterFacts(file);
    ASSERT_TRUE(std::holds_alternative<RasterFacts>(result)) << transform;
    EXPECT_EQ(std::get<RasterFacts>(result).envelope, (Bounds{0, 0, 20, 10})) << transform;
    EXPECT_EQ(std::get<RasterFacts>(result).pixelSize, 1) << transform;
    EXPECT_EQ(std::get<RasterFacts>(result).pixelHeight, 1) << transform;
  }
}

TEST_F(RasterReader, FileThatIsCutShortIsAProblemWithAReason) {
  const auto file = makeRaster("cut.tif");
  std::filesystem::resize_file(file, 40);
  const RasterResult result = readRasterFacts(file);
  ASSERT_TRUE(std::holds_alternative<RasterProblem>(result));
  EXPECT_TRUE(std::get<RasterProblem>(result).isRaster);
  EXPECT_FALSE(std::get<RasterProblem>(result).reason.empty());
}

TEST_F(RasterReader, FileThatNoFormatKnowsIsNoRaster) {
  const RasterResult result = readRasterFacts(writeText("notes.dat", "just words"));
  ASSERT_TRUE(std::holds_alternative<RasterProblem>(result));
  EXPECT_FALSE(std::get<RasterProblem>(result).isRaster);
}

TEST_F(RasterReader, MetadataInLatin1IsReadAsSuch) {
  RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.SetMetadataItem("TIFFTAG_IMAGEDESCRIPTION", "Z\xFCrich"); };
  EXPECT_EQ(facts(recipe).title, "Z\xC3\xBCrich");
}

}  // namespace
}  // namespace vlclientui::client
