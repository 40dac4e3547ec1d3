#include "export/ExportDialog.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "frame/ThreadState.h"
#include "library/ClassFactory.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const definitionPath = "C:\\Program\\VLClient.XADef";

class ExportDialogs : public ExportFixture {
 protected:
  ExportDialogs() : made(std::make_shared<ExportDialog>()) {}

  [[nodiscard]] static std::vector<std::string> descriptions() {
    std::vector<std::string> found;
    for (const auto& envelope : customEnvelopes()) found.push_back(envelope->Description());
    return found;
  }
  /// Extents of the window after an extended show over the host's document.
  std::vector<std::string> entriesFor(const std::string& extents) {
    show([](auto&, auto&) {}, extents);
    return dialog->window().ComboVals;
  }

  std::shared_ptr<ExportDialog> made;
};

// Init.

TEST_F(ExportDialogs, AreMadeByTheClassFactory) {
  const ObjectPtr object = createObject("ExportDialog");
  EXPECT_EQ(object->typeName(), "ExportDialog");
  EXPECT_TRUE(queryInterface<IExportImageDialog>(object));
  EXPECT_TRUE(dynamic_cast<ExportDialog*>(object->queryInterface("_ExportDialog")));
  EXPECT_EQ(object->queryInterface("IImageServicesDialog"), nullptr);
}

TEST_F(ExportDialogs, InitTakesServiceAndClient) {
  const auto client = std::make_shared<FakeServerClient>(nullptr);
  EXPECT_EQ(made->IExportImageDialog_Init("<broken", client, service), boolean16True);
  EXPECT_EQ(made->myClient, client);
  EXPECT_EQ(made->myImageServiceObject, service);
}

TEST_F(ExportDialogs, InitLeavesATrailingBlankInTheDefinitionPath) {
  EXPECT_EQ(made->IExportImageDialog_Init("", nullptr, service), boolean16True);
  EXPECT_EQ(threadState().ClientXADefPath, "C:\\Program\\VLClient.XADef ");
}

TEST_F(ExportDialogs, InitWithoutTheDefinitionFileIsFalseAndRecordsItsPath) {
  fs::remove(system->nativeFile(definitionPath));
  EXPECT_EQ(made->IExportImageDialog_Init("", nullptr, service), boolean16False);
  EXPECT_EQ(threadState().exportDialogStatus,
            "Initialization failed. File 'C:\\Program\\VLClient.XADef ' does not exist.");
  EXPECT_EQ(made->myImageServiceObject, nullptr);
}

TEST_F(ExportDialogs, InitWithADefinitionThatIsNoXmlIsFalseAndRecordsItsPath) {
  system->writeFile(definitionPath, "<Vorlane>");
  EXPECT_EQ(made->IExportImageDialog_Init("", nullptr, service), boolean16False);
  EXPECT_EQ(threadState().exportDialogStatus,
            "Initialization failed. File 'C:\\Program\\VLClient.XADef ' is an invalid xad.");
}

TEST_F(ExportDialogs, InitWithAnObjectThatIsNoServerClientIsFalseWithNothingRecorded) {
  EXPECT_EQ(made->IExportImageDialog_Init("", std::make_shared<FakeStranger>(), service), boolean16False);
  EXPECT_EQ(made->myClient, nullptr);
  EXPECT_EQ(threadState().exportDialogStatus, "");
}

TEST_F(ExportDialogs, StatusIsEmptyEvenStraightAfterAFailedInit) {
  system->writeFile(definitionPath, "");
  EXPECT_EQ(made->IExportImageDialog_Init("", nullptr, service), boolean16False);
  EXPECT_EQ(made->iExportImageDialog_Status(), "");
}

