#include "client/mapping/Stretch.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "client/mapping/Coloring.h"
#include "client/mapping/MapSystem.h"
#include "client/mapping/MappingFixture.h"
#include "client/mapping/StretchChoice.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

class Stretches : public test::MappingFixture {
 protected:
  /// A raster whose values run from 0 to 999 along each row.
  void makeRising(const std::string& name, GDALDataType type, const std::string& unit = {}) const {
    test::RasterRecipe recipe;
    recipe.width = 1000;
    recipe.height = 40;
    recipe.type = type;
    recipe.finish = [unit](GDALDataset& dataset) {
      std::vector<double> values(1000);
      for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i);
      for (int row = 0; row < 40; ++row) {
        EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, row, 1000, 1, values.data(), 1000, 1,
                                                     GDT_Float64, 0, 0, nullptr),
                  CE_None);
      }
      if (!unit.empty()) dataset.GetRasterBand(1)->SetUnitType(unit.c_str());
    };
    makeRaster(name, recipe);
  }

  [[nodiscard]] Stretch chosenFor(const std::string& name) const {
    RasterHandles handles;
    return *chosenStretch(drawingOf(name), handles);
  }
};

TEST_F(Stretches, OfBytesAreTheRangeOfTheType) {
  makePlaced("a.tif", 32632, {9, 46}, 100);
  const Stretch stretch = chosenFor("a");
  EXPECT_EQ(stretch.coloring, Coloring::Colors);
  EXPECT_EQ(stretch.bands, (std::array{1, 2, 3}));
  EXPECT_EQ(stretch.lowest, (std::array{0.0, 0.0, 0.0}));
  EXPECT_EQ(stretch.highest, (std::array{255.0, 255.0, 255.0}));
  EXPECT_EQ(stretch.lift, 1);
}

TEST_F(Stretches, OfMoreBitsReachFromTwoTo98PercentOfTheValues) {
  for (const GDALDataType type : {GDT_UInt16, GDT_Float32}) {
    makeRising("a.tif", type);
    const Stretch stretch = chosenFor("a");
    EXPECT_EQ(stretch.coloring, Coloring::Ramp);
    EXPECT_NEAR(stretch.lowest[0], 20, 2);
    EXPECT_NEAR(stretch.highest[0], 979, 2);
  }
}

TEST_F(Stretches, OfHeightsAreARelief) {
  makeRising("a.tif", GDT_Float32, "m");
  const Stretch stretch = chosenFor("a");
  EXPECT_EQ(stretch.coloring, Coloring::Relief);
  EXPECT_NEAR(stretch.steepness, 1, 0.05);
  EXPECT_NEAR(stretch.roughness, 1, 0.05);
}

// A part of a service looks as it does in the whole: of a tile that is dark throughout nothing is lifted.
TEST_F(Stretches, AreTheServicesAndNotThoseOfWhatIsShown) {
  makeRising("a.tif", GDT_UInt16);
  const Drawing drawing = drawingOf("a");
  const std::string& wkt = drawing.service->facts.srsWkt;
  const Bounds& all = drawing.service->facts.envelope;
  const ServicePicture whole = painted(drawing, {wkt, {all, 1000, 40}});
  const Bounds left{all.xMin, all.yMin, all.xMin + 10000, all.yMax};
  const ServicePicture part = painted(drawing, {wkt, {left, 100, 40}});
  for (int column = 0; column < 100; ++column) EXPECT_EQ(pixelOf(part, column, 7), pixelOf(whole, column, 7));
}

TEST_F(Stretches, AreReadBackFromTheirText) {
  Stretch stretch;
  stretch.coloring = Coloring::Ramp;
  stretch.bands = {4, 3, 2};
  stretch.lowest = {-1.5, 0.1, 3};
  stretch.highest = {1e9, 2, 3.25};
  stretch.lift = 0.72;
  stretch.ramp = Ramp::Water;
  stretch.steepness = 1.0 / 3;
  stretch.roughness = 0.5;
  EXPECT_EQ(stretchOf(stretchText(stretch)), stretch);
  EXPECT_EQ(stretchOf(""), Stretch());
  EXPECT_EQ(stretchOf("later=9 lift=2")->lift, 2);
}

TEST_F(Stretches, OfEveryColoringAndRampAreReadBack) {
  for (int coloring = 0; coloring <= static_cast<int>(Coloring::Shading); ++coloring) {
    for (int ramp = 0; ramp <= static_cast<int>(Ramp::Ice); ++ramp) {
      Stretch stretch;
      stretch.coloring = static_cast<Coloring>(coloring);
      stretch.ramp = static_cast<Ramp>(ramp);
      stretch.exaggeration = 2.5;
      EXPECT_EQ(stretchOf(stretchText(stretch)), stretch) << coloring << " " << ramp;
    }
  }
  EXPECT_EQ(stretchOf("coloring=shading")->exaggeration, 1);
  EXPECT_FALSE(stretchOf("coloring=shading exaggeration=0"));
}

TEST_F(Stretches, WithValuesThatMakeNoSenseAreRefused) {
  for (const char* text : {"coloring=pink", "bands=1,2", "bands=0,1,2", "bands=1.5,2,3", "lowest=a,b,c",
                           "lift=0", "lift=", "lift", "ramp=none", "roughness=2", "steepness=-1"}) {
    EXPECT_FALSE(stretchOf(text)) << text;
  }
}

