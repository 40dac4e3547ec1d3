#include <functional>

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The sample page, which has a field of every kind, edited on a surface in memory.
class EngineEditing : public EngineTest {
 protected:
  void SetUp() override {
    engine = std::make_shared<Engine>(testXml(), surfaces, [this](const auto& file, const auto& page) {
      help.push_back(file + " " + page);
    });
    engine->EmbeddedMode(true);
    engine->AttributeDefinition(sampleDocument("Sample.XADef"));
    engine->FormDefinition(sampleDocument("Sample.Xfdef"));
    engine->DataXml(data);
    engine->DataRootPath("//");
    engine->ParentWindow(hostWindow);
    ASSERT_TRUE(engine->Show());
    engine->Notify.connect([this](Plexa&, const PlexaEvent& event) {
      EXPECT_EQ(event.KeyCode, 0);
      told.push_back(event.EventName + " " + event.ControlName + "=" + event.Value);
      if (onNotify) onNotify();
    });
  }

  std::string dataWith(const std::string& from, const std::string& to) { return replaced(data, from, to); }

  const std::string data = sampleDocument("Sample.xml");
  std::vector<std::string> told;
  std::vector<std::string> help;
  std::function<void()> onNotify;
};

TEST_F(EngineEditing, WithoutEditsTheResultIsTheDataByteForByte) {
  EXPECT_EQ(engine->GetResultXml(), data);
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), data);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(EngineEditing, AnEditChangesTheTextOfItsElementAndNoOtherByte) {
  EXPECT_EQ(surface().userSetsField("Name", "Arosa <West> & \"East\""), "");
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Arosa &lt;West&gt; &amp; \"East\""));
  EXPECT_EQ(surface().userSetsField("Height", "1775"), "");
  EXPECT_EQ(engine->GetResultXml(),
            replaced(dataWith("Davos", "Arosa &lt;West&gt; &amp; \"East\""), " 1594.50 ", "1775"));
}

TEST_F(EngineEditing, TheEditInTheFocusedFieldIsInTheResultAtOnceAndWithoutACommit) {
  surface().userTypes("Name", "Arosa");
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Arosa"));
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(EngineEditing, AValueBroughtBackIsNoEdit) {
  surface().userSetsField("Height", "7");
  surface().userSetsField("Height", "1594.50");
  surface().userSetsField("Open", "No");
  surface().userSetsField("Open", "Yes");
  surface().userSetsField("Method", "Lock Raster");
  surface().userSetsField("Method", "LockRaster");
  EXPECT_EQ(engine->GetResultXml(), data);
}

TEST_F(EngineEditing, EmptyElementsAreFilledAndFilledOnesEmptied) {
  surface().userSetsField("Operator", "Service");
  EXPECT_EQ(engine->GetResultXml(), dataWith("<Operator/>", "<Operator>Service</Operator>"));
  surface().userSetsField("Operator", "");
  surface().userSetsField("Floors", "");
  EXPECT_EQ(engine->GetResultXml(), dataWith("<Floors>2</Floors>", "<Floors></Floors>"));
}

TEST_F(EngineEditing, AnElementThatTheDataLackIsAddedBehindTheLastOneWhenItWasEdited) {
  EXPECT_EQ(surface().fieldText("Interval"), "10");
  surface().userSetsField("Interval", "5");
  EXPECT_EQ(engine->GetResultXml(),
            dataWith("<Model>T-2</Model>", "<Model>T-2</Model>\r\n      <Interval>5</Interval>"));
  surface().userSetsField("Offset", "0.25");
  EXPECT_EQ(engine->GetResultXml(), dataWith("<Model>T-2</Model>",
                                             "<Model>T-2</Model>\r\n      <Interval>5</Interval>\r\n      "
                                             "<Calibration><Offset>0.25</Offset></Calibration>"));
}

TEST_F(EngineEditing, ChoicesAndYesOrNoAreStoredByTheirCodes) {
  surface().userSetsField("Ground", "Ice");
  surface().userSetsField("Open", "No");
  EXPECT_EQ(engine->GetResultXml(),
            replaced(dataWith("<Ground>2", "<Ground>3"), "<Open>true", "<Open>False"));
  EXPECT_EQ(engine->FindControl("@Ground")->Text(), "Ice");
}

TEST_F(EngineEditing, AChoiceIsToldAtOnceWithItsShownText) {
  surface().userTypes("Method", "Closest to Viewpoint");
  surface().userTypes("Open", "No");
  surface().userTypes("Open", "No");
  EXPECT_THAT(told, ElementsAre("Change Method=Closest to Viewpoint", "Change Open=No"));
}

TEST_F(EngineEditing, ATypedTextIsToldOnceWhenThePersonLeavesIt) {
  surface().userTypes("Name", "A");
  surface().userTypes("Name", "Arosa");
  EXPECT_THAT(told, IsEmpty());
  surface().userTypes("Notes", "none");
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa"));
  surface().userLeavesField();
  surface().userTypes("Name", "Arosa");
  surface().userLeavesField();
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa", "Change Notes=none"));
}

TEST_F(EngineEditing, TheFirstValueBroughtBackIsToldAgain) {
  surface().userSetsField("Name", "Arosa");
  surface().userSetsField("Name", "Davos");
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa", "Change Name=Davos"));
}

TEST_F(EngineEditing, AButtonIsToldAfterTheEditsBeforeIt) {
  surface().userTypes("Name", "Arosa");
  surface().userPressesButton("ViewPointControl");
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa", "Click ViewPointControl="));
}

TEST_F(EngineEditing, ADisabledOrHiddenButtonCannotBePressed) {
  const auto button = engine->FindControl("@ViewPointControl");
  ASSERT_TRUE(button);
  button->Enabled(false);
  EXPECT_THROW(surface().userPressesButton("ViewPointControl"), RuntimeFailure);
  button->Enabled(true);
  button->Visible(false);
  EXPECT_THROW(surface().userPressesButton("ViewPointControl"), RuntimeFailure);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(EngineEditing, CommitTellsNothing) {
  surface().userTypes("Name", "Arosa");
  EXPECT_TRUE(engine->Commit());
  surface().userLeavesField();
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Arosa"));
}

TEST_F(EngineEditing, NewDataTakeThePlaceOfThePendingEdit) {
  surface().userTypes("Name", "Arosa");
  const auto other = dataWith("Davos", "Chur");
  engine->DataXml(other);
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), other);
  EXPECT_EQ(surface().fieldText("Name"), "Chur");
  surface().userLeavesField();
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(EngineEditing, TheDataReadBackAsGivenAlsoAfterAnEdit) {
  surface().userSetsField("Name", "Arosa");
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->DataXml(), data);
}

