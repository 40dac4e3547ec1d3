#include "client/ranges/WebMosaic.h"

#include <algorithm>
#include <array>

#include "client/ranges/RangeFixture.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;

constexpr auto address = "http://h:8080/a/b/mosaic.vrt";

std::string withSource(const std::string& name, const std::string& attributes = R"( relativeToVRT="1")") {
  return R"(<VRTDataset rasterXSize="200" rasterYSize="200"><VRTRasterBand dataType="Byte" band="1">)"
         "<SimpleSource><SourceFilename" +
         attributes + ">" + name + "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>";
}

std::string withElement(const std::string& element) {
  return R"(<VRTDataset rasterXSize="2" rasterYSize="2">)" + element + "</VRTDataset>";
}

std::string opened(const std::string& text) {
  const auto result = openableMosaic(text, address);
  const auto* refusal = std::get_if<MosaicRefusal>(&result);
  EXPECT_EQ(refusal, nullptr) << refusal->text;
  return refusal == nullptr ? std::get<OpenableMosaic>(result).text : std::string();
}

std::string refusalOf(const std::string& text) {
  const auto result = openableMosaic(text, address);
  const auto* refusal = std::get_if<MosaicRefusal>(&result);
  return refusal == nullptr ? std::string() : refusal->text;
}

TEST(WebMosaic, HasItsSourcesBesideIt) {
  const auto holds = [](const std::string& source, const std::string& name) {
    const std::string text = opened(withSource(source));
    EXPECT_NE(text.find(R"(<SourceFilename relativeToVRT="0">)" + name + "</SourceFilename>"),
              std::string::npos)
        << text;
  };
  holds("tile.tif", "/vsivlrange/http/h%3A8080/a/b/tile.tif");
  holds("../c/tile 1.tif", "/vsivlrange/http/h%3A8080/a/c/tile 1.tif");
  holds("t\\x#1.tif", "/vsivlrange/http/h%3A8080/a/b/t/x%25231.tif");
  holds("../../../../etc/passwd", "/vsivlrange/http/h%3A8080/etc/passwd");
  holds("http://h:8080/z.tif", "/vsivlrange/http/h%3A8080/z.tif");
}

TEST(WebMosaic, WithSourcesOfThisMachineOrOtherServersIsRefused) {
  for (const std::string source :
       {"/etc/passwd", "/vsicurl/http://h:8080/a.tif", "/vsimem/a.tif", "/vsizip/a.zip",
        "/vsivlrange/http/h/a.tif", "C:\\data\\a.tif", "\\\\host\\a.tif", "GTIFF_DIR:1:a.tif", "vrt://a.tif",
        "ftp://h/a.tif", "", "file:///etc/a", "&lt;VRTDataset rasterXSize=\"1\"&gt;", "WMS:http://h:8080/",
        "PG:dbname=a"}) {
    EXPECT_NE(refusalOf(withSource(source)).find("is no file beside it"), std::string::npos) << source;
  }
  for (const std::string source : {"http://other/a.tif", "https://h:8080/a.tif", "http://h/a.tif"})
    EXPECT_NE(refusalOf(withSource(source)).find("lies on another server"), std::string::npos) << source;
  EXPECT_NE(refusalOf(withSource("http://u:geheim@h:8080/a.tif")), "");
  EXPECT_EQ(refusalOf(withSource("http://u:geheim@h:8080/a.tif")).find("geheim"), std::string::npos);
  EXPECT_NE(refusalOf(withSource("a.tif", "")), "") << "seen from the folder that the program runs in";
  EXPECT_NE(refusalOf(withSource("a.tif<b/>/etc/passwd")), "");
}

TEST(WebMosaic, WithWhatIsNoPlainMosaicIsRefused) {
  for (const std::string element :
       {"<GDALWarpOptions/>", "<PansharpeningOptions/>", "<Group name=\"/\"/>", "<OpenOptions/>",
        "<VRTRasterBand subClass=\"VRTRawRasterBand\"/>", "<VRTRasterBand subClass=\"VRTWarpedRasterBand\"/>",
        "<VRTRasterBand subClass=\"VRTDerivedRasterBand\"><PixelFunctionCode>import os</PixelFunctionCode>"
        "</VRTRasterBand>",
        "<VRTRasterBand><PixelFunctionLanguage>Python</PixelFunctionLanguage></VRTRasterBand>",
        "<sourcefilename>/etc/passwd</sourcefilename>", "<SRS>/etc/passwd</SRS>", "<SRS>http://h/x</SRS>",
        "<GCPList Projection=\"/etc/passwd\"/>", "<VRTRasterBand><ArraySource/></VRTRasterBand>"}) {
    EXPECT_NE(refusalOf(withElement(element)).find("is not opened: it"), std::string::npos) << element;
  }
  for (const std::string text : {"", "<VRTDataset", "<Other/>", "no text"})
    EXPECT_NE(refusalOf(text), "") << text;
  std::string deep;
  for (int i = 0; i < 100; ++i) deep += "<VRTRasterBand>";
  EXPECT_NE(refusalOf(withElement(deep)), "");
}

