#include "client/raster/GeographicBounds.h"

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

namespace vlclientui::client {
namespace {

OGRSpatialReference systemOf(int epsg) {
  OGRSpatialReference system;
  system.importFromEPSG(epsg);
  return system;
}

std::optional<Bounds> geographicBounds(const Bounds& bounds, const OGRSpatialReference& system) {
  return GeographicBounds().of(bounds, system, "the only one");
}

void expectBounds(const std::optional<Bounds>& found, const Bounds& wanted, double tolerance) {
  ASSERT_TRUE(found.has_value());
  EXPECT_NEAR(found->xMin, wanted.xMin, tolerance);
  EXPECT_NEAR(found->yMin, wanted.yMin, tolerance);
  EXPECT_NEAR(found->xMax, wanted.xMax, tolerance);
  EXPECT_NEAR(found->yMax, wanted.yMax, tolerance);
}

// Transforms each point of the edges by itself, much denser than the code under test.
Bounds aroundTransformedEdges(const Bounds& bounds, int epsg) {
  OGRSpatialReference from = systemOf(epsg);
  OGRSpatialReference to = systemOf(4326);
  from.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  to.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  const std::unique_ptr<OGRCoordinateTransformation> transformation(
      OGRCreateCoordinateTransformation(&from, &to));
  Bounds around{1e9, 1e9, -1e9, -1e9};
  for (int i = 0; i <= 2000; ++i) {
    const double share = i / 2000.0;
    const double x = bounds.xMin + share * (bounds.xMax - bounds.xMin);
    const double y = bounds.yMin + share * (bounds.yMax - bounds.yMin);
    const double points[4][2] = {{x, bounds.yMin}, {x, bounds.yMax}, {bounds.xMin, y}, {bounds.xMax, y}};
    for (const auto& point : points) {
      double longitude = point[0];
      double latitude = point[1];
      EXPECT_TRUE(transformation->Transform(1, &longitude, &latitude));
      around = unite(around, {longitude, latitude, longitude, latitude});
    }
  }
  return around;
}

TEST(GeographicBoundsTest, OfUtmCoordinatesHoldTheWholeCurvedEdge) {
  const Bounds utm{300000, 5000000, 700000, 5400000};
  const auto found = geographicBounds(utm, systemOf(32632));
  expectBounds(found, aroundTransformedEdges(utm, 32632), 1e-4);
}

TEST(GeographicBoundsTest, OfTwoSystemsThroughOneObjectAreNotMixed) {
  GeographicBounds geographic;
  const Bounds utm{300000, 5000000, 700000, 5400000};
  const auto first = geographic.of(utm, systemOf(32632), "zone 32");
  const auto other = geographic.of(utm, systemOf(32633), "zone 33");
  const auto again = geographic.of(utm, systemOf(32632), "zone 32");
  ASSERT_TRUE(first && other);
  EXPECT_NEAR(other->xMin - first->xMin, 6, 1e-6);
  EXPECT_EQ(again, first);
}

TEST(GeographicBoundsTest, OfTheSouthernHemisphereAreBelowZero) {
  const Bounds utm{300000, 6000000, 400000, 6100000};
  expectBounds(geographicBounds(utm, systemOf(32719)), aroundTransformedEdges(utm, 32719), 1e-4);
}

TEST(GeographicBoundsTest, OfWgs84DegreesAreTheSameNumbers) {
  EXPECT_EQ(geographicBounds({8, 46, 9, 47}, systemOf(4326)), (Bounds{8, 46, 9, 47}));
}

TEST(GeographicBoundsTest, OfGridsFromZeroTo360GoAllAround) {
  EXPECT_EQ(geographicBounds({0, -90, 360, 90}, systemOf(4326)), (Bounds{-180, -90, 180, 90}));
}

TEST(GeographicBoundsTest, OfDegreesBeyond180AreBroughtBack) {
  EXPECT_EQ(geographicBounds({190, 10, 200, 20}, systemOf(4326)), (Bounds{-170, 10, -160, 20}));
}

TEST(GeographicBoundsTest, OfPixelCenteredWorldGridsEndAtThePoles) {
  EXPECT_EQ(geographicBounds({-180.125, -90.125, 179.875, 90.125}, systemOf(4326)),
            (Bounds{-180, -90, 180, 90}));
}

TEST(GeographicBoundsTest, AcrossTheAntimeridianGoAllAround) {
  const auto found = geographicBounds({100000, 8000000, 500000, 8200000}, systemOf(32701));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->xMin, -180);
  EXPECT_EQ(found->xMax, 180);
  EXPECT_LT(found->yMax, -15);
}

TEST(GeographicBoundsTest, AroundAPoleReachItAndGoAllAround) {
  const auto found = geographicBounds({-1000000, -1000000, 1000000, 1000000}, systemOf(3413));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->xMin, -180);
  EXPECT_EQ(found->xMax, 180);
  EXPECT_NEAR(found->yMax, 90, 1e-9);
  EXPECT_GT(found->yMin, 70);
}

TEST(GeographicBoundsTest, OfCoordinatesFarOutsideAProjectionAreNothing) {
  EXPECT_EQ(geographicBounds({1e12, 1e12, 2e12, 2e12}, systemOf(32632)), std::nullopt);
}

TEST(TransformBounds, BringsARectangleFromSystemToSystem) {
  expectBounds(transformBounds({500000, 0, 600000, 100000}, systemOf(32632), systemOf(4326)),
               {9, 0, 9.8985, 0.9046}, 1e-3);
}

TEST(TransformBounds, HasNoneForWhatCrossesTheAntimeridian) {
  // The first zone begins there.
  const Bounds first{100000, 5000000, 400000, 5100000};
  EXPECT_EQ(transformBounds(first, systemOf(32601), systemOf(4326)), std::nullopt);
  EXPECT_NE(transformBounds(first, systemOf(32602), systemOf(4326)), std::nullopt);
}

TEST(TransformBounds, StaysAtTheAntimeridianFromDatumToDatum) {
  const OGRSpatialReference from = systemOf(4326);
  const OGRSpatialReference to = systemOf(4617);
  for (const Bounds& bounds : {Bounds{170, 50, 180, 60}, Bounds{-180, 50, -170, 60},
                               Bounds{-180, 50, 180, 60}, Bounds{0, 50, 360, 60}}) {
    expectBounds(transformBounds(bounds, from, to), bounds, 1e-3);
  }
}

}  // namespace
}  // namespace vlclientui::client
