#include "client/catalogue/MosaicFacts.h"

#include <string>

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

RasterFacts factsIn(int epsg, const Bounds& envelope, int bands = 1) {
  const GdalScope scope;
  RasterFacts facts;
  OGRSpatialReference system;
  EXPECT_EQ(system.importFromEPSG(epsg), OGRERR_NONE);
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  setSystem(facts, system);
  facts.title = "raster";
  facts.pixelSource = "sensor";
  facts.envelope = envelope;
  facts.pixelSize = facts.pixelHeight = 10;
  facts.columns = static_cast<std::int64_t>((envelope.xMax - envelope.xMin) / 10);
  facts.rows = static_cast<std::int64_t>((envelope.yMax - envelope.yMin) / 10);
  facts.bandCount = facts.colorBands = bands;
  return facts;
}

constexpr Bounds left{500000, 5100000, 501000, 5101000};
constexpr Bounds right{501000, 5100000, 502000, 5101000};

class FactsOfMosaics : public testing::Test {
 protected:
  /// The facts; without any, the title holds the reason.
  RasterFacts united(const std::vector<RasterResult>& results) {
    definition_.sources.resize(results.size());
    for (std::size_t i = 0; i < results.size(); ++i) definition_.sources[i].file = "s" + std::to_string(i);
    leftOut_.clear();
    const RasterResult found = mosaicFacts(definition_, results, leftOut_);
    if (const auto* problem = std::get_if<RasterProblem>(&found)) {
      RasterFacts none;
      none.title = "none: " + problem->reason;
      return none;
    }
    return std::get<RasterFacts>(found);
  }

  MosaicDefinition definition_;
  std::vector<LeftOut> leftOut_;
};

TEST_F(FactsOfMosaics, AreThoseOfTheFirstSourceAroundAll) {
  const RasterFacts facts = united({factsIn(32632, left), factsIn(32632, right)});
  EXPECT_EQ(facts.envelope, (Bounds{500000, 5100000, 502000, 5101000}));
  EXPECT_EQ(facts.columns, 200);
  EXPECT_EQ(facts.rows, 100);
  EXPECT_EQ(facts.srsId, "EPSG:32632");
  EXPECT_TRUE(leftOut_.empty());
}

TEST_F(FactsOfMosaics, HaveTheFinestPixelOfItsSystem) {
  RasterFacts fine = factsIn(32632, right);
  fine.pixelSize = 5;
  fine.pixelHeight = 4;
  RasterFacts degrees = factsIn(4326, {9, 46, 9.01, 46.01});
  degrees.pixelSize = degrees.pixelHeight = 0.0001;
  const RasterFacts facts = united({factsIn(32632, left), fine, degrees});
  EXPECT_EQ(facts.pixelSize, 5);
  EXPECT_EQ(facts.pixelHeight, 4);
  EXPECT_EQ(facts.rows, static_cast<std::int64_t>((facts.envelope.yMax - facts.envelope.yMin) / 4 + 0.5));
}

TEST_F(FactsOfMosaics, TakeTheWordsOfTheDefinition) {
  definition_.name = "named";
  EXPECT_EQ(united({factsIn(32632, left)}).title, "named");
  EXPECT_EQ(united({factsIn(32632, left)}).pixelSource, "sensor");
  definition_.title = "Titled";
  definition_.region = "Somewhere";
  definition_.pixelSource = "aeroplane";
  const RasterFacts facts = united({factsIn(32632, left)});
  EXPECT_EQ(facts.title, "Titled");
  EXPECT_EQ(facts.region, "Somewhere");
  EXPECT_EQ(facts.pixelSource, "aeroplane");
}

TEST_F(FactsOfMosaics, TellTheRegionByTheMiddleOfAll) {
  RasterFacts one = factsIn(32632, left);
  one.geographicEnvelope = Bounds{8, 46, 9, 47};
  RasterFacts other = factsIn(32632, right);
  EXPECT_EQ(united({one, other}).region, "46.5 N 8.5 E");
  other.geographicEnvelope = Bounds{9, 46, 10, 47};
  EXPECT_EQ(united({one, other}).region, "46.5 N 9.0 E");
  EXPECT_EQ(united({other, factsIn(32632, left)}).geographicEnvelope, other.geographicEnvelope);
}