TEST(WebMosaic, WithAttributesThatStandForElementsIsRefused) {
  for (const std::string element :
       {R"(<VRTRasterBand><SimpleSource SourceFilename="/etc/x.tif"/></VRTRasterBand>)",
        R"(<VRTRasterBand><ComplexSource SourceFilename="/etc/x.tif"/></VRTRasterBand>)",
        R"(<VRTRasterBand><SimpleSource sourcefilename="/etc/x.tif"/></VRTRasterBand>)",
        R"(<VRTRasterBand><Overview SourceFilename="/etc/x.tif"/></VRTRasterBand>)",
        R"(<VRTRasterBand PixelFunctionLanguage="Python"/>)",
        R"(<VRTRasterBand PixelFunctionCode="import os"/>)", R"(<VRTRasterBand SimpleSource="/etc/x.tif"/>)",
        R"(<MaskBand VRTRasterBand="/etc/x.tif"/>)", R"(<MDI OVERVIEW_FILE="/etc/x.tif"/>)",
        R"(<SRS dataset="/etc/x.tif"/>)", R"(<GCPList projection="/etc/x.prj"/>)"}) {
    EXPECT_NE(refusalOf(withElement(element)).find(" has an attribute "), std::string::npos) << element;
  }
  for (const std::string attribute :
       {"SRS", "GDALWarpOptions", "OpenOptions", "Metadata", "VRTRasterBand", "xmlns"}) {
    EXPECT_NE(refusalOf("<VRTDataset " + attribute + "=\"/etc/x\"/>"), "") << attribute;
  }
}

TEST(WebMosaic, KeepsTheAttributesThatAreWrittenForPlainMosaics) {
  const std::string text = opened(withElement(
      R"(<SRS dataAxisToSRSAxisMapping="2,1" coordinateEpoch="2020">EPSG:4326</SRS>)"
      R"(<GCPList Projection="EPSG:4326"><GCP Id="1" Info="" Pixel="1" Line="1" X="1" Y="1" Z="1"/></GCPList>)"
      R"(<OverviewList resampling="NEAREST">2 4</OverviewList>)"
      R"(<VRTRasterBand dataType="Byte" band="1" blockXSize="128" blockYSize="128">)"
      R"(<ColorTable><Entry c1="1" c2="2" c3="3" c4="4"/></ColorTable><ComplexSource resampling="cubic">)"
      R"(<SourceFilename relativeToVRT="1" shared="0">a.tif</SourceFilename>)"
      R"(<SourceProperties RasterXSize="2" RasterYSize="2" DataType="Byte" BlockXSize="2" BlockYSize="2"/>)"
      R"(<SrcRect xOff="0" yOff="0" xSize="2" ySize="2"/></ComplexSource></VRTRasterBand>)"));
  EXPECT_NE(text.find("BlockYSize=\"2\""), std::string::npos) << text;
}

TEST(WebMosaic, LosesWhatWouldLeadToFilesUnseen) {
  const std::string text = opened(
      withElement("<SRS>EPSG:32632</SRS><Metadata><MDI key=\"A\">b</MDI></Metadata>"
                  "<Metadata domain=\"OVERVIEWS\"><MDI key=\"OVERVIEW_FILE\">/etc/passwd</MDI></Metadata>"
                  "<Metadata domain=\"GEOLOCATION\"><MDI key=\"X_DATASET\">/etc/passwd</MDI></Metadata>") +
      "<VRTDataset><SourceFilename>/etc/passwd</SourceFilename></VRTDataset>");
  EXPECT_EQ(text.find("/etc/passwd"), std::string::npos) << text;
  EXPECT_NE(text.find("<MDI key=\"A\">b</MDI>"), std::string::npos) << text;
}

TEST(WebMosaic, WithTextsBesideImagesForSourcesIsRefused) {
  for (const std::string name : {"a.wld", "a.PRJ", "a.tif.aux.xml", "a.tab"})
    EXPECT_NE(refusalOf(withSource(name)).find("is no image"), std::string::npos) << name;
  EXPECT_EQ(refusalOf(withSource("a.tif.ovr")), "");
}

