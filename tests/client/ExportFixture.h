#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "client/ServiceFixture.h"

namespace vlclientui::test {

[[nodiscard]] inline std::string contentOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

[[nodiscard]] inline bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// Services to export from, and requests for them.
class ExportFixture : public ServiceFixture {
 protected:
  [[nodiscard]] GetImage request(const std::string& format, const std::string& name) const {
    GetImage wanted;
    wanted.format = format;
    wanted.fileName = out(name);
    return wanted;
  }

  // A gentle slope in three bands, as photographs have; 200 by 150 pixels of 4 units.
  void makeSlope() const {
    RasterRecipe recipe;
    recipe.width = 200;
    recipe.height = 150;
    recipe.bands = 3;
    recipe.transform = {500000, 4, 0, 5150000, 0, -4};
    recipe.finish = [](GDALDataset& d) {
      for (int band = 1; band <= 3; ++band) {
        d.GetRasterBand(band)->SetColorInterpretation(static_cast<GDALColorInterp>(GCI_RedBand + band - 1));
        std::vector<std::uint8_t> values;
        for (int i = 0; i < 200 * 150; ++i) {
          values.push_back(static_cast<std::uint8_t>(20 + (i % 200) / 2 + i / 200 / 2 + band * 10));
        }
        EXPECT_EQ(d.GetRasterBand(band)->RasterIO(GF_Write, 0, 0, 200, 150, values.data(), 200, 150, GDT_Byte,
                                                  0, 0, nullptr),
                  CE_None);
      }
    };
    makeRaster("slope.tif", recipe);
  }

  [[nodiscard]] GetImage wholeSlope(const std::string& format, const std::string& name) const {
    GetImage wanted = request(format, name);
    wanted.columns = 200;
    wanted.rows = 150;
    return wanted;
  }

  void makeMosaic() const {
    makeNumbered("m.sources/left.tif");
    RasterRecipe right;
    right.transform[0] = 501000;
    makeNumbered("m.sources/right.tif", right);
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Sources><Source><File>m.sources/left.tif</File></Source>"
              "<Source><File>m.sources/right.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
  }
};

}  // namespace vlclientui::test
