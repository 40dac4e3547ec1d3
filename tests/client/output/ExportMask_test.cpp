#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using Values = std::vector<double>;
using Mask = std::vector<int>;

struct Format {
  const char* name;
  const char* compression;
  const char* quality;
};

constexpr Format tiff{"Tiff", "", "75"};
constexpr Format tiffLz77{"Tiff", "LZ77", "75"};
constexpr Format tiffJpeg{"Tiff", "JPEG", "75"};
constexpr Format jpeg{"JPEG", "", "80"};
constexpr Format jpeg2000{"JPEG2000", "", "100"};
constexpr Format jpeg2000Lossy{"JPEG2000", "", "60"};
constexpr Format png{"PNG", "", "0"};

// What an export tells of pixels without data. The raster is 8 by 6 pixels; a mask in the file leaves out the
// first two columns.
class ExportMask : public test::ExportFixture {
 protected:
  static bool isHole(std::size_t pixel) { return pixel % 8 < 2; }

  /// @param value of a pixel of a band.
  template <class ValueOf>
  void raster(const std::string& name, test::RasterRecipe recipe, ValueOf value) const {
    const auto finish = recipe.finish;
    recipe.finish = [=](GDALDataset& d) {
      if (finish) finish(d);
      for (int band = 1; band <= d.GetRasterCount(); ++band) {
        Values values;
        for (std::size_t i = 0; i < 48; ++i) values.push_back(static_cast<double>(value(i, band)));
        ASSERT_EQ(d.GetRasterBand(band)->RasterIO(GF_Write, 0, 0, 8, 6, values.data(), 8, 6, GDT_Float64, 0,
                                                  0, nullptr),
                  CE_None);
      }
    };
    makeRaster(name, recipe);
  }

  static void addMask(GDALDataset& d) {
    ASSERT_EQ(d.CreateMaskBand(GMF_PER_DATASET), CE_None);
    std::vector<std::uint8_t> mask;
    for (std::size_t i = 0; i < 48; ++i) mask.push_back(isHole(i) ? 0 : 255);
    ASSERT_EQ(d.GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Write, 0, 0, 8, 6, mask.data(), 8, 6, GDT_Byte,
                                                          0, 0, nullptr),
              CE_None);
  }

  static test::RasterRecipe masked(GDALDataType type = GDT_Byte, int bands = 1) {
    test::RasterRecipe recipe;
    recipe.type = type;
    recipe.bands = bands;
    recipe.finish = addMask;
    return recipe;
  }

  /// Opens what was exported.
  [[nodiscard]] DatasetPtr exported(const std::string& name, const Format& format, int columns = 8,
                                    int rows = 6) const {
    test::GetImage wanted = request(format.name, "image");
    wanted.compression = format.compression;
    wanted.quality = format.quality;
    wanted.columns = columns;
    wanted.rows = rows;
    EXPECT_EQ(exportFrom(name, wanted), "") << format.name << format.compression;
    return openRaster(wanted.fileName);
  }

  static Mask maskOf(GDALDataset& image, int band = 1) {
    GDALRasterBand& mask = *image.GetRasterBand(band)->GetMaskBand();
    std::vector<std::uint8_t> values(static_cast<std::size_t>(mask.GetXSize()) *
                                     static_cast<std::size_t>(mask.GetYSize()));
    EXPECT_EQ(mask.RasterIO(GF_Read, 0, 0, mask.GetXSize(), mask.GetYSize(), values.data(), mask.GetXSize(),
                            mask.GetYSize(), GDT_Byte, 0, 0, nullptr),
              CE_None);
    return {values.begin(), values.end()};
  }

  static Values valuesOf(GDALDataset& image, int band = 1) {
    Values values(static_cast<std::size_t>(image.GetRasterXSize()) *
                  static_cast<std::size_t>(image.GetRasterYSize()));
    EXPECT_EQ(image.GetRasterBand(band)->RasterIO(
                  GF_Read, 0, 0, image.GetRasterXSize(), image.GetRasterYSize(), values.data(),
                  image.GetRasterXSize(), image.GetRasterYSize(), GDT_Float64, 0, 0, nullptr),
              CE_None);
    return values;
  }

  static std::optional<double> declared(GDALDataset& image, int band = 1) {
    int isSet = 0;
    const double value = image.GetRasterBand(band)->GetNoDataValue(&isSet);
    return isSet != 0 ? std::optional<double>(value) : std::nullopt;
  }

  static Mask leftOut() {
    Mask mask;
    for (std::size_t i = 0; i < 48; ++i) mask.push_back(isHole(i) ? 0 : 255);
    return mask;
  }
};

