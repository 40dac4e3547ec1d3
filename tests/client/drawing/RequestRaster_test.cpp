#include "client/drawing/RequestRaster.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

const OutputGrid givenGrid{{0, 0, 10, 10}, 10, 10};

TEST(Coverage, NothingCoversNothing) { EXPECT_FALSE(covers({}, givenGrid)); }

TEST(Coverage, OneAroundCovers) { EXPECT_TRUE(covers({{0, 0, 10, 10}}, givenGrid)); }

TEST(Coverage, FourQuartersCoverTogether) {
  EXPECT_TRUE(covers({{0, 0, 5, 5}, {5, 0, 10, 5}, {0, 5, 5, 10}, {5, 5, 10, 10}}, givenGrid));
}

TEST(Coverage, HoleInTheMiddleIsFound) {
  EXPECT_FALSE(covers({{0, 0, 4, 10}, {6, 0, 10, 10}, {0, 0, 10, 4}, {0, 6, 10, 10}}, givenGrid));
}

TEST(Coverage, ThousandthOfAPixelDoesNotCount) {
  EXPECT_TRUE(covers({{0.0009, 0, 10, 10}}, givenGrid));
  EXPECT_FALSE(covers({{0.002, 0, 10, 10}}, givenGrid));
}

}  // namespace
}  // namespace vlclientui::client
