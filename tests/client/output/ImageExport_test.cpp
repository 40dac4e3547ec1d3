#include "client/output/ImageExport.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"

namespace vlclientui::client {
namespace {

using test::contentOf;
using test::GetImage;
using test::holds;

double largestDifference(const std::vector<double>& a, const std::vector<double>& b) {
  if (a.size() != b.size() || a.empty()) return HUGE_VAL;
  double largest = 0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
  return largest;
}

class ImageExport : public test::ExportFixture {};

TEST_F(ImageExport, LosslessFormatsKeepEveryPixelAndItsPlace) {
  const auto source = makeNumbered("a.tif").string();
  const std::vector<std::pair<GetImage, std::string>> cases = {{request("Tiff", "plain.Tif"), ""},
                                                               {request("Tiff", "packed.Tif"), "LZ77"},
                                                               {request("PNG", "a.PNG"), ""},
                                                               {request("JPEG2000", "a.JP2"), ""}};
  for (auto [wanted, compression] : cases) {
    wanted.compression = compression;
    wanted.quality = "100";
    ASSERT_EQ(exportFrom("a", wanted), "");
    EXPECT_EQ(test::valuesOf(wanted.fileName), test::valuesOf(source)) << wanted.fileName;
    EXPECT_EQ(test::transformOf(wanted.fileName), test::transformOf(source)) << wanted.fileName;
    EXPECT_EQ(test::systemOf(wanted.fileName), "32632") << wanted.fileName;
  }
}

TEST_F(ImageExport, FormatsThatHoldThePlaceHoldItThemselves) {
  const auto source = makeNumbered("a.tif").string();
  for (const auto& wanted : {request("Tiff", "a.Tif"), request("JPEG2000", "a.JP2")}) {
    ASSERT_EQ(exportFrom("a", wanted), "");
    EXPECT_EQ(test::transformOf(wanted.fileName, test::SideCars::Ignored), test::transformOf(source));
  }
}

TEST_F(ImageExport, LossyFormatsStayClose) {
  makeSlope();
  const auto source = test::valuesOf((folder() / "slope.tif").string());
  GetImage tiff = wholeSlope("Tiff", "jpeg.Tif");
  tiff.compression = "JPEG";
  tiff.tileSize = "128";
  for (GetImage wanted : {tiff, wholeSlope("JPEG", "a.JPEG"), wholeSlope("JPEG2000", "a.JP2")}) {
    wanted.quality = "80";
    ASSERT_EQ(exportFrom("slope", wanted), "");
    EXPECT_LE(largestDifference(test::valuesOf(wanted.fileName), source), 8) << wanted.fileName;
    EXPECT_EQ(test::transformOf(wanted.fileName), test::transformOf((folder() / "slope.tif").string()));
    EXPECT_EQ(test::systemOf(wanted.fileName), "32632");
  }
  EXPECT_EQ(test::structureItem(out("jpeg.Tif"), "COMPRESSION"), "YCbCr JPEG");
}

TEST_F(ImageExport, QualityDecidesTheSizeOfALossyFile) {
  makeSlope();
  for (const std::string& format : {std::string("JPEG"), std::string("JPEG2000")}) {
    GetImage low = wholeSlope(format, "low." + format);
    low.quality = "10";
    GetImage high = wholeSlope(format, "high." + format);
    high.quality = "95";
    ASSERT_EQ(exportFrom("slope", low), "");
    ASSERT_EQ(exportFrom("slope", high), "");
    EXPECT_LT(std::filesystem::file_size(low.fileName), std::filesystem::file_size(high.fileName)) << format;
  }
}

TEST_F(ImageExport, WideTypesKeepTheirValuesInTiff) {
  for (const GDALDataType type : {GDT_UInt16, GDT_Int16, GDT_UInt32, GDT_Int32, GDT_Float32, GDT_Float64}) {
    test::RasterRecipe recipe;
    recipe.type = type;
    recipe.bands = 2;
    const auto source = makeNumbered("t.tif", recipe).string();
    GetImage wanted = request("Tiff", "t.Tif");
    wanted.compression = "LZ77";
    wanted.tileSize = "128";
    ASSERT_EQ(exportFrom("t", wanted), "") << GDALGetDataTypeName(type);
    EXPECT_EQ(test::valuesOf(wanted.fileName), test::valuesOf(source)) << GDALGetDataTypeName(type);
    EXPECT_EQ(test::structureItem(wanted.fileName, "COMPRESSION"), "DEFLATE");
  }
}

TEST_F(ImageExport, TransparencyStaysABandOfItsOwn) {
  test::RasterRecipe recipe;
  recipe.bands = 4;
  recipe.option = "ALPHA=YES";
  const auto source = makeNumbered("a.tif", recipe).string();
  for (const GetImage& wanted : {request("Tiff", "a.Tif"), request("PNG", "a.PNG")}) {
    ASSERT_EQ(exportFrom("a", wanted), "");
    EXPECT_EQ(test::valuesOf(wanted.fileName), test::valuesOf(source));
  }
}

TEST_F(ImageExport, PaletteKeepsItsNumbersAndColors) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) {
    GDALColorTable table;
    for (short i = 0; i < 256; ++i) {
      const GDALColorEntry entry{i, static_cast<short>(255 - i), 7, 255};
      table.SetColorEntry(i, &entry);
    }
    d.GetRasterBand(1)->SetColorTable(&table);
  };
  const auto source = test::valuesOf(makeNumbered("p.tif", recipe).string());
  for (const GetImage& wanted : {request("Tiff", "p.Tif"), request("PNG", "p.PNG")}) {
    ASSERT_EQ(exportFrom("p", wanted), "");
    EXPECT_EQ(test::valuesOf(wanted.fileName), source);
    auto* dataset = GDALDataset::FromHandle(GDALOpen(wanted.fileName.c_str(), GA_ReadOnly));
    ASSERT_NE(dataset->GetRasterBand(1)->GetColorTable(), nullptr) << wanted.fileName;
    EXPECT_EQ(dataset->GetRasterBand(1)->GetColorTable()->GetColorEntry(9)->c2, 246);
    GDALClose(GDALDataset::ToHandle(dataset));
  }
  EXPECT_TRUE(holds(exportFrom("p", request("JPEG", "p.JPEG")), "palette"));
}

