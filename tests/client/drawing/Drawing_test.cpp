#include "client/drawing/Drawing.h"

#include <string>

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include "client/drawing/ServiceSystem.h"
#include "client/raster/GdalScope.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

using Order = std::vector<std::size_t>;

/// A mosaic of two sources in zone 32, of which no file is opened.
class Drawings : public testing::Test {
 protected:
  Drawings() {
    const GdalScope scope;
    OGRSpatialReference system;
    EXPECT_EQ(system.importFromEPSG(32632), OGRERR_NONE);
    setSystem(service_.facts, system);
    service_.kind = ServiceKind::Mosaic;
    service_.facts.envelope = {500000, 5100000, 502000, 5101000};
    service_.facts.columns = 200;
    service_.facts.rows = 100;
    service_.facts.pixelSize = service_.facts.pixelHeight = 10;
    service_.facts.pixelType = "Byte";
    add("left", {500000, 5100000, 501000, 5101000});
    add("right", {501000, 5100000, 502000, 5101000});
  }

  void add(const std::string& id, const Bounds& place) {
    service_.sources.push_back(
        {id + ".tif", id, {{"Year", id == "left" ? "1990" : "2000"}}, service_.facts, place});
  }

  [[nodiscard]] std::string remarksOf(const DrawingProperties& properties) const {
    std::string all;
    for (const std::string& remark : drawingOf(service_, properties).remarks) all += remark + "\n";
    return all;
  }

  static DrawingProperties by(MosaicMethod method) {
    DrawingProperties properties;
    properties.method = method;
    properties.methodText = methodName(method);
    return properties;
  }

  ImageServiceRecord service_;
};

TEST_F(Drawings, OfPlainPropertiesAreTheServiceAsItIs) {
  const Drawing drawing = drawingOf(service_, {});
  EXPECT_EQ(drawing.order, (Order{0, 1}));
  EXPECT_TRUE(drawing.remarks.empty());
  EXPECT_EQ(drawing.service->facts.envelope, service_.facts.envelope);
  EXPECT_FALSE(drawing.service->pixels.noData);
}

TEST_F(Drawings, TakeTheMiddleForAViewpointThatIsNone) {
  DrawingProperties properties = by(MosaicMethod::ClosestToViewpoint);
  properties.viewPointX = 500100;
  const Drawing drawing = drawingOf(service_, properties);
  EXPECT_EQ(drawing.properties.viewPointX, 501000);
  EXPECT_EQ(drawing.properties.viewPointY, 5100500);
  EXPECT_EQ(drawing.remarks.size(), 1U);
  properties.viewPointY = 5100100;
  EXPECT_EQ(remarksOf(properties), "");
  EXPECT_EQ(drawingOf(service_, properties).order, (Order{1, 0}));
}

TEST_F(Drawings, RemarkWhichMethodCannotBeFollowed) {
  const std::string end = "; all rasters are shown in the order of the service.\n";
  DrawingProperties lock = by(MosaicMethod::LockRaster);
  lock.lockImageId = "middle";
  EXPECT_EQ(remarksOf(lock), "There is no source raster \"middle\" to lock to" + end);
  lock.lockImageId = "left";
  EXPECT_EQ(remarksOf(lock), "");
  DrawingProperties attribute = by(MosaicMethod::ByAttribute);
  attribute.orderField = "Month";
  EXPECT_EQ(remarksOf(attribute), "No source raster has the attribute \"Month\"" + end);
  attribute.orderField = "Year";
  EXPECT_EQ(remarksOf(attribute), "");
  DrawingProperties unknown;
  unknown.methodText = " Upside Down ";
  EXPECT_EQ(remarksOf(unknown), "There is no mosaic method \"Upside Down\"" + end);
}

