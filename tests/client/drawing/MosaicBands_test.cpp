#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"

namespace vlclientui::client {
namespace {

using Values = std::vector<double>;

// Mosaics of sources with different numbers of bands. Each source is one pixel unless pixels are given.
class MosaicBands : public test::ServiceFixture {
 protected:
  using Finish = std::function<void(GDALDataset&)>;

  void source(const std::string& name, const Values& bands, const std::string& option = {},
              const Finish& finish = {}) const {
    test::RasterRecipe recipe;
    recipe.width = 1;
    recipe.height = 1;
    recipe.bands = static_cast<int>(bands.size());
    recipe.option = option;
    recipe.finish = [&](GDALDataset& dataset) {
      if (finish) finish(dataset);
      for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
        EXPECT_EQ(dataset.GetRasterBand(band)->Fill(bands[static_cast<std::size_t>(band) - 1]), CE_None);
      }
    };
    makeRaster("m.sources/" + name + ".tif", recipe);
  }

  [[nodiscard]] std::shared_ptr<CatalogueImageService> mosaic() const {
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Sources><Source><File>m.sources/below.tif</File></Source>"
              "<Source><File>m.sources/above.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
    return service("ImageService://localhost/m");
  }

  [[nodiscard]] Values exported() const {
    const auto made = mosaic();
    test::GetImage request;
    request.extent = made->record().facts.envelope;
    request.columns = 1;
    request.rows = 1;
    request.fileName = out("m.tif");
    made->ExportProperties(request.document());
    EXPECT_TRUE(made->ExportImage()) << made->status();
    return test::valuesOf(request.fileName);
  }
};

TEST_F(MosaicBands, GrayLiesOverColorsAsGray) {
  source("below", {200, 100, 50});
  source("above", {77});
  EXPECT_EQ(exported(), (Values{77, 77, 77}));
}

TEST_F(MosaicBands, GrayWithTransparencyDoesToo) {
  source("below", {200, 100, 50});
  source("above", {77, 255}, "ALPHA=YES");
  EXPECT_EQ(exported(), (Values{77, 77, 77}));
  source("above", {77, 0}, "ALPHA=YES");
  EXPECT_EQ(exported(), (Values{200, 100, 50}));
}

TEST_F(MosaicBands, GrayHolesLetColorsShineThrough) {
  source("below", {200, 100, 50});
  source("above", {77}, {}, [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(77); });
  EXPECT_EQ(exported(), (Values{200, 100, 50}));
}

TEST_F(MosaicBands, PaletteLiesOverColorsInItsColors) {
  source("below", {200, 100, 50});
  source("above", {3}, {}, [](GDALDataset& d) {
    GDALColorTable table;
    const GDALColorEntry entry{1, 2, 4, 255};
    table.SetColorEntry(3, &entry);
    d.GetRasterBand(1)->SetColorTable(&table);
  });
  EXPECT_EQ(exported(), (Values{1, 2, 4}));
}

TEST_F(MosaicBands, ColorsLieOverTransparencyOpaquely) {
  source("below", {200, 100, 50, 0}, "ALPHA=YES");
  source("above", {7, 8, 9});
  EXPECT_EQ(exported(), (Values{7, 8, 9, 255}));
}

TEST_F(MosaicBands, TransparencyIsNoFourthColor) {
  source("below", {200, 100, 50, 25}, "ALPHA=NO");
  source("above", {7, 8, 9, 255}, "ALPHA=YES");
  const auto made = mosaic();
  EXPECT_EQ(made->record().sources.size(), 1U);
  EXPECT_EQ(exported(), (Values{200, 100, 50, 25}));
}

TEST_F(MosaicBands, SourceThatLacksBandsIsLeftOutWithARemark) {
  source("below", {200, 100, 50});
  source("above", {7, 8}, "ALPHA=NO");
  const auto made = mosaic();
  EXPECT_EQ(exported(), (Values{200, 100, 50}));
  ASSERT_EQ(made->record().problems.size(), 1U);
  EXPECT_EQ(made->record().problems[0].reason,
            "it has 2 bands of pixels, and the mosaic's first source has 3");
  const std::string remark = test::elementContent(made->GetImageMetadata("Full"), "Remark");
  EXPECT_NE(remark.find("above.tif is left out: it has 2 bands"), std::string::npos) << remark;
}

TEST_F(MosaicBands, SourceWithMoreBandsGivesItsFirst) {
  source("below", {200});
  source("above", {7, 8, 9});
  EXPECT_EQ(exported(), (Values{7}));
}

}  // namespace
}  // namespace vlclientui::client
