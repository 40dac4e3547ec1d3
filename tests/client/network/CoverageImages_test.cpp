// Images of servers, from the bytes of an answer to the pixels of tiles.
#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageTiles.h"
#include "client/network/MemoryImage.h"
#include "client/network/TileGroups.h"

namespace vlclientui::client::network {
namespace {

using namespace std::string_literals;

constexpr std::size_t side = coverageTileSide;

/// An image of the size told, of which each pixel tells its own place.
struct ImageRecipe {
  int columns = 4;
  int rows = 3;
  int bands = 1;
  bool isPlaced = true;
  double west = 1000;
  double north = 2000;
  double pixel = 10;
};

std::uint8_t valueAt(std::int64_t column, std::int64_t row, int band) {
  return static_cast<std::uint8_t>(band * 100 + row * 10 + column);
}

std::string imageOf(const ImageRecipe& recipe) {
  GDALAllRegister();
  const std::string name = "/vsimem/coverage-images.tif";
  auto* const driver = GetGDALDriverManager()->GetDriverByName("GTiff");
  DatasetPtr made(driver->Create(name.c_str(), recipe.columns, recipe.rows, recipe.bands, GDT_Byte, nullptr));
  std::array<double, 6> place = {recipe.west, recipe.pixel, 0, recipe.north, 0, -recipe.pixel};
  const bool isPlaced = recipe.isPlaced && made->SetGeoTransform(place.data()) == CE_None;
  EXPECT_EQ(isPlaced, recipe.isPlaced);
  for (int band = 0; band < recipe.bands; ++band) {
    std::vector<std::uint8_t> pixels;
    for (int row = 0; row < recipe.rows; ++row) {
      for (int column = 0; column < recipe.columns; ++column) pixels.push_back(valueAt(column, row, band));
    }
    EXPECT_EQ(
        made->GetRasterBand(band + 1)->RasterIO(GF_Write, 0, 0, recipe.columns, recipe.rows, pixels.data(),
                                                recipe.columns, recipe.rows, GDT_Byte, 0, 0, nullptr),
        CE_None);
  }
  made.reset();
  vsi_l_offset size = 0;
  GByte* const bytes = VSIGetMemFileBuffer(name.c_str(), &size, TRUE);
  std::string image(reinterpret_cast<const char*>(bytes), size);
  VSIFree(bytes);
  return image;
}

/// A coverage of which `ImageRecipe` is the north-western part.
CoverageDescription coverage() {
  CoverageDescription described;
  described.id = "c";
  described.columns = 300;
  described.rows = 200;
  described.envelope = {1000, 0, 4000, 2000};
  return described;
}

CoverageFormat bytesOf(int bands) {
  CoverageFormat format;
  format.dataType = "Byte";
  format.bandCount = bands;
  format.bytesOfPixel = bands;
  return format;
}

constexpr CoveragePart corner{{0, 0, 4, 3}, 4, 3};

std::uint8_t tileValue(const std::vector<std::byte>& tile, std::size_t column, std::size_t row,
                       std::size_t band) {
  return static_cast<std::uint8_t>(tile.at((band * side + row) * side + column));
}

std::string pieceOf(const std::string& body, const std::string& type) {
  const auto found = readImage(body, type);
  const auto* piece = std::get_if<std::string_view>(&found);
  return piece == nullptr ? "problem: " + std::get<CoverageProblem>(found).text : std::string(*piece);
}

TEST(ImagePieces, EndWhereTheNextBoundaryStands) {
  const std::string image = "II*\0pix"s;
  const std::string head = "--b\nContent-Type: image/tiff\n\n";
  const std::vector<std::string> bodies = {
      head + image + "\n--b--\n",
      head + image + "\n--b\n\nsecond\n--b--\n",
      "preamble\n" + head + image + "\n--b--",
      head + image,
      "--b\n<headless/>\n" + head + image + "\n--b--\n",
      "--b\n\nII?\n" + head + image + "\n--b--\n",
      "--b\n\n" + image + "\n--b--",
  };
  for (const std::string& body : bodies)
    EXPECT_EQ(pieceOf(body, "multipart/mixed; boundary=b"), image) << body;
}

TEST(ImagePieces, AreFoundByBoundariesInAnySpelling) {
  const std::string image = "MM\0*pix"s;
  const std::string body = "--a b\n\n" + image + "\n--a b--";
  for (const std::string type :
       {"multipart/mixed; boundary=\"a b\"", " Multipart/Related; type=x; BOUNDARY=\"a b\"; start=y",
        "multipart/mixed; boundary=\"a b", "multipart/mixed;boundary= a b ; charset=utf-8"}) {
    EXPECT_EQ(pieceOf(body, type), image) << type;
  }
}

TEST(ImagePieces, AreNoneWithoutAnImageOrOfOtherTypes) {
  const std::string words = "problem: the server answers with ";
  const std::string expected = " where an image was asked for";
  const std::string body = "--b\n\nII*\0pix\n--b--"s;
  EXPECT_EQ(pieceOf(body, "text/plain; boundary=b"), words + "text/plain" + expected);
  EXPECT_EQ(pieceOf(body, "multipart/mixed; boundary=other"), words + "multipart/mixed" + expected);
  EXPECT_EQ(pieceOf("--b\n\nII*", "multipart/mixed; boundary=b"), words + "multipart/mixed" + expected);
  EXPECT_EQ(pieceOf("--b", "multipart/mixed; boundary=b"), words + "multipart/mixed" + expected);
  EXPECT_EQ(pieceOf("", " ; charset=utf-8"), words + "something of an unknown kind" + expected);
}

TEST(Refusals, ForSizeAreToldByCodeOrWords) {
  EXPECT_TRUE(isRefusedForSize({"InvalidParameterValue", ""}));
  EXPECT_TRUE(isRefusedForSize({"", "Raster SIZE out of range"}));
  EXPECT_FALSE(isRefusedForSize({"NoSuchCoverage", "no such coverage"}));
  EXPECT_FALSE(isRefusedForSize({"invalidparametervalue", ""})) << "codes are spelled as they are";
  EXPECT_FALSE(isRefusedForSize({}));
}

TEST(MemoryImages, AreRastersUntilTheyGo) {
  const std::string bytes = imageOf({});
  std::string name;
  {
    const MemoryImage one(bytes);
    const MemoryImage same(bytes);
    ASSERT_NE(one.raster(), nullptr);
    ASSERT_NE(same.raster(), nullptr);
    EXPECT_EQ(one.problem(), "");
    EXPECT_EQ(one.raster()->GetRasterXSize(), 4);
    EXPECT_EQ(one.raster()->GetRasterYSize(), 3);
    name = one.raster()->GetDescription();
    EXPECT_NE(name, same.raster()->GetDescription());
  }
  VSIStatBufL stat;
  EXPECT_NE(VSIStatL(name.c_str(), &stat), 0) << name;
}

TEST(MemoryImages, TellWhyTheyAreNone) {
  for (const std::string& bytes :
       {std::string(), std::string("<html/>"), "II*\0"s, imageOf({}).substr(0, 60)}) {
    const MemoryImage image(bytes);
    EXPECT_EQ(image.raster(), nullptr) << bytes.size();
    EXPECT_NE(image.problem(), "") << bytes.size();
  }
}

TEST(CoverageTiles, HoldThePixelsOfAnImageBandAfterBand) {
  CoverageTiles tiles;
  ASSERT_EQ(tiles.read(imageOf({.bands = 2}), coverage(), bytesOf(2), corner, 1), "");
  const auto tile = tiles.cut({0, 4}, {0, 3});
  ASSERT_EQ(tile.size(), side * side * 2);
  for (std::size_t band = 0; band < 2; ++band) {
    for (std::size_t row = 0; row < 3; ++row) {
      for (std::size_t column = 0; column < 4; ++column) {
        EXPECT_EQ(tileValue(tile, column, row, band),
                  valueAt(static_cast<int>(column), static_cast<int>(row), static_cast<int>(band)));
      }
    }
  }
  EXPECT_EQ(tileValue(tile, 4, 0, 1), 0) << "beyond the span";
  EXPECT_EQ(tileValue(tile, 0, 3, 1), 0);
}

TEST(CoverageTiles, RepeatTheLastPixelsWhereTheImageEndsFirst) {
  CoverageTiles tiles;
  ASSERT_EQ(tiles.read(imageOf({}), coverage(), bytesOf(1), corner, 1), "");
  const auto tile = tiles.cut({2, 6}, {1, 5});
  EXPECT_EQ(tileValue(tile, 0, 0, 0), valueAt(2, 1, 0));
  EXPECT_EQ(tileValue(tile, 1, 0, 0), valueAt(3, 1, 0));
  EXPECT_EQ(tileValue(tile, 3, 0, 0), valueAt(3, 1, 0));
  EXPECT_EQ(tileValue(tile, 0, 3, 0), valueAt(2, 2, 0));
  EXPECT_EQ(tileValue(tile, 3, 3, 0), valueAt(3, 2, 0));
  EXPECT_EQ(tileValue(tile, 4, 0, 0), 0);
}

TEST(CoverageTiles, OfAReductionLieByItsOwnPixels) {
  CoverageTiles tiles;
  const CoveragePart part{{80, 40, 16, 12}, 4, 3};
  const ImageRecipe reduced{.west = 1800, .north = 1600, .pixel = 40};
  ASSERT_EQ(tiles.read(imageOf(reduced), coverage(), bytesOf(1), part, 4), "");
  const auto tile = tiles.cut({20, 24}, {10, 13});
  EXPECT_EQ(tileValue(tile, 0, 0, 0), valueAt(0, 0, 0));
  EXPECT_EQ(tileValue(tile, 3, 2, 0), valueAt(3, 2, 0));
}

TEST(CoverageTiles, RefuseImagesOfAnotherTypeThanBefore) {
  for (const std::string type : {"Int16", "Float32", "Int8"}) {
    CoverageFormat format = bytesOf(1);
    format.dataType = type;
    CoverageTiles tiles;
    EXPECT_EQ(tiles.read(imageOf({}), coverage(), format, corner, 1),
              "the server's image has values of another type than before")
        << type;
  }
}

TEST(CoverageTiles, RefuseImagesThatAreNotWhatWasAskedFor) {
  struct Row {
    ImageRecipe recipe;
    int bands;
    std::string problem;
  };
  const std::string size = "the server's image has another size than asked for";
  const std::string place = "the server's image lies at another place than asked for";
  const std::vector<Row> table = {
      {{.columns = 5}, 1, size},   {{.rows = 2}, 1, size},     {{}, 2, "the server's image lacks bands"},
      {{.bands = 2}, 1, ""},       {{.west = 1006}, 1, place}, {{.west = 1004}, 1, ""},
      {{.north = 1994}, 1, place}, {{.north = 2004}, 1, ""},   {{.isPlaced = false}, 1, ""},
  };
  for (const auto& [recipe, bands, problem] : table) {
    CoverageTiles tiles;
    EXPECT_EQ(tiles.read(imageOf(recipe), coverage(), bytesOf(bands), corner, 1), problem)
        << recipe.west << ' ' << recipe.north;
  }
  CoverageTiles tiles;
  EXPECT_NE(tiles.read("no image", coverage(), bytesOf(1), corner, 1), "");
}

TEST(CoverageTiles, TellThatAnImageIsDamaged) {
  const std::string whole = imageOf({.columns = 300, .rows = 200});
  const CoveragePart all{{0, 0, 300, 200}, 300, 200};
  CoverageTiles tiles;
  EXPECT_EQ(tiles.read(whole, coverage(), bytesOf(1), all, 1), "");
  EXPECT_NE(tiles.read(whole.substr(0, whole.size() / 2), coverage(), bytesOf(1), all, 1), "");
}

}  // namespace
}  // namespace vlclientui::client::network
