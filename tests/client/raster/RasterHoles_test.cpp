#include "client/raster/RasterHoles.h"

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using Numbers = std::vector<int>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Rasters in memory that declare their holes in one way or another.
class RasterHoles : public testing::Test {
 protected:
  void make(int bands, GDALDataType type = GDT_Byte) {
    raster_.reset(GDALDriver::FromHandle(GDALGetDriverByName("MEM"))->Create("", 2, 1, bands, type, nullptr));
  }
  GDALRasterBand& band(int number) { return *raster_->GetRasterBand(number); }
  void makeAlpha(int number) { band(number).SetColorInterpretation(GCI_AlphaBand); }

  GdalScope scope_;
  DatasetPtr raster_;
};

TEST_F(RasterHoles, AreToldByTheFirstBandOfTransparency) {
  make(4);
  EXPECT_EQ(alphaBandOf(*raster_), 0);
  makeAlpha(4);
  EXPECT_EQ(alphaBandOf(*raster_), 4);
  makeAlpha(2);
  EXPECT_EQ(alphaBandOf(*raster_), 2);
}

TEST_F(RasterHoles, LeaveEveryBandButTransparencyToColors) {
  make(3);
  EXPECT_EQ(colorBandsOf(*raster_), (Numbers{1, 2, 3}));
  makeAlpha(1);
  EXPECT_EQ(colorBandsOf(*raster_), (Numbers{2, 3}));
}

TEST_F(RasterHoles, LeaveALoneBandToColorsWhateverItSays) {
  make(1);
  makeAlpha(1);
  EXPECT_EQ(alphaBandOf(*raster_), 0);
  EXPECT_EQ(colorBandsOf(*raster_), (Numbers{1}));
  EXPECT_FALSE(hasHoles(*raster_));
}

TEST_F(RasterHoles, HaveTheValueThatEachColorDeclares) {
  make(3);
  makeAlpha(2);
  band(2).SetNoDataValue(1);
  band(3).SetNoDataValue(9);
  EXPECT_EQ(noDataOf(*raster_), (NoDataValues{std::nullopt, 9}));
}

TEST_F(RasterHoles, HaveTheValueOfAPersonInAllColorsInstead) {
  make(3);
  makeAlpha(3);
  band(1).SetNoDataValue(4);
  EXPECT_EQ(noDataOf(*raster_, 5), (NoDataValues{5, 5}));
}

TEST_F(RasterHoles, HaveNoValueThatTheTypeCannotHold) {
  struct Case {
    GDALDataType type;
    double value;
    bool isHeld;
  };
  const std::vector<Case> cases = {
      {GDT_Byte, 0, true},           {GDT_Byte, 255, true},     {GDT_Byte, 256, false},
      {GDT_Byte, -1, false},         {GDT_Byte, 0.5, false},    {GDT_UInt16, 65535, true},
      {GDT_UInt16, -9999, false},    {GDT_Int16, -32768, true}, {GDT_Int16, 32768, false},
      {GDT_Int32, -9999, true},      {GDT_Float32, 0.5, true},  {GDT_Float64, -1e300, true},
      {GDT_Byte, notANumber, false},
  };
  for (const Case& each : cases) {
    make(1, each.type);
    EXPECT_EQ(hasAnyNoData(noDataOf(*raster_, each.value)), each.isHeld)
        << GDALGetDataTypeName(each.type) << " " << each.value;
  }
}

TEST_F(RasterHoles, HaveTheValueWithAsManyDigitsAsThePixels) {
  make(1, GDT_Float32);
  EXPECT_EQ(noDataOf(*raster_, 0.1), (NoDataValues{static_cast<double>(0.1F)}));
  make(1, GDT_Float64);
  EXPECT_EQ(noDataOf(*raster_, 0.1), (NoDataValues{0.1}));
}

TEST_F(RasterHoles, OfFloatsMayBeWhatIsNoNumber) {
  make(1, GDT_Float32);
  const NoDataValues values = noDataOf(*raster_, notANumber);
  ASSERT_TRUE(values.at(0).has_value());
  EXPECT_TRUE(std::isnan(*values[0]));
}

TEST(NoDataValue, IsAnyWhereOneBandHasIt) {
  EXPECT_FALSE(hasAnyNoData({}));
  EXPECT_FALSE(hasAnyNoData({std::nullopt, std::nullopt}));
  EXPECT_TRUE(hasAnyNoData({std::nullopt, 0}));
}

TEST(NoDataValue, ThatIsNoNumberEqualsItself) {
  EXPECT_TRUE(isSameValue(notANumber, notANumber));
  EXPECT_FALSE(isSameValue(notANumber, 0));
  EXPECT_FALSE(isSameValue(0, notANumber));
  EXPECT_TRUE(isSameValue(0.0, -0.0));
  EXPECT_FALSE(isSameValue(1, 2));
}

TEST_F(RasterHoles, AreNoneInARasterThatDeclaresNothing) {
  make(3);
  EXPECT_FALSE(hasMaskOfItsOwn(*raster_));
  EXPECT_FALSE(hasHoles(*raster_));
}

TEST_F(RasterHoles, MayBeWhereTransparencyAValueOrAMaskIs) {
  make(2);
  makeAlpha(2);
  EXPECT_TRUE(hasHoles(*raster_));
  EXPECT_FALSE(hasMaskOfItsOwn(*raster_));
  make(2);
  band(2).SetNoDataValue(3);
  EXPECT_TRUE(hasHoles(*raster_));
  EXPECT_FALSE(hasMaskOfItsOwn(*raster_));
  make(2);
  ASSERT_EQ(raster_->CreateMaskBand(GMF_PER_DATASET), CE_None);
  EXPECT_TRUE(hasHoles(*raster_));
  EXPECT_TRUE(hasMaskOfItsOwn(*raster_));
}

TEST_F(RasterHoles, MayBeWhereAPersonNamesAValueThatThePixelsCanHave) {
  make(1);
  EXPECT_TRUE(hasHoles(*raster_, 7));
  EXPECT_FALSE(hasHoles(*raster_, 700));
}

}  // namespace
}  // namespace vlclientui::client
