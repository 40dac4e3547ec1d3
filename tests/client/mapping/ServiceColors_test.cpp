// What a person chooses the colors of a service from.

#include "client/mapping/ServiceColors.h"

#include <numeric>

#include <gdal_rat.h>
#include <gtest/gtest.h>

#include "client/mapping/MappingFixture.h"
#include "client/waiting/Wait.h"

namespace vlclientui::test {
namespace {

using client::Coloring;
using client::serviceColorsOf;
using client::spreadsOf;
using client::ValueSpan;

class ServiceColors : public MappingFixture {
 protected:
  static constexpr int width = 100;
  /// Values from 0 to 9,999, each once, times ten for each further band.
  void makeCounted(GDALDataType type, int bands = 1, const std::function<void(GDALDataset&)>& also = {}) {
    RasterRecipe recipe;
    recipe.width = recipe.height = width;
    recipe.type = type;
    recipe.bands = bands;
    recipe.finish = [&](GDALDataset& dataset) {
      std::vector<double> values(width * width);
      std::iota(values.begin(), values.end(), 0);
      for (int band = 1; band <= bands; ++band) {
        EXPECT_EQ(dataset.GetRasterBand(band)->RasterIO(GF_Write, 0, 0, width, width, values.data(), width,
                                                        width, GDT_Float64, 0, 0, nullptr),
                  CE_None);
        for (double& value : values) value *= 3;
      }
      if (also) also(dataset);
    };
    makeRaster("a.tif", recipe);
  }
};

TEST_F(ServiceColors, NameTheBandsAndWhatTheirTypeCanHold) {
  makeCounted(GDT_UInt16, 2,
              [](GDALDataset& dataset) { dataset.GetRasterBand(2)->SetDescription("Near infrared"); });
  const auto colors = serviceColorsOf(drawingOf("a"));
  ASSERT_TRUE(colors);
  ASSERT_EQ(colors->bands.size(), 2U);
  EXPECT_EQ(colors->bands[0].name, "Band 1");
  EXPECT_EQ(colors->bands[1].name, "Near infrared");
  EXPECT_EQ(colors->bands[1].number, 2);
  EXPECT_EQ(colors->bands[1].typeSpan, (ValueSpan{0, 65535}));
  EXPECT_FALSE(colors->hasClasses);
}

TEST_F(ServiceColors, ListTheClassesThatHaveNamesAndColors) {
  RasterRecipe recipe;
  recipe.width = recipe.height = 2;
  recipe.finish = [](GDALDataset& dataset) {
    GDALColorTable table;
    const GDALColorEntry colors[] = {{1, 1, 1, 255}, {20, 40, 200, 255}, {30, 120, 40, 255}};
    for (int value = 0; value < 3; ++value) table.SetColorEntry(value, &colors[value]);
    dataset.GetRasterBand(1)->SetColorTable(&table);
    CPLStringList names;
    for (const char* name : {"", "water"}) names.AddString(name);
    dataset.GetRasterBand(1)->SetCategoryNames(names.List());
    GDALDefaultRasterAttributeTable rows;
    rows.CreateColumn("Value", GFT_Integer, GFU_MinMax);
    rows.CreateColumn("Kind", GFT_String, GFU_Generic);
    rows.SetRowCount(1);
    rows.SetValue(0, 0, 2);
    rows.SetValue(0, 1, "forest");
    dataset.GetRasterBand(1)->SetDefaultRAT(&rows);
  };
  makeRaster("a.tif", recipe);
  const auto words = client::serviceWordsOf(drawingOf("a"));
  EXPECT_EQ(words.classes, (std::vector<client::ServiceClass>{{1, {20, 40, 200, 255}, "water"},
                                                              {2, {30, 120, 40, 255}, "forest"}}));
}

TEST_F(ServiceColors, ListClassesWithoutNamesButNotWhatOnlyFillsTheTable) {
  RasterRecipe recipe;
  recipe.width = recipe.height = 2;
  recipe.finish = [](GDALDataset& dataset) {
    GDALColorTable table;
    const GDALColorEntry colors[] = {{20, 40, 200, 255}, {30, 120, 40, 255}};
    for (int value = 0; value < 2; ++value) table.SetColorEntry(value, &colors[value]);
    dataset.GetRasterBand(1)->SetColorTable(&table);
  };
  makeRaster("a.tif", recipe);
  const auto words = client::serviceWordsOf(drawingOf("a"));
  ASSERT_EQ(words.classes.size(), 2U);
  EXPECT_EQ(words.classes[1].value, 1);
  EXPECT_EQ(words.classes[1].name, "");
}

TEST_F(ServiceColors, KnowTheTypesThatHaveARange) {
  makeCounted(GDT_Int16);
  EXPECT_EQ(serviceColorsOf(drawingOf("a"))->bands[0].typeSpan, (ValueSpan{-32768, 32767}));
  makeCounted(GDT_Byte);
  EXPECT_EQ(serviceColorsOf(drawingOf("a"))->bands[0].typeSpan, (ValueSpan{0, 255}));
  makeCounted(GDT_Float32);
  EXPECT_FALSE(serviceColorsOf(drawingOf("a"))->bands[0].typeSpan);
}

TEST_F(ServiceColors, BeginWithWhatTheServiceDecides) {
  makeCounted(GDT_Byte);
  EXPECT_EQ(serviceColorsOf(drawingOf("a"))->decided.coloring, Coloring::Ramp);
}

TEST_F(ServiceColors, FindThePercentsAndTheEndsOfEachBand) {
  makeCounted(GDT_UInt16, 2);
  const auto spreads = spreadsOf(drawingOf("a"), {2, 1});
  ASSERT_TRUE(spreads);
  ASSERT_EQ(spreads->size(), 2U);
  EXPECT_NEAR((*spreads)[1].usual.low, 200, 100);
  EXPECT_NEAR((*spreads)[1].usual.high, 9800, 100);
  EXPECT_NEAR((*spreads)[1].whole.low, 0, 100);
  EXPECT_NEAR((*spreads)[1].whole.high, 9999, 100);
  EXPECT_NEAR((*spreads)[0].usual.high, 3 * 9800, 300);
}

TEST_F(ServiceColors, TellHowSteepTheGroundIs) {
  makeCounted(GDT_Float32);
  const auto spreads = spreadsOf(drawingOf("a"), {1});
  EXPECT_GT((*spreads)[0].steepness, 50);
}

TEST_F(ServiceColors, AreNothingWhereTheReadingWasGivenUp) {
  makeCounted(GDT_UInt16);
  const auto drawing = drawingOf("a");
  client::CancelToken token;
  const client::WaitScope scope(nullptr, token);
  token.cancel();
  EXPECT_FALSE(spreadsOf(drawing, {1}));
}

}  // namespace
}  // namespace vlclientui::test
