#include "client/drawing/RasterPicture.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/raster/GdalScope.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

using Pixel = std::array<int, 4>;
using Picture = std::vector<Pixel>;
using Values = std::vector<double>;

Picture pictureOf(GDALDataset& raster, int width, int height) {
  const std::vector<std::uint8_t> bytes = drawRaster(raster, width, height);
  Picture pixels;
  for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
    pixels.push_back({bytes[i], bytes[i + 1], bytes[i + 2], bytes[i + 3]});
  }
  return pixels;
}

Pixel gray(int value) { return {value, value, value, 255}; }

/// Rasters in memory, drawn pixel by pixel.
class RasterPicture : public testing::Test {
 protected:
  void make(int width, int height, const std::vector<Values>& bands, GDALDataType type = GDT_Byte) {
    raster_.reset(GetGDALDriverManager()->GetDriverByName("MEM")->Create(
        "", width, height, static_cast<int>(bands.size()), type, nullptr));
    for (std::size_t i = 0; i < bands.size(); ++i) {
      Values values = bands[i];
      ASSERT_EQ(band(static_cast<int>(i) + 1)
                    .RasterIO(GF_Write, 0, 0, width, height, values.data(), width, height, GDT_Float64, 0, 0,
                              nullptr),
                CE_None);
    }
  }

  void makePixel(const Values& bands, GDALDataType type = GDT_Byte) {
    std::vector<Values> each;
    for (const double value : bands) each.push_back({value});
    make(1, 1, each, type);
  }

  void interpret(const std::vector<GDALColorInterp>& meanings) {
    for (std::size_t i = 0; i < meanings.size(); ++i) {
      band(static_cast<int>(i) + 1).SetColorInterpretation(meanings[i]);
    }
  }

  void describe(const std::vector<std::string>& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      band(static_cast<int>(i) + 1).SetDescription(texts[i].c_str());
    }
  }

  GDALRasterBand& band(int number) { return *raster_->GetRasterBand(number); }

  [[nodiscard]] Picture drawn() {
    return pictureOf(*raster_, raster_->GetRasterXSize(), raster_->GetRasterYSize());
  }
  [[nodiscard]] Pixel drawnPixel(std::size_t index = 0) {
    const Picture all = drawn();
    return index < all.size() ? all[index] : Pixel{-1, -1, -1, -1};
  }

  GdalScope scope_;
  DatasetPtr raster_;
};

class PictureColors : public RasterPicture {};

TEST_F(PictureColors, AreThoseThatTheBandsAreInterpretedAs) {
  makePixel({10, 20, 30, 40});
  interpret({GCI_BlueBand, GCI_GreenBand, GCI_Undefined, GCI_RedBand});
  EXPECT_EQ(drawnPixel(), (Pixel{40, 20, 10, 255}));
}

TEST_F(PictureColors, AreThoseOfTheDescriptionsWhereNoInterpretationTells) {
  struct Case {
    std::vector<std::string> descriptions;
    Pixel expected;
  };
  const std::vector<Case> cases = {
      {{"Blue", "Green", "Red", ""}, {30, 20, 10, 255}},
      {{"band 2 (BLUE)", "band 3 (GREEN)", "band 4 (RED)", "band 8"}, {30, 20, 10, 255}},
      {{"near infrared", "red", "green", "blue"}, {20, 30, 40, 255}},
      {{"Red Edge 1", "Blue", "Green", "Red"}, {40, 30, 20, 255}},
      {{"NIR reduced", "Blue", "Green", "Red"}, {40, 30, 20, 255}},
  };
  for (const Case& each : cases) {
    makePixel({10, 20, 30, 40});
    describe(each.descriptions);
    interpret({GCI_Undefined, GCI_Undefined, GCI_Undefined, GCI_Undefined});
    EXPECT_EQ(drawnPixel(), each.expected) << each.descriptions[0];
  }
}

TEST_F(PictureColors, OfInterpretationsWinOverDescriptions) {
  makePixel({10, 20, 30});
  interpret({GCI_RedBand, GCI_GreenBand, GCI_BlueBand});
  describe({"Blue", "Green", "Red"});
  EXPECT_EQ(drawnPixel(), (Pixel{10, 20, 30, 255}));
}