TEST_F(ExportMask, KeepsValidZerosOfEveryFormat) {
  raster("a.tif", masked(), [](std::size_t i, int) { return i % 8 < 5 ? 0 : 200; });
  for (const Format& format : {tiff, tiffLz77, tiffJpeg, jpeg, jpeg2000, jpeg2000Lossy, png}) {
    const DatasetPtr image = exported("a", format);
    ASSERT_TRUE(image) << format.name;
    EXPECT_EQ(maskOf(*image), leftOut()) << format.name << format.compression << format.quality;
    EXPECT_EQ(declared(*image), std::nullopt) << format.name << format.compression;
  }
}

TEST_F(ExportMask, KeepsValidZerosOfThreeBands) {
  raster("a.tif", masked(GDT_Byte, 3), [](std::size_t i, int band) { return band == 2 && i % 3 ? 0 : 90; });
  for (const Format& format : {tiff, tiffJpeg, jpeg, jpeg2000, png}) {
    const DatasetPtr image = exported("a", format);
    ASSERT_TRUE(image) << format.name;
    EXPECT_EQ(maskOf(*image), leftOut()) << format.name << format.compression;
    EXPECT_EQ(image->GetRasterCount(), std::string(format.name) == "PNG" ? 4 : 3);
  }
}

TEST_F(ExportMask, IsThatOfEveryBand) {
  raster("a.tif", masked(GDT_Byte, 3), [](std::size_t i, int band) { return (i + band) % 7; });
  for (const Format& format : {tiff, tiffJpeg, jpeg, jpeg2000, jpeg2000Lossy, png}) {
    const DatasetPtr image = exported("a", format);
    ASSERT_TRUE(image) << format.name;
    for (int band = 1; band <= 3; ++band)
      EXPECT_EQ(maskOf(*image, band), leftOut()) << format.name << format.compression << band;
  }
}

TEST_F(ExportMask, LiesInATiffItself) {
  raster("a.tif", masked(), [](std::size_t i, int) { return i % 5; });
  (void)exported("a", tiff);
  EXPECT_EQ(outputs(), (std::vector<std::string>{"image"}));
}

TEST_F(ExportMask, LiesBesideFormatsThatHaveNoPlaceForIt) {
  raster("a.tif", masked(), [](std::size_t i, int) { return i % 5; });
  (void)exported("a", jpeg);
  EXPECT_EQ(outputs(), (std::vector<std::string>{"image", "image.aux.xml", "image.msk"}));
  // An image without a mask clears the mask of the one before.
  raster("a.tif", {}, [](std::size_t i, int) { return i % 5; });
  (void)exported("a", jpeg);
  EXPECT_EQ(outputs(), (std::vector<std::string>{"image", "image.aux.xml"}));
}

TEST_F(ExportMask, OfAPaletteLiesBesideAPng) {
  test::RasterRecipe recipe = masked();
  recipe.finish = [](GDALDataset& d) {
    GDALColorTable table;
    const GDALColorEntry red{255, 0, 0, 255};
    table.SetColorEntry(0, &red);
    d.GetRasterBand(1)->SetColorTable(&table);
    addMask(d);
  };
  raster("a.tif", recipe, [](std::size_t, int) { return 0; });
  const DatasetPtr image = exported("a", png);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->GetRasterCount(), 1);
  EXPECT_EQ(maskOf(*image), leftOut());
}

TEST_F(ExportMask, SaysTheSameInEveryPixelType) {
  for (const GDALDataType type :
       {GDT_Byte, GDT_UInt16, GDT_Int16, GDT_UInt32, GDT_Int32, GDT_Float32, GDT_Float64, GDT_CFloat32}) {
    // The value that an export would declare without a mask.
    const double lowest = type == GDT_Int16   ? std::numeric_limits<std::int16_t>::min()
                          : type == GDT_Int32 ? std::numeric_limits<std::int32_t>::min()
                          : type == GDT_Float32 || type == GDT_Float64
                              ? std::numeric_limits<double>::quiet_NaN()
                              : 0;
    raster("a.tif", masked(type), [&](std::size_t i, int) { return i == 20 ? lowest : 7; });
    const DatasetPtr image = exported("a", tiff);
    ASSERT_TRUE(image);
    EXPECT_EQ(maskOf(*image), leftOut()) << GDALGetDataTypeName(type);
    EXPECT_EQ(declared(*image), std::nullopt) << GDALGetDataTypeName(type);
    EXPECT_EQ(valuesOf(*image)[21], 7) << GDALGetDataTypeName(type);
  }
}

