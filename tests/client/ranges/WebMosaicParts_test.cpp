// Virtual rasters of strangers, part by part: what is let through, and what is refused in which words.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/ranges/WebMosaic.h"

namespace vlclientui::client::ranges {
namespace {

constexpr auto address = "http://h:8080/a/b/mosaic.vrt?sig=geheim";

std::string document(const std::string& content, const std::string& attributes = {}) {
  return "<VRTDataset rasterXSize=\"2\" rasterYSize=\"2\"" + attributes + ">" + content + "</VRTDataset>";
}

std::string band(const std::string& content) {
  return document("<VRTRasterBand dataType=\"Byte\" band=\"1\">" + content + "</VRTRasterBand>");
}

std::string source(const std::string& name, const std::string& attributes = " relativeToVRT=\"1\"") {
  return band("<SimpleSource><SourceFilename" + attributes + ">" + name + "</SourceFilename></SimpleSource>");
}

/// The text that may be opened, or the refusal behind "!".
std::string outcome(const std::string& text, const std::string& from = address) {
  const auto result = openableMosaic(text, from);
  const auto* refusal = std::get_if<MosaicRefusal>(&result);
  return refusal == nullptr ? std::get<OpenableMosaic>(result).text : "!" + refusal->text;
}

bool isLetThrough(const std::string& text) { return !outcome(text).starts_with('!'); }

struct Part {
  std::string label;
  std::string text;
};

void PrintTo(const Part& part, std::ostream* out) { *out << part.text; }

class PlainPart : public testing::TestWithParam<Part> {};

TEST_P(PlainPart, OfAVirtualRasterIsLetThroughAsItIs) {
  const std::string text = outcome(GetParam().text);
  EXPECT_FALSE(text.starts_with('!')) << text;
  EXPECT_NE(text.find(GetParam().label), std::string::npos) << "lost: " << text;
}

INSTANTIATE_TEST_SUITE_P(
    Each, PlainPart,
    testing::Values(
        Part{"EPSG:32632", document("<SRS>EPSG:32632</SRS>")},
        Part{"GEOGCS[", document("<SRS dataAxisToSRSAxisMapping=\"2,1\">GEOGCS[\"WGS 84\"]</SRS>")},
        Part{"PROJ_CRS[", document("<SRS>PROJ_CRS[\"x\"]</SRS>")},
        Part{"<GeoTransform>", document("<GeoTransform>0,1,0,0,0,-1</GeoTransform>")},
        Part{"<GCP Id=\"1\"",
             document(
                 "<GCPList Projection=\"EPSG:4326\"><GCP Id=\"1\" Pixel=\"0\" Line=\"0\" X=\"1\" Y=\"2\"/>"
                 "</GCPList>")},
        Part{"AREA_OR_POINT", document("<Metadata><MDI key=\"AREA_OR_POINT\">Area</MDI></Metadata>")},
        Part{"INTERLEAVE", document("<Metadata domain=\"IMAGE_STRUCTURE\"><MDI key=\"INTERLEAVE\">BAND</MDI>"
                                    "</Metadata>")},
        Part{"LINE_OFF", document("<Metadata domain=\"RPC\"><MDI key=\"LINE_OFF\">1</MDI></Metadata>")},
        Part{"<MaskBand>", document("<MaskBand><VRTRasterBand dataType=\"Byte\"/></MaskBand>")},
        Part{"<OverviewList", document("<OverviewList resampling=\"average\">2 4</OverviewList>")},
        Part{"<ColorTable>", band("<ColorTable><Entry c1=\"1\" c2=\"2\" c3=\"3\" c4=\"255\"/></ColorTable>")},
        Part{"<CategoryNames>", band("<CategoryNames><Category>Water</Category></CategoryNames>")},
        Part{"<HistCounts>", band("<Histograms><HistItem><HistMin>0</HistMin><HistMax>9</HistMax>"
                                  "<BucketCount>1</BucketCount><HistCounts>4</HistCounts></HistItem>"
                                  "</Histograms>")},
        Part{"<NODATA>",
             band("<ComplexSource><NODATA>0</NODATA><ScaleOffset>1</ScaleOffset></ComplexSource>")},
        Part{"<LUT>", band("<ComplexSource><LUT>0:0,255:1</LUT></ComplexSource>")},
        Part{"<Coefs>", band("<KernelFilteredSource><Kernel normalized=\"1\"><Size>1</Size><Coefs>1</Coefs>"
                             "</Kernel></KernelFilteredSource>")},
        Part{"<PixelFunctionType>sum",
             document("<VRTRasterBand dataType=\"Byte\" subClass=\"VRTDerivedRasterBand\">"
                      "<PixelFunctionType>sum</PixelFunctionType></VRTRasterBand>")},
        Part{"subClass=\"VRTSourcedRasterBand\"",
             document("<VRTRasterBand dataType=\"Byte\" subClass=\"VRTSourcedRasterBand\"/>")},
        Part{"subClass=\"VRTDataset\"", document("", " subClass=\"VRTDataset\"")},
        Part{"band=\"1\"", "<?xml version=\"1.0\"?>\n<!-- by hand -->\n" + band("")}),
    [](const auto& each) { return "Case" + std::to_string(each.index); });

class OtherPart : public testing::TestWithParam<Part> {};

TEST_P(OtherPart, OfAVirtualRasterIsRefusedByName) {
  const std::string text = outcome(GetParam().text);
  const std::string before = "!The virtual raster \"http://h:8080/a/b/mosaic.vrt?sig=***\" is not opened: ";
  EXPECT_EQ(text, before + GetParam().label + ".");
}

INSTANTIATE_TEST_SUITE_P(
    Each, OtherPart,
    testing::Values(
        Part{"it holds a VRTDataset of kind VRTWarpedDataset",
             document("", " subClass=\"VRTWarpedDataset\"")},
        Part{"it holds a VRTDataset of kind VRTPansharpenedDataset",
             document("", " subClass=\"VRTPansharpenedDataset\"")},
        Part{"it holds a VRTRasterBand of kind VRTRawRasterBand",
             document("<VRTRasterBand subClass=\"VRTRawRasterBand\"><SourceFilename>x</SourceFilename>"
                      "</VRTRasterBand>")},
        Part{"it holds GDALWarpOptions",
             document("<GDALWarpOptions><SourceDataset>/etc/passwd</SourceDataset>"
                      "</GDALWarpOptions>")},
        Part{"it holds Input", document("<Input><SourceFilename>a.tif</SourceFilename></Input>")},
        Part{"it holds OpenOptions", band("<SimpleSource><OpenOptions><OOI key=\"A\">b</OOI></OpenOptions>"
                                          "</SimpleSource>")},
        Part{"it holds SourceDataset", band("<SimpleSource><SourceDataset>/etc/passwd</SourceDataset>"
                                            "</SimpleSource>")},
        Part{"it holds VRTDataset2", document("<VRTDataset2/>")},
        Part{"it holds PixelFunctionCode", band("<PixelFunctionCode>import os</PixelFunctionCode>")},
        Part{"it holds PixelFunctionLanguage", band("<PixelFunctionLanguage>Python</PixelFunctionLanguage>")},
        Part{"it holds simplesource", band("<simplesource/>")},
        Part{"it holds x:SimpleSource", band("<x:SimpleSource/>")},
        Part{"it holds Overviews", band("<Overviews><SourceFilename>a.tif</SourceFilename></Overviews>")}),
    [](const auto& each) { return "Case" + std::to_string(each.index); });

TEST(WebMosaicSystems, ThatAreNoDefinitionsAreRefused) {
  std::vector<std::string> documents = {document("<GCPList Projection=\"file.prj\"/>")};
  for (const std::string system :
       {"../secret.prj", "/vsimem/a.prj", "https://h:8080/a.prj", "ESRI::/etc/passwd", "EPSG:4326+5773",
        "WGS84", "+proj=longlat +nadgrids=/etc/x"})
    documents.push_back(document("<SRS>" + system + "</SRS>"));
  for (const std::string& text : documents)
    EXPECT_TRUE(outcome(text).ends_with("is not opened: its coordinate system is no definition.")) << text;
}

TEST(WebMosaicKinds, AreRefusedHoweverTheyAreSpelled) {
  for (const std::string attribute : {" SUBCLASS=\"VRTWarpedDataset\"", " subclass=\"VRTProcessedDataset\"",
                                      " subClass=\"vrtdataset\"", " subClass=\" VRTDataset\""})
    EXPECT_FALSE(isLetThrough(document("", attribute))) << attribute;
}

class StrangeSource : public testing::TestWithParam<std::string> {};

TEST_P(StrangeSource, IsNoFileBesideTheVirtualRaster) {
  for (const std::string attributes :
       {"", " relativeToVRT=\"0\"", " relativeToVRT=\"1\"", " relativeToVRT=\"true\""})
    EXPECT_NE(outcome(source(GetParam(), attributes)).find("is no file beside it."), std::string::npos)
        << attributes << ": " << outcome(source(GetParam(), attributes));
}

INSTANTIATE_TEST_SUITE_P(
    Each, StrangeSource,
    testing::Values("/etc/passwd", "//host/share/a.tif", "\\\\host\\share\\a.tif", "C:\\a.tif", "c:/a.tif",
                    "/vsistdin/", "/vsicurl?url=http://h:8080/a.tif", "/vsitar//vsicurl/http://h/a.tar",
                    "/vsisubfile/0_100,/etc/passwd", "/vsis3/bucket/a.tif", "/vsivlrange/http/h%3A8080/a.tif",
                    "NETCDF:a.nc:x", "GTIFF_DIR:2:a.tif", "HDF5:a.h5://x", "ZARR:\"/vsicurl/http://h\"",
                    "vrt://a.tif?bands=1", "s3://bucket/a.tif", "gs://bucket/a.tif", "ftp://h:8080/a.tif",
                    "file:///a.tif", "httpx://h/a.tif", "a.tif|/etc/passwd", "\"a.tif\"",
                    "&lt;GDAL_WMS&gt;&lt;/GDAL_WMS&gt;", "{\"type\":\"WMS\"}", "MySQL:db", "http:a.tif"));

TEST(WebMosaicSources, ToldWithoutBeingRelativeAreRefusedToo) {
  for (const std::string attributes :
       {"", " relativeToVRT=\"0\"", " relativeToVRT=\"yes\"", " relative=\"1\""})
    EXPECT_FALSE(isLetThrough(source("a.tif", attributes))) << attributes;
  EXPECT_TRUE(isLetThrough(source("a.tif")));
}

TEST(WebMosaicSources, OfOtherServersAreRefusedHoweverTheyAreWritten) {
  for (const std::string name : {"http://other/a.tif", "HTTP://other/a.tif", "https://h:8080/a.tif",
                                 "http://h:8081/a.tif", "http://h/a.tif", "http://h.evil:8080/a.tif",
                                 "http://me:geheim@h:8080/a.tif", "http://me@h:8080/a.tif"}) {
    const std::string text = outcome(source(name));
    EXPECT_NE(text.find(" lies on another server."), std::string::npos) << name << ": " << text;
    EXPECT_EQ(text.find("geheim"), std::string::npos) << text;
  }
}

TEST(WebMosaicSources, BesideTheVirtualRasterGetNamesOfTheWeb) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a.tif", "a/b/a.tif"},
      {"./a.tif", "a/b/a.tif"},
      {"sub/a.tif", "a/b/sub/a.tif"},
      {"sub\\a.tif", "a/b/sub/a.tif"},
      {"../../../../a.tif", "a.tif"},
      {"50%.tif", "a/b/50%2525.tif"},
      {"a%20b.tif", "a/b/a%252520b.tif"},
      {"what?.tif", "a/b/what%253F.tif"},
      {"\xC3\xA9.tif", "a/b/\xC3\xA9.tif"},
      {"&amp;.tif", "a/b/%2526.tif"},
      {"HTTP://h:8080/z.tif", "z.tif"},
      {"http://h:8080/z.tif?v=1", "z.tif%3Fv%3D1"}};
  for (const auto& [name, expected] : cases) {
    const std::string text = outcome(source(name));
    EXPECT_NE(text.find("relativeToVRT=\"0\">/vsivlrange/http/h%3A8080/" + expected + "</SourceFilename>"),
              std::string::npos)
        << name << ": " << text;
  }
}

