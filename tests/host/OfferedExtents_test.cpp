#include "host/OfferedExtents.h"

#include <cmath>
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "client/drawing/ImageSource.h"
#include "client/facade/ServiceCoordinates.h"
#include "frame/ThreadState.h"
#include "host/Compose.h"
#include "support/EdgeTransform.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::host {
namespace {

constexpr int utm32 = 32632;

class OfferedExtents : public testing::Test {
 protected:
  OfferedExtents() {
    HostOptions options;
    options.home = sourceFolder();
    options.catalogue = samplesFolder();
    host_ = composeHeadlessPlatform(options);
  }

  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> service(const std::string& name) const {
    return std::make_shared<client::CatalogueImageService>(host_.catalogue, *host_.platform->xml,
                                                           "ImageService://127.0.0.1/" + name);
  }

  [[nodiscard]] client::RasterFacts factsOf(const std::string& name) const {
    return service(name)->record().facts;
  }

  ComposedHost host_;
};

void expectNear(const client::Bounds& actual, const client::Bounds& expected, double tolerance) {
  EXPECT_NEAR(actual.xMin, expected.xMin, tolerance);
  EXPECT_NEAR(actual.yMin, expected.yMin, tolerance);
  EXPECT_NEAR(actual.xMax, expected.xMax, tolerance);
  EXPECT_NEAR(actual.yMax, expected.yMax, tolerance);
}

TEST_F(OfferedExtents, APlaceIsToldInTheCoordinatesOfTheService) {
  const client::Bounds place{8.40, 46.45, 8.65, 46.62};
  const auto bounds = client::inServiceCoordinates(place, factsOf("Elevation/Terrain_30m"));
  ASSERT_TRUE(bounds);
  expectNear(*bounds, test::boundsOfEdges(place, utm32), 0.05);
}

TEST_F(OfferedExtents, CurvedEdgesStayInside) {
  // Parallels bend by kilometers across a zone.
  const client::Bounds place{6, 46, 12, 47};
  const auto bounds = client::inServiceCoordinates(place, factsOf("Elevation/Terrain_30m"));
  ASSERT_TRUE(bounds);
  const client::Bounds slow = test::boundsOfEdges(place, utm32);
  expectNear(*bounds, slow, 100);
  const client::Bounds corner = test::boundsOfEdges({6, 46, 6.000001, 46.000001}, utm32);
  EXPECT_LT(bounds->yMin, corner.yMin - 1000);
}

TEST_F(OfferedExtents, DegreesStayAsTheyAreInAServiceOfDegrees) {
  const client::Bounds place{-20.125, 10.5, 29.875, 60};
  const auto bounds = client::inServiceCoordinates(place, factsOf("World/EGM96_Geoid"));
  ASSERT_TRUE(bounds);
  EXPECT_EQ(*bounds, place);
}

TEST_F(OfferedExtents, AMapOfTheWorldIsCutToWhereTheSystemIsOfUse) {
  const auto bounds = client::inServiceCoordinates({-180, -90, 180, 90}, factsOf("Elevation/Terrain_30m"));
  ASSERT_TRUE(bounds);
  expectNear(*bounds, test::boundsOfEdges({6, 0, 12, 84}, utm32), 100);
}

TEST_F(OfferedExtents, InASystemWithoutACodeAPlaceIsCutToThatOfTheService) {
  client::RasterFacts facts = factsOf("Elevation/Terrain_30m");
  facts.srsId.clear();
  const auto bounds = client::inServiceCoordinates({-180, -90, 180, 90}, facts);
  ASSERT_TRUE(bounds);
  expectNear(*bounds, test::boundsOfEdges(*facts.geographicEnvelope, utm32), 0.05);
}

TEST_F(OfferedExtents, APlaceOutsideTheSystemHasNoCoordinates) {
  EXPECT_FALSE(client::inServiceCoordinates({100, 10, 110, 20}, factsOf("Elevation/Terrain_30m")));
}

TEST_F(OfferedExtents, APlaceMeetsAServiceThatCountsBeyondHalfATurn) {
  client::RasterFacts facts = factsOf("World/EGM96_Geoid");
  facts.envelope = {180, -90, 540, 90};
  EXPECT_EQ(client::inServiceCoordinates({-20, 10, 30, 60}, facts), (client::Bounds{340, 10, 390, 60}));
  facts.envelope = {-540, -90, -180, 90};
  EXPECT_EQ(client::inServiceCoordinates({-20, 10, 30, 60}, facts), (client::Bounds{-380, 10, -330, 60}));
}

TEST_F(OfferedExtents, AServiceWithoutACoordinateSystemHasNoPlaceOnAMap) {
  client::RasterFacts facts = factsOf("World/EGM96_Geoid");
  facts.srsWkt.clear();
  EXPECT_FALSE(client::inServiceCoordinates({-20, 10, 30, 60}, facts));
}

TEST_F(OfferedExtents, TheDocumentListsThePlacesInTheirOrder) {
  const auto geoid = service("World/EGM96_Geoid");
  EXPECT_EQ(offeredExtents(*geoid, {{"View & more", {-1.5, 2, 3, 4.25}}, {"Drawn", {5, 6, 7, 8}}}),
            "<Vorlane><Client><ExportImageDialog>"
            "<CustomEnvelope><Description>View &amp; more</Description><XMin>-1.5</XMin><YMin>2</YMin>"
            "<XMax>3</XMax><YMax>4.25</YMax></CustomEnvelope>"
            "<CustomEnvelope><Description>Drawn</Description><XMin>5</XMin><YMin>6</YMin>"
            "<XMax>7</XMax><YMax>8</YMax></CustomEnvelope>"
            "</ExportImageDialog></Client></Vorlane>");
}

TEST_F(OfferedExtents, TheDocumentLeavesOutWhatCannotBeExported) {
  const std::string document =
      offeredExtents(*service("Elevation/Terrain_30m"),
                     {{"Far away", {100, 10, 110, 20}}, {"Here", {8.4, 46.5, 8.5, 46.6}}});
  EXPECT_EQ(document.find("Far away"), std::string::npos);
  EXPECT_NE(document.find("<Description>Here</Description>"), std::string::npos);
}

/// What the window begins with.
class ProposedExtents : public OfferedExtents {
 protected:
  void propose(client::CatalogueImageService& service, const std::vector<NamedPlace>& places) {
    document_ = proposedExtents(service, places);
    const auto basic = host_.platform->xml->createDocument();
    ASSERT_TRUE(basic->loadXml(service.GetImageMetadata("Basic")));
    const auto number = [&basic](const char* name) {
      const auto node = basic->selectSingleNode(std::string("//ImageMetadata/Basic/") + name);
      return node ? std::stod(node->text()) : -1;
    };
    image_ = {number("XMin"), number("YMin"), number("XMax"), number("YMax")};
    columns_ = number("NCols");
    rows_ = number("NRows");
  }
  [[nodiscard]] double across() const { return (image_.xMax - image_.xMin) / columns_; }
  [[nodiscard]] double down() const { return (image_.yMax - image_.yMin) / rows_; }
  [[nodiscard]] bool tells(const char* name) const {
    return document_.find("<Description>" + std::string(name) + "</Description>") != std::string::npos;
  }

