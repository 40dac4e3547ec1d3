#include "properties/PropertiesDefinitions.h"

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* allFields =
    "<MosaicMethod/><TileOrderField/><TileOrderBase/><LockImageID/>"
    "<Srs Srs_READONLY_=\"old\"><Prj Prj_READONLY_=\"old\"/></Srs>";
constexpr const char* allMethods = "By Attribute,Lock Raster,Closest to Viewpoint";

class PropertiesDefinitions : public PropertiesFixture {
 protected:
  void prepare(bool srsReadOnly = false) {
    prepareDefinitions(*service, srsReadOnly, formBody, attributeBody);
  }
  /// The form of a service that offers these methods.
  [[nodiscard]] std::string formFor(const std::string& methodList) {
    service->definitions = {{1, attributeDefinitionXml(methodList)}, {2, definitionXml("XFDef", allFields)}};
    prepare();
    return formBody;
  }
  [[nodiscard]] std::string formWith(const std::string& srs, bool srsReadOnly) {
    service->definitions[2] = definitionXml("XFDef", srs);
    prepare(srsReadOnly);
    return formBody;
  }

  std::string formBody = "former form";
  std::string attributeBody = "former attributes";
};

TEST_F(PropertiesDefinitions, AreAskedOfAnOlderServiceByNumberTheFormFirst) {
  prepare();
  EXPECT_THAT(service->calls, ElementsAre("GetDefinition 2", "GetDefinition 1"));
}

TEST_F(PropertiesDefinitions, AreAskedOfANewerServiceByKeyTheFormFirst) {
  makeNewer();
  prepare();
  EXPECT_THAT(service->calls, ElementsAre("getProperty 'ClientXFDef'", "getProperty 'ClientXADef'"));
}

TEST_F(PropertiesDefinitions, TellTheGenerationByTheTypeNameInAnyCase) {
  for (const char* const type : {"iovlimageservice", "IOVLIMAGESERVICE", "iOvLImageService"}) {
    service->type = type;
    EXPECT_EQ(fetchClientDefinition(*service, ClientDefinition::Form), service->definitions[2]);
    EXPECT_EQ(service->calls.back(), "getProperty 'ClientXFDef'") << type;
  }
  service->type = "IOVLImageService2";
  EXPECT_EQ(fetchClientDefinition(*service, ClientDefinition::Attributes), service->definitions[1]);
  EXPECT_EQ(service->calls.back(), "GetDefinition 1");
}

TEST_F(PropertiesDefinitions, LoseTheirWrapper) {
  prepare();
  EXPECT_EQ(formBody, propertiesXml("<MosaicMethod/>"));
  EXPECT_TRUE(attributeBody.starts_with("<Vorlane><ImageServiceProperties>")) << attributeBody;
}

TEST_F(PropertiesDefinitions, AreCutOutWhereverTheirWrapperStands) {
  service->definitions[2] = "<Package>" + definitionXml("XFDef", "<Inner/>") + "</Package>";
  prepare();
  EXPECT_EQ(formBody, propertiesXml("<Inner/>"));
}

TEST_F(PropertiesDefinitions, NameTheHelpFileBehindTheAttributes) {
  service->definitions[1] = "<XADef><Vorlane><A/></Vorlane></XADef>";
  prepare();
  EXPECT_EQ(attributeBody,
            "<Vorlane><A/><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Vorlane>");
}

TEST_F(PropertiesDefinitions, GetTheHelpFileIntoTheFirstBlockWhenTheyHaveOne) {
  service->definitions[1] = "<XADef><Vorlane><X_DEF/></Vorlane></XADef>";
  prepare();
  EXPECT_EQ(attributeBody,
            "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF><X_DEF/></Vorlane>");
}

TEST_F(PropertiesDefinitions, WithAnotherRootGetNoHelpFile) {
  service->definitions[1] = "<XADef><Other/></XADef>";
  prepare();
  EXPECT_EQ(attributeBody, "<Other/>");
}

TEST_F(PropertiesDefinitions, WithoutWrapperOrChildLeaveTheBodiesAsTheyWere) {
  service->definitions = {{1, "<XADef/>"}, {2, "<Vorlane/>"}};
  prepare();
  EXPECT_EQ(formBody, "former form");
  EXPECT_EQ(attributeBody, "former attributes");
}

TEST_F(PropertiesDefinitions, ThatDoNotParseLeaveTheirOwnBodyAlone) {
  service->definitions[1] = "<XADef>";
  prepare();
  EXPECT_EQ(attributeBody, "former attributes");
  EXPECT_EQ(formBody, propertiesXml("<MosaicMethod/>"));
}