TEST_F(ImageExport, PartOfAServiceIsThatPart) {
  const auto source = test::valuesOf(makeNumbered("a.tif").string());
  GetImage wanted = request("Tiff", "part.Tif");
  wanted.extent = {500200, 5149600, 500500, 5149800};
  wanted.columns = 3;
  wanted.rows = 2;
  ASSERT_EQ(exportFrom("a", wanted), "");
  EXPECT_EQ(test::valuesOf(wanted.fileName),
            (std::vector<double>{source[18], source[19], source[20], source[26], source[27], source[28]}));
}

TEST_F(ImageExport, EnlargingByWholeMultiplesRepeatsPixels) {
  const auto source = test::valuesOf(makeNumbered("a.tif").string());
  GetImage wanted = request("Tiff", "big.Tif");
  wanted.columns = 24;
  wanted.rows = 12;
  ASSERT_EQ(exportFrom("a", wanted), "");
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 24U * 12U);
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(values[i], source[i / 24 / 2 * 8 + i % 24 / 3]);
}

TEST_F(ImageExport, ReducingAverages) {
  const auto source = test::valuesOf(makeNumbered("a.tif").string());
  GetImage wanted = request("Tiff", "small.Tif");
  wanted.columns = 4;
  wanted.rows = 3;
  ASSERT_EQ(exportFrom("a", wanted), "");
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 12U);
  EXPECT_NEAR(values[0], (source[0] + source[1] + source[8] + source[9]) / 4, 0.51);
  EXPECT_NEAR(values[11], (source[38] + source[39] + source[46] + source[47]) / 4, 0.51);
}

TEST_F(ImageExport, OutsideTheSourceIsNoData) {
  const auto source = test::valuesOf(makeNumbered("a.tif").string());
  test::RasterRecipe recipe;
  recipe.type = GDT_Int16;
  makeNumbered("i.tif", recipe);
  GetImage wanted = request("Tiff", "wide.Tif");
  wanted.extent.xMin -= 100;
  wanted.columns = 9;
  for (const auto& [name, empty] : {std::pair<std::string, double>{"a", 0}, {"i", -32768}}) {
    ASSERT_EQ(exportFrom(name, wanted), "");
    auto* dataset = GDALDataset::FromHandle(GDALOpen(wanted.fileName.c_str(), GA_ReadOnly));
    int isSet = 0;
    EXPECT_EQ(dataset->GetRasterBand(1)->GetNoDataValue(&isSet), empty);
    EXPECT_NE(isSet, 0);
    GDALClose(GDALDataset::ToHandle(dataset));
    const auto values = test::valuesOf(wanted.fileName);
    EXPECT_EQ(values[0], empty);
    EXPECT_EQ(values[1], source[0]);
    EXPECT_EQ(values[9 * 5], empty);
    EXPECT_EQ(values[9 * 5 + 8], source[47]);
  }
}

