#include "client/raster/Resampling.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

Resampling chosen(const GridPlace& place, PixelMeaning meaning = PixelMeaning::Quantity) {
  return chooseResampling(place, 10, 10, meaning);
}

TEST(ResamplingChoice, SameSizeOnWholePixelsIsCopied) {
  EXPECT_EQ(chosen({-3, 2, 10, 10}), Resampling::Nearest);
}

TEST(ResamplingChoice, SameSizeBetweenPixelsIsInterpolated) {
  EXPECT_EQ(chosen({0.5, 0, 10, 10}), Resampling::Bilinear);
}

TEST(ResamplingChoice, WholeMultiplesRepeat) { EXPECT_EQ(chosen({0, 0, 20, 30}), Resampling::Nearest); }

TEST(ResamplingChoice, OtherEnlargementsInterpolate) {
  EXPECT_EQ(chosen({0, 0, 25, 30}), Resampling::Bilinear);
}

TEST(ResamplingChoice, AnyReductionAverages) {
  EXPECT_EQ(chosen({0, 0, 5, 5}), Resampling::Average);
  EXPECT_EQ(chosen({0, 0, 9, 30}), Resampling::Average);
}

TEST(ResamplingChoice, LabelsAreNeverMixed) {
  EXPECT_EQ(chosen({0, 0, 5, 5}, PixelMeaning::Label), Resampling::Nearest);
}

TEST(PlaceInGrid, SnapsEdgesThatAreAlmostWhole) {
  const OutputGrid grid{{0, 0, 100, 100}, 10, 10};
  const GridPlace place = placeInGrid({10.0005, 20.5, 60, 80}, grid);
  EXPECT_EQ(place.left, 1);
  EXPECT_EQ(place.width, 5);
  EXPECT_EQ(place.top, 2);
  EXPECT_NEAR(place.height, 5.95, 1e-12);
}

}  // namespace
}  // namespace vlclientui::client
