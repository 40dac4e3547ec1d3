#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "client/ExportFixture.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using test::GetImage;

// Together more bytes than an export may hold.
constexpr int side = 20000;
constexpr int height = 12000;
constexpr int tile = 1500;
constexpr int cellSide = 1000;
constexpr double mostMegabytes = 200;

/// What a person chooses, and how far a value may be from the source's.
struct Choice {
  const char* format;
  const char* compression;
  const char* tileSize;
  const char* quality;
  double bound;
};

/// A raster of 20,000 by 12,000 pixels without a file of that size: a virtual one, whose cells show one small
/// tile from different places on, so that no two places look alike.
class LargeExport : public test::ExportFixture, public testing::WithParamInterface<Choice> {
 protected:
  LargeExport() {
    makeTile();
    std::string sources;
    for (int y = 0; y < height; y += cellSide) {
      for (int x = 0; x < side; x += cellSide) sources += cell(x, y);
    }
    writeText("large.vrt",
              "<VRTDataset rasterXSize=\"20000\" rasterYSize=\"12000\"><SRS>EPSG:32632</SRS><GeoTransform>"
              "500000, 0.5, 0, 5150000, 0, -0.5</GeoTransform><VRTRasterBand dataType=\"Byte\" band=\"1\">" +
                  sources + "</VRTRasterBand></VRTDataset>");
  }

  [[nodiscard]] GetImage whole() const {
    GetImage wanted = request(GetParam().format, "large");
    wanted.compression = GetParam().compression;
    wanted.tileSize = GetParam().tileSize;
    wanted.quality = GetParam().quality;
    wanted.extent = {500000, 5150000 - height / 2, 500000 + side / 2, 5150000};
    wanted.columns = side;
    wanted.rows = height;
    return wanted;
  }

 private:
  void makeTile() const {
    test::RasterRecipe recipe;
    recipe.width = tile;
    recipe.height = tile;
    recipe.finish = [](GDALDataset& d) {
      std::vector<std::uint8_t> values;
      for (int i = 0; i < tile * tile; ++i) {
        const double slope = 60 * std::sin(i % tile / 90.0) + 60 * std::cos(i / tile / 70.0);
        values.push_back(static_cast<std::uint8_t>(125 + slope + i * 7 % 5));
      }
      EXPECT_EQ(d.GetRasterBand(1)->RasterIO(GF_Write, 0, 0, tile, tile, values.data(), tile, tile, GDT_Byte,
                                             0, 0, nullptr),
                CE_None);
    };
    makeRaster("parts/tile.tif", recipe);
  }

  static std::string rectangle(const char* name, int x, int y) {
    return std::string("<") + name + " xOff=\"" + std::to_string(x) + "\" yOff=\"" + std::to_string(y) +
           "\" xSize=\"1000\" ySize=\"1000\"/>";
  }

  static std::string cell(int x, int y) {
    return "<SimpleSource><SourceFilename relativeToVRT=\"1\">parts/tile.tif</SourceFilename><SourceBand>1"
           "</SourceBand><SourceProperties RasterXSize=\"1500\" RasterYSize=\"1500\" DataType=\"Byte\" "
           "BlockXSize=\"1500\" BlockYSize=\"5\"/>" +
           rectangle("SrcRect", x / cellSide * 37 % 500 + y / cellSide,
                     y / cellSide * 53 % 480 + x / cellSide) +
           rectangle("DstRect", x, y) + "</SimpleSource>";
  }
};

double peakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

constexpr bool isInstrumented =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#else
    false;
#endif

/// Two rasters, compared in strips so that neither is ever held whole.
class Comparison {
 public:
  Comparison(const std::string& one, const std::string& other)
      : one_(openRaster(one)), other_(openRaster(other)) {
    GDALSetCacheMax64(GIntBig{64} << 20U);
  }

  [[nodiscard]] bool isPossible() const { return one_ && other_; }