TEST_F(ImageExport, OfAMosaicCarriesTheMosaicsTitle) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) {
    d.SetMetadataItem("TITLE", "Sheet 7");
    d.SetMetadataItem("TIFFTAG_DOCUMENTNAME", "Sheet 7, second edition");
  };
  makeNumbered("m.sources/left.tif", recipe);
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><Title>All sheets</Title><Sources><Source><File>m.sources/left.tif"
            "</File></Source></Sources></MosaicDefinition></Vorlane>");
  for (const std::string& format : {std::string("Tiff"), std::string("PNG"), std::string("JPEG2000")}) {
    GetImage wanted = request(format, "m.out");
    wanted.quality = "100";
    ASSERT_EQ(exportFrom("m", wanted), "") << format;
    EXPECT_EQ(service(wanted.fileName)->record().facts.title, "All sheets") << format;
  }
}

TEST_F(ImageExport, MosaicIsExportedAsOneImageWithNoDataBetween) {
  makeMosaic();
  const auto source = test::valuesOf((folder() / "m.sources/left.tif").string());
  GetImage wanted = request("Tiff", "m.Tif");
  wanted.extent.xMax = 501800;
  wanted.columns = 18;
  ASSERT_EQ(exportFrom("m", wanted), "");
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 18U * 6U);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t row = i / 18;
    const std::size_t column = i % 18;
    const double expected = column < 8    ? source[row * 8 + column]
                            : column < 10 ? 0
                                          : source[row * 8 + column - 10];
    EXPECT_EQ(values[i], expected) << i;
  }
}

TEST_F(ImageExport, SouthUpSourceComesOutNorthUp) {
  test::RasterRecipe recipe;
  recipe.transform = {500000, 100, 0, 5149400, 0, 100};
  const auto source = test::valuesOf(makeNumbered("s.tif", recipe).string());
  ASSERT_EQ(exportFrom("s", request("Tiff", "s.Tif")), "");
  const auto values = test::valuesOf(out("s.Tif"));
  ASSERT_EQ(values.size(), 48U);
  for (std::size_t i = 0; i < 48; ++i) EXPECT_EQ(values[i], source[(5 - i / 8) * 8 + i % 8]) << i;
}

TEST_F(ImageExport, RotatedSourceComesOutNorthUpWithEmptyCorners) {
  test::RasterRecipe recipe;
  recipe.width = 40;
  recipe.height = 40;
  recipe.transform = {500000, 70, 70, 5150000, 70, -70};
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->Fill(9); };
  makeRaster("r.tif", recipe);
  GetImage wanted = request("Tiff", "r.Tif");
  wanted.extent = {500000, 5147200, 505600, 5152800};
  wanted.columns = 56;
  wanted.rows = 56;
  ASSERT_EQ(exportFrom("r", wanted), "");
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 56U * 56U);
  EXPECT_EQ(values.front(), 0);
  EXPECT_EQ(values.back(), 0);
  EXPECT_EQ(values[28 * 56 + 28], 9);
  EXPECT_EQ(values[28 * 56 + 3], 9);
}

TEST_F(ImageExport, SourceInAnotherSystemIsBroughtIntoTheMosaics) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->Fill(5); };
  makeRaster("m.sources/metres.tif", recipe);
  recipe.epsg = 32633;  // the neighboring zone: the same ground lies far to the west there
  recipe.transform = {43000, 100, 0, 5165000, 0, -100};
  recipe.width = 300;
  recipe.height = 300;
  recipe.finish = [](GDALDataset& d) { d.GetRasterBand(1)->Fill(8); };
  makeRaster("m.sources/zone.tif", recipe);
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><Sources><Source><File>m.sources/metres.tif</File></Source>"
            "<Source><File>m.sources/zone.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
  const auto made = service("ImageService://localhost/m");
  ASSERT_EQ(made->record().sources.size(), 2U);
  const Bounds place = made->record().sources[1].place;
  GetImage wanted = request("Tiff", "m.Tif");
  wanted.extent = made->record().facts.envelope;
  wanted.columns = 200;
  wanted.rows = 200;
  ASSERT_EQ(exportFrom("m", wanted), "");
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 40000U);
  const OutputGrid grid{wanted.extent, 200, 200};
  const auto valueAt = [&](double x, double y) {
    const auto column = static_cast<std::size_t>((x - grid.extent.xMin) / grid.pixelWidth());
    const auto row = static_cast<std::size_t>((grid.extent.yMax - y) / grid.pixelHeight());
    return values[row * 200 + column];
  };
  EXPECT_EQ(valueAt((place.xMin + place.xMax) / 2, (place.yMin + place.yMax) / 2), 8);
  EXPECT_EQ(test::systemOf(wanted.fileName), "32632");
}

