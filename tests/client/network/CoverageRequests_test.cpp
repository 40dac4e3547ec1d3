#include "client/network/CoverageRequests.h"

#include <gtest/gtest.h>

#include "client/network/CoverageAnswers.h"
#include "client/transport/Address.h"

namespace vlclientui::client::network {
namespace {

CoverageDescription scene() {
  CoverageDescription coverage;
  coverage.id = "Scene & more";
  coverage.system = "EPSG:32632";
  coverage.xLabel = "x";
  coverage.yLabel = "y";
  coverage.columns = 768;
  coverage.rows = 512;
  coverage.envelope = {452000, 5142960, 475040, 5158320};
  return coverage;
}

CoverageDescription geoid() {
  CoverageDescription coverage;
  coverage.id = "geoid";
  coverage.system = "EPSG:4326";
  coverage.axes = AxisOrder::NorthEast;
  coverage.xLabel = "long";
  coverage.yLabel = "lat";
  coverage.columns = 1440;
  coverage.rows = 721;
  coverage.envelope = {-180.125, -90.125, 179.875, 90.125};
  return coverage;
}

std::string shown(const std::string& request) { return percentDecoded(request); }

TEST(CoverageRequests, LetTheServerChooseTheVersion) {
  EXPECT_EQ(shown(capabilitiesRequest("http://h/wcs", std::nullopt)),
            "http://h/wcs?SERVICE=WCS&REQUEST=GetCapabilities&ACCEPTVERSIONS=2.0.1,1.1.1,1.0.0");
  EXPECT_EQ(capabilitiesRequest("http://h/wcs", CoverageVersion::V100),
            "http://h/wcs?SERVICE=WCS&REQUEST=GetCapabilities&VERSION=1.0.0");
}

TEST(CoverageRequests, KeepTheServersOwnParametersAndNotThoseOfAPastedRequest) {
  EXPECT_EQ(capabilitiesRequest("http://h/cgi?map=/a/b.map&service=WMS&Request=GetMap&VERSION=1.3.0",
                                CoverageVersion::V201),
            "http://h/cgi?map=/a/b.map&SERVICE=WCS&REQUEST=GetCapabilities&VERSION=2.0.1");
}

TEST(CoverageRequests, NameCoveragesAsEachVersionDoes) {
  const std::vector<std::string> ids = {"a", "b"};
  EXPECT_EQ(shown(descriptionRequest("http://h/", CoverageVersion::V201, ids)),
            "http://h/?SERVICE=WCS&REQUEST=DescribeCoverage&VERSION=2.0.1&COVERAGEID=a,b");
  EXPECT_EQ(shown(descriptionRequest("http://h/", CoverageVersion::V111, ids)),
            "http://h/?SERVICE=WCS&REQUEST=DescribeCoverage&VERSION=1.1.1&IDENTIFIERS=a,b");
  EXPECT_EQ(shown(descriptionRequest("http://h/", CoverageVersion::V100, ids)),
            "http://h/?SERVICE=WCS&REQUEST=DescribeCoverage&VERSION=1.0.0&COVERAGE=a,b");
}

TEST(CoverageRequests, AskByLabelsForPixelsAtTheirOwnSize) {
  EXPECT_EQ(shown(pixelsRequest("http://h/", CoverageVersion::V201, scene(), {10, 20, 30, 40}, 30, 40,
                                "image/tiff")),
            "http://h/?SERVICE=WCS&REQUEST=GetCoverage&VERSION=2.0.1&COVERAGEID=Scene & more"
            "&SUBSET=x(452300,453200)&SUBSET=y(5156520,5157720)&FORMAT=image/tiff");
}

TEST(CoverageRequests, EncodeNamesAndFormats) {
  const std::string request = pixelsRequest("http://h/", CoverageVersion::V201, scene(), {0, 0, 2, 2}, 2, 2,
                                            "image/tiff; mode=int16");
  EXPECT_NE(request.find("COVERAGEID=Scene%20%26%20more"), std::string::npos) << request;
  EXPECT_NE(request.find("FORMAT=image%2Ftiff%3B%20mode%3Dint16"), std::string::npos) << request;
}

TEST(CoverageRequests, AskForReductionsBySize) {
  EXPECT_EQ(
      shown(pixelsRequest("http://h/", CoverageVersion::V201, geoid(), {0, 0, 400, 200}, 100, 50, "f")),
      "http://h/?SERVICE=WCS&REQUEST=GetCoverage&VERSION=2.0.1&COVERAGEID=geoid&SUBSET=long(-180.125,-80.125)"
      "&SUBSET=lat(40.125,90.125)&SCALESIZE=long(100),lat(50)&FORMAT=f");
}

TEST(CoverageRequests, LayTheBoxOfTheMiddleVersionBetweenCentersInTheAuthoritysOrder) {
  EXPECT_EQ(
      shown(pixelsRequest("http://h/", CoverageVersion::V111, geoid(), {0, 0, 400, 200}, 200, 100, "f")),
      "http://h/?SERVICE=WCS&REQUEST=GetCoverage&VERSION=1.1.1&IDENTIFIER=geoid"
      "&BOUNDINGBOX=40.375,-179.875,89.875,-80.375,urn:ogc:def:crs:EPSG::4326"
      "&GRIDBASECRS=urn:ogc:def:crs:EPSG::4326&GRIDTYPE=urn:ogc:def:method:WCS:1.1:2dSimpleGrid"
      "&GRIDOFFSETS=-0.5,0.5&FORMAT=f");
}

TEST(CoverageRequests, PutEastFirstInTheFirstVersion) {
  EXPECT_EQ(shown(pixelsRequest("http://h/", CoverageVersion::V100, geoid(), {0, 0, 400, 200}, 400, 200,
                                "GeoTIFF")),
            "http://h/?SERVICE=WCS&REQUEST=GetCoverage&VERSION=1.0.0&COVERAGE=geoid&CRS=EPSG:4326"
            "&BBOX=-180.125,40.125,-80.125,90.125&WIDTH=400&HEIGHT=200&FORMAT=GeoTIFF");
}

TEST(CoverageRequests, EndExactlyAtTheEdgesOfTheCoverage) {
  CoverageDescription thirds = scene();
  thirds.envelope = {0, 0, 1, 1};
  thirds.columns = thirds.rows = 3;
  EXPECT_EQ(boundsOfWindow(thirds, {1, 1, 2, 2}), (Bounds{1.0 / 3, 0, 1, 1 - 1.0 / 3}));
}

TEST(ImageAnswer, TakesATiffWhateverItsTypeSays) {
  using namespace std::string_literals;
  for (const std::string& start : {"II*\0"s, "MM\0*"s, "II+\0"s, "MM\0+"s}) {
    const std::string body = start + "pixels";
    EXPECT_EQ(std::get<std::string_view>(readImage(body, "text/plain")), body);
  }
}

TEST(ImageAnswer, FindsTheImageAmongPieces) {
  using namespace std::string_literals;
  const std::string image = "II*\0pix--wcsels"s;
  for (const std::string& end : {"\r\n"s, "\n"s}) {
    const std::string body = end + "--wcs" + end + "Content-Type: text/xml" + end + end + "<Coverages/>" +
                             end + "--wcs" + end + "Content-Type: image/tiff" + end + end + image +
                             "\n--wcs--" + end;
    for (const std::string type :
         {"multipart/mixed; boundary=wcs", "Multipart/related; boundary=\"wcs\"; type=x"}) {
      const auto found = readImage(body, type);
      ASSERT_TRUE(std::holds_alternative<std::string_view>(found)) << type;
      EXPECT_EQ(std::get<std::string_view>(found), image) << type;
    }
  }
}

TEST(ImageAnswer, TellsAnExceptionInAnAnswerThatSaysAllIsWell) {
  const auto found = readImage(
      R"(<ServiceExceptionReport><ServiceException code="InvalidFormat">no such format</ServiceException></ServiceExceptionReport>)",
      "application/vnd.ogc.se_xml");
  EXPECT_EQ(std::get<CoverageProblem>(found).code, "InvalidFormat");
  EXPECT_EQ(std::get<CoverageProblem>(found).text, "no such format");
}

TEST(ImageAnswer, NamesWhatCameInstead) {
  EXPECT_EQ(std::get<CoverageProblem>(readImage("<html/>", "text/html; charset=utf-8")).text,
            "the server answers with text/html where an image was asked for");
  EXPECT_EQ(std::get<CoverageProblem>(readImage("", "")).text,
            "the server answers with something of an unknown kind where an image was asked for");
}

}  // namespace
}  // namespace vlclientui::client::network
