// Descriptions of coverages as they come from servers that differ from each other.
#include <cmath>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageDocuments.h"
#include "client/network/CoverageSystem.h"
#include "client/network/GridPlacing.h"

namespace vlclientui::client::network {
namespace {

using Words = std::vector<std::string>;
/// What stands in a document, and what is to stand there.
using Changes = std::vector<std::pair<std::string, std::string>>;

std::string changed(std::string text, const Changes& changes) {
  for (const auto& [from, to] : changes) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
  }
  return text;
}

std::optional<CoverageDescription> readOne(const std::string& document, CoverageVersion version) {
  auto read = readDescriptions(document, version);
  auto* found = std::get_if<std::vector<CoverageDescription>>(&read);
  if (found == nullptr || found->size() != 1) return std::nullopt;
  return found->front();
}

std::optional<CoverageDescription> newest(const Changes& changes) {
  return readOne(descriptions201(changed(geographicCoverage, changes)), CoverageVersion::V201);
}
std::optional<CoverageDescription> middle(const Changes& changes) {
  return readOne(changed(description111, changes), CoverageVersion::V111);
}
std::optional<CoverageDescription> first(const Changes& changes) {
  return readOne(changed(description100("767 767", "-30"), changes), CoverageVersion::V100);
}

const Bounds world = {-180.125, -90.125, 179.875, 90.125};
const Bounds valley = {452000, 5142960, 475040, 5166000};

TEST(DescriptionForms, OfTheNewestVersionKnowTheLabelsOfAxes) {
  for (const std::string labels : {"Lat Long", "N E", "Northing Easting", "y x", "phi lambda"}) {
    const auto found = newest({{"lat long", labels}});
    ASSERT_TRUE(found) << labels;
    EXPECT_EQ(found->axes, AxisOrder::NorthEast) << labels;
    EXPECT_EQ(found->yLabel + " " + found->xLabel, labels);
    EXPECT_EQ(found->envelope, world) << labels;
  }
}

TEST(DescriptionForms, OfTheNewestVersionFollowLabelsAgainstTheAuthority) {
  const auto found = newest({{"lat long", " Lon\n Lat "},
                             {"-90.125 -180.125", "-180.125 -90.125"},
                             {"90.125 179.875", "179.875 90.125"},
                             {"0 0.250000", "0.25 0"},
                             {"-0.250000 0", "0 -0.25"}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->axes, AxisOrder::EastNorth);
  EXPECT_EQ(found->xLabel, "Lon");
  EXPECT_EQ(found->yLabel, "Lat");
  EXPECT_EQ(found->envelope, world);
  EXPECT_EQ(found->columns, 1440);
}

TEST(DescriptionForms, OfTheNewestVersionMayCountRowsFirst) {
  const auto found = newest({{"1439 720", "720 1439"},
                             {"0 0.250000", "-0.25 0"},
                             {"<gml:offsetVector>-0.250000 0", "<gml:offsetVector>0 0.25"}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->columns, 1440);
  EXPECT_EQ(found->rows, 721);
  EXPECT_EQ(found->envelope, world);
}

TEST(DescriptionForms, OfTheNewestVersionMayCountFromAnyPixel) {
  const auto found = newest({{"<gml:low>0 0", "<gml:low>-720 -360"}, {"1439 720", "719 360"}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->columns, 1440);
  EXPECT_EQ(found->rows, 721);
}

TEST(DescriptionForms, OfTheNewestVersionCountPixelsThatAreNotTold) {
  for (const std::string high : {"", "1439", "many pixels", "-2 -2", "1439 720 3"}) {
    const auto found = newest({{"1439 720", high}});
    ASSERT_TRUE(found) << high;
    EXPECT_EQ(found->columns, 1440) << high;
    EXPECT_EQ(found->rows, 721) << high;
  }
}

TEST(DescriptionForms, OfTheNewestVersionAreLeftOutWhereTheGridIsNoPlainOne) {
  const std::vector<Changes> table = {
      {{"<wcs:CoverageId>geoid</wcs:CoverageId>", ""}},
      {{"<wcs:CoverageId>geoid", "<wcs:CoverageId> "}},
      {{"axisLabels=\"lat long\"", ""}},
      {{"lat long", "lat"}},
      {{"90.125 179.875", "90.125"}},
      {{"90.125 179.875", "-91 179.875"}},
      {{"<gml:offsetVector>0 0.250000</gml:offsetVector>", ""}},
      {{"0 0.250000", "0 0"}},
      {{"0 0.250000", "0.25"}},
      {{"1439 720", "100 720"}},
      {{"<gml:RectifiedGrid", "<gml:ReferenceableGrid"}, {"</gml:RectifiedGrid", "</gml:ReferenceableGrid"}},
  };
  for (const Changes& changes : table) {
    EXPECT_FALSE(newest(changes)) << changes.front().first << " -> " << changes.front().second;
  }
}

TEST(DescriptionForms, OfTheNewestVersionTellBandsAsFarAsTheyGo) {
  const auto found = newest({{"<swe:nilValue>-9999", "<swe:nilValue>none"},
                             {"-110 90</swe:interval>", "-110</swe:interval>"},
                             {"<swe:uom code=\"m\"/>", ""},
                             {"</swe:DataRecord>", "<swe:field name=\"second\"/></swe:DataRecord>"}});
  ASSERT_TRUE(found);
  ASSERT_EQ(found->bands.size(), 2U);
  EXPECT_EQ(found->bands[0].name, "band1");
  EXPECT_EQ(found->bands[0].unit, "");
  EXPECT_FALSE(found->bands[0].noData);
  EXPECT_FALSE(found->bands[0].range);
  EXPECT_EQ(found->bands[1].name, "second");
  EXPECT_EQ(found->bands[1].description, "");
}

TEST(DescriptionForms, TellOthersThoughOneIsLeftOut) {
  const std::string turned = changed(geographicCoverage, {{"0 0.250000", "0.1 0.25"}});
  const std::string other = changed(geographicCoverage, {{"<wcs:CoverageId>geoid", "<wcs:CoverageId>other"}});
  const auto read =
      readDescriptions(descriptions201(other + turned + geographicCoverage), CoverageVersion::V201);
  const auto& found = std::get<std::vector<CoverageDescription>>(read);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].id, "other");
  EXPECT_EQ(found[1].id, "geoid");
}

TEST(DescriptionForms, OfAnotherVersionThanAskedForTellNothing) {
  EXPECT_FALSE(readOne(description111, CoverageVersion::V201));
  EXPECT_FALSE(readOne(description111, CoverageVersion::V100));
  EXPECT_FALSE(readOne(descriptions201(geographicCoverage), CoverageVersion::V100));
  EXPECT_FALSE(readOne(description100("767 767", "-30"), CoverageVersion::V111));
}

TEST(DescriptionForms, OfTheFirstVersionTakeTheSystemOfRequestsWhereNoneIsNative) {
  const auto found =
      first({{"<nativeCRSs>EPSG:32632</nativeCRSs>", ""},
             {"EPSG:32632 EPSG:4326</requestResponseCRSs>", "EPSG:32632</requestResponseCRSs>"}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->system, "EPSG:32632");
  EXPECT_EQ(found->envelope, valley);
}

TEST(DescriptionForms, OfTheFirstVersionTakeTheFirstEnvelopeWhereNoneIsNative) {
  const auto found = first({{"<gml:Envelope srsName=\"EPSG:4326\"><gml:pos>8.37 46.43</gml:pos><gml:pos>8.67 "
                             "46.64</gml:pos></gml:Envelope>",
                             ""},
                            {"srsName=\"EPSG:32632\"", "srsName=\"LOCAL\""}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->envelope, valley);
}

TEST(DescriptionForms, OfTheFirstVersionReadEnvelopesWithTimes) {
  const auto found = first(
      {{"<gml:Envelope srsName=\"EPSG:32632\">", "<gml:EnvelopeWithTimePeriod srsName=\"EPSG:32632\">"},
       {"475040 5166000</gml:pos></gml:Envelope>", "475040 5166000</gml:pos></gml:EnvelopeWithTimePeriod>"}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->envelope, valley);
}

TEST(DescriptionForms, OfTheFirstVersionCountBandsOfAnInterval) {
  const std::string list = "<singleValue>1</singleValue><singleValue>2</singleValue>";
  const std::vector<std::pair<std::string, std::size_t>> table = {
      {"<interval><min>1</min><max>7</max></interval>", 7},
      {"<interval><min>1</min><max>0</max></interval>", 0},
      {"<interval><min>1</min><max>-5</max></interval>", 0},
      {"<interval><min>1</min><max>many</max></interval>", 0},
      {"<interval><min>1</min><max>1e12</max></interval>", 10000},
      {"<interval><min>1</min></interval>", 0},
      {"<singleValue>red</singleValue><interval><max>7</max></interval>", 1},
  };
  for (const auto& [values, count] : table) {
    const auto found = first({{list, values}});
    ASSERT_TRUE(found) << values;
    EXPECT_EQ(found->bands.size(), count) << values;
    for (const CoverageBand& band : found->bands) ASSERT_EQ(band.noData, 0) << values;
  }
  EXPECT_EQ(first({{list, table.front().first}})->bands.back().name, "7");
}

TEST(DescriptionForms, OfTheFirstVersionAreLeftOutWithoutAGrid) {
  const std::vector<Changes> table = {
      {{"<name>Scene", "<name>"}},
      {{"<gml:pos>475040 5166000</gml:pos>", ""}},
      {{"475040 5166000</gml:pos>", "475040</gml:pos>"}},
      {{"<gml:offsetVector>30 0", "<gml:offsetVector>30 5"}},
      {{"<gml:offsetVector>30 0", "<gml:offsetVector>zero"}},
      {{"<gml:high>767 767", "<gml:high>767 1500"}},
      {{"<gml:pos>452000 5142960", "<gml:pos>475041 5142960"}},
  };
  for (const Changes& changes : table) {
    EXPECT_FALSE(first(changes)) << changes.front().first << " -> " << changes.front().second;
  }
}

TEST(DescriptionForms, OfTheMiddleVersionReadOffsetsOfTwoAndFour) {
  const auto two = middle({});
  const auto four = middle({{"-0.25 0.25</GridOffsets>", "-0.25 0 0 0.25</GridOffsets>"}});
  ASSERT_TRUE(two);
  ASSERT_TRUE(four);
  EXPECT_EQ(four->envelope, two->envelope);
  EXPECT_EQ(four->columns, 1440);
}

TEST(DescriptionForms, OfTheMiddleVersionCountPixelsWhereNoBoxTellsThem) {
  const auto found = middle({{"urn:ogc:def:crs:OGC::imageCRS", "urn:ogc:def:crs:EPSG::3857"}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->columns, 1440);
  EXPECT_EQ(found->rows, 721);
}

TEST(DescriptionForms, OfTheMiddleVersionAreLeftOutWithoutTheirPlace) {
  const std::vector<Changes> table = {
      {{"<Identifier>geoid</Identifier>", ""}},
      {{"<ows:BoundingBox crs=\"urn:ogc:def:crs:EPSG::4326\"",
        "<ows:BoundingBox crs=\"urn:ogc:def:crs:EPSG::3857\""}},
      {{"-0.25 0.25</GridOffsets>", "-0.25</GridOffsets>"}},
      {{"-0.25 0.25</GridOffsets>", "0 0.25</GridOffsets>"}},
      {{"1439 720", "2000 720"}},
      {{"90.125 179.875", "90.125 -200"}},
  };
  for (const Changes& changes : table) {
    EXPECT_FALSE(middle(changes)) << changes.front().first << " -> " << changes.front().second;
  }
}

TEST(DescriptionForms, OfTheMiddleVersionTellNoDataForEachKey) {
  const auto found = middle({{"<Key>1</Key>", "<Key>red</Key><Key>green</Key>"}, {"-9999", "-1.5"}});
  ASSERT_TRUE(found);
  ASSERT_EQ(found->bands.size(), 2U);
  EXPECT_EQ(found->bands[1].name, "green");
  EXPECT_EQ(found->bands[1].noData, -1.5);
  EXPECT_FALSE(middle({{"<NullValue>-9999", "<NullValue>-9999 0"}})->bands[0].noData)
      << "one of two is not it";
}

TEST(DescriptionForms, OfAnyVersionAreLeftOutWhereTheirNumbersFitNoRaster) {
  for (const std::string number : {"1e300", "-1e300", "9e18", "1e10"}) {
    EXPECT_FALSE(newest({{"1439 720", number + " 720"}})) << number;
    EXPECT_FALSE(newest({{"<gml:low>0 0", "<gml:low>0 " + number}})) << number;
    EXPECT_FALSE(middle({{"1439 720", "1439 " + number}})) << number;
    EXPECT_FALSE(readOne(description100(number + " 767", "-30"), CoverageVersion::V100)) << number;
  }
  const std::string most = std::to_string(std::numeric_limits<double>::max());
  EXPECT_FALSE(
      newest({{"-90.125 -180.125", "-" + most + " -" + most}, {"90.125 179.875", most + " " + most}}));
  EXPECT_FALSE(newest({{"0 0.250000", "0 1e-300"}}));
  EXPECT_FALSE(newest({{"1439 720", "nan 720"}, {"0 0.250000", "0 1e-9"}}));
}

/// "from to", or "none".
std::string datesOf(const std::optional<CoverageDescription>& found) {
  EXPECT_TRUE(found);
  return found && found->dates ? found->dates->from + " " + found->dates->to : "none";
}

TEST(DescriptionForms, OfTheNewestVersionTellWhenTheirPixelsWereTaken) {
  const Changes withPeriod = {{"<gml:Envelope ", "<gml:EnvelopeWithTimePeriod "},
                              {"</gml:Envelope>",
                               "<gml:beginPosition>2021-07-14T10:00:00Z</gml:beginPosition>"
                               "<gml:endPosition>2021-07-16</gml:endPosition></gml:EnvelopeWithTimePeriod>"}};
  EXPECT_EQ(datesOf(newest(withPeriod)), "2021-07-14T10:00:00Z 2021-07-16");
  const std::string observed =
      "<gmlcov:metadata><gmlcov:Extension><wcseo:EOMetadata xmlns:wcseo=\"e\"><eop:EarthObservation "
      "xmlns:eop=\"o\">"
      "<phenomenonTime><gml:TimePeriod><gml:beginPosition>2020-01-02</gml:beginPosition>"
      "<gml:endPosition>2020-01-03</gml:endPosition></gml:TimePeriod></phenomenonTime>"
      "<resultTime><gml:TimeInstant><gml:timePosition>2022-02-02</gml:timePosition></gml:TimeInstant></"
      "resultTime>"
      "</eop:EarthObservation></wcseo:EOMetadata></gmlcov:Extension></gmlcov:metadata><gml:domainSet>";
  EXPECT_EQ(datesOf(newest({{"<gml:domainSet>", observed}})), "2020-01-02 2020-01-03");
  const std::string domain =
      "<gmlcov:metadata><gmlcov:Extension><TimeDomain>"
      "<gml:TimeInstant><gml:timePosition>2019-06-01</gml:timePosition></gml:TimeInstant>"
      "<gml:TimeInstant><gml:timePosition>2019-05-01</gml:timePosition></gml:TimeInstant>"
      "</TimeDomain></gmlcov:Extension></gmlcov:metadata><gml:domainSet>";
  EXPECT_EQ(datesOf(newest({{"<gml:domainSet>", domain}})), "2019-05-01 2019-06-01");
  EXPECT_EQ(datesOf(newest({})), "none");
}

TEST(DescriptionForms, OfOlderVersionsTellWhenTheirPixelsWereTaken) {
  const std::string of111 =
      "</SpatialDomain><TemporalDomain><TimePosition>2018-03-04</"
      "TimePosition><TimePeriod><BeginPosition>2018-02-01"
      "</BeginPosition><EndPosition>now</EndPosition></TimePeriod></TemporalDomain>";
  EXPECT_EQ(datesOf(middle({{"</SpatialDomain>", of111}})), "2018-02-01 ");
  const std::string of100 =
      "</spatialDomain><temporalDomain><gml:timePosition>2021-07-14</gml:timePosition>"
      "<gml:timePosition>2021-08-30</gml:timePosition></temporalDomain>";
  EXPECT_EQ(datesOf(first({{"</spatialDomain>", of100}})), "2021-07-14 2021-08-30");
  EXPECT_EQ(
      datesOf(first({{"</lonLatEnvelope>", "<gml:timePosition>2017</gml:timePosition></lonLatEnvelope>"}})),
      "2017 2017");
  EXPECT_EQ(datesOf(middle({})), "none");
  EXPECT_EQ(datesOf(first({})), "none");
}

/// "low high pixels", or "none".
std::string placed(const ToldAxis& told) {
  const auto found = placeAxis(told);
  if (!found) return "none";
  return std::to_string(std::lround(found->low * 10)) + " " + std::to_string(std::lround(found->high * 10)) +
         " " + std::to_string(found->pixels);
}

TEST(AxesOfGrids, ArePlacedByWhatAgrees) {
  constexpr auto less = ShortEnvelope::HasOnePixelLess;
  constexpr double infinite = std::numeric_limits<double>::infinity();
  const std::vector<std::pair<ToldAxis, std::string>> table = {
      {{0, 100, 10, 10}, "0 1000 10"},
      {{0, 100, -10, 10}, "0 1000 10"},
      {{0, 100, 10, 11}, "-50 1050 11"},
      {{0, 100, 10, 11, less}, "0 1000 10"},
      {{0, 100, 10, 10, less}, "0 1000 10"},
      {{0, 100, 100, 1}, "0 1000 1"},
      {{0, 100, 100, 2}, "-500 1500 2"},
      {{0, 100, 10, 0}, "0 1000 10"},
      {{0, 100, 10, -3}, "0 1000 10"},
      {{0, 100, 300, 0}, "none"},
      {{0, 100, 10, 12}, "none"},
      {{0, 100, 10, 9}, "none"},
      {{100, 0, 10, 10}, "none"},
      {{0, 100, infinite, 10}, "none"},
      {{0, infinite, 10, 10}, "none"},
      {{std::nan(""), 100, 10, 10}, "none"},
      {{0, 100, std::nan(""), 10}, "none"},
      {{0, 100, 1e-8, 0}, "none"},
      {{0, 1, 1e-7, std::int64_t{1} << 60U}, "none"},
      {{0, 100, 10, std::numeric_limits<std::int64_t>::max()}, "none"},
  };
  for (const auto& [told, expected] : table) {
    EXPECT_EQ(placed(told), expected) << told.high << ' ' << told.step << ' ' << told.pixels;
  }
}

TEST(StepsOfGrids, AreThoseAlongTheAxesAlone) {
  struct Row {
    std::vector<double> first;
    std::vector<double> second;
    AxisOrder order;
    std::string steps;
  };
  constexpr auto east = AxisOrder::EastNorth;
  constexpr auto north = AxisOrder::NorthEast;
  const std::vector<Row> table = {
      {{30, 0}, {0, -20}, east, "30 -20 columns"},
      {{0, -20}, {30, 0}, east, "30 -20 rows"},
      {{0, 30}, {-20, 0}, north, "30 -20 columns"},
      {{-20, 0}, {0, 30}, north, "30 -20 rows"},
      {{30, 0, 0}, {0, -20, 0}, east, "30 -20 columns"},
      {{30, 1}, {0, -20}, east, "none"},
      {{30, 0}, {1, -20}, east, "none"},
      {{30, 0}, {30, 0}, east, "none"},
      {{0, 0}, {0, -20}, east, "none"},
      {{30, 0}, {0, 0}, east, "none"},
      {{30}, {0, -20}, east, "none"},
      {{30, 0}, {}, east, "none"},
  };
  for (const auto& [one, other, order, expected] : table) {
    const auto steps = gridSteps(one, other, order);
    const std::string found = !steps ? "none"
                                     : std::to_string(std::lround(steps->east)) + " " +
                                           std::to_string(std::lround(steps->north)) +
                                           (steps->columnsFirst ? " columns" : " rows");
    EXPECT_EQ(found, expected) << one.size() << ' ' << other.size();
  }
}

TEST(NamesOfSystems, AreReadOrNone) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {" epsg:32632\n", "EPSG:32632"},
      {"urn:x-ogc:def:crs:EPSG:9.6.2:25832", "EPSG:25832"},
      {"https://www.opengis.net/def/crs/EPSG/0/3857", "EPSG:3857"},
      {"http://www.opengis.net/def/crs/OGC/1.3/CRS84", "EPSG:4326"},
      {"OGC:CRS84", "EPSG:4326"},
      {"EPSG:", ""},
      {"EPSG", ""},
      {"EPSG:32632a", ""},
      {"EPSG:-1", ""},
      {"32632", ""},
      {"ESRI:54009", ""},
      {"", ""},
  };
  for (const auto& [text, name] : table) EXPECT_EQ(systemName(text), name) << text;
}

TEST(OrdersOfSystems, AreEastFirstWhereTheAuthorityTellsNone) {
  const std::vector<std::pair<std::string, AxisOrder>> table = {
      {"EPSG:3857", AxisOrder::EastNorth},   {"EPSG:4258", AxisOrder::NorthEast},
      {"EPSG:31467", AxisOrder::NorthEast},  {"EPSG:25832", AxisOrder::EastNorth},
      {"EPSG:999999", AxisOrder::EastNorth}, {"word", AxisOrder::EastNorth}};
  for (const auto& [system, order] : table) EXPECT_EQ(authorityOrder(system), order) << system;
}

}  // namespace
}  // namespace vlclientui::client::network
