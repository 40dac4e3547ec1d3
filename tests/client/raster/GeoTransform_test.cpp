#include "client/raster/GeoTransform.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

void expectSize(const PixelSize& found, double across, double down) {
  EXPECT_DOUBLE_EQ(found.across, across);
  EXPECT_DOUBLE_EQ(found.down, down);
}

TEST(GeoTransforms, NeedAnArea) {
  EXPECT_TRUE(isUsable({0, 1, 0, 4, 0, -1}));
  EXPECT_TRUE(isUsable({0, 0, 3, 4, 2, 0}));
  EXPECT_TRUE(isUsable({0, 1e-9, 0, 0, 0, 1e-9}));
  EXPECT_FALSE(isUsable({0, 1, 0, 4, 0, 0}));
  EXPECT_FALSE(isUsable({0, 0, 0, 0, 0, -1}));
  EXPECT_FALSE(isUsable({0, 2, 4, 0, 1, 2}));
  EXPECT_FALSE(isUsable({0, 0, 0, 0, 0, 0}));
}

TEST(GeoTransforms, NeedNumbers) {
  EXPECT_FALSE(isUsable({0, std::numeric_limits<double>::infinity(), 0, 4, 0, -1}));
  EXPECT_FALSE(isUsable({std::numeric_limits<double>::quiet_NaN(), 1, 0, 4, 0, -1}));
}

TEST(GeoTransforms, PlaceARasterWherePixelsCanBeToldApart) {
  EXPECT_TRUE(placesRaster({1e6, 0.001, 0, 4e6, 0, -0.001}, 10, 7));
  EXPECT_FALSE(placesRaster({1e300, 1, 0, 0, 0, -1}, 10, 7));
  EXPECT_FALSE(placesRaster({0, 1, 0, -1e300, 0, -1}, 10, 7));
  EXPECT_FALSE(placesRaster({0, 1e308, 0, 0, 0, -1e308}, 10, 7));
}

TEST(GeoTransforms, KeepTheSidesOfPixelsInQuarterTurnsAndMirrors) {
  expectSize(northUpPixelSize({0, 3, 0, 0, 0, -2}, 10, 7), 3, 2);
  expectSize(northUpPixelSize({0, -3, 0, 0, 0, 2}, 10, 7), 3, 2);
  expectSize(northUpPixelSize({0, 0, 2, 0, 3, 0}, 10, 7), 2, 3);
  expectSize(northUpPixelSize({0, 3 * std::cos(M_PI_2), 2, 0, -3, 2 * std::cos(M_PI_2)}, 10, 7), 2, 3);
}

TEST(GeoTransforms, MakeSquaresOfPixelsAtOtherAngles) {
  expectSize(northUpPixelSize({0, 30, 40, 0, 40, -30}, 8, 6), 50, 50);
}

TEST(GeoTransforms, CountAtLeastOnePixel) {
  EXPECT_EQ(pixelCount(100, 2), 50);
  EXPECT_EQ(pixelCount(99.99999, 2), 50);
  EXPECT_EQ(pixelCount(0.1, 2), 1);
}

}  // namespace
}  // namespace vlclientui::client