  std::string document_;
  client::Bounds image_;
  double columns_ = 0;
  double rows_ = 0;
};

TEST_F(ProposedExtents, BeginWithWholePixelsOfTheServiceAroundTheLastPlace) {
  const auto terrain = service("Elevation/Terrain_30m");
  const client::RasterFacts facts = terrain->facts();
  const GeographicEnvelope view{8.45, 46.50, 8.60, 46.60};
  propose(*terrain, {{"Other", {8.5, 46.5, 8.51, 46.51}}, {"View", view}});
  EXPECT_TRUE(tells("Other") && tells("View"));
  EXPECT_DOUBLE_EQ(across(), 30);
  EXPECT_DOUBLE_EQ(down(), 30);
  const double offset = (image_.xMin - facts.envelope.xMin) / 30;
  EXPECT_NEAR(offset, std::round(offset), 1e-6);
  const auto exact = client::inServiceCoordinates({view.xMin, view.yMin, view.xMax, view.yMax}, facts);
  ASSERT_TRUE(exact);
  EXPECT_LE(image_.xMin, exact->xMin);
  EXPECT_GT(image_.xMin, exact->xMin - 30);
  EXPECT_GE(image_.yMax, std::min(exact->yMax, facts.envelope.yMax));
  EXPECT_LE(columns_, static_cast<double>(facts.columns));
  EXPECT_LE(rows_, static_cast<double>(facts.rows));
}

TEST_F(ProposedExtents, OfAMapOfTheWorldAreTheWholeService) {
  const auto terrain = service("Elevation/Terrain_30m");
  propose(*terrain, {{"View", {-180, -90, 180, 90}}});
  EXPECT_EQ(image_, terrain->facts().envelope);
  EXPECT_EQ(columns_, static_cast<double>(terrain->facts().columns));
  EXPECT_EQ(rows_, static_cast<double>(terrain->facts().rows));
}

TEST_F(ProposedExtents, LeaveOutWhatLiesBesideTheService) {
  const auto terrain = service("Elevation/Terrain_30m");
  propose(*terrain, {{"Beside", {8.0, 40.0, 8.1, 40.1}}});
  EXPECT_FALSE(tells("Beside"));
  EXPECT_EQ(image_, terrain->facts().envelope);
}

TEST_F(ProposedExtents, AreSquareWhereThePixelsOfTheServiceAreNot) {
  const test::TemporaryFolder folder;
  const std::string file = (folder.path() / "oblong.vrt").string();
  std::ofstream(file) << "<VRTDataset rasterXSize='1440' rasterYSize='721'><SRS>EPSG:4326</SRS>"
                         "<GeoTransform>0, 0.05, 0, 50, 0, -0.02</GeoTransform>"
                         "<VRTRasterBand dataType='Float32' band='1'><SimpleSource><SourceFilename>"
                      << samplesFolder()
                      << "/World/EGM96_Geoid.tif</SourceFilename><SourceBand>1</SourceBand>"
                      << "</SimpleSource></VRTRasterBand></VRTDataset>";
  client::CatalogueImageService oblong(host_.catalogue, *host_.platform->xml, file);
  propose(oblong, {{"View", {10, 40, 20, 45}}});
  EXPECT_NEAR(across(), 0.05, 1e-12);
  EXPECT_NEAR(down(), 0.05, 1e-12);
  EXPECT_EQ(columns_, 200);
  EXPECT_EQ(rows_, 100);
  propose(oblong, {});
  EXPECT_NEAR(across(), down(), 1e-12);
}

}  // namespace
}  // namespace vlclientui::host
