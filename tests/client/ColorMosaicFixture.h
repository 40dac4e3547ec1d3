#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "client/ServiceFixture.h"

namespace vlclientui::test {

/// A mosaic of a red, a green and a blue source, each 8 by 6 pixels of 100 units and 3 pixels further east
/// than the one before: 14 by 6 pixels in all. Their ids are 1, 2 and 3, their years 2021, 2019 and 2020.
class ColorMosaicFixture : public ServiceFixture {
 protected:
  static constexpr client::Bounds whole = {500000, 5149400, 501400, 5150000};
  static constexpr std::array<std::array<std::uint8_t, 3>, 3> colors = {
      {{200, 10, 10}, {10, 180, 10}, {10, 10, 220}}};

  ColorMosaicFixture() {
    std::string rows;
    const std::array<const char*, 3> years = {"2021", "2019", "2020"};
    for (std::size_t i = 0; i < colors.size(); ++i) {
      const std::string file = "m.sources/c" + std::to_string(i + 1) + ".tif";
      makeRaster(file, recipeOf(i));
      rows +=
          "<Source><File>" + file + "</File><Attributes><Year>" + years[i] + "</Year></Attributes></Source>";
    }
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Sources>" + rows + "</Sources></MosaicDefinition></Vorlane>");
  }

  static RasterRecipe recipeOf(std::size_t source) {
    RasterRecipe recipe;
    recipe.bands = 3;
    recipe.transform[0] += 300.0 * static_cast<double>(source);
    recipe.finish = [source](GDALDataset& dataset) {
      for (int band = 1; band <= 3; ++band) {
        dataset.GetRasterBand(band)->SetColorInterpretation(
            static_cast<GDALColorInterp>(GCI_RedBand + band - 1));
        EXPECT_EQ(dataset.GetRasterBand(band)->Fill(colors[source][static_cast<std::size_t>(band) - 1]),
                  CE_None);
      }
    };
    return recipe;
  }

  [[nodiscard]] static std::string properties(const std::string& content) {
    return "<Vorlane><ImageServiceProperties>" + content + "</ImageServiceProperties></Vorlane>";
  }

  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> mosaic(const std::string& content = {}) const {
    auto made = service("ImageService://localhost/m");
    if (!content.empty()) made->setServiceProperties(properties(content));
    return made;
  }

  /// One letter a pixel: R, G, B, "." for none, "?" for any other color; rows that differ are joined by "/".
  [[nodiscard]] static std::string drawn(client::CatalogueImageService& made) {
    const client::Thumbnail picture = made.drawImage(whole, 14, 6);
    std::vector<std::string> rows(6);
    for (std::size_t i = 0; i < 14U * 6U; ++i) {
      const std::uint8_t* pixel = picture.rgba.data() + i * 4;
      rows[i / 14] += pixel[3] == 0 ? '.' : letterOf(pixel[0], pixel[1], pixel[2]);
    }
    return joined(rows);
  }

  [[nodiscard]] std::string exported(client::CatalogueImageService& made) const {
    GetImage request;
    request.extent = whole;
    request.columns = 14;
    request.fileName = out("m.tif");
    made.ExportProperties(request.document());
    if (!made.ExportImage()) return made.status();
    const std::vector<double> values = valuesOf(out("m.tif"));
    if (values.size() != 3U * 14U * 6U) return "(another size)";
    std::vector<std::string> rows(6);
    for (std::size_t i = 0; i < 14U * 6U; ++i) {
      rows[i / 14] += letterOf(values[i], values[i + 84], values[i + 168]);
    }
    return joined(rows);
  }

 private:
  static char letterOf(double red, double green, double blue) {
    const std::string letters = "RGB";
    if (red == 0 && green == 0 && blue == 0) return '.';
    for (std::size_t i = 0; i < colors.size(); ++i) {
      if (colors[i][0] == red && colors[i][1] == green && colors[i][2] == blue) return letters[i];
    }
    return '?';
  }

  static std::string joined(const std::vector<std::string>& rows) {
    std::string out = rows.front();
    for (std::size_t i = 1; i < rows.size(); ++i) {
      if (rows[i] != rows[i - 1]) out += "/" + rows[i];
    }
    return out;
  }
};

}  // namespace vlclientui::test
