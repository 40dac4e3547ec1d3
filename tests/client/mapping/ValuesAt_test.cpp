// What stands in the rasters of a service under a place of a map.

#include "client/mapping/ValuesAt.h"

#include <array>
#include <cmath>
#include <limits>

#include <cpl_string.h>
#include <gtest/gtest.h>

#include "client/mapping/MappingFixture.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {
namespace {

using client::AskedPlace;
using client::Drawing;
using client::MapPoint;
using client::SourceValues;
using client::valuesAt;

class ValuesAt : public MappingFixture {
 protected:
  [[nodiscard]] static client::DrawingSource sourceOf(const Drawing& drawing) {
    return [kept = std::make_shared<const Drawing>(drawing)](const auto&) { return kept; };
  }
  [[nodiscard]] std::vector<SourceValues> valuesOf(const Drawing& drawing, const AskedPlace& asked) const {
    const auto values = valuesAt(sourceOf(drawing), asked);
    EXPECT_TRUE(values);
    return values.value_or(std::vector<SourceValues>());
  }
  /// In the middle of a pixel of an unturned raster. @param epsg of raster and map.
  [[nodiscard]] static AskedPlace pixelPlace(const Drawing& drawing, double column, double row) {
    const auto& facts = drawing.service->facts;
    return {facts.srsWkt,
            {facts.envelope.xMin + (column + 0.5) * facts.pixelSize,
             facts.envelope.yMax - (row + 0.5) * facts.pixelHeight}};
  }
  [[nodiscard]] static std::vector<double> numbersOf(const SourceValues& values) {
    std::vector<double> numbers;
    for (const auto& band : values.bands) numbers.push_back(band.value.value_or(-9999));
    return numbers;
  }
  /// One raster whose samples are these, row by row.
  std::string makeSamples(const std::string& name, RasterRecipe recipe, const std::vector<double>& samples,
                          const std::function<void(GDALDataset&)>& finish = {}) const {
    recipe.finish = [&](GDALDataset& dataset) {
      if (finish) finish(dataset);
      auto copy = samples;
      EXPECT_EQ(dataset.RasterIO(GF_Write, 0, 0, recipe.width, recipe.height, copy.data(), recipe.width,
                                 recipe.height, GDT_Float64, recipe.bands, nullptr, 0, 0, 0, nullptr),
                CE_None);
    };
    return makeRaster(name, recipe).string();
  }
  static constexpr std::array<int, 5> systems = {32632, 4326, 3857, 3035, 2056};
};

TEST_F(ValuesAt, AreThoseOfThePixelThatHoldsThePlace) {
  makePlaced("a.tif", 32632, {8.5, 46.5}, 30);
  const Drawing drawing = drawingOf("a");
  for (const auto& [column, row] : {std::array{0, 0}, {17, 100}, {239, 239}}) {
    const auto values = valuesOf(drawing, pixelPlace(drawing, column, row));
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(values[0].column, column);
    EXPECT_EQ(values[0].row, row);
    EXPECT_EQ(numbersOf(values[0]),
              (std::vector<double>{column + 1.0, row + 1.0, (column + row) % 2 * 200 + 1.0}));
    EXPECT_TRUE(values[0].isOnTop);
    EXPECT_EQ(values[0].name, "a");
    EXPECT_EQ(values[0].kind, SourceValues::Kind::Data);
  }
}

TEST_F(ValuesAt, AreTheSameInEverySystemOfTheMap) {
  for (const int own : systems) {
    makePlaced("a.tif", own, {8.5, 46.5}, own == 4326 ? 0.0003 : 30);
    const Drawing drawing = drawingOf("a");
    const auto asked = pixelPlace(drawing, 60, 170);
    const auto degrees = client::PointWay::between(asked.wkt, wktOf(4326))->of(asked.place);
    for (const int epsg : systems) {
      const auto values = valuesOf(drawing, {wktOf(epsg), placeIn(epsg, degrees)});
      ASSERT_EQ(values.size(), 1U) << own << " " << epsg;
      EXPECT_EQ(values[0].column, 60) << own << " " << epsg;
      EXPECT_EQ(values[0].row, 170) << own << " " << epsg;
    }
  }
}

TEST_F(ValuesAt, OfATurnedRasterAreFoundAlongItsOwnAxes) {
  RasterRecipe recipe;
  recipe.width = 4;
  recipe.height = 3;
  const double turned = 10 * std::sqrt(0.5);
  recipe.transform = {500000, turned, turned, 5150000, -turned, turned};
  std::vector<double> samples;
  for (int i = 0; i < 12; ++i) samples.push_back(i + 1);
  makeSamples("turned.tif", recipe, samples);
  const Drawing drawing = drawingOf("turned");
  const auto& wkt = drawing.service->facts.srsWkt;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) {
      const MapPoint place{500000 + turned * (column + 0.5) + turned * (row + 0.5),
                           5150000 - turned * (column + 0.5) + turned * (row + 0.5)};
      const auto values = valuesOf(drawing, {wkt, place});
      ASSERT_EQ(values.size(), 1U) << column << " " << row;
      EXPECT_EQ(numbersOf(values[0]), std::vector<double>{row * 4 + column + 1.0});
    }
  }
  // Within the rectangle around it, and yet beside it.
  EXPECT_TRUE(valuesOf(drawing, {wkt, {500001, 5150000 - 2 * turned}}).empty());
}