TEST_F(EngineEditing, AValueThatCannotBeTakenIsComplainedOfAndNotStored) {
  EXPECT_EQ(surface().userSetsField("Height", "high"), "Not a number, such as 12.5");
  EXPECT_EQ(surface().userSetsField("Floors", "1.5"), "Not a whole number");
  EXPECT_EQ(surface().userSetsField("Name", "  "), "Must not be empty");
  EXPECT_EQ(surface().userSetsField("Operator", "a\x01"), "Holds a character that cannot be stored");
  EXPECT_EQ(engine->GetResultXml(), data);
  EXPECT_FALSE(engine->Commit());
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(surface().fieldText("Height"), "high");
}

TEST_F(EngineEditing, NumbersKeepToTheirRange) {
  EXPECT_EQ(surface().userSetsField("Height", "-430.5"), "Must be between -430 and 8848.9");
  EXPECT_EQ(surface().userSetsField("Height", "-430"), "");
  EXPECT_EQ(surface().userSetsField("Height", "8848.9"), "");
  EXPECT_EQ(surface().userSetsField("Height", "9e3"), "Must be between -430 and 8848.9");
  EXPECT_EQ(surface().userSetsField("Floors", "0"), "Must be at least 1");
}

TEST_F(EngineEditing, AComplaintComesWhenThePersonLeavesAndGoesAsSoonAsTheTextIsRight) {
  surface().userTypes("Height", "-");
  EXPECT_EQ(surface().complaint("Height"), "");
  surface().userLeavesField();
  EXPECT_NE(surface().complaint("Height"), "");
  surface().userTypes("Height", "-4");
  EXPECT_EQ(surface().complaint("Height"), "");
  EXPECT_TRUE(engine->Commit());
}

TEST_F(EngineEditing, CommitShowsTheComplaintAboutTheFocusedField) {
  surface().userTypes("Height", "-");
  EXPECT_FALSE(engine->Commit());
  EXPECT_EQ(surface().complaint("Height"), "Not a number, such as 12.5");
}

