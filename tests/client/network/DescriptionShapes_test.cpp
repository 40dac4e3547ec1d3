// Descriptions of coverages of several axes, with the words and the order that each engine has for them.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageAxes.h"
#include "client/network/CoverageDocuments.h"
#include "client/network/CoverageRequests.h"
#include "client/network/CoverageSystem.h"

namespace vlclientui::client::network {
namespace {

using Slices = std::vector<CoverageSlice>;

constexpr auto compound =
    "http://www.opengis.net/def/crs-compound?1=http://www.opengis.net/def/crs/OGC/0/AnsiDate&amp;"
    "2=http://www.opengis.net/def/crs/EPSG/0/4326";

std::string envelope(const std::string& system, const std::string& labels, const std::string& low,
                     const std::string& high, const std::string& kind = "Envelope") {
  return "<gml:boundedBy><gml:" + kind + " srsName=\"" + system + "\" axisLabels=\"" + labels +
         "\"><gml:lowerCorner>" + low + "</gml:lowerCorner><gml:upperCorner>" + high +
         "</gml:upperCorner></gml:" + kind + "></gml:boundedBy><wcs:CoverageId>c</wcs:CoverageId>";
}

std::string limits(const std::string& low, const std::string& high) {
  return "<gml:limits><gml:GridEnvelope><gml:low>" + low + "</gml:low><gml:high>" + high +
         "</gml:high></gml:GridEnvelope></gml:limits>";
}

std::string plainGrid(const std::string& labels, const std::string& limitsText,
                      const std::vector<std::string>& vectors) {
  std::string text =
      "<gml:domainSet><gml:RectifiedGrid>" + limitsText + "<gml:axisLabels>" + labels +
      "</gml:axisLabels><gml:origin><gml:Point><gml:pos>0 0</gml:pos></gml:Point></gml:origin>";
  for (const std::string& vector : vectors)
    text += "<gml:offsetVector srsName=\"x\">" + vector + "</gml:offsetVector>";
  return text + "</gml:RectifiedGrid></gml:domainSet>";
}

/// An axis of a grid that may be uneven.
std::string generalAxis(const std::string& vector, const std::string& coefficients = "") {
  return "<gmlrgrid:generalGridAxis><gmlrgrid:GeneralGridAxis><gmlrgrid:offsetVector>" + vector +
         "</gmlrgrid:offsetVector><gmlrgrid:coefficients>" + coefficients +
         "</gmlrgrid:coefficients></gmlrgrid:GeneralGridAxis></gmlrgrid:generalGridAxis>";
}

std::string generalGrid(const std::string& limitsText, const std::string& axes) {
  return "<gml:domainSet><gmlrgrid:ReferenceableGridByVectors "
         "xmlns:gmlrgrid=\"http://www.opengis.net/gml/3.3/rgrid\">" +
         limitsText + axes + "</gmlrgrid:ReferenceableGridByVectors></gml:domainSet>";
}

std::optional<CoverageDescription> described(const std::string& content) {
  const std::string range =
      "<gmlcov:rangeType><swe:DataRecord><swe:field name=\"GRAY_INDEX\"><swe:Quantity/></swe:field>"
      "</swe:DataRecord></gmlcov:rangeType>";
  auto read = readDescriptions(descriptions201("<wcs:CoverageDescription gml:id=\"c\">" + content + range +
                                               "</wcs:CoverageDescription>"),
                               CoverageVersion::V201);
  auto* found = std::get_if<std::vector<CoverageDescription>>(&read);
  if (found == nullptr || found->size() != 1) return std::nullopt;
  return found->front();
}

const Bounds place = {-10, 40, 10, 50};

void expectPlaced(const std::optional<CoverageDescription>& found) {
  ASSERT_TRUE(found);
  EXPECT_EQ(found->system, "EPSG:4326");
  EXPECT_EQ(found->envelope, place);
  EXPECT_EQ(found->columns, 200);
  EXPECT_EQ(found->rows, 100);
  ASSERT_EQ(found->bands.size(), 1U);
  EXPECT_FALSE(found->bands[0].noData);
}

TEST(DescriptionShapes, MayNumberTheirGridByLettersOfItsOwn) {
  const auto found = described(
      envelope("http://www.opengis.net/def/crs/EPSG/0/4326", "Lat Long", "40.0 -10.0", "50.0 10.0") +
      plainGrid("i j", limits("0 0", "199 99"), {"0.0 0.1", "-0.1 0.0"}));
  expectPlaced(found);
  EXPECT_EQ(found->xLabel, "Long");
}

TEST(DescriptionShapes, MayHaveTheirVectorsInTheOrderOfTheSystem) {
  const auto found = described(envelope("http://server/def/crs/EPSG/0/4326", "Lat Long", "40 -10", "50 10") +
                               plainGrid("Lat Long", limits("0 0", "99 199"), {"-0.1 0", "0 0.1"}));
  expectPlaced(found);
}

TEST(DescriptionShapes, MayNameATimeBesideTheirPlaceAlone) {
  const auto found = described(envelope("http://www.opengis.net/def/crs/EPSG/0/4326", "Lat Long time",
                                        "40.0 -10.0", "50.0 10.0", "EnvelopeWithTimePeriod") +
                               plainGrid("i j", limits("0 0", "199 99"), {"0.0 0.1", "-0.1 0.0"}));
  expectPlaced(found);
  EXPECT_EQ(found->slices, Slices{}) << "the server chooses the time";
}

// Of three axes the image is that of the newest time.
TEST(DescriptionShapes, OfATimeAndAPlaceShowTheNewestTime) {
  const std::string low = R"("2015-01-01T00:00:00.000Z" 40 -10)";
  const std::string high = R"("2020-06-01T00:00:00.000Z" 50 10)";
  const auto found = described(
      envelope(compound, "ansi Lat Long", low, high) +
      generalGrid(limits("0 0 0", "4 99 199"), generalAxis("1 0 0", R"("2015-01-01" "2020-06-01")") +
                                                   generalAxis("0 -0.1 0") + generalAxis("0 0 0.1")));
  expectPlaced(found);
  EXPECT_EQ(found->slices, (Slices{{"ansi", R"("2020-06-01T00:00:00.000Z")"}}));
  const std::string request =
      pixelsRequest("http://h/ows", CoverageVersion::V201, *found, {0, 0, 10, 10}, 10, 10, "image/tiff");
  EXPECT_NE(request.find("SUBSET=ansi%28%222020-06-01T00%3A00%3A00.000Z%22%29"), std::string::npos)
      << request;
  EXPECT_NE(request.find("SUBSET=Lat%2849%2C50%29"), std::string::npos) << request;
}

TEST(DescriptionShapes, OfTimesInNumbersShowTheNewestOne) {
  const auto grid = plainGrid("i j k", limits("0 0 0", "9 99 199"), {"1 0 0", "0 -0.1 0", "0 0 0.1"});
  for (const std::string label : {"ansi", "d"}) {
    const auto found =
        described(envelope(compound, label + " Lat Long", "149000 40 -10", "149009 50 10") + grid);
    expectPlaced(found);
    EXPECT_EQ(found->slices, (Slices{{label, "149009"}})) << "told by its name, or by its system";
  }
}

TEST(DescriptionShapes, OfHeightsShowTheFirstOne) {
  const std::string system =
      "http://www.opengis.net/def/"
      "crs-compound?1=http%3A%2F%2Fwww.opengis.net%2Fdef%2Fcrs%2FEPSG%2F0%2F4326&amp;"
      "2=http%3A%2F%2Fwww.opengis.net%2Fdef%2Fcrs%2FOGC%2F0%2FIndex1D";
  const auto found =
      described(envelope(system, "Lat Long level", "40 -10 0", "50 10 12.5") +
                plainGrid("i j k", limits("0 0 0", "99 199 24"), {"-0.1 0 0", "0 0.1 0", "0 0 0.5"}));
  expectPlaced(found);
  EXPECT_EQ(found->slices, (Slices{{"level", "0"}}));
}

TEST(DescriptionShapes, OfASystemWithHeightsAreKnownByTheirLabels) {
  const auto found =
      described(envelope("http://www.opengis.net/def/crs/EPSG/0/4326", "h Lat Long", "5 40 -10", "9 50 10") +
                plainGrid("h Lat Long", limits("0 0 0", "3 99 199"), {"1 0 0", "0 -0.1 0", "0 0 0.1"}));
  expectPlaced(found);
  EXPECT_EQ(found->slices, (Slices{{"h", "5"}}));
}

TEST(DescriptionShapes, AreNoneWithoutTwoEvenAxesOfAPlace) {
  const std::string times = R"("2015-01-01" 40 -10)";
  const std::string later = R"("2020-06-01" 50 10)";
  const auto cube = [&](const std::string& lat) {
    return generalGrid(limits("0 0 0", "4 99 199"), generalAxis("1 0 0") + lat + generalAxis("0 0 0.1"));
  };
  ASSERT_TRUE(described(envelope(compound, "ansi Lat Long", times, later) + cube(generalAxis("0 -0.1 0"))));
  const std::vector<std::string> table = {
      envelope(compound, "ansi Lat Long", times, later) + cube(generalAxis("0 -0.1 0", "0 1 3 7")),
      envelope(compound, "ansi Lat Long", times, later) + cube(generalAxis("0 -0.1 0.1")),
      envelope(compound, "ansi Lat Long", times, later) + cube(""),
      envelope(compound, "ansi Lat", times, later) + cube(generalAxis("0 -0.1 0")),
      envelope(compound, "ansi Lat Long", "40 -10", later) + cube(generalAxis("0 -0.1 0")),
      envelope("http://www.opengis.net/def/crs/EPSG/0/4326", "a b c", "1 40 -10", "2 50 10") +
          cube(generalAxis("0 -0.1 0")),
      envelope("http://www.opengis.net/def/crs-compound?1=a&amp;2=b", "a b", "1 2", "2 3") +
          plainGrid("a b", limits("0 0", "9 9"), {"0.1 0", "0 0.1"}),
      envelope(compound, "", "", "") + plainGrid("", "", {})};
  for (const std::string& content : table) EXPECT_FALSE(described(content)) << content;
}

TEST(SystemsOfCompounds, AreReadInTheirOrder) {
  EXPECT_EQ(systemsIn("EPSG:4326"), std::vector<std::string>{"EPSG:4326"});
  EXPECT_EQ(systemsIn("http://h/def/crs-compound?1=a&2=http%3A%2F%2Fb"),
            (std::vector<std::string>{"a", "http://b"}));
  EXPECT_EQ(systemName("http://www.opengis.net/def/crs?authority=EPSG&version=0&code=3035"), "EPSG:3035");
}

std::optional<CoverageDescription> middleOne(std::string document) {
  auto read = readDescriptions(document, CoverageVersion::V111);
  auto* found = std::get_if<std::vector<CoverageDescription>>(&read);
  if (found == nullptr || found->size() != 1) return std::nullopt;
  return found->front();
}

std::string withoutElement(std::string text, const std::string& name) {
  const std::size_t begin = text.find("<" + name + ">");
  const std::string end = "</" + name + ">";
  return text.erase(begin, text.find(end) + end.size() - begin);
}

TEST(DescriptionShapes, OfTheMiddleVersionMayLeaveTheGridToTheBoxes) {
  const auto whole = middleOne(description111);
  ASSERT_TRUE(whole);
  for (const std::string element : {"GridCRS", "GridOffsets"}) {
    const auto found = middleOne(withoutElement(description111, element));
    ASSERT_TRUE(found) << element;
    EXPECT_EQ(found->system, "EPSG:4326") << element;
    EXPECT_EQ(found->envelope, whole->envelope) << element;
    EXPECT_EQ(found->columns, whole->columns) << element;
    EXPECT_EQ(found->rows, whole->rows) << element;
  }
}

}  // namespace
}  // namespace vlclientui::client::network