TEST_F(ValuesAt, AreNoneBesideTheServiceAndBesideTheEarth) {
  makePlaced("a.tif", 32632, {8.5, 46.5}, 30);
  const Drawing drawing = drawingOf("a");
  EXPECT_TRUE(valuesOf(drawing, pixelPlace(drawing, -1, 5)).empty());
  EXPECT_TRUE(valuesOf(drawing, pixelPlace(drawing, 5, side)).empty());
  EXPECT_TRUE(valuesOf(drawing, {wktOf(4326), {-100, -40}}).empty());
  EXPECT_TRUE(valuesOf(drawing, {wktOf(3035), {1e12, 1e12}}).empty());
}

TEST_F(ValuesAt, TellABandWithoutDataAndAPixelWithout) {
  RasterRecipe recipe;
  recipe.width = 3;
  recipe.height = 1;
  recipe.bands = 2;
  makeSamples("holes.tif", recipe, {0, 0, 5, 0, 7, 9}, [](GDALDataset& dataset) {
    for (int band = 1; band <= 2; ++band) dataset.GetRasterBand(band)->SetNoDataValue(0);
  });
  const Drawing drawing = drawingOf("holes");
  const auto hole = valuesOf(drawing, pixelPlace(drawing, 0, 0));
  ASSERT_EQ(hole.size(), 1U);
  EXPECT_EQ(hole[0].kind, SourceValues::Kind::Hole);
  EXPECT_FALSE(hole[0].isOnTop);
  const auto half = valuesOf(drawing, pixelPlace(drawing, 1, 0));
  EXPECT_EQ(half[0].kind, SourceValues::Kind::Data);
  EXPECT_FALSE(half[0].bands[0].value);
  EXPECT_EQ(half[0].bands[1].value, 7);
}

TEST_F(ValuesAt, TellNumbersThatAreNoneAsNoData) {
  RasterRecipe recipe;
  recipe.width = 2;
  recipe.height = 1;
  recipe.type = GDT_Float32;
  makeSamples("nan.tif", recipe, {std::numeric_limits<double>::quiet_NaN(), -1.5});
  const Drawing drawing = drawingOf("nan");
  const auto hole = valuesOf(drawing, pixelPlace(drawing, 0, 0));
  EXPECT_EQ(hole[0].kind, SourceValues::Kind::Hole);
  EXPECT_FALSE(hole[0].bands[0].value);
  EXPECT_EQ(valuesOf(drawing, pixelPlace(drawing, 1, 0))[0].bands[0].value, -1.5);
}

TEST_F(ValuesAt, TellNumbersThatAreNoneAsNoDataBesideADeclaredOneToo) {
  RasterRecipe recipe;
  recipe.width = 2;
  recipe.height = 1;
  recipe.type = GDT_Float64;
  makeSamples("both.tif", recipe, {std::numeric_limits<double>::quiet_NaN(), 1e300},
              [](GDALDataset& dataset) {
                dataset.GetRasterBand(1)->SetNoDataValue(-1);
                CPLStringList names;
                names.AddString("nothing");
                dataset.GetRasterBand(1)->SetCategoryNames(names.List());
              });
  const Drawing drawing = drawingOf("both");
  EXPECT_FALSE(valuesOf(drawing, pixelPlace(drawing, 0, 0))[0].bands[0].value);
  const auto large = valuesOf(drawing, pixelPlace(drawing, 1, 0))[0].bands[0];
  EXPECT_EQ(large.value, 1e300);
  EXPECT_EQ(large.className, "");
}

