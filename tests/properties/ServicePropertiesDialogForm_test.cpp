#include "properties/ServicePropertiesDialogForm.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "properties/OneWindowDialogFixture.h"

namespace vlclientui::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(OneWindowDialog, HasTwoTabsAndItsButtons) {
  show([this] {
    EXPECT_THAT(controls().myTab.captions(), ElementsAre("Service Properties", "Metadata"));
    EXPECT_EQ(controls().uibtnok.caption(), "&OK");
    EXPECT_EQ(controls().uibtncancel.caption(), "&Cancel");
    EXPECT_EQ(controls().SaveAs.caption(), "&Save As");
    EXPECT_EQ(controls().SaveAs.toolTip(), "Save the service properties to a given file.");
    EXPECT_EQ(controls().Command2.caption(), "&Export");
    EXPECT_EQ(controls().Command1.caption(), "&Save As");
    EXPECT_FALSE(controls().Command1.visible());
    EXPECT_EQ(controls().metadata.Command7.toolTip(), "Lock to current image.");
  });
}

TEST_F(OneWindowDialog, TakesEnterForOkAndEscapeForCancel) {
  EXPECT_EQ(show([this] { form().userPressesEnter(); }), 1);
  EXPECT_EQ(show([this] { form().userPressesEscape(); }), 0);
}

TEST_F(OneWindowDialog, OpensOnItsPropertiesSide) {
  show([this] {
    EXPECT_TRUE(sideIsShown(propertiesSide));
    EXPECT_FALSE(sideIsShown(metadataSide));
    EXPECT_FALSE(controls().metadata.Command7.visible());
    EXPECT_EQ(form().myLastTab, "Service Properties");
  });
}

TEST_F(OneWindowDialog, EditsThePropertiesOfTheServiceWithAHelpBlock) {
  published() = "<Other/>";
  show([this] {
    EXPECT_THAT(form().myPropertiesXml,
                AllOf(HasSubstr("<LockImageID>7</LockImageID>"), HasSubstr(helpBlock)));
    EXPECT_EQ(form().plexaUtil->DataXml(), form().myPropertiesXml);
  });
  EXPECT_EQ(published(), "<Other/>");
}

TEST_F(OneWindowDialog, AsksTheServiceInTheOrderOfItsLoad) {
  show([this] {
    // The calls of the refresh before the show come first.
    EXPECT_THAT(std::vector(service->calls.end() - 4, service->calls.end()),
                ElementsAre("ServiceProperties", "GetDefinition 2", "GetDefinition 1", "ServiceInfo"));
  });
}

TEST_F(OneWindowDialog, BearsTheNameOfTheService) {
  show([this] { EXPECT_EQ(form().caption(), "Service Properties -- Alps"); });
}

TEST_F(OneWindowDialog, KeepsItsCaptionForAServiceWithoutAName) {
  service->info = nameXml("");
  show([this] { EXPECT_EQ(form().caption(), "Service Properties"); });
}

TEST_F(OneWindowDialog, KeepsItsCaptionForInformationThatIsNoDocument) {
  service->info = "<broken";
  show([this] { EXPECT_EQ(form().caption(), "Service Properties"); });
}

TEST_F(OneWindowDialog, KeepsItsCaptionWithoutAService) {
  beginWithoutService();
  show([this] { EXPECT_EQ(form().caption(), "Service Properties"); });
}

TEST_F(OneWindowDialog, StartsFromItsDesignCaptionAtEachShow) {
  for (int pass = 0; pass < 2; ++pass) {
    show([this] { EXPECT_EQ(form().caption(), "Service Properties -- Alps"); });
  }
}

TEST_F(OneWindowDialog, SizesTheTreeEnginesLast) {
  const auto calls = engineCallsDuring([this] { show(); });
  std::vector<std::string> sizes;
  std::ranges::copy_if(calls, std::back_inserter(sizes), [](const std::string& call) {
    return call.find("Width") != std::string::npos || call.find("Height") != std::string::npos;
  });
  EXPECT_THAT(sizes, ElementsAre("2.Width 670", "2.Height 290", "1.Width 414", "1.Height 350", "3.Width 405",
                                 "3.Height 300", "4.Width 405", "4.Height 300"));
}

TEST_F(OneWindowDialog, OpensAlsoWhenAnyCallOfTheServiceFails) {
  for (const char* const call : {"ServiceProperties", "GetDefinition 2", "GetDefinition 1", "ServiceInfo"}) {
    service->onCall = [this, call](const std::string& made) {
      if (form().loaded() && made == call) throw RuntimeFailure("no answer");
    };
    bool shown = false;
    EXPECT_EQ(show([&] { shown = true; }), 0) << call;
    EXPECT_TRUE(shown) << call;
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  }
}

