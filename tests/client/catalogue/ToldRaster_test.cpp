#include "client/catalogue/ToldRaster.h"

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include "client/raster/GeographicBounds.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

class ToldRasters : public testing::Test {
 protected:
  static SampleRaster sample() {
    SampleRaster made;
    OGRSpatialReference system;
    system.importFromEPSG(32632);
    setSystem(made.facts, system);
    made.facts.title = "sample";
    made.facts.pixelType = "UInt16";
    made.facts.bandCount = 3;
    made.facts.columns = made.facts.fileColumns = 80;
    made.facts.rows = made.facts.fileRows = 60;
    made.facts.pixelSize = 10;
    made.facts.pixelHeight = 10;
    made.facts.envelope = {500003, 5149400, 500803, 5150000};
    made.told.system = "EPSG:32632";
    return made;
  }
  static ToldRaster exact() {
    ToldRaster told;
    told.system = "EPSG:32632";
    told.transform = GeoTransform{501000, 20, 0, 5151000, 0, -20};
    told.columns = 100;
    told.rows = 50;
    return told;
  }

  ToldFacts facts_{sample()};
};

TEST_F(ToldRasters, LieWhereTheirTransformSays) {
  const auto facts = facts_.of(exact(), "a");
  ASSERT_TRUE(facts);
  EXPECT_TRUE(exact().isExact());
  EXPECT_EQ(facts->title, "a");
  EXPECT_EQ(facts->envelope, (Bounds{501000, 5150000, 503000, 5151000}));
  EXPECT_EQ(facts->pixelSize, 20);
  EXPECT_EQ(facts->columns, 100);
  EXPECT_EQ(facts->fileRows, 50);
}

TEST_F(ToldRasters, TakeFromTheSampleWhatIsNotTold) {
  const auto facts = facts_.of(exact(), "a");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->pixelType, "UInt16");
  EXPECT_EQ(facts->bandCount, 3);
  EXPECT_EQ(facts->srsWkt, sample().facts.srsWkt) << "the same system, in the same words";
}

TEST_F(ToldRasters, LieInTheirBoxWhereNoTransformIsTold) {
  ToldRaster told = exact();
  told.transform.reset();
  told.envelope = Bounds{501000, 5150000, 503000, 5151000};
  const auto facts = facts_.of(told, "a");
  ASSERT_TRUE(facts);
  EXPECT_TRUE(told.isExact());
  EXPECT_EQ(facts->envelope, *told.envelope);
  EXPECT_EQ(facts->pixelSize, 20);
}

TEST_F(ToldRasters, OfWhichOnlyDegreesAreToldLieOnPixelsOfTheSample) {
  ToldRaster told;
  told.geographic = Bounds{9.01, 46.49, 9.02, 46.5};
  EXPECT_FALSE(told.isExact());
  const auto facts = facts_.of(told, "a");
  ASSERT_TRUE(facts);
  OGRSpatialReference system(sample().facts.srsWkt.c_str());
  const auto around = transformBounds(*told.geographic, wgs84(), system);
  ASSERT_TRUE(around);
  EXPECT_LE(facts->envelope.xMin, around->xMin);
  EXPECT_GE(facts->envelope.xMax, around->xMax);
  EXPECT_LT(around->xMin - facts->envelope.xMin, 10);
  const double steps = (facts->envelope.xMin - 500003) / 10;
  EXPECT_NEAR(steps, std::round(steps), 1e-6);
  EXPECT_EQ(facts->geographicEnvelope, told.geographic);
  EXPECT_EQ(facts->region, "46.5 N 9.0 E");
}

TEST_F(ToldRasters, OfAnotherSystemKeepIt) {
  ToldRaster told = exact();
  told.system = "EPSG:32633";
  const auto facts = facts_.of(told, "a");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->srsId, "EPSG:32633");
  told.transform.reset();
  told.columns = 0;
  told.geographic = Bounds{9.01, 46.49, 9.02, 46.5};
  const auto approximate = facts_.of(told, "b");
  ASSERT_TRUE(approximate);
  EXPECT_LT(approximate->envelope.xMax, 500000) << "west of the middle of the next zone";
}

TEST_F(ToldRasters, ThatNobodyCanPlaceHaveNoFacts) {
  EXPECT_FALSE(facts_.of({}, "a"));
  ToldRaster told = exact();
  for (const char* const system : {"EPSG:1", "no system", "http://127.0.0.1:1/system", "/etc/passwd"}) {
    told.system = system;
    EXPECT_FALSE(facts_.of(told, "a")) << system;
  }
}

}  // namespace
}  // namespace vlclientui::client
