#include "client/raster/NorthUpRaster.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/facade/ImageDocuments.h"

namespace vlclientui::client {
namespace {

// The grid that services tell, and exports on that grid.
class NorthUp : public test::ServiceFixture {
 protected:
  [[nodiscard]] OutputGrid gridOf(const std::string& name) const {
    return wholeGrid(service("ImageService://localhost/" + name)->record());
  }

  [[nodiscard]] std::vector<double> exportWhole(const std::string& name) const {
    const OutputGrid grid = gridOf(name);
    test::GetImage request;
    request.extent = grid.extent;
    request.columns = grid.columns;
    request.rows = grid.rows;
    request.fileName = out("whole.tif");
    EXPECT_EQ(exportFrom(name, request), "");
    return test::valuesOf(request.fileName);
  }
};

TEST_F(NorthUp, RasterTurnedByAQuarterKeepsItsPixels) {
  test::RasterRecipe recipe;
  recipe.width = 100;
  recipe.height = 10;
  recipe.transform = {500000, 0, 2, 5150000, -3, 0};
  const auto source = test::valuesOf(makeNumbered("q.tif", recipe).string());
  const OutputGrid grid = gridOf("q");
  EXPECT_EQ(grid.extent, (Bounds{500000, 5149700, 500020, 5150000}));
  EXPECT_EQ(grid.columns, 10);
  EXPECT_EQ(grid.rows, 100);
  const auto values = exportWhole("q");
  ASSERT_EQ(values.size(), 1000U);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t column = i % 10;
    const std::size_t row = i / 10;
    EXPECT_EQ(values[i], source[column * 100 + row]) << i;
  }
}

TEST_F(NorthUp, RasterWithRowsFromTheSouthKeepsItsPixelsThatAreNoSquares) {
  test::RasterRecipe recipe;
  recipe.transform = {500000, 100, 0, 5149400, 0, 10};
  const auto source = test::valuesOf(makeNumbered("s.tif", recipe).string());
  const auto values = exportWhole("s");
  ASSERT_EQ(values.size(), 48U);
  for (std::size_t i = 0; i < 48; ++i) EXPECT_EQ(values[i], source[(5 - i / 8) * 8 + i % 8]) << i;
}

TEST_F(NorthUp, ServiceTellsItsGridAndItsRasterThatOfTheFile) {
  test::RasterRecipe recipe;
  recipe.transform = {500000, 0, 2, 5150000, -3, 0};
  makeRaster("q.tif", recipe);
  const auto made = service("ImageService://localhost/q");
  EXPECT_EQ(test::elementContent(made->ServiceInfo(), "MaxNCols"), "6");
  EXPECT_EQ(test::elementContent(made->ServiceInfo(), "MaxNRows"), "8");
  const std::string metadata = made->GetImageMetadata("Full");
  EXPECT_EQ(test::elementContent(metadata, "NCols"), "6");
  EXPECT_EQ(test::elementContent(test::elementContent(metadata, "Info"), "NCols"), "8");
  EXPECT_EQ(test::elementContent(metadata, "TurnedNorthUp"), "True");
  EXPECT_EQ(test::elementContent(metadata, "SourcesReprojected"), "0");
}

TEST_F(NorthUp, MosaicOfPixelsThatAreNoSquaresHasAllTheirRows) {
  test::RasterRecipe recipe;
  recipe.width = 4;
  recipe.height = 4;
  recipe.transform = {500000, 2, 0, 5150000, 0, -1};
  const auto upper = test::valuesOf(makeNumbered("m.sources/upper.tif", recipe).string());
  recipe.transform[3] -= 4;
  makeNumbered("m.sources/lower.tif", recipe);
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><Sources><Source><File>m.sources/upper.tif</File></Source>"
            "<Source><File>m.sources/lower.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
  EXPECT_EQ(gridOf("m").columns, 4);
  EXPECT_EQ(gridOf("m").rows, 8);
  const auto values = exportWhole("m");
  ASSERT_EQ(values.size(), 32U);
  for (std::size_t i = 0; i < 32; ++i) EXPECT_EQ(values[i], upper[i % 16]) << i;
}

TEST_F(NorthUp, RasterAtAnAngleHasAsManyPixelsAlongItsDiagonal) {
  test::RasterRecipe recipe;
  recipe.width = 40;
  recipe.height = 40;
  recipe.transform = {500000, 70, 70, 5150000, 70, -70};
  makeRaster("r.tif", recipe);
  EXPECT_EQ(gridOf("r").columns, 57);
  EXPECT_EQ(gridOf("r").rows, 57);
  EXPECT_EQ(openNorthUp(folder() / "r.tif", {}).dataset->GetRasterXSize(), 57);
}

TEST_F(NorthUp, RasterWithoutAnAreaLiesAsItsPixels) {
  test::RasterRecipe recipe;
  recipe.epsg = 0;
  recipe.transform = {0, 1, 0, 4, 0, 0};
  const auto source = test::valuesOf(makeNumbered("flat.tif", recipe).string());
  EXPECT_EQ(gridOf("flat").extent, (Bounds{0, 0, 8, 6}));
  EXPECT_EQ(gridOf("flat").rows, 6);
  EXPECT_EQ(exportWhole("flat"), source);
}

TEST_F(NorthUp, RasterPlacedByPointsIsBroughtIntoItsSystem) {
  test::RasterRecipe recipe;
  recipe.epsg = 0;
  recipe.width = 40;
  recipe.height = 40;
  recipe.transform = {0, 1, 0, 0, 0, 1};
  recipe.finish = [](GDALDataset& d) {
    d.GetRasterBand(1)->Fill(9);
    GDAL_GCP points[4];
    GDALInitGCPs(4, points);
    for (int i = 0; i < 4; ++i) {
      points[i].dfGCPPixel = i % 2 * 40;
      points[i].dfGCPLine = i / 2 * 40;
      points[i].dfGCPX = 500000 + i % 2 * 4000;
      points[i].dfGCPY = 5150000 - i / 2 * 4000;
    }
    OGRSpatialReference system;
    system.importFromEPSG(32632);
    d.SetGCPs(4, points, &system);
    GDALDeinitGCPs(4, points);
  };
  makeRaster("g.tif", recipe);
  const auto values = exportWhole("g");
  ASSERT_EQ(values.size(), 1600U);
  EXPECT_EQ(values[20 * 40 + 20], 9);
}

}  // namespace
}  // namespace vlclientui::client