TEST_F(EngineEditing, WhatTheDataHadIsNeverComplainedOf) {
  engine->DataXml(replaced(dataWith(" 1594.50 ", "unknown"), "Davos", ""));
  surface().userTypes("Height", "unknown");
  surface().userTypes("Name", "");
  surface().userLeavesField();
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(surface().complaint("Height"), "");
  EXPECT_EQ(surface().complaint("Name"), "");
}

TEST_F(EngineEditing, ReadOnlyFieldsCannotBeEdited) {
  EXPECT_THROW(surface().userTypes("Id", "1"), RuntimeFailure);
  EXPECT_THROW(surface().userTypes("Frame", "1"), RuntimeFailure);
  EXPECT_THROW(surface().userTypes("Builder", "1"), RuntimeFailure);
}

TEST_F(EngineEditing, WhatASurfaceTellsOfAFieldThatCannotBeEditedChangesNothing) {
  auto& listener = dynamic_cast<SurfaceListener&>(*engine);
  listener.fieldEdited("Station/Reference/Id", "1");
  listener.fieldEdited("Station/Nowhere", "1");
  listener.fieldEdited("Station/ViewPointControl", "1");
  listener.fieldLeft("Station/Nowhere");
  listener.buttonPressed("Station/Nowhere");
  EXPECT_EQ(engine->GetResultXml(), data);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(EngineEditing, HelpOpensAtThePageOfTheFieldOrOfItsSurroundings) {
  EXPECT_TRUE(surface().userPressesF1());
  surface().userTypes("Name", "x");
  EXPECT_TRUE(surface().userPressesF1());
  surface().userTypes("Offset", "1");
  EXPECT_TRUE(surface().userPressesF1());
  EXPECT_THAT(help, ElementsAre("Stations.chm Weather_stations", "Stations.chm Weather_stations",
                                "Stations.chm Calibration"));
}

TEST_F(EngineEditing, WithoutAHelpFileThereIsNoHelp) {
  engine->AttributeDefinition("");
  engine->DataXml(data);
  EXPECT_FALSE(surface().userPressesF1());
  EXPECT_THAT(help, IsEmpty());
}

TEST_F(EngineEditing, AHandlerMayTakeThePageAwayInsideItsOwnEdit) {
  onNotify = [this] {
    engine->ParentWindow(0);
    engine.reset();
  };
  EXPECT_EQ(surface().userSetsField("Method", "By Attribute"), "");
  EXPECT_TRUE(surfaces->surfaces().empty());
}

TEST_F(EngineEditing, AHandlerMayReplaceTheDataBetweenAnEditAndTheButton) {
  onNotify = [this] { engine->DataXml(data); };
  surface().userTypes("Name", "Arosa");
  surface().userPressesButton("ViewPointControl");
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa", "Click ViewPointControl="));
  EXPECT_EQ(engine->GetResultXml(), data);
}

TEST_F(EngineEditing, APageInAWindowOfItsOwnIsEditedThere) {
  engine->ParentWindow(0);
  auto own = factory.createPlexa();
  own->FormDefinition("<V><A/></V>");
  own->DataXml("<V><A>1</A></V>");
  surfaces->setWindowScript(
      [](const headless::HeadlessWindow& window) { window.surface->userTypes("A", "2"); });
  ASSERT_TRUE(own->Show());
  EXPECT_EQ(own->GetResultXml(), "<V><A>2</A></V>");
}

TEST_F(EngineEditing, TheFieldsListHoldsTheAllowedValuesOnly) {
  const auto method = engine->FindControl("@Method");
  EXPECT_EQ(method->Text(), "LockRaster");
  EXPECT_EQ(method->ListCount(), 3);
  EXPECT_EQ(method->List(1), "Closest to Viewpoint");
}

TEST_F(EngineEditing, FindsAFieldByThePathThatSurfacesName) {
  const auto& shown = dynamic_cast<const Engine&>(*engine);
  const FormField* const field = shown.fieldAt("Station/Reference/Id");
  ASSERT_TRUE(field);
  EXPECT_EQ(field->path, "Station/Reference/Id");
  EXPECT_FALSE(shown.fieldAt("Station/Nowhere"));
  EXPECT_FALSE(shown.showsList());
}

}  // namespace
}  // namespace vlclientui::engine