TEST_F(FactsOfMosaics, LeaveOutWhatCannotBeReadAndSayWhy) {
  const RasterFacts facts = united({RasterProblem{true, "it is torn"}, factsIn(32632, right)});
  EXPECT_EQ(facts.envelope, right);
  EXPECT_EQ(leftOut_, (std::vector<LeftOut>{{"s0", "it is torn"}}));
}

TEST_F(FactsOfMosaics, LeaveOutWhatLacksBands) {
  const RasterFacts facts =
      united({factsIn(32632, left, 3), factsIn(32632, right, 2), factsIn(32632, right, 1)});
  EXPECT_EQ(facts.envelope.xMax, 502000);
  EXPECT_EQ(leftOut_,
            (std::vector<LeftOut>{{"s1", "it has 2 bands of pixels, and the mosaic's first source has 3"}}));
}

TEST_F(FactsOfMosaics, LeaveOutWhatHasNoWayIntoTheSystem) {
  RasterFacts nowhere = factsIn(32632, right);
  nowhere.srsWkt.clear();
  (void)united({factsIn(32632, left), nowhere});
  EXPECT_EQ(leftOut_,
            (std::vector<LeftOut>{{"s1", "its coordinate system cannot be brought into the mosaic's"}}));
}

TEST_F(FactsOfMosaics, ComeWithThePlacesOfTheSourcesThatStay) {
  RasterFacts nowhere = factsIn(32632, right);
  nowhere.srsWkt.clear();
  definition_.sources.resize(4);
  const RasterFacts degrees = factsIn(4326, {9, 46, 9.01, 46.01});
  const MosaicSummary summary =
      summaryOf(definition_, {RasterProblem{true, "torn"}, factsIn(32632, left), nowhere, degrees}, leftOut_);
  ASSERT_EQ(summary.places.size(), 4U);
  EXPECT_EQ(summary.places[0], std::nullopt);
  EXPECT_EQ(summary.places[1], left);
  EXPECT_EQ(summary.places[2], std::nullopt);
  ASSERT_TRUE(summary.places[3].has_value());
  EXPECT_EQ(std::get<RasterFacts>(summary.whole).envelope, unite(left, *summary.places[3]));
}

TEST_F(FactsOfMosaics, AreNoneWithoutAnySource) {
  EXPECT_EQ(united({}).title, "none: none of the mosaic's sources can be read");
  EXPECT_EQ(united({RasterProblem{true, "torn"}}).title, "none: none of the mosaic's sources can be read");
  EXPECT_EQ(leftOut_.size(), 1U);
}

std::variant<Bounds, std::string> placeInMosaic(const RasterFacts& first, const RasterFacts& source) {
  return MosaicPlaces(first).of(source);
}

TEST(PlaceInMosaic, IsTheSourcesOwnWhereTheSystemIsTheSame) {
  const auto place = placeInMosaic(factsIn(32632, left), factsIn(32632, right));
  ASSERT_TRUE(std::holds_alternative<Bounds>(place));
  EXPECT_EQ(std::get<Bounds>(place), right);
}

TEST(PlaceInMosaic, IsBroughtFromAnotherSystem) {
  const auto place = placeInMosaic(factsIn(32632, left), factsIn(4326, {9, 46, 9.01, 46.01}));
  ASSERT_TRUE(std::holds_alternative<Bounds>(place));
  EXPECT_NEAR(std::get<Bounds>(place).xMin, 500000, 1);
  EXPECT_NEAR(std::get<Bounds>(place).yMin, 5093900, 600);
}

TEST(PlaceInMosaic, OfOneBandIsGivenAmongColors) {
  const RasterFacts colors = factsIn(32632, left, 3);
  EXPECT_TRUE(std::holds_alternative<Bounds>(placeInMosaic(colors, factsIn(32632, right, 1))));
  EXPECT_TRUE(std::holds_alternative<Bounds>(placeInMosaic(colors, factsIn(32632, right, 4))));
  EXPECT_TRUE(
      std::holds_alternative<std::string>(placeInMosaic(factsIn(32632, left, 4), factsIn(32632, right, 1))));
  EXPECT_EQ(std::get<std::string>(placeInMosaic(factsIn(32632, left, 2), factsIn(32632, right, 1))),
            "it has 1 band of pixels, and the mosaic's first source has 2");
}

}  // namespace
}  // namespace vlclientui::client
