// Where the routines of the one-window dialog stop when a call fails, what shows then, and what each click
// asks of the service.

#include <filesystem>

#include <gmock/gmock.h>

#include "export/ExportDialog.h"
#include "properties/OneWindowDialogFixture.h"

namespace vlclientui::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class StopsOfTheWindow : public OneWindowDialog {
 protected:
  void expectSilence() const {
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  }
};

// Load.

TEST_F(StopsOfTheWindow, TheNameOfTheServiceStandsBelowTheRootAlone) {
  service->info = "<Other>" + nameXml("<Name>Alps</Name>") + "</Other>";
  show([this] { EXPECT_EQ(form().caption(), "Service Properties"); });
}

TEST_F(StopsOfTheWindow, ANameThatIsEmptyIsAName) {
  service->info = nameXml("<Name/>");
  show([this] { EXPECT_EQ(form().caption(), "Service Properties -- "); });
}

TEST_F(StopsOfTheWindow, PropertiesThatDoNotComeEndTheLoadBeforeASideShows) {
  show([this] {
    lock();
    clickOk();
  });
  service->calls.clear();
  service->onCall = [this](const std::string& call) {
    if (form().loaded() && call == "ServiceProperties") throw RuntimeFailure("no answer");
  };
  show([this] {
    EXPECT_THAT(service->calls, Not(Contains("ServiceInfo")));
    EXPECT_FALSE(sideIsShown(propertiesSide));
    EXPECT_FALSE(sideIsShown(metadataSide));
    EXPECT_EQ(form().caption(), "Service Properties");
    EXPECT_EQ(form().myLastTab, "");
    EXPECT_EQ(form().myLockImageID, "");
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, InformationThatDoesNotComeLeavesTheSideAndTheTreesWithoutASize) {
  service->onCall = [this](const std::string& call) {
    if (form().loaded() && call == "ServiceInfo") throw RuntimeFailure("no answer");
  };
  show([this] {
    EXPECT_TRUE(sideIsShown(propertiesSide));
    EXPECT_EQ(form().caption(), "Service Properties");
    EXPECT_THAT(plexa->record->calls, Not(Contains("1.Width 414")));
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, ADefinitionThatDoesNotComeLeavesTheSideBlankAndTheLoadGoesOn) {
  for (const char* const call : {"GetDefinition 2", "GetDefinition 1"}) {
    service->onCall = [this, call](const std::string& made) {
      if (form().loaded() && made == call) throw RuntimeFailure("no answer");
    };
    show([&] {
      EXPECT_TRUE(sideIsShown(propertiesSide)) << call;
      EXPECT_FALSE(form().plexaUtil) << call;
      EXPECT_EQ(form().myLastTab, "Service Properties") << call;
      EXPECT_EQ(form().caption(), "Service Properties -- Alps") << call;
    });
  }
  expectSilence();
}

// A click on a tab.

TEST_F(StopsOfTheWindow, ATreeThatCannotBeLetGoEndsTheClickBeforeAnythingIsHidden) {
  show([this] {
    pickTab(metadataSide);
    plexa->record->failAt = "ParentWindow";
    pickTab(propertiesSide);
    EXPECT_TRUE(sideIsShown(metadataSide));
    EXPECT_FALSE(sideIsShown(propertiesSide));
    EXPECT_EQ(form().myLastTab, "Metadata");
    plexa->record->failAt.clear();
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, ATreeThatCannotBeHiddenEndsTheClickBeforeThePropertiesShow) {
  show([this] {
    showRasters();
    plexa->record->failAt = "Visible";
    pickTab(propertiesSide);
    EXPECT_FALSE(sideIsShown(metadataSide));
    EXPECT_FALSE(sideIsShown(propertiesSide));
    EXPECT_FALSE(controls().metadata.Command7.visible());
    EXPECT_EQ(form().myLastTab, "Metadata");
    plexa->record->failAt.clear();
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, EditsThatCannotBeCollectedKeepNoSideFromShowing) {
  show([this] {
    const std::string before = form().myPropertiesXml;
    edit("<Edited/>");
    plexa->record->failAt = "GetResultXml";
    pickTab(metadataSide);
    EXPECT_TRUE(sideIsShown(metadataSide));
    EXPECT_EQ(form().myPropertiesXml, before);
    plexa->record->failAt.clear();
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, WithoutAnEngineTheViewpointIsWrittenAllTheSame) {
  service->onCall = [this](const std::string& call) {
    if (form().loaded() && call == "GetDefinition 2") throw RuntimeFailure("no answer");
  };
  show([this] {
    ASSERT_FALSE(form().plexaUtil);
    clickOk();
  });
  EXPECT_THAT(published(), AllOf(HasSubstr("By Attribute"),
                                 HasSubstr("<ViewPointY>22</ViewPointY><ViewPointX>11</ViewPointX>")));
}

TEST_F(StopsOfTheWindow, TheEditsAreCollectedBeforeTheDocumentsAreFetched) {
  show([this] {
    edit("<Edited/>");
    std::string atFetch;
    service->onCall = [this, &atFetch](const std::string&) {
      if (atFetch.empty()) atFetch = form().myPropertiesXml;
    };
    pickTab(metadataSide);
    EXPECT_THAT(atFetch, HasSubstr("<Edited/>"));
    service->onCall = {};
  });
}

TEST_F(StopsOfTheWindow, ThePropertiesSideShowsBeforeItIsBuiltAndTheMetadataSideAfterwards) {
  bool stood = false;
  plexa->record->onCall = [this, &stood](const std::string& call) {
    if (call == "2.Show") stood = sideIsShown(propertiesSide);
  };
  show([&] {
    EXPECT_TRUE(stood);
    bool shown = false;
    plexa->record->onCall = [&](const std::string& call) {
      if (!call.ends_with(".Show")) return;
      shown = true;
      EXPECT_FALSE(sideIsShown(metadataSide));
      EXPECT_FALSE(sideIsShown(propertiesSide));
    };
    pickTab(metadataSide);
    plexa->record->onCall = {};
    EXPECT_TRUE(shown);
  });
}

TEST_F(StopsOfTheWindow, APageOfAnEarlierVisitGoesWhenTheTreeIsMadeNotWithItsFirstClick) {
  show([this] {
    pickTab(metadataSide);
    pickTab(propertiesSide);
    plexa->record->calls.clear();
    std::size_t fetched = 0;
    std::vector<std::size_t> committedAfter;
    service->onCall = [&fetched](const std::string& call) {
      fetched += call.starts_with("GetImageMetadata");
    };
    plexa->record->onCall = [&](const std::string& call) {
      // The first commit is that of the properties.
      if (call.ends_with(".Commit")) committedAfter.push_back(fetched);
    };
    pickTab(metadataSide);
    EXPECT_THAT(committedAfter, ElementsAre(0U, 2U));
    EXPECT_EQ(fetched, 3U);
    service->onCall = {};
    plexa->record->onCall = {};
  });
}

TEST_F(StopsOfTheWindow, ATreeThatFailsLeavesNoHourglass) {
  for (const char* const operation : {"Visible", "Commit"}) {
    show([this, operation] {
      pickTab(metadataSide);
      plexa->record->failAt = operation;
      pickTab(metadataSide);
      EXPECT_EQ(toolkit->pointers().back(), Pointer::Default) << operation;
      EXPECT_TRUE(sideIsShown(metadataSide)) << operation;
      plexa->record->failAt.clear();
    });
  }
  expectSilence();
}

TEST_F(StopsOfTheWindow, OkAndCancelCloseIt) {
  for (const bool accepts : {true, false}) {
    show([this, accepts] {
      accepts ? clickOk() : clickCancel();
      EXPECT_FALSE(form().loaded());
      EXPECT_EQ(form().myResult, accepts ? 1 : 0);
    });
  }
}

TEST_F(StopsOfTheWindow, EscapeIsACancel) {
  show([this] {
    EXPECT_FALSE(form().myCancelPressed);
    EXPECT_TRUE(form().userPressesEscape());
    EXPECT_TRUE(form().myCancelPressed);
    EXPECT_FALSE(form().loaded());
  });
}

TEST_F(StopsOfTheWindow, TheTextOfAFailedClickIsTheStatusAndACleanOneClearsIt) {
  show([this] {
    pickTab(metadataSide);
    plexa->record->failAt = "Commit";
    controls().metadata.uiTreeView.userSelects("Image");
    EXPECT_EQ(status(), "the engine fails at Commit");
    EXPECT_TRUE(controls().metadata.FirstPageFrame.visible());
    plexa->record->failAt.clear();
    controls().metadata.uiTreeView.userSelects("Image");
    EXPECT_EQ(status(), "");
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, ATabThatWasRemovedStaysRemovedFromVisitToVisitAndIsBackAtTheNextShow) {
  service->metadata = imageOf({{.metadata = ""}});
  const auto tabs = [this] { return controls().metadata.TabStrip1.captions(); };
  show([&] {
    showRasters();
    EXPECT_THAT(tabs(), ElementsAre("Information", "Attributes", "Process"));
    service->metadata = imageOf({{}});
    pickTab(propertiesSide);
    showRasters();
    EXPECT_THAT(tabs(), ElementsAre("Information", "Attributes", "Process"));
  });
  show([&] {
    showRasters();
    EXPECT_THAT(tabs(), ElementsAre("Information", "Metadata", "Attributes", "Process"));
  });
}

// The lock.

TEST_F(StopsOfTheWindow, ADefinitionWithoutAListOfMethodsForbidsTheLock) {
  const std::string before = propertiesXml("<MosaicMethod>Own</MosaicMethod><LockImageID>7</LockImageID>");
  for (const std::string& definition : {definitionXml("XADef", ""), definitionXml("XADef", "<MosaicMethod/>"),
                                        std::string("<XADef><A/></XADef>")}) {
    service->definitions[1] = attributeDefinitionXml("Lock Raster");
    show([&] {
      showRasters();
      form().myPropertiesXml = before;
      service->definitions[1] = definition;
      controls().metadata.Command7.click.raise();
      EXPECT_EQ(form().myPropertiesXml, before) << definition;
      EXPECT_EQ(form().myLockImageID, "12") << definition;
    });
  }
  expectSilence();
}

TEST_F(StopsOfTheWindow, ADefinitionThatHoldsNothingForbidsNoLock) {
  for (const std::string definition : {"", "<XADef/>", "<Other/>", "<XADef>text</XADef>"}) {
    service->definitions[1] = attributeDefinitionXml("Lock Raster");
    show([&] {
      showRasters();
      service->definitions[1] = definition;
      controls().metadata.Command7.click.raise();
      EXPECT_THAT(form().myPropertiesXml, HasSubstr("LockRaster")) << definition;
    });
  }
  expectSilence();
}

TEST_F(StopsOfTheWindow, PropertiesWithoutMethodAndPlaceTakeNoLock) {
  show([this] {
    showRasters();
    form().myPropertiesXml = propertiesXml("<Kept/>");
    controls().metadata.Command7.click.raise();
    EXPECT_EQ(form().myPropertiesXml, propertiesXml("<Kept/>"));
    EXPECT_EQ(form().myLockImageID, "12");
  });
  expectSilence();
}

// What a click asks for.

TEST_F(StopsOfTheWindow, TheLockAsksOnceForTheDefinitionByTheGenerationOfTheService) {
  show([this] {
    showRasters();
    service->calls.clear();
    controls().metadata.Command7.userClicks();
    EXPECT_THAT(service->calls, ElementsAre("GetDefinition 1"));
    makeNewer();
    service->calls.clear();
    controls().metadata.Command7.userClicks();
    EXPECT_THAT(service->calls, ElementsAre("getProperty 'ClientXADef'"));
  });
}

TEST_F(StopsOfTheWindow, TheWayBackToThePropertiesAsksForTheTwoDefinitionsAlone) {
  show([this] {
    pickTab(metadataSide);
    service->calls.clear();
    pickTab(propertiesSide);
    EXPECT_THAT(service->calls, ElementsAre("GetDefinition 2", "GetDefinition 1"));
  });
}

TEST_F(StopsOfTheWindow, OkCancelAndTheFileOfThePropertiesAskForNothing) {
  std::filesystem::create_directories(system->nativeFile("C:\\Data"));
  show([this] {
    service->calls.clear();
    toolkit->chooseFile("C:\\Data\\my.xml");
    controls().SaveAs.userClicks();
    clickOk();
    EXPECT_THAT(service->calls, IsEmpty());
  });
  show([this] {
    pickTab(metadataSide);
    service->calls.clear();
    clickCancel();
    EXPECT_THAT(service->calls, IsEmpty());
  });
}

// Files.

TEST_F(StopsOfTheWindow, AFileOfThePropertiesThatIsRefusedLeavesItsNameToTheNextDialog) {
  show([this] {
    toolkit->chooseFile("C:\\Nowhere\\my.xml");
    controls().SaveAs.userClicks();
    controls().SaveAs.userClicks();
    EXPECT_EQ(toolkit->saveDialogs().back().fileName, "C:\\Nowhere\\my.xml");
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, AFileWithoutANameIsNone) {
  show([this] {
    const auto calls = engineCallsDuring([this] {
      toolkit->chooseFile("");
      controls().SaveAs.userClicks();
      toolkit->chooseFile("");
      controls().Command1.click.raise();
    });
    EXPECT_THAT(calls, IsEmpty());
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, TheFileOfTheHiddenButtonLeavesItsNameToTheNextDialog) {
  std::filesystem::create_directories(system->nativeFile("C:\\Data"));
  show([this] {
    toolkit->chooseFile("C:\\Data\\my.xml");
    controls().Command1.click.raise();
    controls().SaveAs.userClicks();
    EXPECT_EQ(toolkit->saveDialogs().back().fileName, "C:\\Data\\my.xml");
    EXPECT_TRUE(toolkit->saveDialogs().back().asksBeforeOverwriting);
  });
}

TEST_F(StopsOfTheWindow, AFileOfTheMetadataThatIsRefusedReachesTheTopLevel) {
  show([this] {
    pickTab(metadataSide);
    toolkit->chooseFile("C:\\Nowhere\\image.xml");
    controls().metadata.Save.userClicks();
    EXPECT_EQ(toolkit->failures().size(), 1U);
    EXPECT_TRUE(form().loaded());
  });
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(StopsOfTheWindow, TheFileOfThePropertiesHoldsTheMethodAndTheIdThatALockWroteBeforeALaterCollect) {
  std::filesystem::create_directories(system->nativeFile("C:\\Data"));
  show([this] {
    lock();
    // The engine shows what the lock wrote, and the collect reads it back from there.
    pickTab(propertiesSide);
    toolkit->chooseFile("C:\\Data\\my.xml");
    controls().SaveAs.userClicks();
    EXPECT_THAT(system->readFile("C:\\Data\\my.xml"),
                AllOf(HasSubstr("<MosaicMethod>LockRaster</MosaicMethod>"),
                      HasSubstr("<LockImageID>12</LockImageID>")));
  });
}

// The export.

TEST_F(StopsOfTheWindow, TheExportIsShownWhateverItsStartSays) {
  show([this] {
    system->writeFile("C:\\Program\\VLClient.XADef", "<broken");
    std::string shown;
    toolkit->scriptModal([&shown](Form& opened) { shown = opened.formName(); });
    controls().Command2.userClicks();
    EXPECT_EQ(shown, "ExportDialogForm");
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, TheExportNeedsNoService) {
  beginWithoutService();
  show([this] {
    std::string shown;
    toolkit->scriptModal([&shown](Form& opened) { shown = opened.formName(); });
    controls().Command2.userClicks();
    EXPECT_EQ(shown, "ExportDialogForm");
    EXPECT_FALSE(form().myExportDialog->myImageServiceObject);
  });
  expectSilence();
}

TEST_F(StopsOfTheWindow, AfterAnExportThePagesFindTheirDefinitionsAsBefore) {
  system->writeFile(
      "C:\\Program\\VLClient.XADef",
      "<Vorlane><ImageServiceInfo><KeyDetails><A_Key/></KeyDetails></ImageServiceInfo></Vorlane>");
  show([this] {
    controls().Command2.userClicks();
    controls().Command2.userClicks();
    pickTab(metadataSide);
    ASSERT_TRUE(form().myPlexa);
    EXPECT_THAT(form().myPlexa->AttributeDefinition(), HasSubstr("<A_Key/>"));
  });
}

}  // namespace
}  // namespace vlclientui::test