TEST_F(ExportMask, GoesWithAValueThatNoPixelWithDataHolds) {
  raster("a.tif", masked(), [](std::size_t i, int) { return i % 8 < 2 ? 0 : 1 + i; });
  const DatasetPtr image = exported("a", tiff);
  ASSERT_TRUE(image);
  EXPECT_EQ(maskOf(*image), leftOut());
  EXPECT_EQ(declared(*image), 0);
}

TEST_F(ExportMask, TakesThePlaceOfADeclaredValueThatAveragesComeTo) {
  test::RasterRecipe recipe;
  recipe.type = GDT_Int16;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(0); };
  // Columns -10, 10, -10, 10, and holes: their averages are 0.
  raster("a.tif", recipe, [](std::size_t i, int) { return i % 8 >= 4 ? 0 : i % 2 ? 10 : -10; });
  const DatasetPtr image = exported("a", tiff, 4, 3);
  ASSERT_TRUE(image);
  EXPECT_EQ(maskOf(*image), (Mask{255, 255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0}));
  EXPECT_EQ(declared(*image), std::nullopt);
}

TEST_F(ExportMask, IsNotMadeWhereTheSourcesOwnValueTells) {
  test::RasterRecipe recipe;
  recipe.type = GDT_Int16;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(-9999); };
  raster("a.tif", recipe, [](std::size_t i, int) { return i % 8 < 2 ? -9999 : 5; });
  const DatasetPtr image = exported("a", tiff);
  ASSERT_TRUE(image);
  EXPECT_EQ(declared(*image), -9999);
  EXPECT_EQ(image->GetRasterBand(1)->GetMaskFlags(), GMF_NODATA);
  EXPECT_EQ(maskOf(*image), leftOut());
}

TEST_F(ExportMask, TellsHolesOfLossyFormatsThoughTheSourceHasAValue) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(0); };
  raster("a.tif", recipe, [](std::size_t i, int) { return i % 8 < 2 ? 0 : i % 3 + 1; });
  for (const Format& format : {tiffJpeg, jpeg, jpeg2000Lossy}) {
    const DatasetPtr image = exported("a", format);
    ASSERT_TRUE(image) << format.name;
    EXPECT_EQ(maskOf(*image), leftOut()) << format.name;
    EXPECT_EQ(declared(*image), std::nullopt) << format.name;
  }
}

TEST_F(ExportMask, OfAColorThatHoldsNoDataInOneBandIsData) {
  test::RasterRecipe recipe;
  recipe.bands = 3;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(0); };
  raster("a.tif", recipe, [](std::size_t i, int band) { return i % 8 < 2 || band == 1 ? 0 : 200; });
  const DatasetPtr image = exported("a", tiff);
  ASSERT_TRUE(image);
  EXPECT_EQ(maskOf(*image), leftOut());
  EXPECT_EQ(declared(*image), std::nullopt);
}

TEST_F(ExportMask, LeavesOutWhatLiesBeyondTheSource) {
  raster("a.tif", {}, [](std::size_t, int) { return 0; });
  test::GetImage wanted = request("Tiff", "wide.tif");
  wanted.extent.xMin -= 200;
  wanted.columns = 10;
  ASSERT_EQ(exportFrom("a", wanted), "");
  const DatasetPtr image = openRaster(wanted.fileName);
  ASSERT_TRUE(image);
  Mask expected;
  for (int i = 0; i < 60; ++i) expected.push_back(i % 10 < 2 ? 0 : 255);
  EXPECT_EQ(maskOf(*image), expected);
  EXPECT_EQ(declared(*image), std::nullopt);
}

TEST_F(ExportMask, ShowsValidZerosInThePictureToo) {
  raster("a.tif", masked(), [](std::size_t, int) { return 0; });
  const auto made = service("ImageService://localhost/a");
  const auto rgba = made->drawImage(made->record().facts.envelope, 8, 6).rgba;
  ASSERT_EQ(rgba.size(), 48U * 4U);
  for (std::size_t i = 0; i < 48; ++i) EXPECT_EQ(rgba[i * 4 + 3], isHole(i) ? 0 : 255) << i;
}

TEST_F(ExportMask, IsExportedAgainFromWhatWasExported) {
  raster("a.tif", masked(), [](std::size_t i, int) { return i % 4; });
  for (const Format& format : {tiff, jpeg, png}) {
    test::GetImage wanted = request(format.name, "first");
    wanted.fileName = (folder() / "again.img").string();
    wanted.quality = "100";
    ASSERT_EQ(exportFrom("a", wanted), "");
    const DatasetPtr image = exported("again", tiff);
    ASSERT_TRUE(image) << format.name;
    EXPECT_EQ(maskOf(*image), leftOut()) << format.name;
  }
}

}  // namespace
}  // namespace vlclientui::client