TEST_F(Drawings, RemarkTheFirstSourcesThatAreLeftOut) {
  for (int i = 0; i < 7; ++i) service_.problems.push_back({"s" + std::to_string(i), "it is torn"});
  const std::string remarks = remarksOf({});
  EXPECT_TRUE(remarks.starts_with("The source raster s0 is left out: it is torn\n"));
  EXPECT_TRUE(remarks.ends_with("s4 is left out: it is torn\nSo are 2 more source rasters.\n"));
}

TEST_F(Drawings, UseANoDataValueThatThePixelsCanHold) {
  DrawingProperties properties;
  properties.noData = 255;
  EXPECT_EQ(drawingOf(service_, properties).service->pixels.noData, 255);
  for (const double value : {256.0, -1.0, 1.5}) {
    properties.noData = value;
    const Drawing drawing = drawingOf(service_, properties);
    EXPECT_FALSE(drawing.service->pixels.noData) << value;
    EXPECT_EQ(drawing.remarks.size(), 1U) << value;
  }
  service_.facts.pixelType = "Float32";
  EXPECT_EQ(drawingOf(service_, properties).service->pixels.noData, 1.5);
}

TEST_F(Drawings, LeaveMethodsToMosaics) {
  service_.kind = ServiceKind::Raster;
  service_.sources.pop_back();
  DrawingProperties lock = by(MosaicMethod::LockRaster);
  lock.lockImageId = "middle";
  EXPECT_EQ(remarksOf(lock), "");
  EXPECT_EQ(drawingOf(service_, lock).order, (Order{0}));
}

TEST_F(Drawings, LieInTheSystemAskedFor) {
  DrawingProperties properties;
  properties.systemText = "EPSG:4326";
  const Drawing drawing = drawingOf(service_, properties);
  EXPECT_EQ(drawing.service->facts.srsId, "EPSG:4326");
  EXPECT_NEAR(drawing.service->facts.envelope.xMin, 9, 0.001);
  EXPECT_LT(drawing.service->sources[0].place.xMax, 9.02);
  EXPECT_EQ(drawing.service->facts.pixelSize, drawing.service->facts.pixelHeight);
}

TEST_F(Drawings, StayInTheirOwnSystemWhereThereIsNoWay) {
  DrawingProperties properties;
  properties.systemText = "nowhere";
  const Drawing drawing = drawingOf(service_, properties);
  EXPECT_EQ(drawing.service->facts.srsId, "EPSG:32632");
  EXPECT_EQ(remarksOf(properties),
            "The service cannot be brought into the coordinate system of its properties; it is shown in its "
            "own.\n");
}

TEST_F(Drawings, OfAServiceInItsOwnSystemAreNotMoved) {
  for (const std::string& text :
       {std::string(), std::string("  "), service_.facts.srsWkt, std::string("EPSG:32632")}) {
    const auto moved = inSystem(service_, text);
    ASSERT_TRUE(moved) << text;
    EXPECT_EQ(moved->facts.envelope, service_.facts.envelope) << text;
  }
}

TEST_F(Drawings, LeaveOutSourcesThatCannotBeBroughtAlong) {
  service_.sources[1].place = {1e15, 1e15, 2e15, 2e15};
  const auto moved = inSystem(service_, "EPSG:4326");
  ASSERT_TRUE(moved);
  ASSERT_EQ(moved->sources.size(), 1U);
  EXPECT_EQ(moved->sources[0].rasterId, "left");
  service_.sources[0].place = service_.sources[1].place;
  EXPECT_FALSE(inSystem(service_, "EPSG:4326"));
}

TEST_F(Drawings, OpenNoFileOrAddressToFindASystem) {
  for (const char* text : {"/etc/hostname", "http://127.0.0.1:1/wkt", "https://127.0.0.1:1/wkt"}) {
    EXPECT_FALSE(inSystem(service_, text)) << text;
  }
  service_.facts.srsWkt.clear();
  EXPECT_FALSE(inSystem(service_, "EPSG:4326"));
}

}  // namespace
}  // namespace vlclientui::client
