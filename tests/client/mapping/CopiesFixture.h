#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "client/mapping/DrawerFixture.h"
#include "client/mapping/SmallCopies.h"

namespace vlclientui::test {

/// Large rasters, and a folder for their small copies.
class CopiesFixture : public DrawerFixture {
 protected:
  static constexpr int largeSide = 4100;
  static constexpr std::uintmax_t roomy = std::uintmax_t{1} << 30U;

  /// Slopes from the upper left to the lower right. @param finish after the pixels are written.
  std::filesystem::path makeLarge(const std::string& name, std::function<void(GDALDataset&)> finish = {},
                                  int bands = 1, const std::string& option = {}) const {
    RasterRecipe recipe;
    recipe.width = recipe.height = largeSide;
    recipe.bands = bands;
    recipe.option = option;
    recipe.finish = [&](GDALDataset& dataset) {
      std::vector<std::uint8_t> line(largeSide);
      for (int row = 0; row < largeSide; ++row) {
        for (int column = 0; column < largeSide; ++column) {
          line[static_cast<std::size_t>(column)] = static_cast<std::uint8_t>(20 + (column + row) / 50);
        }
        EXPECT_EQ(dataset.GetRasterBand(1)->RasterIO(GF_Write, 0, row, largeSide, 1, line.data(), largeSide,
                                                     1, GDT_Byte, 0, 0, nullptr),
                  CE_None);
      }
      if (finish) finish(dataset);
    };
    return makeRaster(name, recipe);
  }

  [[nodiscard]] std::vector<std::filesystem::path> kept() const {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& one : std::filesystem::directory_iterator(copiesFolder(), error))
      files.push_back(one.path());
    return files;
  }
  [[nodiscard]] std::filesystem::path copiesFolder() const { return folder() / "cache" / "copies"; }
};

}  // namespace vlclientui::test