TEST(WebMosaicSources, OfMasksOverviewsAndAllKindsOfSourcesAreLookedAt) {
  const std::string bad = "<SourceFilename relativeToVRT=\"1\">/etc/passwd</SourceFilename>";
  for (const std::string kind :
       {"SimpleSource", "ComplexSource", "AveragedSource", "KernelFilteredSource", "Overview"})
    EXPECT_FALSE(isLetThrough(band("<" + kind + ">" + bad + "</" + kind + ">"))) << kind;
  EXPECT_FALSE(isLetThrough(document("<MaskBand><VRTRasterBand><SimpleSource>" + bad +
                                     "</SimpleSource></VRTRasterBand></MaskBand>")));
  EXPECT_FALSE(isLetThrough(document(bad)));
  const std::string two = "<SourceFilename relativeToVRT=\"1\">a.tif</SourceFilename>" + bad;
  EXPECT_FALSE(isLetThrough(band("<SimpleSource>" + two + "</SimpleSource>"))) << "the second one";
}

TEST(WebMosaicSources, WithMoreThanATextAreRefused) {
  for (const std::string name : {"a.tif<SourceFilename/>", "a.tif<!-- x -->/etc/passwd", "<b>a.tif</b>"})
    EXPECT_FALSE(isLetThrough(source(name))) << name;
}