  [[nodiscard]] double largestDifference() {
    int largest = 0;
    constexpr int rows = 250;
    for (int y = 0; y < height; y += rows) {
      read(*one_, y, rows, a_);
      read(*other_, y, rows, b_);
      for (std::size_t i = 0; i < a_.size(); ++i) largest = std::max(largest, std::abs(a_[i] - b_[i]));
    }
    return largest;
  }

 private:
  static void read(GDALDataset& from, int y, int rows, std::vector<std::uint8_t>& values) {
    values.resize(std::size_t{side} * static_cast<std::size_t>(rows));
    ASSERT_EQ(from.GetRasterBand(1)->RasterIO(GF_Read, 0, y, side, rows, values.data(), side, rows, GDT_Byte,
                                              0, 0, nullptr),
              CE_None);
  }

  DatasetPtr one_;
  DatasetPtr other_;
  std::vector<std::uint8_t> a_;
  std::vector<std::uint8_t> b_;
};

INSTANTIATE_TEST_SUITE_P(
    Export, LargeExport,
    testing::Values(Choice{"Tiff", "", "None", "0", 0}, Choice{"Tiff", "JPEG", "256", "75", 6},
                    Choice{"Tiff", "LZ77", "512", "75", 0}, Choice{"JPEG", "", "None", "80", 6},
                    Choice{"JPEG2000", "", "None", "100", 0}, Choice{"PNG", "", "None", "0", 0}),
    [](const auto& one) { return std::string(one.param.format) + one.param.compression; });

TEST_P(LargeExport, StaysBelowTwoHundredMegabytesAndKeepsPixelsAndPlace) {
  const GetImage wanted = whole();
  ASSERT_EQ(exportFrom("large", wanted), "");
  const double megabytes = peakMegabytes();
  // A sanitizer's own bookkeeping is several times the program's.
  EXPECT_LT(megabytes, isInstrumented ? HUGE_VAL : mostMegabytes);
  const std::string source = (folder() / "large.vrt").string();
  EXPECT_EQ(test::transformOf(wanted.fileName), test::transformOf(source));
  EXPECT_EQ(test::systemOf(wanted.fileName), "32632");
  Comparison comparison(source, wanted.fileName);
  ASSERT_TRUE(comparison.isPossible());
  const double difference = comparison.largestDifference();
  EXPECT_LE(difference, GetParam().bound);
  RecordProperty("megabytes", static_cast<int>(megabytes));
  RecordProperty("difference", static_cast<int>(difference));
}

using LargeMaskedExport = LargeExport;

INSTANTIATE_TEST_SUITE_P(Export, LargeMaskedExport,
                         testing::Values(Choice{"Tiff", "LZ77", "512", "75", 0},
                                         Choice{"JPEG", "", "None", "80", 6},
                                         Choice{"PNG", "", "None", "0", 0}),
                         [](const auto& one) {
                           return std::string(one.param.format) + one.param.compression;
                         });

// The source ends in the middle of the image.
TEST_P(LargeMaskedExport, StaysBelowTwoHundredMegabytesToo) {
  GetImage wanted = whole();
  wanted.extent.xMin += side / 4;
  wanted.extent.xMax += side / 4;
  wanted.rows = side / 4;
  wanted.extent.yMin = wanted.extent.yMax - side / 8;
  ASSERT_EQ(exportFrom("large", wanted), "");
  EXPECT_LT(peakMegabytes(), isInstrumented ? HUGE_VAL : mostMegabytes);
  RecordProperty("megabytes", static_cast<int>(peakMegabytes()));
  const DatasetPtr image = openRaster(wanted.fileName);
  ASSERT_TRUE(image);
  std::vector<std::uint8_t> row(side);
  for (const int y : {0, side / 8, side / 4 - 1}) {
    ASSERT_EQ(image->GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Read, 0, y, side, 1, row.data(), side, 1,
                                                               GDT_Byte, 0, 0, nullptr),
              CE_None);
    EXPECT_EQ(std::count(row.begin(), row.begin() + side / 2, 255), side / 2) << y;
    EXPECT_EQ(std::count(row.begin() + side / 2, row.end(), 0), side / 2) << y;
  }
}

}  // namespace
}  // namespace vlclientui::client