TEST_F(PictureColors, AreTheFirstThreeBandsWhereAColorIsMissing) {
  makePixel({10, 20, 30});
  interpret({GCI_GreenBand, GCI_RedBand, GCI_Undefined});
  describe({"green", "red", "near infrared"});
  EXPECT_EQ(drawnPixel(), (Pixel{10, 20, 30, 255}));
}

TEST_F(PictureColors, AreGrayWithFewerThanThreeBands) {
  makePixel({70});
  EXPECT_EQ(drawnPixel(), gray(70));
  makePixel({70, 90});
  EXPECT_EQ(drawnPixel(), gray(70));
}

TEST_F(PictureColors, OfBytesAreNotStretched) {
  make(3, 1, {{100, 101, 102}});
  EXPECT_EQ(drawn(), (Picture{gray(100), gray(101), gray(102)}));
}

/// The values of first + i * step for i of 0 to 100, so that each hundredth is one pixel.
Values ramp(double first, double step) {
  Values values;
  for (int i = 0; i <= 100; ++i) values.push_back(first + i * step);
  return values;
}

TEST_F(PictureColors, OfManyBitsAreStretchedFromTheSecondToTheNinetyEighthHundredth) {
  make(101, 1, {ramp(5000, 10)}, GDT_UInt16);
  const Picture picture = drawn();
  ASSERT_EQ(picture.size(), 101U);
  EXPECT_EQ(picture[0], gray(0));
  EXPECT_EQ(picture[2], gray(0));
  EXPECT_GT(picture[3][0], 0);
  EXPECT_LT(picture[97][0], 255);
  EXPECT_EQ(picture[98], gray(255));
  EXPECT_EQ(picture[100], gray(255));
}

TEST_F(PictureColors, OfManyBitsAreLiftedInTheMiddle) {
  make(101, 1, {ramp(0, 1)}, GDT_UInt16);
  EXPECT_EQ(drawnPixel(50), gray(155));
}

TEST_F(PictureColors, OfManyBitsKeepTheirBalance) {
  make(101, 1, {ramp(0, 10), ramp(500, 1), ramp(2000, 10)}, GDT_UInt16);
  EXPECT_EQ(drawnPixel(98), (Pixel{255, 49, 255, 255}));
  EXPECT_EQ(drawnPixel(2), (Pixel{0, 0, 0, 255}));
}

TEST_F(PictureColors, OfHolesDoNotCountForTheStretch) {
  Values values = ramp(5000, 10);
  values.insert(values.end(), 99, 65535);
  make(200, 1, {values}, GDT_UInt16);
  band(1).SetNoDataValue(65535);
  EXPECT_EQ(drawnPixel(98), gray(255));
  EXPECT_EQ(drawnPixel(150)[3], 0);
}

TEST_F(PictureColors, OfOneValueAreDrawn) {
  make(2, 2, {{300, 300, 300, 300}}, GDT_UInt16);
  EXPECT_EQ(drawn(), Picture(4, gray(0)));
}

TEST_F(PictureColors, AreAveragedWhereThePictureIsSmaller) {
  make(4, 1, {{0, 100, 200, 100}});
  EXPECT_EQ(pictureOf(*raster_, 2, 1), (Picture{gray(50), gray(150)}));
}

class PictureHoles : public RasterPicture {};

TEST_F(PictureHoles, AreTransparentWhereTransparencyTells) {
  make(3, 1, {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {0, 128, 255}});
  interpret({GCI_RedBand, GCI_GreenBand, GCI_BlueBand, GCI_AlphaBand});
  EXPECT_EQ(drawn(), (Picture{{1, 1, 1, 0}, {2, 2, 2, 128}, {3, 3, 3, 255}}));
}

TEST_F(PictureHoles, AreTransparentWhereAGrayRasterHasTransparency) {
  make(2, 1, {{50, 60}, {255, 0}});
  interpret({GCI_GrayIndex, GCI_AlphaBand});
  EXPECT_EQ(drawn(), (Picture{gray(50), {60, 60, 60, 0}}));
}

TEST_F(PictureHoles, NeedTheNoDataValueInAllColors) {
  make(3, 1, {{0, 0, 7}, {0, 8, 8}, {0, 9, 9}});
  for (int number = 1; number <= 3; ++number) band(number).SetNoDataValue(0);
  EXPECT_EQ(drawn(), (Picture{{0, 0, 0, 0}, {0, 8, 9, 255}, {7, 8, 9, 255}}));
}

