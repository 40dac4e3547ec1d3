// What a person does on the properties page of a host and what the host gets of it. Built once per window
// system.

#include <gmock/gmock.h>

#include "scenarios/PropertiesPerson.h"
#include "scenarios/ServiceScenarios.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr auto page = PropertyPageId::PropertyPageProperties;
constexpr const char* method = "Mosaic/Mosaic method";
constexpr const char* orderField = "Mosaic/Order by attribute";
constexpr const char* viewPoint = "Mosaic/Viewpoint…";
constexpr const char* noData = "Pixels/No-data value";
constexpr const char* definition = "Coordinate system/Definition";

class PropertiesScenarios : public ServiceScenarios {
 protected:
  PropertiesScenarios() {
    equip(person);
    queryInterface<IOVLServicePropertiesDialog2>(dialog)->SetCallback(callback);
  }

  /// The host shows the page in its window.
  void open(const std::string& configuration = {}) {
    initialize(configuration);
    ASSERT_EQ(older()->ShowPropertyPage(page, person->hostWindow()), boolean16True) << threadState().gStatus;
    person->lookAt(dialog->propertiesPage());
  }
  [[nodiscard]] std::string shown(const std::string& field) const {
    return ServiceScenarios::shown(*person, field);
  }
  [[nodiscard]] bool hasChanged() const { return older()->HasChanged() == boolean16True; }
  /// What the host takes when the person applies.
  [[nodiscard]] std::string apply() const { return older()->GetUpdatedProperties(); }

  std::shared_ptr<FakePropertiesCallback> callback = std::make_shared<FakePropertiesCallback>();
  std::shared_ptr<PropertiesPerson> person = makePropertiesPerson();
};

TEST_F(PropertiesScenarios, ThePageShowsThePropertiesOfTheService) {
  open();
  EXPECT_THAT(
      person->fields(),
      ElementsAre("Mosaic/Mosaic method|By Attribute", "Mosaic/Viewpoint…|", "Mosaic/Order by attribute|Year",
                  "Mosaic/Closest to|2020", "Mosaic/Locked raster|7",
                  "Distance between source rasters/Across|5", "Distance between source rasters/Down|2",
                  "Pixels/Image of each item|", "Pixels/Resampling|Nearest neighbor", "Pixels/No-data value|",
                  "Coordinate system/Name|Sample grid", "Coordinate system/Definition|EPSG:32632"));
  EXPECT_THAT(person->entriesOfField(method),
              ElementsAre("None", "Closest to Viewpoint", "By Attribute", "Lock Raster"));
  EXPECT_FALSE(person->isVisible("ErrorLabel"));
  EXPECT_EQ(person->toolTip("SaveAs"), "Save as an xml file.");
}

TEST_F(PropertiesScenarios, FieldsOfMethodsThatTheServiceLacksAreNotShown) {
  service->definitions[1] = definitionOffering("None; by attribute");
  open();
  EXPECT_EQ(shown(orderField), "Year");
  EXPECT_EQ(shown("Mosaic/Closest to"), "2020");
  EXPECT_THAT(person->fields(), Not(Contains(StartsWith("Mosaic/Locked raster"))));
  EXPECT_THAT(person->fields(), Not(Contains(StartsWith(viewPoint))));
  EXPECT_EQ(older()->Close(page), boolean16True);
  service->definitions[1] = definitionOffering("None; Lock Raster; Closest to Viewpoint");
  open();
  EXPECT_EQ(shown("Mosaic/Locked raster"), "7");
  EXPECT_THAT(person->fields(), Not(Contains(StartsWith(orderField))));
  EXPECT_THAT(person->fields(), Not(Contains(StartsWith("Mosaic/Closest to"))));
  EXPECT_THAT(person->fields(), Contains(StartsWith(viewPoint)));
}

TEST_F(PropertiesScenarios, AnEditCountsAsAChangeWhileItsFieldHasTheFocus) {
  open();
  EXPECT_FALSE(hasChanged());
  person->typeField(orderField, "Sensor");
  EXPECT_TRUE(hasChanged());
  person->typeField(orderField, "Year");
  EXPECT_FALSE(hasChanged());
  person->pickInField("Pixels/Resampling", "Average");
  EXPECT_TRUE(hasChanged());
}

TEST_F(PropertiesScenarios, ApplyPublishesTheEditsAndLeavesTheRest) {
  open();
  person->typeField(orderField, "Sensor");
  person->pickInField(method, "Lock Raster");
  EXPECT_EQ(published(), service->properties);
  const std::string applied = apply();
  EXPECT_EQ(applied, published());
  EXPECT_EQ(textIn(applied, "TileOrderField"), "Sensor");
  EXPECT_EQ(textIn(applied, "MosaicMethod"), "LockRaster");
  EXPECT_EQ(textIn(applied, "LockImageID"), "7");
  EXPECT_EQ(textIn(applied, "AvgImageSpacingX"), "5");
  EXPECT_EQ(shown(method), "Lock Raster");
  EXPECT_THAT(callback->told, IsEmpty());
}

TEST_F(PropertiesScenarios, AServiceThatTookTheEditsHasNoChangeLeft) {
  open();
  person->typeField(orderField, "Sensor");
  service->properties = apply();
  older()->Refresh();
  EXPECT_FALSE(hasChanged());
  EXPECT_EQ(shown(orderField), "Sensor");
}

TEST_F(PropertiesScenarios, ARefreshShowsThePropertiesOfTheServiceInPlaceOfTheEdits) {
  open();
  person->typeField(orderField, "Sensor");
  service->properties =
      propertiesXml("<MosaicMethod>None</MosaicMethod><TileOrderField>Sun</TileOrderField>");
  older()->Refresh();
  EXPECT_EQ(shown(orderField), "Sun");
  EXPECT_EQ(shown(method), "None");
  EXPECT_FALSE(hasChanged());
}

