#include "client/facade/Thumbnail.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/catalogue/CatalogueScan.h"

namespace vlclientui::client {
namespace {

using Pixel = std::array<int, 4>;

void fill(GDALDataset& dataset, int band, double value) { dataset.GetRasterBand(band)->Fill(value); }

Pixel pixelAt(const Thumbnail& picture, int x, int y) {
  const auto at = static_cast<std::size_t>(y * picture.width + x) * 4;
  return {picture.rgba[at], picture.rgba[at + 1], picture.rgba[at + 2], picture.rgba[at + 3]};
}

class ThumbnailPicture : public test::RasterFixture {
 protected:
  [[nodiscard]] Thumbnail draw(const test::RasterRecipe& recipe, int width = 8, int height = 6) const {
    return renderThumbnail({EntryKind::Raster, {}, makeRaster("t.tif", recipe), {}}, width, height);
  }
};

TEST_F(ThumbnailPicture, KeepsProportionsInsideTheRoom) {
  test::RasterRecipe recipe;
  recipe.width = 200;
  recipe.height = 50;
  const Thumbnail picture = draw(recipe, 100, 100);
  EXPECT_EQ(picture.width, 100);
  EXPECT_EQ(picture.height, 25);
  EXPECT_EQ(picture.rgba.size(), 100U * 25U * 4U);
}

TEST_F(ThumbnailPicture, OfAVeryWideRasterHasAtLeastOneRow) {
  test::RasterRecipe recipe;
  recipe.width = 5000;
  recipe.height = 1;
  EXPECT_EQ(draw(recipe, 100, 100).height, 1);
}

TEST_F(ThumbnailPicture, ShowsBytesAsTheyAre) {
  test::RasterRecipe recipe;
  recipe.bands = 3;
  recipe.finish = [](GDALDataset& d) {
    for (int i = 0; i < 3; ++i) {
      d.GetRasterBand(i + 1)->SetColorInterpretation(static_cast<GDALColorInterp>(GCI_RedBand + i));
      fill(d, i + 1, 10 + 20 * i);
    }
  };
  EXPECT_EQ(pixelAt(draw(recipe), 3, 3), (Pixel{10, 30, 50, 255}));
}

TEST_F(ThumbnailPicture, FindsNaturalColorsByBandNames) {
  test::RasterRecipe recipe;
  recipe.bands = 4;
  recipe.finish = [](GDALDataset& d) {
    const char* names[] = {"Blue", "Green", "Near infrared", "Red"};
    for (int i = 0; i < 4; ++i) {
      d.GetRasterBand(i + 1)->SetColorInterpretation(GCI_Undefined);
      d.GetRasterBand(i + 1)->SetDescription(names[i]);
      fill(d, i + 1, 40 * (i + 1));
    }
  };
  EXPECT_EQ(pixelAt(draw(recipe), 0, 0), (Pixel{160, 80, 40, 255}));
}

TEST_F(ThumbnailPicture, StretchesWideValues) {
  test::RasterRecipe recipe;
  recipe.type = GDT_UInt16;
  recipe.finish = [](GDALDataset& d) {
    std::vector<std::uint16_t> values;
    for (int i = 0; i < 48; ++i) values.push_back(static_cast<std::uint16_t>(1000 + i));
    ASSERT_EQ(d.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 8, 6, values.data(), 8, 6, GDT_UInt16, 0, 0),
              CE_None);
  };
  const Thumbnail picture = draw(recipe);
  EXPECT_EQ(pixelAt(picture, 0, 0)[0], 0);
  EXPECT_EQ(pixelAt(picture, 7, 5)[0], 255);
}

TEST_F(ThumbnailPicture, PaintsPalettesInTheirColors) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) {
    GDALColorTable table;
    const GDALColorEntry entry{200, 100, 50, 255};
    table.SetColorEntry(3, &entry);
    d.GetRasterBand(1)->SetColorTable(&table);
    fill(d, 1, 3);
  };
  EXPECT_EQ(pixelAt(draw(recipe), 1, 1), (Pixel{200, 100, 50, 255}));
}

TEST_F(ThumbnailPicture, LeavesPixelsWithoutDataTransparent) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(0); };
  EXPECT_EQ(pixelAt(draw(recipe), 2, 2)[3], 0);
}

TEST_F(ThumbnailPicture, TintsElevations) {
  test::RasterRecipe recipe;
  recipe.type = GDT_Int16;
  recipe.finish = [](GDALDataset& d) {
    d.GetRasterBand(1)->SetUnitType("m");
    fill(d, 1, 500);
  };
  const Pixel pixel = pixelAt(draw(recipe), 2, 2);
  EXPECT_NE(pixel[0], pixel[2]);
  EXPECT_EQ(pixel[3], 255);
}

TEST_F(ThumbnailPicture, TurnsSouthUpRastersTheRightWay) {
  test::RasterRecipe recipe;
  recipe.transform = {500000, 100, 0, 5150000, 0, 100};
  recipe.finish = [](GDALDataset& d) {
    std::vector<std::uint8_t> row(8, 250);
    ASSERT_EQ(d.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 8, 1, row.data(), 8, 1, GDT_Byte, 0, 0), CE_None);
  };
  const Thumbnail picture = draw(recipe);
  EXPECT_EQ(pixelAt(picture, 0, 0)[0], 0);
  EXPECT_EQ(pixelAt(picture, 0, 5)[0], 250);
}

TEST_F(ThumbnailPicture, LaysTheSourcesOfAMosaicOverEachOther) {
  CatalogueEntry entry{EntryKind::Mosaic, {}, folder() / "m.VLDef", {}};
  const double wests[] = {500000, 500400};
  for (int i = 0; i < 2; ++i) {
    test::RasterRecipe recipe;
    recipe.transform[0] = wests[i];
    recipe.finish = [i](GDALDataset& d) { fill(d, 1, 100 + 100 * i); };
    entry.definition.sources.push_back({makeRaster("s" + std::to_string(i) + ".tif", recipe), "", {}});
  }
  const Thumbnail picture = renderThumbnail(entry, 12, 6);
  ASSERT_EQ(picture.width, 12);
  EXPECT_EQ(pixelAt(picture, 1, 1)[0], 100);
  EXPECT_EQ(pixelAt(picture, 5, 1)[0], 200);
  EXPECT_EQ(pixelAt(picture, 11, 1)[0], 200);
}

TEST_F(ThumbnailPicture, OfAnUnreadableFileIsEmpty) {
  EXPECT_TRUE(renderThumbnail({EntryKind::Raster, {}, writeText("b.tif", "II*"), {}}, 8, 8).isEmpty());
  EXPECT_TRUE(renderThumbnail({EntryKind::Mosaic, {}, folder() / "m.VLDef", {}}, 8, 8).isEmpty());
}

}  // namespace
}  // namespace vlclientui::client