TEST_F(PictureHoles, AreValuesThatAreNoNumbers) {
  constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinite = std::numeric_limits<double>::infinity();
  make(4, 1, {{notANumber, 1, infinite, 1}}, GDT_Float32);
  const Picture picture = drawn();
  ASSERT_EQ(picture.size(), 4U);
  EXPECT_EQ(picture[0][3], 0);
  EXPECT_EQ(picture[1][3], 255);
  EXPECT_EQ(picture[2][3], 0);
  EXPECT_EQ(picture[3][3], 255);
}

class PicturePalette : public RasterPicture {
 protected:
  void makeClasses(int width, const Values& classes) {
    make(width, 1, {classes});
    GDALColorTable table;
    const std::array<GDALColorEntry, 3> entries = {{{9, 9, 9, 0}, {200, 100, 50, 255}, {1, 2, 3, 128}}};
    for (std::size_t i = 0; i < entries.size(); ++i) table.SetColorEntry(static_cast<int>(i), &entries[i]);
    band(1).SetColorTable(&table);
    band(1).SetColorInterpretation(GCI_PaletteIndex);
  }
};

TEST_F(PicturePalette, GivesEachClassItsColorAndTransparency) {
  makeClasses(3, {1, 2, 0});
  EXPECT_EQ(drawn(), (Picture{{200, 100, 50, 255}, {1, 2, 3, 128}, {9, 9, 9, 0}}));
}

TEST_F(PicturePalette, LeavesClassesThatItDoesNotKnowTransparent) {
  makeClasses(2, {1, 77});
  EXPECT_EQ(drawn(), (Picture{{200, 100, 50, 255}, {0, 0, 0, 0}}));
}

TEST_F(PicturePalette, LeavesHolesTransparent) {
  makeClasses(2, {1, 2});
  band(1).SetNoDataValue(1);
  EXPECT_EQ(drawnPixel(0)[3], 0);
  EXPECT_EQ(drawnPixel(1)[3], 128);
}

TEST_F(PicturePalette, TakesTheMostFrequentClassWhereThePictureIsSmaller) {
  makeClasses(6, {2, 1, 1, 2, 1, 2});
  EXPECT_EQ(pictureOf(*raster_, 2, 1), (Picture{{200, 100, 50, 255}, {1, 2, 3, 128}}));
}

TEST_F(PicturePalette, CountsForNothingWhereTheBandIsNoPalette) {
  makeClasses(1, {1});
  band(1).SetColorInterpretation(GCI_GrayIndex);
  EXPECT_EQ(drawnPixel(), gray(1));
}

class PictureElevation : public RasterPicture {
 protected:
  static constexpr Pixel meadow = {124, 158, 104, 255};
  static constexpr Pixel middleOfDeviations = {240, 238, 226, 255};

  /// Level ground at zero, of which the color alone tells how it is drawn.
  void makeLevel(const std::string& unit, const std::string& description, GDALDataType type = GDT_Int16) {
    makePixel({0}, type);
    band(1).SetUnitType(unit.c_str());
    band(1).SetDescription(description.c_str());
  }
};

TEST_F(PictureElevation, IsToldByAUnitOfLength) {
  for (const char* unit : {"m", "metre", "Meter", "METRES", "meters", "ft"}) {
    makeLevel(unit, "");
    EXPECT_EQ(drawnPixel(), meadow) << unit;
  }
  for (const char* unit : {"", "mm", "DN", "K", "m/s"}) {
    makeLevel(unit, "");
    EXPECT_EQ(drawnPixel(), gray(0)) << unit;
  }
}

TEST_F(PictureElevation, IsToldByTheBandsDescription) {
  for (const char* words : {"Elevation", "terrain model", "Ellipsoidal HEIGHT", "DTM 2 m"}) {
    makeLevel("", words);
    EXPECT_EQ(drawnPixel(), meadow) << words;
  }
  makeLevel("", "Temperature");
  EXPECT_EQ(drawnPixel(), gray(0));
}

