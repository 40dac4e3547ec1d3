#include "client/raster/Transformation.h"

#include <thread>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

OGRSpatialReference numberedSystem(int epsg) {
  OGRSpatialReference system;
  system.importFromEPSG(epsg);
  return system;
}

void expectBern(OGRCoordinateTransformation& way) {
  double x = 7.44;
  double y = 46.95;
  ASSERT_TRUE(way.Transform(1, &x, &y));
  EXPECT_NEAR(x, 381300, 200);
  EXPECT_NEAR(y, 5200700, 500);
}

TEST(Transformation, TakesEastFirstWhateverTheSystemsName) {
  expectBern(*transformation(numberedSystem(4326), numberedSystem(32632)));
}

TEST(Transformation, IsNotMixedWithOneOfAnotherOrderThatWasGivenBack) {
  const OGRSpatialReference degrees = numberedSystem(4326);
  const OGRSpatialReference meters = numberedSystem(32632);
  for (int round = 0; round < 2; ++round) {
    const TransformationPtr northFirst(OGRCreateCoordinateTransformation(&degrees, &meters));
    double y = 46.95;
    double x = 7.44;
    ASSERT_TRUE(northFirst->Transform(1, &y, &x));
    EXPECT_NEAR(y, 381300, 200);
    expectBern(*transformation(degrees, meters));
  }
}

TEST(Transformation, GivenBackByAThreadThatEndedServesAnotherOne) {
  for (int round = 0; round < 3; ++round) {
    std::thread([] { expectBern(*transformation(numberedSystem(4326), numberedSystem(32632))); }).join();
  }
  expectBern(*transformation(numberedSystem(4326), numberedSystem(32632)));
}

TEST(Transformation, IsNoneWithoutASystem) {
  EXPECT_EQ(transformation(OGRSpatialReference(), numberedSystem(4326)), nullptr);
}

}  // namespace
}  // namespace vlclientui::client
