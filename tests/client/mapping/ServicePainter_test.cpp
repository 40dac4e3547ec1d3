#include "client/mapping/ServicePainter.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/mapping/MappingFixture.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

constexpr MapPoint bern{7.44, 46.95};
constexpr MapPoint svalbard{15.6, 78.2};

class PaintedServices : public test::MappingFixture {
 protected:
  /// The map on which each pixel is one of the raster.
  [[nodiscard]] static MapGrid ownMap(const Drawing& drawing) {
    const RasterFacts& facts = drawing.service->facts;
    return {facts.srsWkt, {facts.envelope, static_cast<int>(facts.columns), static_cast<int>(facts.rows)}};
  }

  static GDALRasterBand& bandOf(GDALDataset& dataset, int number) { return *dataset.GetRasterBand(number); }

  static void write(GDALDataset& dataset, int band, std::vector<double> values) {
    const int width = dataset.GetRasterXSize();
    const int height = dataset.GetRasterYSize();
    values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), values.back());
    EXPECT_EQ(bandOf(dataset, band)
                  .RasterIO(GF_Write, 0, 0, width, height, values.data(), width, height, GDT_Float64, 0, 0,
                            nullptr),
              CE_None);
  }
};

TEST_F(PaintedServices, ShowTheirOwnPixelsInTheirOwnSystem) {
  const std::string file = makePlaced("a.tif", 32632, bern, 100);
  const Drawing drawing = drawingOf("a");
  const MapGrid map = ownMap(drawing);
  EXPECT_EQ(likeness(painted(drawing, map), warped(file, 32632, map)), 1.0);
}

TEST_F(PaintedServices, ShowTheirPlaceInPolarSystemsAcrossTheAntimeridian) {
  const MapPoint edge{179.9, 71.0};
  const std::string file = makePlaced("a.tif", 32601, edge, 500);
  const MapGrid map = mapAround(3995, edge, 600, 300, 280);
  const auto reference = warped(file, 3995, map);
  EXPECT_GT(filledShare(reference), 0.2);
  EXPECT_GT(likeness(painted(drawingOf("a", "<Resampling>Nearest</Resampling>"), map), reference), 0.99);
}

TEST_F(PaintedServices, OfTheWholeWorldCloseAroundThePole) {
  const std::string file = makePlaced("a.tif", 4326, {0, 0}, 0.75, [](GDALDataset& dataset) {
    std::array<double, 6> world = {-180, 1.5, 0, 90, 0, -0.75};
    dataset.SetGeoTransform(world.data());
  });
  const MapGrid map = mapAround(3995, {0, 90}, 20000, 300, 300);
  const auto reference = warped(file, 3995, map);
  EXPECT_EQ(filledShare(reference), 1.0);
  EXPECT_GT(likeness(painted(drawingOf("a", "<Resampling>Nearest</Resampling>"), map), reference), 0.98);
}

TEST_F(PaintedServices, CountedInDegreesBeyond180LieOnMapsThatCountOtherwise) {
  makePlaced("a.tif", 4326, {190, 10}, 0.01);
  const ServicePicture picture = painted(drawingOf("a"), mapAround(4326, {-170, 10}, 0.01, 240, 240));
  EXPECT_EQ(pixelOf(picture, 100, 60), (Pixel{101, 61, 1, 255}));
}

TEST_F(PaintedServices, AreNowhereOnAMapOfAnotherPlace) {
  makePlaced("a.tif", 32632, bern, 100);
  const Drawing drawing = drawingOf("a");
  for (const MapGrid& map : {mapAround(4326, {100, -40}, 0.001), mapAround(3995, {-170, 60}, 500),
                             mapAround(3031, {7, -80}, 500)}) {
    const ServicePicture picture = painted(drawing, map);
    EXPECT_EQ(picture.rgba, std::vector<std::uint8_t>(picture.rgba.size(), 0));
  }
}

TEST_F(PaintedServices, LeaveOutAMask) {
  makePlaced("a.tif", 32632, bern, 100, [](GDALDataset& dataset) {
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
    EXPECT_EQ(dataset.CreateMaskBand(GMF_PER_DATASET), CE_None);
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", nullptr);
    std::vector<std::uint8_t> mask(side, 255);
    std::fill(mask.begin(), mask.begin() + 100, std::uint8_t{0});
    for (int row = 0; row < side; ++row) {
      EXPECT_EQ(bandOf(dataset, 1)
                    .GetMaskBand()
                    ->RasterIO(GF_Write, 0, row, side, 1, mask.data(), side, 1, GDT_Byte, 0, 0, nullptr),
                CE_None);
    }
  });
  const Drawing drawing = drawingOf("a");
  const ServicePicture picture = painted(drawing, ownMap(drawing));
  EXPECT_EQ(pixelOf(picture, 99, 50)[3], 0);
  EXPECT_EQ(pixelOf(picture, 100, 50), (Pixel{101, 51, 1, 255}));
}

TEST_F(PaintedServices, LeaveOutWhatIsNoDataInAllBandsThatTellIt) {
  makePlaced("a.tif", 32632, bern, 100, [](GDALDataset& dataset) {
    for (int band = 1; band <= 3; ++band) bandOf(dataset, band).SetNoDataValue(1);
  });
  const Drawing drawing = drawingOf("a");
  const ServicePicture picture = painted(drawing, ownMap(drawing));
  EXPECT_EQ(pixelOf(picture, 0, 0)[3], 0);
  EXPECT_EQ(pixelOf(picture, 0, 2), (Pixel{1, 3, 1, 255}));
}