TEST(SideCar, KeepsWhatIsHarmless) {
  const std::string text = harmlessSideCar(
      "<PAMDataset OVERVIEW_FILE=\"/etc/x\"><SRS dataAxisToSRSAxisMapping=\"1,2\">EPSG:32632</SRS>"
      "<Metadata><MDI key=\"A\">b</MDI></Metadata><Other>/etc/x</Other>"
      "<Metadata domain=\"OVERVIEWS\"><MDI key=\"OVERVIEW_FILE\">/etc/x</MDI></Metadata>"
      "<Metadata domain=\"SUBDATASETS\"><MDI key=\"SUBDATASET_1_NAME\">/etc/x</MDI></Metadata>"
      "<PAMRasterBand band=\"1\"><Description>red</Description><Metadata "
      "domain=\"OVERVIEWS\"/></PAMRasterBand>"
      "</PAMDataset><PAMDataset><Metadata domain=\"OVERVIEWS\"/></PAMDataset>");
  EXPECT_EQ(text.find("/etc/x"), std::string::npos) << text;
  EXPECT_EQ(text.find("OVERVIEWS"), std::string::npos) << text;
  for (const std::string kept : {"EPSG:32632", "<MDI key=\"A\">b</MDI>", "<PAMRasterBand band=\"1\">", "red"})
    EXPECT_NE(text.find(kept), std::string::npos) << text;
  for (const std::string none : {"", "<PAMDataset", "<VRTDataset/>", "text"})
    EXPECT_EQ(harmlessSideCar(none), "");
  EXPECT_EQ(harmlessSideCar("<PAMDataset><SRS>/etc/x</SRS></PAMDataset>").find("/etc/x"), std::string::npos);
}

class WebMosaics : public RangeFixture {
 protected:
  /// A mosaic of two rasters side by side, as the raster library writes it beside them.
  void makeMosaic() {
    make("left.tif", "COG", 600, {"COMPRESS=DEFLATE"});
    make("right.tif", "GTiff", 600, {"COMPRESS=LZW"});
    std::string bands;
    for (int band = 1; band <= 3; ++band) {
      bands += "<VRTRasterBand dataType=\"Byte\" band=\"" + std::to_string(band) + "\">";
      for (const std::string side : {"left", "right"}) {
        bands += "<SimpleSource><SourceFilename relativeToVRT=\"1\">" + side +
                 ".tif</SourceFilename><SourceBand>" + std::to_string(band) +
                 R"(</SourceBand><SrcRect xOff="0" yOff="0" xSize="600" ySize="600"/><DstRect xOff=")" +
                 (side == "left" ? "0" : "600") + R"(" yOff="0" xSize="600" ySize="600"/></SimpleSource>)";
      }
      bands += "</VRTRasterBand>";
    }
    write("mosaic.vrt", R"(<VRTDataset rasterXSize="1200" rasterYSize="600"><SRS>EPSG:32632</SRS>)"
                        "<GeoTransform>500000,10,0,5000000,0,-10</GeoTransform>" +
                            bands + "</VRTDataset>");
  }
  /// What opening and reading tells.
  static std::string problemOf(const std::string& name) {
    const GdalScope scope;
    const DatasetPtr raster = openRaster(name);
    if (!raster) return scope.firstFailure("");
    std::array<std::uint8_t, 4> pixels{};
    const CPLErr read =
        raster->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, 2, 2, pixels.data(), 2, 2, GDT_Byte, 0, 0, nullptr);
    return read == CE_None ? std::string() : scope.failures("");
  }
};

TEST_F(WebMosaics, HaveThePixelsOfTheSameMosaicOfThisMachine) {
  makeMosaic();
  const FaultProxy server{fs::path(folder_)};
  const DatasetPtr remote = ranges::opened(rangeRasterName(server.address("/mosaic.vrt")));
  const DatasetPtr local = ranges::opened(path("mosaic.vrt"));
  ASSERT_TRUE(remote && local);
  expectSame(*remote, *local);
  for (const std::string& request : server.requests()) {
    const bool isKnown =
        request == "GET /mosaic.vrt" || request == "GET /left.tif" || request == "GET /right.tif";
    EXPECT_TRUE(isKnown) << request;
  }
}

TEST_F(WebMosaics, OpenNoFileOfThisMachine) {
  makeMosaic();
  write("local.vrt", withSource(path("left.tif")));
  write("curl.vrt", withSource("/vsicurl/http://127.0.0.1:1/left.tif"));
  write("unseen.vrt", withSource("left.tif", ""));
  const FaultProxy server{fs::path(folder_)};
  for (const std::string name : {"/local.vrt", "/curl.vrt", "/unseen.vrt"}) {
    EXPECT_NE(problemOf(rangeRasterName(server.address(name))).find("is no file beside it"),
              std::string::npos)
        << name;
  }
  EXPECT_EQ(problemOf(path("local.vrt")), "") << "the same file of this machine may";
}

TEST_F(WebMosaics, ThatHoldThemselvesComeToAnEnd) {
  write("a.vrt", withSource("a.vrt"));
  const FaultProxy server{fs::path(folder_)};
  EXPECT_NE(problemOf(rangeRasterName(server.address("/a.vrt"))), "");
}

TEST_F(WebMosaics, WithAMissingSourceTellWhichOne) {
  write("a.vrt", withSource("none.tif"));
  const FaultProxy server{fs::path(folder_)};
  const std::string problem = problemOf(rangeRasterName(server.address("/a.vrt")));
  EXPECT_NE(problem.find("none.tif"), std::string::npos) << problem;
}

}  // namespace
}  // namespace vlclientui::client::ranges
