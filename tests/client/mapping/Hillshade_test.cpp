// Light on ground, beside what the raster library's own program gives.

#include "client/mapping/Hillshade.h"

#include <array>
#include <cmath>

#include <cpl_string.h>
#include <gdal_utils.h>
#include <gtest/gtest.h>

#include "client/mapping/MappingFixture.h"

namespace vlclientui::test {
namespace {

using client::CornerCells;
using client::GroundCell;
using client::SampleTile;

class Hillshade : public MappingFixture {
 protected:
  static constexpr int columns = 60;
  static constexpr int rows = 50;

  static double heightAt(double column, double row) {
    return 300 + 80 * std::sin(column / 7) * std::cos(row / 5) + 2 * row;
  }
  static CornerCells evenly(GroundCell cell) { return {cell, cell, cell, cell}; }

  [[nodiscard]] static SampleTile ground() {
    SampleTile tile(columns, rows, 1);
    for (int row = 0; row < rows; ++row) {
      for (int column = 0; column < columns; ++column) {
        const auto at = static_cast<std::size_t>(row * columns + column);
        tile.samples[at] = static_cast<float>(heightAt(column, row));
        tile.alpha[at] = 255;
      }
    }
    return tile;
  }
  /// What the library shades, from the same heights. @param across,down of a cell, in meters.
  [[nodiscard]] std::vector<std::uint8_t> reference(double across, double down, double factor) const {
    RasterRecipe recipe;
    recipe.width = columns;
    recipe.height = rows;
    recipe.type = GDT_Float32;
    recipe.transform = {500000, across, 0, 5150000, 0, -down};
    const auto tile = ground();
    recipe.finish = [&](GDALDataset& dataset) {
      auto copy = tile.samples;
      EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, columns, rows, copy.data(), columns, rows,
                                                   GDT_Float32, 0, 0, nullptr),
                CE_None);
    };
    const std::string file = makeRaster("heights.tif", recipe).string();
    CPLStringList words;
    for (const std::string& word :
         {std::string("-of"), std::string("MEM"), std::string("-z"), std::to_string(factor),
          std::string("-az"), std::string("315"), std::string("-alt"), std::string("45")})
      words.AddString(word.c_str());
    GDALDEMProcessingOptions* const options = GDALDEMProcessingOptionsNew(words.List(), nullptr);
    GDALDatasetH source = GDALOpen(file.c_str(), GA_ReadOnly);
    GDALDatasetH result = GDALDEMProcessing("", source, "hillshade", nullptr, options, nullptr);
    GDALDEMProcessingOptionsFree(options);
    std::vector<std::uint8_t> shades(static_cast<std::size_t>(columns * rows));
    EXPECT_EQ(GDALDataset::FromHandle(result)->GetRasterBand(1)->RasterIO(
                  GF_Read, 0, 0, columns, rows, shades.data(), columns, rows, GDT_Byte, 0, 0, nullptr),
              CE_None);
    GDALClose(result);
    GDALClose(source);
    return shades;
  }
};

// The library counts light from 1 to 255, and leaves 0 to holes.
TEST_F(Hillshade, IsThatOfTheFieldsStandardFormula) {
  for (const auto& [across, down, factor] :
       {std::array{10.0, 10.0, 1.0}, {30.0, 20.0, 1.0}, {10.0, 10.0, 3.5}, {90.0, 90.0, 0.3}}) {
    const auto ours = client::hillshade(ground(), evenly({across, down}), factor);
    const auto theirs = reference(across, down, factor);
    for (int row = 1; row < rows - 1; ++row) {
      for (int column = 1; column < columns - 1; ++column) {
        const auto at = static_cast<std::size_t>(row * columns + column);
        const double wanted = (theirs[at] - 1) * 255.0 / 254;
        ASSERT_NEAR(ours[at], wanted, 1.6) << column << " " << row << " " << across << " " << factor;
      }
    }
  }
}

TEST_F(Hillshade, OfLevelGroundIsTheSineOfTheSunsHeight) {
  SampleTile tile(3, 3, 1);
  tile.alpha.assign(9, 255);
  for (const auto shade : client::hillshade(tile, evenly({1, 1}), 1))
    EXPECT_EQ(shade, std::lround(255 * std::sqrt(0.5)));
}

TEST_F(Hillshade, IsBrightTowardsTheUpperLeftAndDarkAway) {
  SampleTile tile(3, 3, 1);
  tile.alpha.assign(9, 255);
  for (int i = 0; i < 9; ++i) tile.samples[static_cast<std::size_t>(i)] = static_cast<float>(i % 3 + i / 3);
  EXPECT_GT(client::hillshade(tile, evenly({1, 1}), 0.3)[4], 200);
  EXPECT_EQ(client::hillshade(tile, evenly({1, 1}), -5)[4], 0);
}

TEST_F(Hillshade, TakesHolesForLevelGround) {
  SampleTile tile = ground();
  const auto whole = client::hillshade(tile, evenly({10, 10}), 1);
  const auto hole = static_cast<std::size_t>(10 * columns + 10);
  tile.alpha[hole] = 0;
  tile.samples[hole] = -32768;
  const auto holed = client::hillshade(tile, evenly({10, 10}), 1);
  for (const int neighbor : {-columns - 1, -columns, -1, 1, columns}) {
    const auto at = static_cast<std::size_t>(static_cast<int>(hole) + neighbor);
    EXPECT_LT(std::abs(holed[at] - whole[at]), 60) << neighbor;
  }
}