TEST_F(Stretches, TurnValuesIntoColorsOfARamp) {
  SampleTile tile(3, 1, 1);
  tile.samples = {10, 20, 15};
  tile.alpha = {255, 255, 0};
  Stretch stretch;
  stretch.coloring = Coloring::Ramp;
  stretch.lowest.fill(10);
  stretch.highest.fill(20);
  const auto gray = coloredTile(tile, stretch, {}, {});
  EXPECT_EQ(gray, (std::vector<std::uint8_t>{0, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 0}));
  for (const Ramp ramp : {Ramp::Ground, Ramp::Heat, Ramp::Water, Ramp::Spectrum}) {
    stretch.ramp = ramp;
    const auto colors = coloredTile(tile, stretch, {}, {});
    const auto low = rampColor(ramp, 0);
    const auto high = rampColor(ramp, 1);
    EXPECT_TRUE(std::equal(low.begin(), low.end(), colors.begin()));
    EXPECT_TRUE(std::equal(high.begin(), high.end(), colors.begin() + 4));
  }
}

TEST_F(Stretches, GiveNoColorsOfReliefWhereTheWorkWasGivenUp) {
  SampleTile tile(2, 2, 1);
  tile.samples = {10, 20, 15, 12};
  tile.alpha = {255, 255, 255, 255};
  Stretch stretch;
  stretch.coloring = Coloring::Relief;
  stretch.lowest.fill(10);
  stretch.highest.fill(20);
  EXPECT_EQ(coloredTile(tile, stretch, {}, {}).size(), 16U);
  CancelToken token;
  token.cancel();
  const WaitScope scope(nullptr, token);
  EXPECT_TRUE(coloredTile(tile, stretch, {}, {}).empty());
}

TEST_F(Stretches, MayTurnARangeAround) {
  SampleTile tile(2, 1, 1);
  tile.samples = {0, 255};
  tile.alpha = {255, 255};
  Stretch stretch;
  stretch.lowest.fill(255);
  stretch.highest.fill(0);
  const auto colors = coloredTile(tile, stretch, {}, {});
  EXPECT_EQ(colors[0], 255);
  EXPECT_EQ(colors[4], 0);
}

TEST_F(Stretches, GiveAPixelItsColorHoweverManyStandAroundIt) {
  constexpr int many = 300;
  SampleTile row(many, 1, 3);
  for (std::size_t i = 0; i < many; ++i) {
    const auto value = static_cast<float>(i) * 1.7F - 40;
    row.samples[i * 3] = i % 11 == 0 ? std::nanf("") : value;
    row.samples[i * 3 + 1] = 300 - value;
    row.samples[i * 3 + 2] = value / 3;
    row.alpha[i] = static_cast<std::uint8_t>(i % 7 == 0 ? 0 : 255 - i % 5);
  }
  Stretch stretch;
  stretch.lowest = {0, 20, 90};
  stretch.highest = {255, 180, 10};
  stretch.lift = 0.7;
  const auto colors = coloredTile(row, stretch, {}, {});
  for (std::size_t i = 0; i < many; ++i) {
    SampleTile one(1, 1, 3);
    std::copy_n(row.samples.begin() + static_cast<std::ptrdiff_t>(i * 3), 3, one.samples.begin());
    one.alpha[0] = row.alpha[i];
    const auto color = coloredTile(one, stretch, {}, {});
    EXPECT_TRUE(std::ranges::equal(color, std::span(colors).subspan(i * 4, 4))) << i;
  }
}

TEST_F(Stretches, LightAReliefAlikeInEveryTile) {
  makeRising("a.tif", GDT_Float32, "m");
  const Drawing drawing = drawingOf("a");
  const std::string& wkt = drawing.service->facts.srsWkt;
  const Bounds& all = drawing.service->facts.envelope;
  const ServicePicture whole = painted(drawing, {wkt, {all, 1000, 40}});
  const Bounds middle{all.xMin + 30000, all.yMin, all.xMin + 40000, all.yMax};
  const ServicePicture part = painted(drawing, {wkt, {middle, 100, 40}});
  for (int column = 0; column < 100; ++column) {
    EXPECT_EQ(pixelOf(part, column, 20), pixelOf(whole, 300 + column, 20));
  }
}

TEST(MapSystems, AreFoundByCodeOrDefinition) {
  const auto degrees = mapSystemOf(degreesCode);
  ASSERT_TRUE(degrees);
  EXPECT_TRUE(degrees->isInDegrees);
  EXPECT_NEAR(degrees->metersPerUnit, 111319.5, 0.1);
  const auto mercator = mapSystemOf(webMercatorCode);
  ASSERT_TRUE(mercator);
  EXPECT_FALSE(mercator->isInDegrees);
  EXPECT_EQ(mercator->id, "EPSG:3857");
  EXPECT_EQ(mapSystemOf(mercator->wkt), mercator);
  EXPECT_EQ(mapSystemOf("EPSG:2056")->name, "CH1903+ / LV95");
}

TEST(MapSystems, AreNoneForOtherTexts) {
  for (const char* text : {"", "EPSG:1", "a map", "EPSG:5773", "/etc/passwd", "https://example.com/a.prj"}) {
    EXPECT_FALSE(mapSystemOf(text)) << text;
  }
}

}  // namespace
}  // namespace vlclientui::client