TEST(WebMosaicSources, AreShownShortInARefusal) {
  const std::string text = outcome(source("/" + std::string(5000, 'x')));
  EXPECT_LT(text.size(), 400U);
  EXPECT_TRUE(text.starts_with("!")) << text;
}

TEST(WebMosaicMetadata, OfOtherDomainsIsLostWithAllThatItHolds) {
  for (const std::string domain : {"OVERVIEWS", "GEOLOCATION", "SUBDATASETS", "xml:VRT", "overviews",
                                   "DERIVED_SUBDATASETS", "new_vrt_sources"}) {
    const std::string text = outcome(
        document("<Metadata domain=\"" + domain + "\"><MDI key=\"A\">/etc/passwd</MDI><Evil/></Metadata>"));
    EXPECT_FALSE(text.starts_with('!')) << text;
    EXPECT_EQ(text.find("Metadata"), std::string::npos) << text;
  }
}

TEST(WebMosaicText, ThatIsNoneIsRefused) {
  const std::string zero = document("") + std::string(1, '\0') + "<x/>";
  EXPECT_TRUE(outcome(zero).ends_with("it is no text.")) << outcome(zero);
  for (const std::string text :
       {"", " ", "II*", "<a/>", "<VRTDataset>", "<vrtDataset", "<a><VRTDataset/></a>"})
    EXPECT_TRUE(outcome(text).ends_with("it cannot be read as XML.")) << text << ": " << outcome(text);
  EXPECT_TRUE(outcome(document(""), "/data/a.vrt").ends_with("its address is none."));
}

TEST(WebMosaicText, MayNestAsDeepAsAnyPlainMosaicAndNoDeeper) {
  const auto nested = [](int depth) {
    std::string begin;
    std::string end;
    for (int i = 0; i < depth; ++i) {
      begin += "<MaskBand>";
      end += "</MaskBand>";
    }
    return document(begin + end);
  };
  EXPECT_TRUE(isLetThrough(nested(32)));
  EXPECT_NE(outcome(nested(33)).find("its elements stand too deep in each other"), std::string::npos);
}

}  // namespace
}  // namespace vlclientui::client::ranges
