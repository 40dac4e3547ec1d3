#include "export/CoordinateNote.h"

#include "frame/ThreadState.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

TEST(UnitOfSystem, IsThatOfAProjectedSystemAndNotOfItsDegrees) {
  EXPECT_EQ(unitOfSystem(R"(PROJCS["WGS 84 / UTM zone 32N",GEOGCS["WGS 84",UNIT["degree",0.0174]],)"
                         R"(PROJECTION["Transverse_Mercator"],UNIT["metre",1],AUTHORITY["EPSG","32632"]])"),
            "metre");
}

TEST(UnitOfSystem, IsThatOfAGeographicSystem) {
  EXPECT_EQ(unitOfSystem(R"(GEOGCS["WGS 84",DATUM["x",SPHEROID["y",1,2]],UNIT["degree",0.0174]])"), "degree");
}

TEST(UnitOfSystem, IsTheHorizontalOneOfACompoundSystem) {
  EXPECT_EQ(
      unitOfSystem(R"(COMPD_CS["both",PROJCS["p",GEOGCS["g",UNIT["degree",1]],UNIT["US survey foot",0.3]],)"
                   R"(VERT_CS["v",UNIT["metre",1]]])"),
      "US survey foot");
}

TEST(UnitOfSystem, IsThatOfTheAxesInNewerTexts) {
  EXPECT_EQ(
      unitOfSystem(R"(PROJCRS["p",BASEGEOGCRS["g",DATUM["d",ELLIPSOID["e",1,2,LENGTHUNIT["metre",1]]]],)"
                   R"(CS[Cartesian,2],AXIS["east",east,LENGTHUNIT["foot",0.3048]],)"
                   R"(AXIS["north",north,LENGTHUNIT["foot",0.3048]]])"),
      "foot");
}

TEST(UnitOfSystem, IsNoneWhereTheTextHasNone) {
  for (const char* text : {"", "EPSG:4326", "]]]", "UNIT[", "UNIT[\"metre", "PROJCS[\"a UNIT[\"", "[[[["}) {
    EXPECT_EQ(unitOfSystem(text), "") << text;
  }
}

TEST(UnitOfSystem, TakesNoBracketOfANameForOne) {
  EXPECT_EQ(unitOfSystem(R"(PROJCS["odd [[ name",UNIT["metre",1]])"), "metre");
}

class CoordinateNote : public ExportFixture {
 protected:
  static std::string noteOf(const std::string& system) {
    const auto document = currentPlatform().xml->createDocument();
    EXPECT_TRUE(document->loadXml("<Vorlane><ImageServiceInfo>" + system + "</ImageServiceInfo></Vorlane>"));
    return coordinateNote(*document);
  }
};

TEST_F(CoordinateNote, TellsNameIdentifierAndUnit) {
  EXPECT_EQ(
      noteOf(
          "<Srs><Name>WGS 84</Name><Id>EPSG:4326</Id><Prj>GEOGCS[\"WGS 84\",UNIT[\"degree\",1]]</Prj></Srs>"),
      "Coordinate system: WGS 84 (EPSG:4326); unit: degree");
}

TEST_F(CoordinateNote, TellsAsMuchAsTheDocumentDoes) {
  EXPECT_EQ(noteOf("<Srs><Id>EPSG:4326</Id></Srs>"), "Coordinate system: EPSG:4326");
  EXPECT_EQ(noteOf("<Srs><Name>Local grid</Name></Srs>"), "Coordinate system: Local grid");
  EXPECT_EQ(noteOf(""), "The service names no coordinate system.");
}

TEST_F(CoordinateNote, StandsInTheFrameOfTheExtents) {
  service->info = "<Vorlane><ImageServiceInfo><Srs><Name>WGS 84</Name></Srs></ImageServiceInfo></Vorlane>";
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.Frame1.note(), "Coordinate system: WGS 84");
  });
}

}  // namespace
}  // namespace vlclientui::test