TEST_F(ExportDialogs, HaveNoEmbeddedForm) {
  EXPECT_EQ(made->iExportImageDialog_ShowEmbeddedForm(42), boolean16False);
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(ExportDialogs, HaveNoResultBeforeAShow) {
  EXPECT_EQ(made->iExportImageDialog_GetUpdatedProperties(), "");
}

// Shows.

TEST_F(ExportDialogs, BothShowsOfferTheThreeExtentsAndFetchTheDocuments) {
  showPlainly([](ExportDialogForm& window, auto&) { EXPECT_EQ(window.ExModalCalled, boolean16False); });
  const auto standard =
      ElementsAre("Current View Extent", "Default Extent of Image Service", "Custom Extent");
  EXPECT_THAT(dialog->window().ComboVals, standard);
  EXPECT_THAT(service->calls, ElementsAre("GetImageMetadata ''", "ServiceInfo"));
  EXPECT_EQ(dialog->window().myLastAOIXml, service->metadata);
  EXPECT_EQ(dialog->window().myFullViewXml, service->info);
  show([](ExportDialogForm& window, auto&) { EXPECT_EQ(window.ExModalCalled, boolean16True); });
  EXPECT_THAT(dialog->window().ComboVals, standard);
}

TEST_F(ExportDialogs, HandServiceAndClientToTheWindow) {
  dialog = readyDialog();
  dialog->myClient = std::make_shared<FakeServerClient>(nullptr);
  showPlainly([this](ExportDialogForm& window, auto&) {
    EXPECT_EQ(window.myImageServiceObject, service);
    EXPECT_EQ(window.myClient, dialog->myClient);
  });
}

TEST_F(ExportDialogs, WithoutAServiceTheWindowOpensWithoutExtents) {
  customEnvelopes().push_back(std::make_shared<Envelope>());
  dialog = std::make_shared<ExportDialog>();
  ASSERT_EQ(dialog->IExportImageDialog_Init("", nullptr, nullptr), boolean16True);
  const auto isBare = [](ExportDialogForm& window, ExportControl& control) {
    EXPECT_THAT(window.ComboVals, IsEmpty());
    EXPECT_EQ(control.MainCombo.count(), 0U);
    EXPECT_EQ(control.ExModalCalled, boolean16False);
    EXPECT_EQ(control.LastAOIXml, "");
    EXPECT_EQ(control.FullViewXml, "");
  };
  showPlainly(isBare);
  dialog->window().myLastAOIXml = imageMetadata({});  // of an earlier show
  dialog->window().myFullViewXml = serviceInfo({});
  show(isBare, exportExtents(customEnvelope("A", "1", "2", "3", "4")));
  EXPECT_EQ(customEnvelopes().size(), 1U);
}

TEST_F(ExportDialogs, LetFailuresOfTheServiceReachTheHost) {
  dialog = readyDialog();
  for (const char* const member : {"GetImageMetadata", "ServiceInfo"}) {
    service->failAt = member;
    EXPECT_THROW(dialog->iExportImageDialog_ShowModalDialog(), RuntimeFailure) << member;
    EXPECT_THROW(dialog->iExportImageDialog_ShowModalDialogEx(""), RuntimeFailure) << member;
  }
}

TEST_F(ExportDialogs, LetAnObjectThatIsNoServiceReachTheHostAsAFailure) {
  dialog = readyDialog();
  dialog->myImageServiceObject = std::make_shared<FakeStranger>();
  EXPECT_THROW(dialog->iExportImageDialog_ShowModalDialog(), RuntimeFailure);
}

TEST_F(ExportDialogs, OneObjectCanBeShownThreeTimesWithNewControlsEachTime) {
  for (int showing = 0; showing < 3; ++showing) {
    show([](ExportDialogForm&, ExportControl& control) {
      EXPECT_EQ(control.uiTxtWidth.text(), "1000.000");
      edit(control, control.uiTxtWidth, "500");
    });
  }
}

// The page in a window of the host.

TEST_F(ExportDialogs, StandAsAPageUntilOneOfItsButtonsEndsIt) {
  made->IExportImageDialog_Init("", nullptr, service);
  int ends = 0;
  made->window().closed.connect([&] { ++ends; });
  ASSERT_TRUE(made->showPage(exportExtents(customEnvelope("A", "1", "2", "3", "4")), 42));
  ExportDialogForm& page = made->window();
  EXPECT_EQ(page.ComboVals.back(), "A");
  EXPECT_NE(toolkit->styleOf(toolkit->windowOf(page)) & windowStyle::child, 0);
  EXPECT_FALSE(made->showPage("", 42)) << "it stands already";
  page.controls().Command2.userClicks();
  EXPECT_EQ(ends, 1);
  EXPECT_FALSE(page.loaded());
  EXPECT_EQ(made->iExportImageDialog_GetUpdatedProperties(), "");
  EXPECT_TRUE(made->showPage("", 42));
  made->closePage();
  EXPECT_EQ(ends, 2);
  made->closePage();
  EXPECT_EQ(ends, 2);
}

TEST_F(ExportDialogs, APageTellsWhatItsOkExported) {
  made->IExportImageDialog_Init("", nullptr, service);
  ASSERT_TRUE(made->showPage("", 42));
  made->window().controls().Command1.userClicks();
  EXPECT_FALSE(made->window().loaded());
  EXPECT_THAT(made->iExportImageDialog_GetUpdatedProperties(), testing::HasSubstr("<GetImage>"));
}

// Custom extents.

TEST_F(ExportDialogs, AddTheHostsExtentsBehindTheStandardOnes) {
  EXPECT_THAT(
      entriesFor(
          exportExtents(customEnvelope("A", "1", "2", "3", "4") + customEnvelope("B", "5", "6", "7", "8"))),
      ElementsAre("Current View Extent", "Default Extent of Image Service", "Custom Extent", "A", "B"));
  ASSERT_THAT(descriptions(), ElementsAre("A", "B"));
  EXPECT_EQ(customEnvelopes()[1]->XMin(), "5");
  EXPECT_EQ(customEnvelopes()[1]->YMin(), "6");
  EXPECT_EQ(customEnvelopes()[1]->XMax(), "7");
  EXPECT_EQ(customEnvelopes()[1]->YMax(), "8");
}

TEST_F(ExportDialogs, TakeTheLaterOfTwoExtentsWithOneNameAndKeepItsEntryInPlace) {
  EXPECT_THAT(
      entriesFor(exportExtents(customEnvelope("A", "1", "2", "3", "4") +
                               customEnvelope("B", "5", "6", "7", "8") +
                               customEnvelope("A", "9", "9", "9", "9"))),
      ElementsAre("Current View Extent", "Default Extent of Image Service", "Custom Extent", "A", "B"));
  ASSERT_THAT(descriptions(), ElementsAre("B", "A"));
  EXPECT_EQ(customEnvelopes()[1]->XMin(), "9");
}

TEST_F(ExportDialogs, CompareNamesExactly) {
  EXPECT_EQ(entriesFor(exportExtents(customEnvelope("A", "1", "2", "3", "4") +
                                     customEnvelope("a", "5", "6", "7", "8")))
                .size(),
            5U);
}

TEST_F(ExportDialogs, StoreAnExtentNamedCustomExtentWithoutAnEntryOfItsOwn) {
  EXPECT_EQ(entriesFor(exportExtents(customEnvelope("Custom Extent", "1", "2", "3", "4"))).size(), 3U);
  EXPECT_THAT(descriptions(), ElementsAre("Custom Extent"));
}

TEST_F(ExportDialogs, DropAChildWithoutADescriptionWhole) {
  EXPECT_EQ(
      entriesFor(exportExtents(customEnvelope("", "1", "2", "3", "4") + "<!-- note -->text<Other/>")).size(),
      3U);
  EXPECT_THAT(descriptions(), IsEmpty());
}

TEST_F(ExportDialogs, TakeAnEmptyDescriptionForOneAndLookBelowTheChildren) {
  EXPECT_THAT(
      entriesFor(exportExtents("<CustomEnvelope><Description/></CustomEnvelope><Group>" +
                               customEnvelope("A", "1", "2", "3", "4") + "</Group>")),
      ElementsAre("Current View Extent", "Default Extent of Image Service", "Custom Extent", "", "A"));
  EXPECT_THAT(descriptions(), ElementsAre("", "A"));
}

TEST_F(ExportDialogs, TakeLettersAndAbsentCoordinatesAsZero) {
  entriesFor(exportExtents(customEnvelope("A", "abc", "", "3", "4")));
  EXPECT_EQ(customEnvelopes()[0]->XMin(), "0");
  EXPECT_EQ(customEnvelopes()[0]->YMin(), "0");
  EXPECT_EQ(customEnvelopes()[0]->XMax(), "3");
}

TEST_F(ExportDialogs, ReadNumbersWithAPointUnderACommaLocale) {
  for (const LocaleFormat& locale : {germanFormat(), frenchFormat()}) {
    system->locale = locale;
    entriesFor(exportExtents(customEnvelope("A", "10.5", "1", "20.25", "2")));
    EXPECT_EQ(customEnvelopes()[0]->XMin(), "10,5");
    EXPECT_EQ(customEnvelopes()[0]->XMax(), "20,25");
  }
}

TEST_F(ExportDialogs, OpenWithTheStandardExtentsOverADocumentThatIsNone) {
  for (const char* const xml : {"", "<Vorlane>", "<Vorlane/>", "<ExportImageDialog/>"}) {
    customEnvelopes().push_back(std::make_shared<Envelope>());
    EXPECT_EQ(entriesFor(xml).size(), 3U) << xml;
    EXPECT_THAT(customEnvelopes(), IsEmpty()) << xml;
  }
}

TEST_F(ExportDialogs, APlainShowFindsTheExtentsOfAnotherObjectsExtendedShow) {
  entriesFor(exportExtents(customEnvelope("A", "1", "2", "3", "4")));
  dialog.reset();
  showPlainly([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.MainCombo.count(), 3U);
    EXPECT_EQ(control.MainCombo.text(), "Custom Extent");  // the last entry, since there are extents
  });
  EXPECT_THAT(descriptions(), ElementsAre("A"));
}

TEST_F(ExportDialogs, AnObjectWithoutAServiceComesBareAfterAnotherObjectsExtendedShow) {
  entriesFor(exportExtents(customEnvelope("A", "1", "2", "3", "4")));
  dialog = std::make_shared<ExportDialog>();
  showPlainly([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.MainCombo.count(), 0U);
    EXPECT_EQ(control.uiTxtMB.text(), "0");
    EXPECT_EQ(control.uiTxtLeft.text(), "");
  });
  EXPECT_THAT(descriptions(), ElementsAre("A"));
}

}  // namespace
}  // namespace vlclientui::test
