// The sources of a mosaic under a place, the topmost first.

#include <algorithm>

#include <gtest/gtest.h>

#include "client/ColorMosaicFixture.h"
#include "client/drawing/Drawing.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/ServiceDrawing.h"
#include "client/mapping/ValuesAt.h"

namespace vlclientui::test {
namespace {

using client::SourceValues;

class ValuesOfMosaics : public ColorMosaicFixture {
 protected:
  /// @param column of the mosaic; every source is there in the first row.
  [[nodiscard]] std::vector<SourceValues> valuesIn(int column, const std::string& content = {}) const {
    const auto drawing = mosaic(content)->drawing();
    const auto source = [&](const auto& area) { return drawing.within(area); };
    const client::MapPoint place{whole.xMin + column * 100 + 50, whole.yMax - 50};
    return client::valuesAt(source, {drawing.facts().srsWkt, place}).value();
  }
  static std::string idsOf(const std::vector<SourceValues>& values) {
    std::string ids;
    for (const auto& one : values) ids += one.id + (one.isOnTop ? "!" : "");
    return ids;
  }
};

TEST_F(ValuesOfMosaics, ComeFromEverySourceThatLiesThere) {
  EXPECT_EQ(idsOf(valuesIn(0)), "1!");
  EXPECT_EQ(idsOf(valuesIn(4)), "2!1");
  EXPECT_EQ(idsOf(valuesIn(7)), "3!21");
  EXPECT_EQ(idsOf(valuesIn(13)), "3!");
}

TEST_F(ValuesOfMosaics, TellNameAttributesAndPixelOfEach) {
  const auto values = valuesIn(7);
  ASSERT_EQ(values.size(), 3U);
  EXPECT_EQ(values[1].name, "c2");
  EXPECT_EQ(values[1].column, 4);
  EXPECT_EQ(values[1].row, 0);
  const std::pair<std::string, std::string> year("Year", "2019");
  EXPECT_NE(std::ranges::find(values[1].attributes, year), values[1].attributes.end());
  for (std::size_t i = 0; i < 3; ++i) {
    ASSERT_EQ(values[i].bands.size(), 3U);
    for (std::size_t band = 0; band < 3; ++band)
      EXPECT_EQ(values[i].bands[band].value, colors[2 - i][band]) << i << " " << band;
  }
  EXPECT_EQ(values[0].bands[0].name, "Red");
}

TEST_F(ValuesOfMosaics, FollowTheOrderAndTheChoiceOfTheProperties) {
  EXPECT_EQ(idsOf(valuesIn(7, "<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>")), "2!");
  EXPECT_EQ(idsOf(valuesIn(7,
                           "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField>"
                           "<TileOrderBase>2021</TileOrderBase>")),
            "1!32");
}

TEST_F(ValuesOfMosaics, StepOverHolesToTheSourceThatIsSeen) {
  RasterRecipe holed = recipeOf(2);
  const auto fill = holed.finish;
  holed.finish = [&](GDALDataset& dataset) {
    fill(dataset);
    const double hole = 0;
    for (int band = 1; band <= 3; ++band) {
      auto& one = *dataset.GetRasterBand(band);
      one.SetNoDataValue(0);
      auto copy = hole;
      EXPECT_EQ(one.RasterIO(GF_Write, 1, 0, 1, 1, &copy, 1, 1, GDT_Float64, 0, 0, nullptr), CE_None);
    }
  };
  makeRaster("m.sources/c3.tif", holed);
  const auto values = valuesIn(7);
  EXPECT_EQ(idsOf(values), "32!1");
  EXPECT_EQ(values[0].kind, SourceValues::Kind::Hole);
}

}  // namespace
}  // namespace vlclientui::test
