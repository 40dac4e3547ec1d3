#include "client/mapping/SpreadSources.h"

#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/facade/ServiceLoading.h"
#include "client/mapping/ServicePainter.h"
#include "client/mapping/StretchChoice.h"

namespace vlclientui::client {
namespace {

// A mosaic of six by six sources, each 8 by 6 pixels of 100 units, brighter to the east, with none in the
// middle of the last row but one.
class SpreadSources : public test::ServiceFixture {
 protected:
  static constexpr int across = 6;
  static constexpr int down = 6;
  static constexpr Bounds whole = {500000, 5146400, 504800, 5150000};

  SpreadSources() {
    std::string rows;
    for (int i = 0; i < across * down; ++i) {
      if (isLeftOut(i)) continue;
      const std::string file = "m.sources/" + std::to_string(i) + ".tif";
      makeRaster(file, recipeOf(i));
      rows += "<Source><File>" + file + "</File></Source>";
    }
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Sources>" + rows + "</Sources></MosaicDefinition></Vorlane>");
    drawing_ = std::make_unique<Drawing>(drawingOf(loadImageService(*server_, "ImageService://localhost/m"),
                                                   readDrawingProperties(propertiesOfNothing, xml())));
    stretch_.bands = {1, 1, 1};
    stretch_.highest = {255, 255, 255};
  }

  static bool isLeftOut(int source) { return source == 4 * across + 2 || source == 4 * across + 3; }
  static int valueOf(int source) { return 40 + 30 * (source % across); }

  static test::RasterRecipe recipeOf(int source) {
    test::RasterRecipe recipe;
    recipe.transform[0] += 800.0 * (source % across);
    recipe.transform[3] -= 600.0 * (source / across);
    recipe.finish = [source](GDALDataset& dataset) {
      EXPECT_EQ(dataset.GetRasterBand(1)->Fill(valueOf(source)), CE_None);
    };
    return recipe;
  }

  [[nodiscard]] ServicePicture painted(Pass pass, RasterHandles& handles) const {
    const MapGrid map{drawing_->service->facts.srsWkt, {whole, 48, 36}};
    return *ServicePainter(*drawing_, stretch_, handles).paint(map, pass);
  }

  static int valueIn(const ServicePicture& picture, int column, int row) {
    const std::size_t at = (static_cast<std::size_t>(row) * 48 + static_cast<std::size_t>(column)) * 4;
    return picture.rgba[at + 3] == 0 ? -1 : picture.rgba[at];
  }

  static constexpr const char* propertiesOfNothing =
      "<Vorlane><ImageServiceProperties></ImageServiceProperties></Vorlane>";
  std::unique_ptr<Drawing> drawing_;
  Stretch stretch_;
};

TEST_F(SpreadSources, StandForAllInACoarsePicture) {
  RasterHandles handles;
  const ServicePicture coarse = painted(Pass::Coarse, handles);
  EXPECT_TRUE(coarse.isQuick);
  EXPECT_LE(handles.openings(), 10U);  // nine, and the one that tells the bands of all
  RasterHandles others;
  const ServicePicture fine = painted(Pass::Fine, others);
  EXPECT_FALSE(fine.isQuick);
  EXPECT_EQ(others.openings(), 34U);
  for (int row = 0; row < 36; ++row) {
    for (int column = 0; column < 48; ++column) {
      const int wanted = valueIn(fine, column, row);
      const int there = valueIn(coarse, column, row);
      ASSERT_EQ(wanted < 0, there < 0) << column << ", " << row;
      ASSERT_NEAR(wanted, there, 50) << column << ", " << row;
    }
  }
}

TEST_F(SpreadSources, AreNoneOfThoseThatCannotBeRead) {
  for (int i = 0; i < across * down; ++i) {
    if (i != 1) std::filesystem::remove(folder() / ("m.sources/" + std::to_string(i) + ".tif"));
  }
  RasterHandles handles;
  const MapGrid map{drawing_->service->facts.srsWkt, {whole, 48, 36}};
  // Nobody can tell what bands they have.
  EXPECT_ANY_THROW(static_cast<void>(ServicePainter(*drawing_, stretch_, handles).paint(map, Pass::Coarse)));
  makeRaster("m.sources/0.tif", recipeOf(0));
  handles.forgetProblems();
  const ServicePicture coarse = painted(Pass::Coarse, handles);
  EXPECT_FALSE(coarse.isQuick);
  EXPECT_EQ(valueIn(coarse, 9, 1), valueOf(1));
  EXPECT_EQ(coarse.missing.size(), 32U);
}

TEST_F(SpreadSources, AreTheFirstAroundTheMiddleOfEachNinth) {
  const OutputGrid grid{whole, 48, 36};
  std::vector<const ImageSource*> sources;
  for (const ImageSource& source : drawing_->service->sources) sources.push_back(&source);
  const auto way = PointWay::between("", "");
  const auto placed = placedOn(grid, *way, sources);
  ASSERT_EQ(placed.size(), 34U);
  EXPECT_EQ(placed[7].box.x, 8);
  EXPECT_EQ(placed[7].box.y, 6);
  EXPECT_EQ(placed[7].box.width, 8);
  EXPECT_EQ(placed[7].box.height, 6);
  const auto chosen = spreadOver(grid, placed);
  EXPECT_EQ(chosen.size(), 9U);
  EXPECT_EQ(std::set<std::size_t>(chosen.begin(), chosen.end()).size(), 9U);
}

}  // namespace
}  // namespace vlclientui::client
