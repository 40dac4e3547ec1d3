#include "client/drawing/RequestPart.h"

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

/// A part of one band that fits a request of one band, without holes.
RequestPart grayPart() {
  RequestPart part;
  part.name = "masked";
  part.plainName = "plain";
  part.columns = 4;
  part.rows = 2;
  part.colors = {1};
  part.blockWidth = 4;
  part.blockHeight = 1;
  part.type = "Byte";
  part.noData = {std::nullopt};
  part.place = {1, 2.5, 4, 2};
  return part;
}

RequestPart colorPart() {
  RequestPart part = grayPart();
  part.colors = {1, 2, 3};
  part.noData = {std::nullopt, std::nullopt, std::nullopt};
  return part;
}

RequestBands grayBands() { return {1, {1}, 0, GDT_Byte, {std::nullopt}}; }
RequestBands colorBands() { return {3, {1, 2, 3}, 0, GDT_Byte, {std::nullopt, std::nullopt, std::nullopt}}; }
RequestBands transparentBands(GDALDataType type = GDT_Byte) {
  RequestBands bands = colorBands();
  bands.count = 4;
  bands.alpha = 4;
  bands.type = type;
  return bands;
}

TEST(RequestPart, IsASimpleSourceOfThePixelsAsTheyAre) {
  EXPECT_EQ(sourceElement(grayPart(), grayBands(), 1),
            "<SimpleSource resampling=\"nearest\"><SourceFilename relativeToVRT=\"0\">masked</SourceFilename>"
            "<SourceBand>1</SourceBand><SourceProperties RasterXSize=\"4\" RasterYSize=\"2\" "
            "DataType=\"Byte\" BlockXSize=\"4\" BlockYSize=\"1\"/>"
            "<SrcRect xOff=\"0\" yOff=\"0\" xSize=\"4\" ySize=\"2\"/>"
            "<DstRect xOff=\"1\" yOff=\"2.5\" xSize=\"4\" ySize=\"2\"/></SimpleSource>");
}

TEST(RequestPart, MayHaveANameThatXmlReserves) {
  RequestPart part = grayPart();
  part.name = "a<b>&c";
  EXPECT_TRUE(holds(sourceElement(part, grayBands(), 1), ">a&lt;b&gt;&amp;c<"));
}

TEST(RequestPart, IsResampledByItsOwnWord) {
  struct Case {
    Resampling resampling;
    std::string start;
  };
  const std::vector<Case> cases = {{Resampling::Nearest, "<SimpleSource resampling=\"nearest\">"},
                                   {Resampling::Bilinear, "<SimpleSource resampling=\"bilinear\">"},
                                   {Resampling::Average, "<ComplexSource resampling=\"average\">"}};
  for (const Case& each : cases) {
    RequestPart part = grayPart();
    part.resampling = each.resampling;
    EXPECT_TRUE(sourceElement(part, grayBands(), 1).starts_with(each.start)) << each.start;
  }
}

TEST(RequestPart, WithHolesLetsTheMaskDecide) {
  RequestPart part = grayPart();
  EXPECT_FALSE(holds(sourceElement(part, grayBands(), 1), "UseMaskBand"));
  part.hasHoles = true;
  const std::string element = sourceElement(part, grayBands(), 1);
  EXPECT_TRUE(element.starts_with("<ComplexSource "));
  EXPECT_TRUE(holds(element, "<UseMaskBand>true</UseMaskBand></ComplexSource>"));
}

TEST(RequestPart, GivesEachColorItsBand) {
  RequestPart part = colorPart();
  part.colors = {2, 3, 5};
  for (int band = 1; band <= 3; ++band) {
    const std::string number = std::to_string(part.colors[static_cast<std::size_t>(band) - 1]);
    EXPECT_TRUE(holds(sourceElement(part, colorBands(), band), "<SourceBand>" + number + "<")) << band;
  }
}

TEST(RequestPart, GivesNothingToAColorThatItLacks) {
  RequestPart part = colorPart();
  part.colors = {1, 2};
  EXPECT_NE(sourceElement(part, colorBands(), 2), "");
  EXPECT_EQ(sourceElement(part, colorBands(), 3), "");
}

TEST(RequestPart, OfGrayStandsForThreeColorsButNotForTwo) {
  EXPECT_TRUE(isSpread(grayPart(), colorBands()));
  EXPECT_FALSE(isSpread(grayPart(), grayBands()));
  EXPECT_FALSE(isSpread(colorPart(), colorBands()));
  RequestBands two = colorBands();
  two.colors = {1, 2};
  EXPECT_FALSE(isSpread(grayPart(), two));
}

