#include "client/output/PngParts.h"

#include <string>
#include <vector>

#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/raster/GdalScope.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

struct Picture {
  int width;
  int height;
  int samples;
  GDALDataType type;
};

class PngPartsTest : public test::RasterFixture {
 protected:
  [[nodiscard]] std::string file() const { return folder() / "parts.png"; }

  /// A PNG of one row, as the raster library writes it.
  void makeHead(const Picture& picture) const {
    const GdalScope scope;
    GDALDriverManager& drivers = *GetGDALDriverManager();
    const DatasetPtr row(
        drivers.GetDriverByName("MEM")->Create("", picture.width, 1, picture.samples, picture.type, nullptr));
    const DatasetPtr made(drivers.GetDriverByName("PNG")->CreateCopy(file().c_str(), row.get(), FALSE,
                                                                     nullptr, nullptr, nullptr));
    ASSERT_TRUE(made);
  }

  // Slopes, steps and noise, so that each filter is the best of some row.
  [[nodiscard]] static int valueAt(int x, int y, int band, int most) {
    const int slope = y % 5 == 0 ? x * 3 : y % 5 == 1 ? y * 7 + band : x + y;
    const int noise = y % 5 == 2 ? (x * 7919 + y * 104729 + band * 31) % 251 : 0;
    return (slope + noise + (y % 5 == 3 ? 200 : 0)) * (most > 255 ? 97 : 1) % (most + 1);
  }

  [[nodiscard]] static WindowPixels windowOf(const Picture& picture, int first, int rows) {
    WindowPixels pixels{{0, first, picture.width, rows}, {}, {}};
    const int most = picture.type == GDT_Byte ? 255 : 65535;
    for (int band = 0; band < picture.samples; ++band) {
      for (int y = first; y < first + rows; ++y) {
        for (int x = 0; x < picture.width; ++x) {
          const auto value = static_cast<unsigned>(valueAt(x, y, band, most));
          pixels.values.push_back(static_cast<std::byte>(value));
          if (most > 255) pixels.values.push_back(static_cast<std::byte>(value >> 8U));
        }
      }
    }
    return pixels;
  }

  /// In windows of so many rows.
  void write(const Picture& picture, int rows) const {
    PngParts parts(file(), picture.height);
    for (int y = 0; y < picture.height; y += rows) {
      parts.add(windowOf(picture, y, std::min(rows, picture.height - y)));
    }
    parts.close();
  }
};

TEST_F(PngPartsTest, HoldEachPixelOfEveryKind) {
  const std::vector<Picture> pictures = {
      {40, 50, 1, GDT_Byte}, {1, 1, 1, GDT_Byte},     {333, 41, 3, GDT_Byte},  {70, 9, 2, GDT_Byte},
      {64, 33, 4, GDT_Byte}, {40, 31, 1, GDT_UInt16}, {51, 17, 3, GDT_UInt16}, {9, 700, 4, GDT_UInt16}};
  for (const Picture& picture : pictures) {
    for (const int rows : {1, 7, 1000}) {
      makeHead(picture);
      write(picture, rows);
      const int most = picture.type == GDT_Byte ? 255 : 65535;
      const std::vector<double> values = test::valuesOf(file());
      ASSERT_EQ(values.size(), static_cast<std::size_t>(picture.width * picture.height * picture.samples));
      std::size_t i = 0;
      for (int band = 0; band < picture.samples; ++band) {
        for (int y = 0; y < picture.height; ++y) {
          for (int x = 0; x < picture.width; ++x)
            ASSERT_EQ(values[i++], valueAt(x, y, band, most)) << band << ' ' << y << ' ' << x << ' ' << rows;
        }
      }
    }
  }
}

TEST_F(PngPartsTest, TakeAMaskForTheSampleThatBandsLack) {
  for (const GDALDataType type : {GDT_Byte, GDT_UInt16}) {
    makeHead({2, 1, 2, type});
    WindowPixels pixels = windowOf({2, 2, 1, type}, 0, 2);
    pixels.mask = {0, 255, 255, 0};
    PngParts parts(file(), 2);
    parts.add(pixels);
    parts.close();
    const std::vector<double> values = test::valuesOf(file());
    const double most = type == GDT_Byte ? 255 : 65535;
    ASSERT_EQ(values.size(), 8U);
    EXPECT_EQ(std::vector<double>(values.begin() + 4, values.end()), (std::vector<double>{0, most, most, 0}));
  }
}

TEST_F(PngPartsTest, AreNotMuchLargerThanWhatOneThreadPacks) {
  const Picture picture{500, 600, 3, GDT_Byte};
  const std::string whole = folder() / "whole.png";
  makeHead(picture);
  write(picture, picture.height);
  {
    const GdalScope scope;
    char level[] = "ZLEVEL=1";
    char* options[] = {level, nullptr};
    const DatasetPtr parts = openRaster(file());
    const DatasetPtr made(GetGDALDriverManager()->GetDriverByName("PNG")->CreateCopy(
        whole.c_str(), parts.get(), FALSE, options, nullptr, nullptr));
  }
  EXPECT_LT(static_cast<double>(std::filesystem::file_size(file())),
            1.05 * static_cast<double>(std::filesystem::file_size(whole)));
}

TEST_F(PngPartsTest, AskForTheHeadOfAPng) {
  EXPECT_THROW(PngParts(folder() / "none.png", 1), RuntimeFailure);
  EXPECT_THROW(PngParts(makeRaster("plain.tif").string(), 1), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