TEST_F(Hillshade, OfTwoTilesWithAPixelMoreAroundIsThatOfOne) {
  const SampleTile whole = ground();
  CornerCells cells{{10, 12}, {20, 22}, {11, 13}, {21, 23}};
  const auto together = client::hillshade(whole, cells, 1);
  // The left half, with a column beyond its edge.
  constexpr int half = columns / 2;
  SampleTile left(half + 1, rows, 1);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column <= half; ++column) {
      left.samples[static_cast<std::size_t>(row * (half + 1) + column)] =
          whole.samples[static_cast<std::size_t>(row * columns + column)];
    }
  }
  left.alpha.assign(left.size(), 255);
  const double share = (half + 1.0) / columns;
  const auto between = [&](GroundCell a, GroundCell b) {
    return GroundCell{a.across + (b.across - a.across) * share, a.down + (b.down - a.down) * share};
  };
  const auto part = client::hillshade(left,
                                      {cells.upperLeft, between(cells.upperLeft, cells.upperRight),
                                       cells.lowerLeft, between(cells.lowerLeft, cells.lowerRight)},
                                      1);
  for (int row = 0; row < rows; ++row)
    EXPECT_EQ(part[static_cast<std::size_t>(row * (half + 1) + half - 1)],
              together[static_cast<std::size_t>(row * columns + half - 1)]);
}

TEST_F(Hillshade, KnowsTheUnitsOfHeights) {
  EXPECT_EQ(client::metersOfHeightUnit("m"), 1);
  EXPECT_EQ(client::metersOfHeightUnit("Metre"), 1);
  EXPECT_EQ(client::metersOfHeightUnit("ft"), 0.3048);
  EXPECT_EQ(client::metersOfHeightUnit("Feet"), 0.3048);
  EXPECT_NEAR(client::metersOfHeightUnit("US survey foot"), 0.3048006, 1e-7);
  EXPECT_EQ(client::metersOfHeightUnit(""), 1);
}

/// A hill of 240 x 240 pixels, drawn by the painter.
class ShadedService : public MappingFixture {
 protected:
  void makeHill(int epsg, client::MapPoint middle, double pixel, const char* unit = "m") {
    const auto at = placeIn(epsg, middle);
    RasterRecipe recipe;
    recipe.width = recipe.height = side;
    recipe.type = GDT_Float32;
    recipe.epsg = epsg;
    recipe.transform = {at.x - pixel * side / 2, pixel, 0, at.y + pixel * side / 2, 0, -pixel};
    recipe.finish = [&](GDALDataset& dataset) {
      std::vector<float> heights;
      for (int i = 0; i < side * side; ++i)
        heights.push_back(static_cast<float>(500 * std::sin(i % side / 30.0) * std::cos(i / side / 25.0)));
      dataset.GetRasterBand(1)->SetUnitType(unit);
      EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, side, side, heights.data(), side, side,
                                                   GDT_Float32, 0, 0, nullptr),
                CE_None);
    };
    makeRaster("hill.tif", recipe);
  }
  [[nodiscard]] client::ServicePicture shaded(const client::MapGrid& map, double exaggeration = 1) const {
    client::Stretch stretch;
    stretch.coloring = client::Coloring::Shading;
    stretch.exaggeration = exaggeration;
    client::RasterHandles handles;
    const auto drawing = drawingOf("hill");
    return *client::ServicePainter(drawing, stretch, handles).paint(map);
  }
};

TEST_F(ShadedService, HasNoSeamsBetweenTiles) {
  makeHill(32632, {8.5, 46.5}, 30);
  const auto whole = mapAround(32632, {8.5, 46.5}, 30, 200, 160);
  const auto picture = shaded(whole);
  client::MapGrid left = whole;
  left.grid.columns = 100;
  left.grid.extent.xMax = (whole.grid.extent.xMin + whole.grid.extent.xMax) / 2;
  const auto part = shaded(left);
  for (int row = 0; row < 160; ++row) {
    const auto one = pixelOf(part, 99, row);
    const auto other = pixelOf(picture, 99, row);
    EXPECT_LE(std::abs(one[0] - other[0]), 1) << row;
    EXPECT_EQ(one[0], one[2]);
    EXPECT_EQ(one[3], 255);
  }
}

TEST_F(ShadedService, IsAsSteepAsTheGroundInEverySystem) {
  makeHill(32632, {8.5, 60.0}, 30);
  const auto true32 = shaded(mapAround(32632, {8.5, 60.0}, 30, 100, 100));
  // At 60 degrees a unit of Web Mercator is half a meter.
  const auto mercator = shaded(mapAround(3857, {8.5, 60.0}, 60, 100, 100));
  for (int at = 20; at < 80; at += 5)
    EXPECT_NEAR(pixelOf(true32, at, at)[0], pixelOf(mercator, at, at)[0], 8) << at;
}

TEST_F(ShadedService, TakesHeightsInFeetForWhatTheyAre) {
  makeHill(32632, {8.5, 46.5}, 30, "ft");
  const auto map = mapAround(32632, {8.5, 46.5}, 30, 100, 100);
  const auto feet = shaded(map, 1 / 0.3048);
  makeHill(32632, {8.5, 46.5}, 30, "m");
  EXPECT_EQ(shaded(map).rgba, feet.rgba);
}

}  // namespace
}  // namespace vlclientui::test