TEST(RequestPart, OfGrayGivesItsBandToEachColor) {
  RequestPart part = grayPart();
  part.colors = {2};
  for (int band = 1; band <= 3; ++band) {
    const std::string element = sourceElement(part, colorBands(), band);
    EXPECT_TRUE(holds(element, "<SourceBand>2</SourceBand>")) << band;
    EXPECT_FALSE(holds(element, "ColorTableComponent")) << band;
  }
}

TEST(RequestPart, OfAPaletteGivesItsColorsToColorsAlone) {
  RequestPart part = grayPart();
  part.hasPalette = true;
  for (int band = 1; band <= 3; ++band) {
    const std::string component = "<ColorTableComponent>" + std::to_string(band) + "</ColorTableComponent>";
    EXPECT_TRUE(holds(sourceElement(part, colorBands(), band), component)) << band;
  }
  EXPECT_FALSE(holds(sourceElement(part, grayBands(), 1), "ColorTableComponent"));
}

TEST(RequestPart, WithoutTransparencyIsOpaqueInTheTypeOfTheRequest) {
  struct Case {
    GDALDataType type;
    std::string opaque;
  };
  const std::vector<Case> cases = {
      {GDT_Byte, "255"}, {GDT_UInt16, "65535"}, {GDT_Int16, "32767"}, {GDT_Float32, "255"}};
  for (const Case& each : cases) {
    const std::string element = sourceElement(colorPart(), transparentBands(each.type), 4);
    EXPECT_TRUE(holds(element, "<DstMin>" + each.opaque + "</DstMin><DstMax>" + each.opaque + "</DstMax>"))
        << element;
    EXPECT_TRUE(holds(element, "<UseMaskBand>true</UseMaskBand>"));
  }
}

TEST(RequestPart, WithTransparencyGivesItsOwn) {
  RequestPart part = colorPart();
  part.alpha = 6;
  const std::string element = sourceElement(part, transparentBands(), 4);
  EXPECT_TRUE(holds(element, "<SourceBand>6</SourceBand>"));
  EXPECT_FALSE(holds(element, "<DstMin>"));
}

TEST(RequestPart, IsAMaskOfTwoValues) {
  RequestPart part = grayPart();
  part.colors = {3};
  const std::string element = maskElement(part);
  EXPECT_TRUE(holds(element, "<SourceBand>3</SourceBand>"));
  EXPECT_TRUE(holds(element, "<UseMaskBand>true</UseMaskBand><LUT>0:255,1:255</LUT></ComplexSource>"));
}

/// A part with holes of the value that the request declares.
class HolesOfAPart : public testing::Test {
 protected:
  HolesOfAPart() {
    part_.hasHoles = true;
    part_.noData = {0};
    bands_.noData = {0};
  }
  [[nodiscard]] bool areKept() const { return holds(loneSourceElement(part_, bands_, 1), ">plain<"); }
  [[nodiscard]] bool areTold() const { return tellsHolesByValue(part_, bands_); }

  RequestPart part_ = grayPart();
  RequestBands bands_ = grayBands();
};

TEST_F(HolesOfAPart, KeepTheirValueWhereItIsThatOfTheRequest) {
  EXPECT_TRUE(areTold());
  EXPECT_TRUE(areKept());
  EXPECT_TRUE(loneSourceElement(part_, bands_, 1).starts_with("<SimpleSource "));
}

TEST_F(HolesOfAPart, KeepAValueThatIsNoNumber) {
  part_.noData = bands_.noData = {std::numeric_limits<double>::quiet_NaN()};
  EXPECT_TRUE(areTold());
}

TEST_F(HolesOfAPart, AreMaskedWhereTheValueDiffersOrIsMissing) {
  for (const NoDataValues& values : {NoDataValues{1}, NoDataValues{std::nullopt}}) {
    part_.noData = values;
    EXPECT_FALSE(areTold());
    EXPECT_FALSE(areKept());
  }
  bands_.noData = {std::nullopt};
  EXPECT_FALSE(areTold());
}

TEST_F(HolesOfAPart, AreMaskedWherePixelsAreResampled) {
  part_.resampling = Resampling::Average;
  EXPECT_FALSE(areTold());
  EXPECT_FALSE(areKept());
}

TEST_F(HolesOfAPart, AreMaskedWhereMoreThanValuesTells) {
  part_.plainName = "";
  EXPECT_FALSE(areTold());
  EXPECT_TRUE(holds(loneSourceElement(part_, bands_, 1), ">masked<"));
}