TEST_F(PictureElevation, IsToldByTheTextsOfTheFile) {
  for (const char* item : {"TITLE", "TIFFTAG_IMAGEDESCRIPTION", "TIFFTAG_DOCUMENTNAME"}) {
    makeLevel("", "");
    raster_->SetMetadataItem(item, "Terrain of the valley");
    EXPECT_EQ(drawnPixel(), meadow) << item;
  }
  makeLevel("", "");
  raster_->SetMetadataItem("COMMENT", "Terrain of the valley");
  EXPECT_EQ(drawnPixel(), gray(0));
}

TEST_F(PictureElevation, IsNeitherOfBytesNorOfSeveralBands) {
  makeLevel("m", "elevation", GDT_Byte);
  EXPECT_EQ(drawnPixel(), gray(0));
  makePixel({0, 0}, GDT_Int16);
  band(1).SetUnitType("m");
  EXPECT_EQ(drawnPixel(), gray(0));
}

TEST_F(PictureElevation, OfDeviationsHasTheirColors) {
  for (const char* words : {"Geoid height", "undulation", "Difference of two years"}) {
    makeLevel("m", words);
    EXPECT_EQ(drawnPixel(), middleOfDeviations) << words;
  }
}

TEST_F(PictureElevation, CountsSlopesByTheSizeOfPixelsOnTheGround) {
  // Steeper to the south than to the east, unless the pixels are much higher than wide.
  const auto ground = [this](std::optional<double> pixelHeight) {
    make(3, 3, {{0, 1, 2, 9, 10, 11, 20, 21, 22}}, GDT_Float32);
    band(1).SetUnitType("m");
    std::array<double, 6> transform = {0, 1, 0, 0, 0, -pixelHeight.value_or(1)};
    if (pixelHeight) {
      EXPECT_EQ(raster_->SetGeoTransform(transform.data()), CE_None);
    }
    return drawn();
  };
  EXPECT_EQ(ground(1), ground(std::nullopt));
  EXPECT_NE(ground(1), ground(10));
}

class PictureRows : public RasterPicture {
 protected:
  void place(double pixelHeight) {
    std::array<double, 6> transform = {0, 1, 0, 0, 0, pixelHeight};
    EXPECT_EQ(raster_->SetGeoTransform(transform.data()), CE_None);
  }
};

TEST_F(PictureRows, OfARasterFromTheSouthAreTurnedOver) {
  make(2, 3, {{1, 2, 3, 4, 5, 6}});
  place(1);
  EXPECT_EQ(drawn(), (Picture{gray(5), gray(6), gray(3), gray(4), gray(1), gray(2)}));
}

TEST_F(PictureRows, OfARasterFromTheNorthOrOfUnknownPlaceStay) {
  make(1, 2, {{1, 2}});
  EXPECT_EQ(drawn(), (Picture{gray(1), gray(2)}));
  place(-1);
  EXPECT_EQ(drawn(), (Picture{gray(1), gray(2)}));
}

TEST_F(RasterPicture, IsEmptyWithoutBands) {
  make(3, 3, {});
  EXPECT_TRUE(drawRaster(*raster_, 3, 3).empty());
}

TEST_F(RasterPicture, IsEmptyOnceTheWorkIsGivenUp) {
  make(2, 1, {{1, 2}});
  CancelToken token;
  const WaitScope scope(nullptr, token);
  EXPECT_EQ(drawn().size(), 2U);
  token.cancel();
  EXPECT_TRUE(drawRaster(*raster_, 2, 1).empty());
}

/// A raster whose file broke off.
class BrokenBand : public GDALRasterBand {
 public:
  explicit BrokenBand(GDALDataType type) {
    nRasterXSize = nRasterYSize = 1;
    nBlockXSize = nBlockYSize = 1;
    eDataType = type;
  }
  const char* GetUnitType() override { return "m"; }

 protected:
  CPLErr IReadBlock(int, int, void*) override { return CE_Failure; }
};

class BrokenRaster : public GDALDataset {
 public:
  explicit BrokenRaster(GDALDataType type) {
    nRasterXSize = nRasterYSize = 1;
    SetBand(1, new BrokenBand(type));
  }
};

TEST_F(RasterPicture, IsEmptyWhereReadingFails) {
  for (const GDALDataType type : {GDT_Byte, GDT_Int16}) {
    BrokenRaster broken(type);
    EXPECT_TRUE(drawRaster(broken, 1, 1).empty()) << GDALGetDataTypeName(type);
  }
}

}  // namespace
}  // namespace vlclientui::client