TEST_F(ImageExport, LockedRasterIsExportedAlone) {
  makeMosaic();
  const auto made = service("ImageService://localhost/m");
  made->setServiceProperties(
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  GetImage wanted = request("Tiff", "m.Tif");
  wanted.extent.xMax = 501800;
  wanted.columns = 18;
  made->ExportProperties(wanted.document());
  ASSERT_TRUE(made->ExportImage());
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 18U * 6U);
  EXPECT_EQ(values[0], 0);
  EXPECT_EQ(values[10], test::valuesOf((folder() / "m.sources/right.tif").string())[0]);
}

TEST_F(ImageExport, TilesAreOfTheSizeAsked) {
  makeSlope();
  GetImage wanted = wholeSlope("Tiff", "tiled.Tif");
  wanted.tileSize = "128";
  ASSERT_EQ(exportFrom("slope", wanted), "");
  auto* dataset = GDALDataset::FromHandle(GDALOpen(wanted.fileName.c_str(), GA_ReadOnly));
  int width = 0;
  int height = 0;
  dataset->GetRasterBand(1)->GetBlockSize(&width, &height);
  GDALClose(GDALDataset::ToHandle(dataset));
  EXPECT_EQ(width, 128);
  EXPECT_EQ(height, 128);
  EXPECT_EQ(test::valuesOf(wanted.fileName), test::valuesOf((folder() / "slope.tif").string()));
}

TEST_F(ImageExport, WorldFileAndMetadataComeBesideTheImage) {
  makeNumbered("a.tif");
  GetImage wanted = request("Tiff", "a.Tif");
  wanted.worldFile = true;
  wanted.metadata = true;
  ASSERT_EQ(exportFrom("a", wanted), "");
  EXPECT_EQ(outputs(), (std::vector<std::string>{"a.Tif", "a.Tif.xml", "a.tfw"}));
  EXPECT_EQ(contentOf(out("a.tfw")), "100\n0\n0\n-100\n500050\n5149950\n");
  EXPECT_EQ(test::elementContent(contentOf(out("a.Tif.xml")), "CoordinateSystemId"), "EPSG:32632");
}

TEST_F(ImageExport, FormatsRefuseWhatTheyCannotHoldAndNameWhatWouldWork) {
  test::RasterRecipe recipe;
  recipe.type = GDT_Float32;
  makeNumbered("f.tif", recipe);
  recipe.type = GDT_Byte;
  recipe.bands = 5;
  makeNumbered("five.tif", recipe);
  GetImage tiffJpeg = request("Tiff", "a.Tif");
  tiffJpeg.compression = "JPEG";
  for (const GetImage& wanted :
       {request("JPEG", "a.JPEG"), request("PNG", "a.PNG"), request("JPEG2000", "a.JP2"), tiffJpeg}) {
    const std::string message = exportFrom("f", wanted);
    EXPECT_TRUE(holds(message, "1 band of type Float32")) << message;
    EXPECT_TRUE(holds(message, "TIFF") && holds(message, "would work")) << message;
  }
  EXPECT_TRUE(holds(exportFrom("five", request("JPEG", "a.JPEG")), "5 bands of type Byte"));
  EXPECT_TRUE(holds(exportFrom("five", request("PNG", "a.PNG")), "5 bands of type Byte"));
  EXPECT_TRUE(outputs().empty());
}

TEST_F(ImageExport, RequestsThatMakeNoSenseAreRefused) {
  makeNumbered("a.tif");
  GetImage turned = request("Tiff", "a.Tif");
  std::swap(turned.extent.xMin, turned.extent.xMax);
  EXPECT_TRUE(holds(exportFrom("a", turned), "right edge"));
  GetImage empty = request("Tiff", "a.Tif");
  empty.columns = 0;
  EXPECT_TRUE(holds(exportFrom("a", empty), "Cols"));
  GetImage quality = request("JPEG", "a.JPEG");
  quality.quality = "101";
  EXPECT_TRUE(holds(exportFrom("a", quality), "CompressionQuality"));
  GetImage tile = request("Tiff", "a.Tif");
  tile.tileSize = "100";
  EXPECT_TRUE(holds(exportFrom("a", tile), "TileSize"));
  EXPECT_TRUE(holds(exportFrom("a", request("Bmp", "a.bmp")), "no format \"Bmp\""));
  EXPECT_TRUE(holds(exportFrom("a", GetImage()), "names no file"));
  GetImage wide = request("JPEG", "a.JPEG");
  wide.columns = 65501;
  EXPECT_TRUE(holds(exportFrom("a", wide), "at most 65500"));
  const auto made = service("ImageService://localhost/a");
  EXPECT_FALSE(made->ExportImage());
  EXPECT_TRUE(outputs().empty());
}

}  // namespace
}  // namespace vlclientui::client
