#include "client/raster/RasterFacts.h"

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include "client/raster/DocumentWriter.h"
#include "client/raster/GdalScope.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

TEST(BoundsOfTwo, HoldBoth) {
  EXPECT_EQ(unite({0, 0, 1, 1}, {5, -2, 6, 0.5}), (Bounds{0, -2, 6, 1}));
  EXPECT_EQ(unite({0, 0, 9, 9}, {1, 1, 2, 2}), (Bounds{0, 0, 9, 9}));
}

TEST(RegionText, IsTheCenterWithItsHemispheres) {
  EXPECT_EQ(regionText({8, 46, 9, 47}), "46.5 N 8.5 E");
  EXPECT_EQ(regionText({-10, -40, -9, -39}), "39.5 S 9.5 W");
  EXPECT_EQ(regionText({-1, -1, 1, 1}), "0.0 N 0.0 E");
}

TEST(RegionText, OfAlmostEverythingIsTheWorld) {
  EXPECT_EQ(regionText({-180, -90, 180, 90}), "World");
  EXPECT_EQ(regionText({-180, -85, 180, 85}), "World");
  EXPECT_EQ(regionText({-180, -60, 180, 60}), "0.0 N 0.0 E");
  EXPECT_EQ(regionText({-179, -90, 180, 90}), "0.0 N 0.5 E");
}

TEST(SystemTexts, AreNameCodeAndWholeDefinition) {
  const GdalScope scope;
  OGRSpatialReference system;
  ASSERT_EQ(system.importFromEPSG(32632), OGRERR_NONE);
  RasterFacts facts;
  setSystem(facts, system);
  EXPECT_EQ(facts.srsName, "WGS 84 / UTM zone 32N");
  EXPECT_EQ(facts.srsId, "EPSG:32632");
  EXPECT_EQ(facts.srsWkt, wktOf(system));
  EXPECT_NE(facts.srsWkt.find("32N"), std::string::npos);
}

TEST(SystemTexts, OfASystemWithoutACodeHaveNone) {
  const GdalScope scope;
  OGRSpatialReference system;
  ASSERT_EQ(system.importFromProj4("+proj=tmerc +lat_0=10 +lon_0=11 +ellps=WGS84 +units=m"), OGRERR_NONE);
  RasterFacts facts;
  facts.srsId = "EPSG:1";
  setSystem(facts, system);
  EXPECT_EQ(facts.srsId, "");
  EXPECT_FALSE(facts.srsWkt.empty());
  EXPECT_EQ(wktOf(OGRSpatialReference()), "");
}

TEST(DocumentWriter, ClosesElementsInTheirOrder) {
  std::string out;
  {
    const Element outer(out, "a");
    const Element inner(out, "b");
    writeText(out, "c", "1 < 2");
  }
  EXPECT_EQ(out, "<a><b><c>1 &lt; 2</c></b></a>");
}

TEST(DocumentWriter, LeavesOutWhatIsNotKnown) {
  std::string out;
  writeText(out, "a", "");
  EXPECT_EQ(out, "");
  writeNumber(out, "n", -7);
  writeDecimal(out, "d", 0.1);
  EXPECT_EQ(out, "<n>-7</n><d>0.1</d>");
}

TEST(DocumentWriter, WritesEdgesInOneOrder) {
  std::string out;
  writeEdges(out, {1, 2, 3.5, 4});
  EXPECT_EQ(out, "<XMin>1</XMin><YMin>2</YMin><XMax>3.5</XMax><YMax>4</YMax>");
}

TEST(DocumentWriter, TellsTheSystemWholeOrInShort) {
  RasterFacts facts;
  facts.srsName = "here";
  facts.srsWkt = "WKT";
  std::string whole;
  writeServiceFacts(whole, "s", facts, SystemDetail::Whole);
  EXPECT_NE(whole.find("<Srs><Name>here</Name><Prj>WKT</Prj></Srs>"), std::string::npos);
  std::string brief;
  writeImageServiceInfo(brief, "s", facts);
  EXPECT_NE(brief.find("<Srs><Name>here</Name></Srs>"), std::string::npos);
  EXPECT_TRUE(brief.starts_with("<ImageServiceInfo><Name>s</Name>"));
}

TEST(DocumentWriter, LeavesOutWhatIsUnknown) {
  RasterFacts facts;
  facts.title = "Sheet";
  facts.geographicEnvelope = Bounds{7, 46, 8, 47};
  std::string info;
  writeImageServiceInfo(info, "Name", facts);
  EXPECT_EQ(info,
            "<ImageServiceInfo><Name>Name</Name><KeyDetails><Title>Sheet</Title></KeyDetails>"
            "<ColorSpace>255</ColorSpace><GeographicEnvelope><XMin>7</XMin><YMin>46</YMin><XMax>8</XMax>"
            "<YMax>47</YMax></GeographicEnvelope></ImageServiceInfo>");
}

TEST(DocumentWriter, TellsNoSizeThatReadersCouldNotHold) {
  RasterFacts facts;
  facts.columns = 32767;
  facts.rows = 32768;
  std::string out;
  writeServiceFacts(out, "s", facts, SystemDetail::NameAndId);
  EXPECT_NE(out.find("<MaxNCols>32767</MaxNCols>"), std::string::npos);
  EXPECT_EQ(out.find("MaxNRows"), std::string::npos);
}

}  // namespace
}  // namespace vlclientui::client