TEST_F(ValuesAt, LeaveTheValuesOfAMaskedPixelToBeSeen) {
  RasterRecipe recipe;
  recipe.width = 2;
  recipe.height = 1;
  makeSamples("masked.tif", recipe, {11, 12}, [](GDALDataset& dataset) {
    ASSERT_EQ(dataset.CreateMaskBand(GMF_PER_DATASET), CE_None);
    std::array<std::uint8_t, 2> mask = {0, 255};
    ASSERT_EQ(dataset.GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Write, 0, 0, 2, 1, mask.data(), 2, 1,
                                                                GDT_Byte, 0, 0, nullptr),
              CE_None);
  });
  const Drawing drawing = drawingOf("masked");
  const auto hole = valuesOf(drawing, pixelPlace(drawing, 0, 0));
  EXPECT_EQ(hole[0].kind, SourceValues::Kind::Hole);
  EXPECT_EQ(hole[0].bands[0].value, 11);
  EXPECT_EQ(valuesOf(drawing, pixelPlace(drawing, 1, 0))[0].kind, SourceValues::Kind::Data);
}

TEST_F(ValuesAt, NameTheClassAndItsColor) {
  RasterRecipe recipe;
  recipe.width = 2;
  recipe.height = 1;
  makeSamples("classes.tif", recipe, {1, 2}, [](GDALDataset& dataset) {
    GDALColorTable table;
    const GDALColorEntry water{20, 40, 200, 255};
    table.SetColorEntry(1, &water);
    dataset.GetRasterBand(1)->SetColorTable(&table);
    CPLStringList names;
    for (const char* name : {"nothing", "water"}) names.AddString(name);
    dataset.GetRasterBand(1)->SetCategoryNames(names.List());
  });
  const Drawing drawing = drawingOf("classes");
  const auto water = valuesOf(drawing, pixelPlace(drawing, 0, 0)).front().bands.front();
  EXPECT_EQ(water.value, 1);
  EXPECT_EQ(water.className, "water");
  EXPECT_EQ(water.color, (std::array<std::uint8_t, 4>{20, 40, 200, 255}));
  const auto other = valuesOf(drawing, pixelPlace(drawing, 1, 0)).front().bands.front();
  EXPECT_EQ(other.value, 2);
  EXPECT_EQ(other.className, "");
}

TEST_F(ValuesAt, HaveTheWordsAndUnitsOfTheRaster) {
  RasterRecipe recipe;
  recipe.width = recipe.height = 1;
  recipe.bands = 2;
  recipe.type = GDT_CFloat32;
  makeSamples("words.tif", recipe, {3, 4}, [](GDALDataset& dataset) {
    dataset.GetRasterBand(1)->SetDescription("Height");
    dataset.GetRasterBand(1)->SetUnitType("m");
  });
  const Drawing drawing = drawingOf("words");
  const auto bands = valuesOf(drawing, pixelPlace(drawing, 0, 0)).front().bands;
  EXPECT_EQ(bands[0].name, "Height");
  EXPECT_EQ(bands[0].unit, "m");
  EXPECT_EQ(bands[0].imaginary, 0);
  EXPECT_EQ(bands[1].name, "Band 2");
}

TEST_F(ValuesAt, TellARasterThatCannotBeRead) {
  const std::string file = makePlaced("a.tif", 32632, {8.5, 46.5}, 30);
  const Drawing drawing = drawingOf("a");
  std::filesystem::remove(file);
  const auto values = valuesOf(drawing, pixelPlace(drawing, 5, 5));
  ASSERT_EQ(values.size(), 1U);
  EXPECT_EQ(values[0].kind, SourceValues::Kind::Unreadable);
  EXPECT_FALSE(values[0].problem.empty());
  EXPECT_TRUE(values[0].bands.empty());
}

TEST_F(ValuesAt, AreNothingWhereTheReadingWasGivenUp) {
  makePlaced("a.tif", 32632, {8.5, 46.5}, 30);
  const Drawing drawing = drawingOf("a");
  client::CancelToken token;
  const client::WaitScope scope(nullptr, token);
  token.cancel();
  EXPECT_FALSE(valuesAt(sourceOf(drawing), pixelPlace(drawing, 5, 5)));
}

TEST_F(ValuesAt, LeaveTheServicesOwnFailureToItsCaller) {
  const auto fails = [](const auto&) -> std::shared_ptr<const Drawing> {
    throw RuntimeFailure("The server does not answer");
  };
  EXPECT_THROW(static_cast<void>(valuesAt(fails, {wktOf(4326), {8, 46}})), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::test