TEST_F(PropertiesScenarios, ClosingThePagePublishesNothing) {
  open();
  person->typeField(orderField, "Sensor");
  EXPECT_EQ(older()->Close(page), boolean16True);
  EXPECT_EQ(published(), service->properties);
}

TEST_F(PropertiesScenarios, ATextThatIsNoNumberIsToldBesideItsFieldAndNotPublished) {
  open();
  person->typeField(noData, "none");
  person->typeField(orderField, "Year");
  EXPECT_THAT(person->complaint(noData), HasSubstr("number"));
  EXPECT_EQ(textIn(apply(), "NoData"), "");
  person->typeField(noData, "255");
  EXPECT_EQ(person->complaint(noData), "");
  EXPECT_EQ(textIn(apply(), "NoData"), "255");
}

TEST_F(PropertiesScenarios, TheCoordinateSystemCanBeChangedUnlessTheHostForbidsIt) {
  open();
  EXPECT_TRUE(person->fieldIsOpen(definition));
  EXPECT_FALSE(person->fieldIsOpen("Coordinate system/Name"));
  EXPECT_EQ(older()->Close(page), boolean16True);
  open(
      "<Vorlane><Client><Init><PropertiesSRSReadonly>True</PropertiesSRSReadonly></Init></Client></Vorlane>");
  EXPECT_FALSE(person->fieldIsOpen(definition));
  EXPECT_EQ(shown(definition), "EPSG:32632");
  EXPECT_TRUE(person->fieldIsOpen(orderField));
}

TEST_F(PropertiesScenarios, TheMethodDecidesWhetherTheViewpointCanBeSteered) {
  open();
  EXPECT_FALSE(person->fieldIsOpen(viewPoint));
  person->pickInField(method, "Closest to Viewpoint");
  EXPECT_TRUE(person->fieldIsOpen(viewPoint));
  person->pickInField(method, "Lock Raster");
  EXPECT_FALSE(person->fieldIsOpen(viewPoint));
}

TEST_F(PropertiesScenarios, TheShorterNameOfTheMethodCountsWhenPickedAndNotWhenThePageOpens) {
  service->definitions[1] = definitionOffering("None; Viewpoint; Closest to Viewpoint");
  service->properties = propertiesXml("<MosaicMethod>Viewpoint</MosaicMethod>");
  open();
  EXPECT_EQ(shown(method), "Viewpoint");
  EXPECT_FALSE(person->fieldIsOpen(viewPoint));
  person->pickInField(method, "None");
  person->pickInField(method, "Viewpoint");
  EXPECT_TRUE(person->fieldIsOpen(viewPoint));
}

TEST_F(PropertiesScenarios, TheViewpointIsSteeredInAWindowOfItsOwnAndPublishedWithApply) {
  open();
  person->pickInField(method, "Closest to Viewpoint");
  person->whenWindowAppears([&] {
    EXPECT_EQ(person->caption(), "ViewPoint");
    person->click("Center");
    person->click("MoveUp");
    EXPECT_EQ(person->text("uiTxtBoxX"), "150");
    EXPECT_EQ(person->text("uiTxtBoxY"), "22");
    person->click("uibtnok");
  });
  person->clickField(viewPoint);
  EXPECT_EQ(shown(method), "Closest to Viewpoint");
  const std::string applied = apply();
  EXPECT_EQ(textIn(applied, "MosaicMethod"), "Closest to Viewpoint");
  EXPECT_EQ(textIn(applied, "ViewPointX"), "150");
  EXPECT_EQ(textIn(applied, "ViewPointY"), "22");
}

TEST_F(PropertiesScenarios, SaveAsHandsTheChosenFileToTheService) {
  open();
  person->chooseFile("C:\\alps.VLRef");
  person->click("SaveAs");
  EXPECT_THAT(service->savedFiles, ElementsAre("C:\\alps.VLRef"));
  EXPECT_THAT(person->saveDialogs(), ElementsAre("VLRef (*.VLRef);Xml (*.xml)"));
  EXPECT_THAT(person->messages(), IsEmpty());
}

TEST_F(PropertiesScenarios, ACanceledSaveAsAsksTheServiceForNothing) {
  open();
  service->calls.clear();
  person->click("SaveAs");
  EXPECT_EQ(person->saveDialogs().size(), 1U);
  EXPECT_THAT(service->calls, IsEmpty());
  EXPECT_THAT(person->messages(), IsEmpty());
}

TEST_F(PropertiesScenarios, AFileThatTheServiceRefusesIsTold) {
  service->saveAnswer = false;
  open();
  person->chooseFile("C:\\alps.VLRef");
  person->click("SaveAs");
  ASSERT_EQ(person->messages().size(), 1U);
  EXPECT_THAT(person->messages()[0], StartsWith("Error saving file|Could not save it to '"));
  EXPECT_THAT(person->messages()[0], HasSubstr("alps.VLRef'."));
  person->typeField(orderField, "Sensor");
  EXPECT_TRUE(hasChanged());
}

TEST_F(PropertiesScenarios, PropertiesThatCannotBeShownAreExplainedInTheirPlace) {
  service->definitions[1] = "<XADef/>";
  service->definitions[2] = "<XFDef/>";
  open();
  EXPECT_THAT(person->fields(), IsEmpty());
  EXPECT_TRUE(person->isVisible("ErrorLabel"));
  EXPECT_EQ(person->text("ErrorLabel"),
            "Cannot show service properties.Unable to retrieve information from the xml.");
  EXPECT_THAT(person->messages(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
