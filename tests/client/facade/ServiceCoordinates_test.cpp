#include "client/facade/ServiceCoordinates.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include "client/ExportFixture.h"
#include "client/facade/ImageDocuments.h"
#include "client/raster/GdalScope.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

RasterFacts serviceIn(int epsg, const Bounds& envelope) {
  const GdalScope scope;
  RasterFacts facts;
  OGRSpatialReference system;
  if (epsg != 0 && system.importFromEPSG(epsg) == OGRERR_NONE) setSystem(facts, system);
  facts.envelope = envelope;
  return facts;
}

TEST(PlacesInDegrees, KeepTheirOrder) {
  const auto places = inDegrees({{500000, 0}, {500000, 5538630.7}}, serviceIn(32632, {0, 0, 1, 1}));
  ASSERT_TRUE(places);
  EXPECT_NEAR((*places)[0].x, 9, 1e-6);
  EXPECT_NEAR((*places)[0].y, 0, 1e-6);
  EXPECT_NEAR((*places)[1].x, 9, 1e-6);
  EXPECT_NEAR((*places)[1].y, 50, 1e-5);
}

TEST(PlacesInDegrees, OfAServiceOfDegreesAreTheSame) {
  const auto places = inDegrees({{-70.5, 12}, {180, -90}}, serviceIn(4326, {-180, -90, 180, 90}));
  ASSERT_TRUE(places);
  EXPECT_EQ((*places)[0].x, -70.5);
  EXPECT_EQ((*places)[0].y, 12);
  EXPECT_EQ((*places)[1].x, 180);
}

TEST(PlacesInDegrees, BeyondHalfATurnAreBroughtBackTogether) {
  const RasterFacts service = serviceIn(4326, {0, -90, 360, 90});
  const auto beyond = inDegrees({{190, 0}, {350, 10}}, service);
  ASSERT_TRUE(beyond);
  EXPECT_EQ((*beyond)[0].x, -170);
  EXPECT_EQ((*beyond)[1].x, -10);
  const auto across = inDegrees({{170, 0}, {190, 0}}, service);
  ASSERT_TRUE(across);
  EXPECT_EQ((*across)[0].x, 170);
  EXPECT_EQ((*across)[1].x, 190);
  EXPECT_EQ(inDegrees({{-190, 0}}, service)->front().x, 170);
}

TEST(PlacesInDegrees, AreNothingWhereOneHasNone) {
  EXPECT_FALSE(inDegrees({{500000, 0}, {1e30, 1e30}}, serviceIn(32632, {0, 0, 1, 1})));
  EXPECT_FALSE(inDegrees({{1, 1}}, serviceIn(0, {0, 0, 1, 1})));
  EXPECT_TRUE(inDegrees({}, serviceIn(32632, {0, 0, 1, 1}))->empty());
}

TEST(PlacesOfAMap, AreBroughtIntoTheSystemOfTheService) {
  const auto bounds = inServiceCoordinates({8, 45, 10, 46}, serviceIn(32632, {0, 0, 1, 1}));
  ASSERT_TRUE(bounds);
  EXPECT_NEAR(bounds->xMin, 421184, 100);
  EXPECT_NEAR(bounds->xMax, 578816, 100);
  EXPECT_LT(bounds->yMin, 4982950.5);
}

TEST(PlacesOfAMap, MeetAServiceByAWholeTurn) {
  const RasterFacts service = serviceIn(4326, {180, -90, 540, 90});
  const auto bounds = inServiceCoordinates({-170, 0, -160, 10}, service);
  ASSERT_TRUE(bounds);
  EXPECT_EQ(bounds->xMin, 190);
  EXPECT_EQ(bounds->xMax, 200);
}

TEST(PlacesOfAMap, WithoutAnAreaOrASystemAreNothing) {
  EXPECT_FALSE(inServiceCoordinates({8, 45, 8, 46}, serviceIn(32632, {0, 0, 1, 1})));
  EXPECT_FALSE(inServiceCoordinates({8, 46, 9, 45}, serviceIn(32632, {0, 0, 1, 1})));
  EXPECT_FALSE(inServiceCoordinates({8, 45, 9, 46}, serviceIn(0, {0, 0, 1, 1})));
}

TEST(CustomEnvelopes, StandInOneDocumentInTheirOrder) {
  EXPECT_EQ(customEnvelopesDocument({{"a & b", {1, 2, 3, 4}}, {"c", {5, 6, 7, 8.5}}}),
            "<Vorlane><Client><ExportImageDialog>"
            "<CustomEnvelope><Description>a &amp; b</Description>"
            "<XMin>1</XMin><YMin>2</YMin><XMax>3</XMax><YMax>4</YMax></CustomEnvelope>"
            "<CustomEnvelope><Description>c</Description>"
            "<XMin>5</XMin><YMin>6</YMin><XMax>7</XMax><YMax>8.5</YMax></CustomEnvelope>"
            "</ExportImageDialog></Client></Vorlane>");
  EXPECT_EQ(customEnvelopesDocument({}),
            "<Vorlane><Client><ExportImageDialog></ExportImageDialog></Client></Vorlane>");
}

class ViewPointOfService : public test::ExportFixture {
 protected:
  /// After the properties were changed to this; "x y" in whole numbers.
  std::string after(const std::string& properties) {
    const auto made = service("ImageService://localhost/m");
    if (!properties.empty()) {
      made->setServiceProperties("<Vorlane><ImageServiceProperties>" + properties +
                                 "</ImageServiceProperties></Vorlane>");
    }
    const Point place = made->viewPoint();
    return std::to_string(std::lround(place.x)) + " " + std::to_string(std::lround(place.y));
  }
};

TEST_F(ViewPointOfService, IsItsMiddleUnlessThePropertiesTellOne) {
  makeMosaic();
  const std::string middle = "500900 5149700";
  EXPECT_EQ(after(""), middle);
  EXPECT_EQ(after("<ViewPointX>500100</ViewPointX><ViewPointY>5149500</ViewPointY>"), "500100 5149500");
  EXPECT_EQ(after("<ViewPointX>500100,4</ViewPointX><ViewPointY>5149500</ViewPointY>"), "500100 5149500");
  EXPECT_EQ(after("<ViewPointX>here</ViewPointX><ViewPointY>5149500</ViewPointY>"), middle);
  EXPECT_EQ(after("<MosaicMethod>ClosestToViewpoint</MosaicMethod><ViewPointX/><ViewPointY/>"), middle);
}

}  // namespace
}  // namespace vlclientui::client