TEST_F(PaintedServices, TakeTheNoDataValueOfTheirProperties) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& dataset) { write(dataset, 1, {7, 9, 7, 9, 9}); };
  makeRaster("a.tif", recipe);
  const Drawing drawing = drawingOf("a", "<NoData>7</NoData>");
  const ServicePicture picture = painted(drawing, ownMap(drawing));
  EXPECT_EQ(pixelOf(picture, 0, 0)[3], 0);
  EXPECT_EQ(pixelOf(picture, 1, 0), (Pixel{9, 9, 9, 255}));
}

TEST_F(PaintedServices, ShowThePaletteOfTheirClasses) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& dataset) {
    GDALColorTable table;
    const GDALColorEntry red{200, 10, 20, 255};
    const GDALColorEntry blue{10, 20, 200, 255};
    table.SetColorEntry(1, &red);
    table.SetColorEntry(2, &blue);
    bandOf(dataset, 1).SetColorTable(&table);
    write(dataset, 1, {1, 2, 1});
  };
  makeRaster("a.tif", recipe);
  const Drawing drawing = drawingOf("a");
  const ServicePicture picture = painted(drawing, ownMap(drawing));
  EXPECT_EQ(pixelOf(picture, 0, 0), (Pixel{200, 10, 20, 255}));
  EXPECT_EQ(pixelOf(picture, 1, 0), (Pixel{10, 20, 200, 255}));
}

// Classes are never mixed, whatever the map's scale.
TEST_F(PaintedServices, KeepClassesApartOnAnyMap) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& dataset) {
    GDALColorTable table;
    const GDALColorEntry first{200, 0, 0, 255};
    const GDALColorEntry last{0, 0, 200, 255};
    table.SetColorEntry(1, &first);
    table.SetColorEntry(9, &last);
    bandOf(dataset, 1).SetColorTable(&table);
    write(dataset, 1, {1, 9, 1, 9, 1, 9, 9});
  };
  makeRaster("a.tif", recipe);
  const ServicePicture picture = painted(drawingOf("a"), mapAround(3857, {9.003, 46.5}, 30, 60, 60));
  for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
    EXPECT_TRUE(picture.rgba[i + 3] == 0 || (picture.rgba[i] == 200) != (picture.rgba[i + 2] == 200));
  }
}

TEST_F(PaintedServices, WithTransparencyKeepIt) {
  test::RasterRecipe recipe;
  recipe.bands = 4;
  recipe.option = "ALPHA=YES";
  recipe.finish = [](GDALDataset& dataset) {
    for (int band = 1; band <= 3; ++band) write(dataset, band, {50});
    bandOf(dataset, 4).SetColorInterpretation(GCI_AlphaBand);
    write(dataset, 4, {0, 128, 255});
  };
  makeRaster("a.tif", recipe);
  const Drawing drawing = drawingOf("a");
  const ServicePicture picture = painted(drawing, ownMap(drawing));
  EXPECT_EQ(pixelOf(picture, 0, 0)[3], 0);
  EXPECT_EQ(pixelOf(picture, 1, 0), (Pixel{50, 50, 50, 128}));
  EXPECT_EQ(pixelOf(picture, 2, 0), (Pixel{50, 50, 50, 255}));
}

TEST_F(PaintedServices, ThatAreTurnedLieAsTheirPixelsDo) {
  const std::string file = makePlaced("a.tif", 32632, bern, 100, [](GDALDataset& dataset) {
    std::array<double, 6> turned{};
    dataset.GetGeoTransform(turned.data());
    turned = {turned[0] + 8000, 80, 60, turned[3], 60, -80};
    dataset.SetGeoTransform(turned.data());
  });
  const MapGrid map = mapAround(3857, bern, 200, 300, 280);
  const auto reference = warped(file, 3857, map);
  EXPECT_GT(filledShare(reference), 0.2);
  EXPECT_GT(likeness(painted(drawingOf("a", "<Resampling>Nearest</Resampling>"), map), reference), 0.99);
}

// The same pixels, whether the raster begins within the picture or beside it: tiles fit together.
TEST_F(PaintedServices, AreSampledAlikeWhereverTheyBeginInAPicture) {
  makePlaced("a.tif", 32632, bern, 100);
  const Drawing drawing = drawingOf("a");
  const MapGrid own = ownMap(drawing);
  for (const double pixel : {50.0, 100.0, 200.0, 300.0}) {
    const Bounds& whole = own.grid.extent;
    const auto pictureFrom = [&](int before) {
      const double left = whole.xMin - before * pixel;
      const double top = whole.yMax + before * pixel;
      const int count = 60 + before;
      return painted(drawing,
                     {own.wkt, {{left, top - count * pixel, left + count * pixel, top}, count, count}});
    };
    const ServicePicture inside = pictureFrom(0);
    const ServicePicture within = pictureFrom(7);
    for (int row = 2; row < 60; ++row) {
      for (int column = 2; column < 60; ++column) {
        ASSERT_EQ(pixelOf(inside, column, row), pixelOf(within, column + 7, row + 7)) << pixel;
      }
    }
  }
}

TEST_F(PaintedServices, AreGivenUpWithoutAPicture) {
  makePlaced("a.tif", 32632, bern, 100);
  const Drawing drawing = drawingOf("a");
  RasterHandles handles;
  CancelToken token;
  const WaitScope scope(nullptr, token);
  EXPECT_TRUE(ServicePainter(drawing, {}, handles).paint(ownMap(drawing)));
  token.cancel();
  EXPECT_FALSE(ServicePainter(drawing, {}, handles).paint(ownMap(drawing)));
}

}  // namespace
}  // namespace vlclientui::client
