#include "client/mapping/PerceptualRamp.h"

#include <gtest/gtest.h>

#include "client/mapping/Coloring.h"

namespace vlclientui::test {
namespace {

using client::labColor;
using client::Ramp;
using client::screenColor;

// Values of tables of the color space.
TEST(PerceptualRamp, KnowsTheLightnessOfColors) {
  EXPECT_NEAR(labColor({255, 255, 255}).lightness, 100, 0.01);
  EXPECT_NEAR(labColor({0, 0, 0}).lightness, 0, 0.01);
  const auto red = labColor({255, 0, 0});
  EXPECT_NEAR(red.lightness, 53.24, 0.02);
  EXPECT_NEAR(red.a, 80.09, 0.05);
  EXPECT_NEAR(red.b, 67.20, 0.05);
}

TEST(PerceptualRamp, GoesToTheScreenAndBack) {
  for (int red = 0; red < 256; red += 51) {
    for (int green = 0; green < 256; green += 51) {
      const std::array<std::uint8_t, 3> color = {static_cast<std::uint8_t>(red),
                                                 static_cast<std::uint8_t>(green), 100};
      EXPECT_EQ(screenColor(labColor(color)), color) << red << " " << green;
    }
  }
}

TEST(PerceptualRamp, GrowsLighterByEvenSteps) {
  for (const Ramp ramp : {Ramp::Dusk, Ramp::Lagoon, Ramp::Ice}) {
    const double low = labColor(client::rampColor(ramp, 0)).lightness;
    const double high = labColor(client::rampColor(ramp, 1)).lightness;
    EXPECT_GT(high - low, 70);
    for (double share = 0.1; share < 1; share += 0.1) {
      const double lightness = labColor(client::rampColor(ramp, share)).lightness;
      EXPECT_NEAR(lightness, low + (high - low) * share, 1.5) << static_cast<int>(ramp) << " " << share;
    }
  }
}

}  // namespace
}  // namespace vlclientui::test