TEST_F(PropertiesDefinitions, KeepTheFieldsOfTheMethodsThatTheServiceOffers) {
  const std::string form = formFor(allMethods);
  for (const char* const field : {"<TileOrderField/>", "<TileOrderBase/>", "<LockImageID/>"}) {
    EXPECT_THAT(form, HasSubstr(field));
  }
}

TEST_F(PropertiesDefinitions, LoseTheTileOrderWithoutByAttribute) {
  const std::string form = formFor("Lock Raster");
  EXPECT_THAT(form, Not(HasSubstr("TileOrder")));
  EXPECT_THAT(form, HasSubstr("<LockImageID/>"));
}

TEST_F(PropertiesDefinitions, LoseTheLockWithoutLockRaster) {
  const std::string form = formFor("By Attribute,LockRaster");
  EXPECT_THAT(form, Not(HasSubstr("LockImageID")));
  EXPECT_THAT(form, HasSubstr("<TileOrderField/><TileOrderBase/>"));
}

TEST_F(PropertiesDefinitions, SearchTheListInAnyCaseAndInsideLongerWords) {
  EXPECT_THAT(formFor("by attribute"), HasSubstr("<TileOrderField/>"));
  EXPECT_THAT(formFor("Unlock Rasters"), HasSubstr("<LockImageID/>"));
}

TEST_F(PropertiesDefinitions, WithoutAListOfMethodsLoseTheFieldsOfAll) {
  service->definitions = {{1, definitionXml("XADef", "<MosaicMethod/>")},
                          {2, definitionXml("XFDef", allFields)}};
  prepare();
  EXPECT_THAT(formBody, Not(HasSubstr("TileOrder")));
  EXPECT_THAT(formBody, Not(HasSubstr("LockImageID")));
}

TEST_F(PropertiesDefinitions, LoseOnlyTheFirstFieldOfAName) {
  service->definitions[1] = attributeDefinitionXml("");
  service->definitions[2] = definitionXml("XFDef", "<LockImageID/><LockImageID n=\"2\"/>");
  prepare();
  EXPECT_EQ(formBody, propertiesXml("<LockImageID n=\"2\"/>"));
}

TEST_F(PropertiesDefinitions, LeaveTheSpatialReferenceEditable) {
  EXPECT_THAT(formWith("<Srs Srs_READONLY_=\"True\"><Prj Prj_READONLY_=\"old\"/></Srs>", false),
              HasSubstr("<Srs Srs_READONLY_=\"False\"><Prj Prj_READONLY_=\"old\"/></Srs>"));
}

TEST_F(PropertiesDefinitions, MakeTheSpatialReferenceReadOnly) {
  EXPECT_THAT(formWith("<Srs Srs_READONLY_=\"False\"><Prj Prj_READONLY_=\"False\"/></Srs>", true),
              HasSubstr("<Srs Srs_READONLY_=\"True\"><Prj Prj_READONLY_=\"True\"/></Srs>"));
}

TEST_F(PropertiesDefinitions, WithoutAProjectionMakeTheReferenceAloneReadOnly) {
  EXPECT_THAT(formWith("<Srs Srs_READONLY_=\"False\"/>", true), HasSubstr("<Srs Srs_READONLY_=\"True\"/>"));
}

TEST_F(PropertiesDefinitions, WriteReadOnlyAttributesOnlyWhereTheyStand) {
  for (const bool srsReadOnly : {false, true}) {
    EXPECT_EQ(formWith("<Srs><Prj/></Srs>", srsReadOnly), propertiesXml("<Srs><Prj/></Srs>"));
    EXPECT_EQ(formWith("<Other/>", srsReadOnly), propertiesXml("<Other/>"));
  }
}

TEST_F(PropertiesDefinitions, PassTheServicesFailureOn) {
  service->failAtCall = 2;
  EXPECT_THROW(prepare(), RuntimeFailure);
  EXPECT_EQ(formBody, "former form");
}

TEST_F(PropertiesDefinitions, ReadTheListOfMethodsFromTheBody) {
  EXPECT_EQ(mosaicMethodList(propertiesXml("<MosaicMethod MosaicMethod_LIST_=\"A,B\"/>")), "A,B");
  EXPECT_EQ(mosaicMethodList(propertiesXml("<MosaicMethod/>")), "");
  EXPECT_EQ(mosaicMethodList("<Vorlane>"), "");
}

}  // namespace
}  // namespace vlclientui::test
