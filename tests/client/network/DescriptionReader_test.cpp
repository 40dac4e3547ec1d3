#include <cstdlib>

#include <gtest/gtest.h>
#include <libxml/xmlmemory.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageDocuments.h"
#include "client/network/CoverageSystem.h"
#include "client/network/GridPlacing.h"
#include "client/network/XmlTree.h"

namespace vlclientui::client::network {
namespace {

std::vector<CoverageDescription> allOf(const std::string& document, CoverageVersion version) {
  auto read = readDescriptions(document, version);
  auto* found = std::get_if<std::vector<CoverageDescription>>(&read);
  EXPECT_NE(found, nullptr);
  return found == nullptr ? std::vector<CoverageDescription>() : *found;
}

CoverageDescription onlyOf(const std::string& document, CoverageVersion version) {
  const auto all = allOf(document, version);
  EXPECT_EQ(all.size(), 1U);
  return all.empty() ? CoverageDescription() : all.front();
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(DescriptionReader, FollowsTheLabelsOfGeographicAxes) {
  const auto found = onlyOf(descriptions201(geographicCoverage), CoverageVersion::V201);
  EXPECT_EQ(found.id, "geoid");
  EXPECT_EQ(found.system, "EPSG:4326");
  EXPECT_EQ(found.axes, AxisOrder::NorthEast);
  EXPECT_EQ(found.xLabel, "long");
  EXPECT_EQ(found.yLabel, "lat");
  EXPECT_EQ(found.columns, 1440);
  EXPECT_EQ(found.rows, 721);
  EXPECT_EQ(found.envelope, (Bounds{-180.125, -90.125, 179.875, 90.125}));
  ASSERT_EQ(found.bands.size(), 1U);
  EXPECT_EQ(found.bands[0].name, "band1");
  EXPECT_EQ(found.bands[0].description, "Height");
  EXPECT_EQ(found.bands[0].unit, "m");
  EXPECT_EQ(found.bands[0].noData, -9999);
  EXPECT_EQ(found.bands[0].range, std::pair(-110.0, 90.0));
  EXPECT_EQ(found.nativeFormat, "image/tiff");
}

TEST(DescriptionReader, TakesTheAuthoritysOrderWhereLabelsSayNothing) {
  const auto found =
      onlyOf(descriptions201(replaced(geographicCoverage, "\"lat long\"", "\"i j\"")), CoverageVersion::V201);
  EXPECT_EQ(found.axes, AxisOrder::NorthEast);
  EXPECT_EQ(found.xLabel, "j");
  EXPECT_EQ(found.yLabel, "i");
}

TEST(DescriptionReader, LeavesOutTurnedGridsAndThoseWithoutAPlace) {
  const std::string turned = replaced(geographicCoverage, "0 0.250000", "0.1 0.250000");
  const std::string placeless = replaced(geographicCoverage, "-90.125 -180.125", "here");
  EXPECT_TRUE(allOf(descriptions201(turned), CoverageVersion::V201).empty());
  EXPECT_TRUE(allOf(descriptions201(placeless), CoverageVersion::V201).empty());
}

TEST(DescriptionReader, ReadsTheFirstVersionInItsNativeSystem) {
  const auto found = onlyOf(description100("767 767", "-30"), CoverageVersion::V100);
  EXPECT_EQ(found.id, "Scene");
  EXPECT_EQ(found.title, "Scene 2021");
  EXPECT_EQ(found.abstract, "A scene");
  EXPECT_EQ(found.keywords, std::vector<std::string>{"summer"});
  EXPECT_EQ(found.system, "EPSG:32632");
  EXPECT_EQ(found.envelope, (Bounds{452000, 5142960, 475040, 5166000}));
  EXPECT_EQ(found.columns, 768);
  EXPECT_EQ(found.rows, 768);
  ASSERT_EQ(found.bands.size(), 2U);
  EXPECT_EQ(found.bands[1].name, "2");
  EXPECT_EQ(found.bands[1].noData, 0);
  EXPECT_EQ(found.nativeFormat, "GeoTIFF");
  EXPECT_EQ(found.formats, (std::vector<std::string>{"GeoTIFF", "PNG", "JPEG"}));
}

TEST(DescriptionReader, CountsOnePixelLessWhereTheLastIndexIsTheNumber) {
  const auto found = onlyOf(description100("768 768", "-30"), CoverageVersion::V100);
  EXPECT_EQ(found.columns, 768);
  EXPECT_EQ(found.rows, 768);
  EXPECT_EQ(found.envelope, (Bounds{452000, 5142960, 475040, 5166000}));
}

TEST(DescriptionReader, LaysAGridWithSouthUpNorthUp) {
  const auto found = onlyOf(description100("767 767", "30"), CoverageVersion::V100);
  EXPECT_EQ(found.rows, 768);
  EXPECT_EQ(found.envelope.yMax, 5166000);
}

TEST(DescriptionReader, ReadsTheMiddleVersion) {
  const auto found = onlyOf(description111, CoverageVersion::V111);
  EXPECT_EQ(found.id, "geoid");
  EXPECT_EQ(found.title, "Geoid heights");
  EXPECT_EQ(found.axes, AxisOrder::NorthEast);
  EXPECT_EQ(found.columns, 1440);
  EXPECT_EQ(found.rows, 721);
  EXPECT_EQ(found.envelope, (Bounds{-180.125, -90.125, 179.875, 90.125}));
  ASSERT_EQ(found.bands.size(), 1U);
  EXPECT_EQ(found.bands[0].noData, -9999);
  EXPECT_EQ(found.formats, std::vector<std::string>{"image/tiff"});
}

TEST(DescriptionReader, TellsExceptionsAndWhatIsNoDocument) {
  const auto exception = readDescriptions(
      R"(<ServiceExceptionReport><ServiceException code="CoverageNotDefined">nix</ServiceException></ServiceExceptionReport>)",
      CoverageVersion::V100);
  EXPECT_EQ(std::get<CoverageProblem>(exception).code, "CoverageNotDefined");
  EXPECT_EQ(std::get<CoverageProblem>(readDescriptions("<a", CoverageVersion::V201)).text,
            "the answer is no description of coverages");
}

TEST(GridPlacing, KeepsTheEnvelopeWhereTheStepIsRounded) {
  const auto placed = placeAxis({8.0, 8.0 + 3600 * (1.0 / 10800), 0.000093, 3600});
  ASSERT_TRUE(placed);
  EXPECT_EQ(placed->low, 8.0);
  EXPECT_EQ(placed->pixels, 3600);
}

TEST(GridPlacing, WidensAnEnvelopeOfCenters) {
  const auto placed = placeAxis({15, 2985, 30, 100});
  ASSERT_TRUE(placed);
  EXPECT_DOUBLE_EQ(placed->low, 0);
  EXPECT_DOUBLE_EQ(placed->high, 3000);
  EXPECT_EQ(placed->pixels, 100);
}

TEST(GridPlacing, CountsPixelsThatAreNotTold) { EXPECT_EQ(placeAxis({0, 3000, -30, 0})->pixels, 100); }

TEST(GridPlacing, RefusesWhatContradictsItself) {
  EXPECT_FALSE(placeAxis({0, 3000, 30, 50}));
  EXPECT_FALSE(placeAxis({0, 0, 30, 1}));
  EXPECT_FALSE(placeAxis({0, 3000, 0, 100}));
  EXPECT_FALSE(placeAxis({0, 1e300, 1e-300, 0}));
}

TEST(CoverageSystem, IsReadInAnySpelling) {
  EXPECT_EQ(systemName("EPSG:32632"), "EPSG:32632");
  EXPECT_EQ(systemName("urn:ogc:def:crs:EPSG::4326"), "EPSG:4326");
  EXPECT_EQ(systemName("urn:ogc:def:crs:EPSG:6.9:4326"), "EPSG:4326");
  EXPECT_EQ(systemName("http://www.opengis.net/def/crs/EPSG/0/25832"), "EPSG:25832");
  EXPECT_EQ(systemName("http://www.opengis.net/gml/srs/epsg.xml#3857"), "EPSG:3857");
  EXPECT_EQ(systemName("urn:ogc:def:crs:OGC:1.3:CRS84"), "EPSG:4326");
  EXPECT_EQ(systemName("LOCAL"), "");
  EXPECT_EQ(systemName("EPSG:none"), "");
}

TEST(CoverageSystem, KnowsTheOrderOfItsAuthority) {
  EXPECT_EQ(authorityOrder("EPSG:4326"), AxisOrder::NorthEast);
  EXPECT_EQ(authorityOrder("EPSG:32632"), AxisOrder::EastNorth);
  EXPECT_EQ(authorityOrder("EPSG:2193"), AxisOrder::NorthEast);
  EXPECT_EQ(authorityOrder(""), AxisOrder::EastNorth);
}

/// What the XML library asked of the memory since this was made.
class AskedMemory {
 public:
  AskedMemory() {
    xmlMemGet(&free_, &malloc_, &realloc_, &strdup_);
    asked = 0;
    xmlMemSetup(free_, countedMalloc, realloc_, strdup_);
  }
  AskedMemory(const AskedMemory&) = delete;
  AskedMemory& operator=(const AskedMemory&) = delete;
  ~AskedMemory() { xmlMemSetup(free_, malloc_, realloc_, strdup_); }
  [[nodiscard]] static std::size_t times() { return asked; }

 private:
  static void* countedMalloc(std::size_t bytes) {
    ++asked;
    return std::malloc(bytes);
  }
  static inline std::size_t asked = 0;
  xmlFreeFunc free_ = nullptr;
  xmlMallocFunc malloc_ = nullptr;
  xmlReallocFunc realloc_ = nullptr;
  xmlStrdupFunc strdup_ = nullptr;
};

TEST(DescriptionReader, MakesOneTreeOfADocument) {
  std::string many;
  for (int i = 0; i < 300; ++i) many += geographicCoverage;
  const std::string document = descriptions201(many);
  std::size_t once = 0;
  {
    const AskedMemory memory;
    EXPECT_TRUE(XmlTree::parse(document));
    once = AskedMemory::times();
  }
  const AskedMemory memory;
  EXPECT_EQ(allOf(document, CoverageVersion::V201).size(), 300U);
  EXPECT_GT(once, 3000U);
  EXPECT_LT(AskedMemory::times(), once * 3 / 2);
}

}  // namespace
}  // namespace vlclientui::client::network