TEST_F(HolesOfAPart, OfSeveralBandsAreKeptButNotToldByAValue) {
  part_.colors = bands_.colors = {1, 2};
  part_.noData = bands_.noData = {0, 0};
  EXPECT_TRUE(areKept());
  EXPECT_FALSE(areTold());
  part_.noData = {0, 1};
  EXPECT_FALSE(areKept());
}

TEST_F(HolesOfAPart, OfTransparencyAreKeptWhereNoValueTellsOfOthers) {
  part_.alpha = bands_.alpha = 2;
  EXPECT_FALSE(areKept());
  part_.noData = {std::nullopt};
  EXPECT_TRUE(areKept());
  EXPECT_FALSE(areTold());
  bands_.alpha = 0;
  EXPECT_FALSE(areKept());
}

TEST_F(HolesOfAPart, AreNoConcernOfAPartWithout) {
  part_.hasHoles = false;
  EXPECT_EQ(loneSourceElement(part_, bands_, 1), sourceElement(part_, bands_, 1));
}

/// Rasters in memory from which requests and parts are made.
class PartsOfRasters : public testing::Test {
 protected:
  static DatasetPtr make(const std::vector<GDALDataType>& types) {
    DatasetPtr raster(GetGDALDriverManager()->GetDriverByName("MEM")->Create("", 8, 4, 0, GDT_Byte, nullptr));
    for (const GDALDataType type : types) EXPECT_EQ(raster->AddBand(type), CE_None);
    return raster;
  }

  GdalScope scope_;
};

TEST_F(PartsOfRasters, HaveATypeThatHoldsEveryBand) {
  EXPECT_EQ(requestBandsOf(*make({GDT_Byte, GDT_Byte})).type, GDT_Byte);
  EXPECT_EQ(requestBandsOf(*make({GDT_Byte, GDT_UInt16})).type, GDT_UInt16);
  EXPECT_EQ(requestBandsOf(*make({GDT_UInt16, GDT_Int16})).type, GDT_Int32);
  EXPECT_EQ(requestBandsOf(*make({GDT_Int16, GDT_Byte, GDT_Float32})).type, GDT_Float32);
}

TEST_F(PartsOfRasters, TellColorsFromTransparency) {
  const DatasetPtr raster = make({GDT_Byte, GDT_Byte, GDT_Byte});
  raster->GetRasterBand(2)->SetColorInterpretation(GCI_AlphaBand);
  const RequestBands bands = requestBandsOf(*raster);
  EXPECT_EQ(bands.count, 3);
  EXPECT_EQ(bands.colors, (std::vector<int>{1, 3}));
  EXPECT_EQ(bands.alpha, 2);
}

TEST_F(PartsOfRasters, LieInTheGrid) {
  NorthUpRaster raster;
  raster.name = "masked";
  raster.dataset = make({GDT_Int16});
  raster.extent = {20, 30, 100, 70};
  raster.isTurned = true;
  const RequestPart part = requestPartOf(raster, {{0, 0, 200, 100}, 20, 10}, std::nullopt);
  EXPECT_EQ(part.columns, 8);
  EXPECT_EQ(part.rows, 4);
  EXPECT_EQ(part.type, "Int16");
  EXPECT_TRUE(part.isTurned);
  EXPECT_DOUBLE_EQ(part.place.left, 2);
  EXPECT_DOUBLE_EQ(part.place.top, 3);
  EXPECT_DOUBLE_EQ(part.place.width, 8);
  EXPECT_DOUBLE_EQ(part.place.height, 4);
  EXPECT_EQ(part.resampling, Resampling::Nearest);
}

TEST_F(PartsOfRasters, AreTakenAsTheirPixelsMean) {
  const OutputGrid half{{0, 0, 80, 40}, 4, 2};
  const auto resamplingOf = [&](DatasetPtr dataset, std::optional<Resampling> wish) {
    NorthUpRaster raster;
    raster.dataset = std::move(dataset);
    raster.extent = half.extent;
    return requestPartOf(raster, half, wish).resampling;
  };
  EXPECT_EQ(resamplingOf(make({GDT_Byte}), std::nullopt), Resampling::Average);
  EXPECT_EQ(resamplingOf(make({GDT_Byte}), Resampling::Bilinear), Resampling::Bilinear);
  EXPECT_EQ(resamplingOf(make({GDT_CFloat32}), Resampling::Average), Resampling::Nearest);
  DatasetPtr palette = make({GDT_Byte});
  GDALColorTable table;
  palette->GetRasterBand(1)->SetColorTable(&table);
  EXPECT_EQ(resamplingOf(std::move(palette), Resampling::Average), Resampling::Nearest);
}

}  // namespace
}  // namespace vlclientui::client