TEST_F(OneWindowDialog, OpensAlsoOnAnObjectThatIsNoService) {
  form().myImageServiceObject = std::make_shared<FakeStranger>();
  toolkit->scriptModal([this](Form&) { EXPECT_FALSE(form().plexaUtil); });
  EXPECT_EQ(form().ShowMe(), 0);
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(OneWindowDialog, OpensAlsoWhenTheEngineFailsAtAnyCall) {
  show();
  const std::size_t count = plexa->record->calls.size();
  for (std::size_t call = 1; call <= count; ++call) {
    plexa->record->calls.clear();
    plexa->record->failAtCall = call;
    EXPECT_EQ(show([this] { clickOk(); }), 1) << call;
    EXPECT_THAT(toolkit->failures(), IsEmpty()) << call;
    EXPECT_THAT(toolkit->messages(), IsEmpty()) << call;
  }
}

class PropertiesSide : public OneWindowDialog {};

TEST_F(PropertiesSide, GivesItsEngineTheDefinitionsAndItsPlaceInThisOrder) {
  show([this] {
    const std::string frame =
        std::to_string(toolkit->windowOf(controls().ServicePropFrame.at(propertiesSide)));
    const auto& calls = plexa->record->calls;
    const auto begin = std::ranges::find_if(calls, [](const auto& call) { return call.starts_with("2."); });
    std::vector<std::string> own;
    std::copy_if(begin, calls.end(), std::back_inserter(own),
                 [](const auto& call) { return call.starts_with("2."); });
    ASSERT_GE(own.size(), 11U);
    EXPECT_EQ(own[0], "2.EmbeddedMode true");
    EXPECT_THAT(own[1], AllOf(HasSubstr("2.AttributeDefinition"), HasSubstr(helpBlock)));
    EXPECT_THAT(own[2], HasSubstr("2.FormDefinition"));
    EXPECT_THAT(own[3], HasSubstr("2.DataXml"));
    const std::vector<std::string> place(own.begin() + 4, own.begin() + 11);
    EXPECT_THAT(place, ElementsAre("2.DataRootPath //", "2.ParentWindow " + frame, "2.Top 8", "2.Left 3",
                                   "2.Width 670", "2.Height 290", "2.Show"));
  });
}

TEST_F(PropertiesSide, HidesTheServerProcessBeforeItShows) {
  show([this] { EXPECT_EQ(plexa->record->calls.at(0), "1.Visible false"); });
}

TEST_F(PropertiesSide, MakesTheSpatialReferenceReadOnlyAsTold) {
  service->definitions[2] = definitionXml("XFDef", "<Srs Srs_READONLY_=\"\"/>");
  older()->Init(
      "<Vorlane><Client><Init><PropertiesSRSReadonly>True</PropertiesSRSReadonly></Init></Client></Vorlane>",
      nullptr, service);
  show([this] { EXPECT_THAT(form().plexaUtil->FormDefinition(), HasSubstr("Srs_READONLY_=\"True\"")); });
  initialize();
}

TEST_F(PropertiesSide, AsksANewerServiceByKey) {
  makeNewer();
  show([this] {
    EXPECT_THAT(std::vector(service->calls.end() - 3, service->calls.end()),
                ElementsAre("getProperty 'ClientXFDef'", "getProperty 'ClientXADef'", "ServiceInfo"));
  });
}

TEST_F(PropertiesSide, StaysBlankWithoutDefinitionsAndData) {
  beginWithoutService();
  show([this] {
    EXPECT_THAT(plexa->record->calls, Not(Contains(HasSubstr(".Show"))));
    EXPECT_TRUE(sideIsShown(propertiesSide));
    EXPECT_EQ(form().myLastTab, "Service Properties");
  });
}

TEST_F(PropertiesSide, StaysSilentWhenTheEngineCannotShowIt) {
  plexa->record->showAnswer = false;
  plexa->record->subControls["@MosaicMethod"] = {};
  show([this] {
    EXPECT_THAT(plexa->record->calls, Not(Contains(HasSubstr("@MosaicMethod"))));
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(PropertiesSide, LetsTheButtonOfTheViewpointFollowTheMethod) {
  plexa->record->subControls["@ViewPointControl"] = {};
  show([this] {
    const auto& button = plexa->record->subControls.at("@ViewPointControl");
    for (const char* const method : {"Viewpoint", "Closest to Viewpoint"}) {
      notify("MosaicMethod", "By Attribute");
      EXPECT_EQ(button.enabled, false);
      notify("MosaicMethod", method);
      EXPECT_EQ(button.enabled, true) << method;
    }
    notify("TileOrderField", "By Attribute");
    EXPECT_EQ(button.enabled, true);
  });
}

TEST_F(PropertiesSide, OpensTheViewpointDialogOfItsOwnObject) {
  show([this] {
    service->calls.clear();
    Form* shown = nullptr;
    toolkit->scriptModal([&shown](Form& opened) { shown = &opened; });
    notify("ViewPointControl", "");
    EXPECT_EQ(shown, &dialog->viewPointDialog());
    // No other object is made, whose Init would begin with the definitions.
    EXPECT_THAT(service->calls, Not(Contains("GetDefinition 1")));
  });
}

TEST_F(PropertiesSide, SurvivesAViewpointButtonWithoutADialogObject) {
  toolkit->scriptModal([this](Form&) { notify("ViewPointControl", ""); });
  form().myDialogObject = nullptr;
  EXPECT_EQ(form().ShowMe(), 0);
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(PropertiesSide, MayBeClosedWhileTheViewpointDialogIsOpen) {
  show([this] {
    toolkit->scriptModal([this](Form&) { form().unload(); });
    EXPECT_NO_FATAL_FAILURE(notify("ViewPointControl", ""));
    EXPECT_FALSE(form().loaded());
  });
  EXPECT_EQ(plexa->lastEngine(), nullptr);
}

class ChangeOfSides : public OneWindowDialog {};

TEST_F(ChangeOfSides, ShowsTheOtherSideAlone) {
  show([this] {
    pickTab(metadataSide);
    EXPECT_FALSE(sideIsShown(propertiesSide));
    EXPECT_TRUE(sideIsShown(metadataSide));
    EXPECT_EQ(form().myLastTab, "Metadata");
    pickTab(propertiesSide);
    EXPECT_TRUE(sideIsShown(propertiesSide));
    EXPECT_FALSE(sideIsShown(metadataSide));
    EXPECT_EQ(form().myLastTab, "Service Properties");
  });
}

TEST_F(ChangeOfSides, ShowsTheServiceWithoutWaitingForAClick) {
  show([this] {
    pickTab(metadataSide);
    EXPECT_EQ(controls().metadata.uiTreeView.selectedKey(), "Service");
    EXPECT_TRUE(controls().metadata.FirstPageFrame.visible());
    EXPECT_TRUE(form().myPlexa);
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  });
}

TEST_F(ChangeOfSides, FetchesForTheTabAndOnceMoreForTheNode) {
  show([this] {
    service->calls.clear();
    pickTab(metadataSide);
    EXPECT_THAT(service->calls,
                ElementsAre("GetImageMetadata ''", "ServiceInfo", "GetMetaData ''", "GetImageMetadata ''",
                            "GetImageMetadata ''", "ServiceInfo", "GetMetaData ''"));
  });
}

TEST_F(ChangeOfSides, FetchesNothingWhenTheWindowIsActivatedOrEntered) {
  show([this] {
    pickTab(metadataSide);
    service->calls.clear();
    form().userLeaves();
    form().userActivates();
    form().userEnters();
    EXPECT_THAT(service->calls, IsEmpty());
  });
}

TEST_F(ChangeOfSides, CommitsAndCollectsTheEdits) {
  show([this] {
    edit("<Edited/>");
    const auto calls = engineCallsDuring([this] { pickTab(metadataSide); });
    const auto commit = std::ranges::find(calls, "2.Commit");
    ASSERT_NE(commit, calls.end());
    EXPECT_EQ(*(commit + 1), "2.GetResultXml");
    EXPECT_EQ(form().myPropertiesXml,
              propertiesXml("<Edited/><ViewPointY>22</ViewPointY><ViewPointX>11</ViewPointX>"));
  });
  EXPECT_EQ(published(), service->properties);
}

TEST_F(ChangeOfSides, WritesTheViewpointOverTheFormerOneAlsoWhenItIsEmpty) {
  threadState().gViewPointX.clear();
  show([this] {
    edit("<ViewPointX>1</ViewPointX><ViewPointY>2</ViewPointY>");
    pickTab(metadataSide);
    EXPECT_THAT(form().myPropertiesXml,
                AllOf(HasSubstr("<ViewPointY>22</ViewPointY>"), Not(HasSubstr(">1<"))));
    EXPECT_EQ(countOf(form().myPropertiesXml, "<ViewPointX"), 1U);
  });
}

TEST_F(ChangeOfSides, CollectsOnceAsLongAsTheMetadataStay) {
  show([this] {
    pickTab(metadataSide);
    edit("<Later/>");
    EXPECT_THAT(engineCallsDuring([this] { pickTab(metadataSide); }), Not(Contains("2.GetResultXml")));
    EXPECT_THAT(form().myPropertiesXml, Not(HasSubstr("Later")));
  });
}

TEST_F(ChangeOfSides, KeepsWhatItHadWhenTheEngineFailsToCollect) {
  show([this] {
    const std::string before = form().myPropertiesXml;
    for (const char* const operation : {"Commit", "GetResultXml"}) {
      plexa->record->failAt = operation;
      form().CollectProperties();
      EXPECT_EQ(form().myPropertiesXml, before);
    }
    plexa->record->failAt.clear();
  });
}

TEST_F(ChangeOfSides, BuildsThePropertiesAnewFromWhatWasCollected) {
  show([this] {
    edit("<Edited/>");
    pickTab(metadataSide);
    const auto calls = engineCallsDuring([this] { pickTab(propertiesSide); });
    const auto detached = std::ranges::find(calls, "2.ParentWindow 0");
    ASSERT_NE(detached, calls.end());
    EXPECT_EQ(*(detached + 1), "2.released");
    EXPECT_THAT(form().plexaUtil->DataXml(), HasSubstr("<Edited/>"));
  });
}

TEST_F(ChangeOfSides, BuildsThePropertiesAnewWithoutCollectingWhenTheirTabIsClickedAgain) {
  show([this] {
    const std::string before = form().myPropertiesXml;
    edit("<Edited/>");
    const auto calls = engineCallsDuring([this] { pickTab(propertiesSide); });
    EXPECT_THAT(calls, AllOf(Contains("2.released"), Not(Contains("2.GetResultXml"))));
    EXPECT_EQ(form().myPropertiesXml, before);
    EXPECT_EQ(form().plexaUtil->DataXml(), before);
    EXPECT_TRUE(sideIsShown(propertiesSide));
  });
}

TEST_F(ChangeOfSides, HoldsNothingAfterAResultThatIsNoDocument) {
  show([this] {
    plexa->record->resultXml = "<Vorlane>";
    pickTab(metadataSide);
    EXPECT_EQ(form().myPropertiesXml, "");
    EXPECT_TRUE(sideIsShown(metadataSide));
  });
}

TEST_F(ChangeOfSides, LetsBothProcessEnginesGoAndKeepsTheTreeOfTheRaster) {
  show([this] {
    const auto calls = engineCallsDuring([this] { pickTab(propertiesSide); });
    ASSERT_GE(calls.size(), 5U);
    // Engine 1 is the server process, 3 the metadata of a raster, 4 the process of a raster.
    const std::vector<std::string> first(calls.begin(), calls.begin() + 4);
    EXPECT_THAT(first, ElementsAre("1.ParentWindow 0", "1.released", "4.ParentWindow 0", "4.released"));
    EXPECT_THAT(calls, Not(Contains(testing::StartsWith("3."))));
  });
}

TEST_F(ChangeOfSides, HidesTheLockButton) {
  show([this] {
    showRasters();
    EXPECT_TRUE(controls().metadata.Command7.visible());
    pickTab(propertiesSide);
    EXPECT_FALSE(controls().metadata.Command7.visible());
  });
}

TEST_F(ChangeOfSides, ForgetsTheTreeAndTheListOfAnEarlierVisit) {
  show([this] {
    showRasters();
    EXPECT_EQ(controls().metadata.RasterList.count(), 2U);
    pickTab(propertiesSide);
    service->metadata = imageXml("<Basic/>", "");
    pickTab(metadataSide);
    EXPECT_EQ(controls().metadata.uiTreeView.nodes().size(), 3U);
    EXPECT_EQ(controls().metadata.RasterList.count(), 0U);
  });
}

TEST_F(ChangeOfSides, ShowsTheMetadataSideAlsoWhenItsTreeFails) {
  show([this] {
    service->failAt = "GetImageMetadata";
    pickTab(metadataSide);
    EXPECT_TRUE(sideIsShown(metadataSide));
    EXPECT_EQ(toolkit->failures().size(), 0U);
    service->failAt.clear();
  });
}

TEST_F(ChangeOfSides, LeavesNoHourglassBehindAFailure) {
  show([this] {
    pickTab(metadataSide);
    plexa->record->failAt = "Visible";
    pickTab(metadataSide);
    plexa->record->failAt = "Commit";
    pickTab(metadataSide);
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
    plexa->record->failAt.clear();
  });
}

TEST_F(ChangeOfSides, WorksOnTheDocumentsOfTheHostWithoutAService) {
  beginWithoutService();
  newer()->serviceInfoXml(nameXml("<KeyDetails/>"));
  newer()->ImageMetaDataXml(imageOf({{}}));
  show([this] {
    showRasters();
    EXPECT_EQ(controls().metadata.RasterList.count(), 1U);
    EXPECT_FALSE(controls().metadata.Command7.visible());
  });
  EXPECT_THAT(service->calls, IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
