#include "properties/ServicePropertiesDialog.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "frame/LiveObjects.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PropertiesDialog : public PropertiesFixture {};

TEST_F(PropertiesDialog, GivesAllItsInterfacesWithOneIdentity) {
  EXPECT_EQ(dialog->queryInterface("_ServicePropertiesDialog"), dialog.get());
  EXPECT_EQ(older()->identity(), dialog.get());
  EXPECT_EQ(newer()->identity(), dialog.get());
  EXPECT_EQ(extension()->identity(), dialog.get());
  EXPECT_EQ(extension()->typeName(), "ServicePropertiesDialog");
  EXPECT_TRUE(queryInterface<IServicePropertiesDialog>(extension()));
  EXPECT_EQ(dialog->queryInterface("IImageServicesDialog"), nullptr);
}

TEST_F(PropertiesDialog, IsKeptAliveByAnyInterface) {
  auto held = extension();
  dialog.reset();
  EXPECT_EQ(liveObjectCount(), 1);
  held.reset();
  EXPECT_EQ(liveObjectCount(), 0);
}

TEST_F(PropertiesDialog, StartsWithoutClientsAndLoadsNoForm) {
  EXPECT_EQ(dialog->myClient, nullptr);
  EXPECT_EQ(dialog->myOVLClient, nullptr);
  EXPECT_EQ(dialog->myOVLClientInitialized, boolean16False);
  EXPECT_EQ(dialog->window(), nullptr);
  EXPECT_THAT(toolkit->calls, IsEmpty());
}

TEST_F(PropertiesDialog, SharesItsStatusWithAllObjectsOfTheThread) {
  const auto other = std::make_shared<ServicePropertiesDialog>();
  EXPECT_EQ(older()->ShowPropertyPage(PropertyPageId::PropertyPageMetadata, 0), boolean16False);
  EXPECT_EQ(queryInterface<IOVLServicePropertiesDialog>(other)->Status(),
            "Cannot show without initializing the object");
}

TEST_F(PropertiesDialog, StoresEachDefinitionUnderItsKey) {
  const std::map<std::string, std::string ThreadState::*> places{
      {"ClientXADef", &ThreadState::gClientXADef},
      {"ClientXFDef", &ThreadState::gClientXFDef},
      {"ServiceMetadataXADef", &ThreadState::gServiceMetadataXADef},
      {"ServiceMetadataXFDef", &ThreadState::gServiceMetadataXFDef},
      {"ImageMetadataXADef", &ThreadState::gImageMetadataXADef},
      {"ImageMetadataXFDef", &ThreadState::gImageMetadataXFDef}};
  for (const auto& [key, place] : places) extension()->SetProperty(key, "<" + key + "/>");
  for (const auto& [key, place] : places) EXPECT_EQ(threadState().*place, "<" + key + "/>");
}

TEST_F(PropertiesDialog, RefusesOnlyAClientAttributeDefinitionThatDoesNotParse) {
  extension()->SetProperty("ClientXADef", "<Good/>");
  for (const char* const key : {"ClientXADef", "ClientXFDef", "ServiceMetadataXADef", "ServiceMetadataXFDef",
                                "ImageMetadataXADef", "ImageMetadataXFDef"}) {
    extension()->SetProperty(key, "<bad>");
  }
  const ThreadState& state = threadState();
  EXPECT_EQ(state.gClientXADef, "<Good/>");
  EXPECT_THAT((std::vector{state.gClientXFDef, state.gServiceMetadataXADef, state.gServiceMetadataXFDef,
                           state.gImageMetadataXADef, state.gImageMetadataXFDef}),
              testing::Each("<bad>"));
}

TEST_F(PropertiesDialog, ComparesKeysExactly) {
  for (const char* const key : {"clientxadef", "ClientXADef ", "", "Unknown"}) {
    extension()->SetProperty(key, "<A/>");
  }
  EXPECT_EQ(threadState().gClientXADef, "");
  EXPECT_EQ(status(), "");
}

TEST_F(PropertiesDialog, PassesALockOnToTheCallback) {
  const auto callback = std::make_shared<FakePropertiesCallback>();
  extension()->SetCallback(callback);
  dialog->metadataPage().FireOnChange.raise("<Locked/>");
  EXPECT_THAT(callback->told, ElementsAre("<Locked/>"));
}

TEST_F(PropertiesDialog, PassesALockOfAPageMadeAnewOnToo) {
  initialize();
  const auto callback = std::make_shared<FakePropertiesCallback>();
  extension()->SetCallback(callback);
  dialog->Close(PropertyPageId::PropertyPageMetadata);
  dialog->metadataPage().FireOnChange.raise("<Locked/>");
  EXPECT_THAT(callback->told, ElementsAre("<Locked/>"));
}

TEST_F(PropertiesDialog, FailsALockWhenTheCallbackWasNeverSet) {
  EXPECT_THROW(dialog->metadataPage().FireOnChange.raise("<Locked/>"), RuntimeFailure);
}

TEST_F(PropertiesDialog, KeepsItsCallbackWhenGivenSomethingElse) {
  const auto callback = std::make_shared<FakePropertiesCallback>();
  extension()->SetCallback(callback);
  extension()->SetCallback(std::make_shared<FakeStranger>());
  dialog->metadataPage().FireOnChange.raise("<Locked/>");
  EXPECT_EQ(callback->told.size(), 1U);
  extension()->SetCallback(nullptr);
  EXPECT_THROW(dialog->metadataPage().FireOnChange.raise("<Locked/>"), RuntimeFailure);
}

TEST_F(PropertiesDialog, TellsTheCallbackTheDocumentOfTheLockWhateverHappensMeanwhile) {
  const auto callback = std::make_shared<FakePropertiesCallback>();
  callback->duringCall = [this] {
    threadState().gServicePropertiesXml = "<Changed/>";
    extension()->SetCallback(nullptr);
  };
  extension()->SetCallback(callback);
  threadState().gServicePropertiesXml = "<Locked/>";
  dialog->metadataPage().FireOnChange.raise(threadState().gServicePropertiesXml);
  EXPECT_THAT(callback->told, ElementsAre("<Locked/>"));
}

TEST_F(PropertiesDialog, RaisesOnAcceptWhenItsWindowTellsOfOk) {
  initialize();
  int raised = 0;
  dialog->OnAccept.connect([&raised] { ++raised; });
  dialog->window()->OnOKClick.raise();
  EXPECT_EQ(raised, 1);
}

TEST_F(PropertiesDialog, HearsNoMoreOfAWindowThatItLetGo) {
  initialize();
  int raised = 0;
  dialog->OnAccept.connect([&raised] { ++raised; });
  const auto window = dialog->window();
  dialog->Close(static_cast<PropertyPageId>(7));
  window->OnOKClick.raise();
  EXPECT_EQ(raised, 0);
}

TEST_F(PropertiesDialog, HasEveryPageAlways) {
  for (const int page : {1, 2, 3, 0, 7}) {
    EXPECT_EQ(older()->IsPropertyPageAvailable(static_cast<PropertyPageId>(page)), boolean16True);
    EXPECT_EQ(newer()->IsPropertyPageAvailable(static_cast<PropertyPageId>(page)), boolean16True);
  }
}

class UpdatedProperties : public PropertiesDialog {};

TEST_F(UpdatedProperties, AreSavedFirst) {
  initialize();
  dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, toolkit->addNamedWindow("host"));
  plexa->record->resultXml = propertiesXml("<Edited/>");
  threadState().gViewPointX = "1";
  EXPECT_EQ(older()->GetUpdatedProperties(),
            propertiesXml("<Edited/><ViewPointY/><ViewPointX>1</ViewPointX>"));
}

TEST_F(UpdatedProperties, AreThoseOfTheThreadWithoutAPage) {
  threadState().gServicePropertiesXml = propertiesXml("");
  EXPECT_EQ(newer()->GetUpdatedProperties(), propertiesXml("<ViewPointY/><ViewPointX/>"));
}

TEST_F(UpdatedProperties, AreEmptyWhenTheyWereNoDocument) {
  threadState().gServicePropertiesXml = "nonsense";
  EXPECT_EQ(older()->GetUpdatedProperties(), "");
}

TEST_F(UpdatedProperties, AreSavedByTheClassesOwnMemberToo) {
  threadState().gServicePropertiesXml = propertiesXml("");
  EXPECT_EQ(dialog->SaveAllForms(), boolean16False);
  EXPECT_EQ(threadState().gServicePropertiesXml, propertiesXml("<ViewPointY/><ViewPointX/>"));
}

class Refreshing : public PropertiesDialog {};

TEST_F(Refreshing, IsAlwaysFalse) {
  EXPECT_EQ(older()->Refresh(), boolean16False);
  initialize();
  EXPECT_EQ(newer()->Refresh(), boolean16False);
  service->failAt = "ServiceProperties";
  EXPECT_EQ(newer()->Refresh(), boolean16False);
  EXPECT_EQ(status(), "");
}

TEST_F(Refreshing, ShowsTheServicesPropertiesAnew) {
  initialize();
  dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, toolkit->addNamedWindow("host"));
  service->properties = propertiesXml("<New/>");
  const std::size_t before = plexa->record->calls.size();
  older()->Refresh();
  EXPECT_EQ(threadState().gServicePropertiesXml, propertiesXml("<New/>"));
  EXPECT_THAT(plexa->callsFrom(before), ElementsAre("1.DataXml " + propertiesXml("<New/>"), "1.Commit"));
}

TEST_F(Refreshing, GivesTheMetadataPageTwoDocuments) {
  newer()->serviceInfoXml("<Info/>");
  newer()->MetaDataXml("<Meta/>");
  newer()->ImageMetaDataXml("<Image/>");
  older()->Refresh();
  const SourceMetadata& page = dialog->metadataPage();
  EXPECT_EQ(page.myServiceInfoXml, "<Info/>");
  EXPECT_EQ(page.myImageMetaDataXml, "<Image/>");
  EXPECT_EQ(page.myMetaDataXml, "");
}

class Changes : public PropertiesDialog {
 protected:
  void showPage() {
    initialize();
    dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, toolkit->addNamedWindow("host"));
  }
};

TEST_F(Changes, AreDifferencesInAnyCharacter) {
  showPage();
  EXPECT_EQ(older()->HasChanged(), boolean16False);
  plexa->record->resultXml = service->properties + " ";
  EXPECT_EQ(older()->HasChanged(), boolean16True);
  EXPECT_EQ(newer()->HasChanged(), boolean16True);
}

TEST_F(Changes, AreLookedForOncePendingEventsHaveRunAndWithoutACommit) {
  showPage();
  toolkit->setPendingEvents([this] { plexa->record->resultXml = "<LastEdit/>"; });
  static_cast<void>(takeJournal());
  EXPECT_EQ(older()->HasChanged(), boolean16True);
  EXPECT_THAT(takeJournal(), ElementsAre("letPendingEventsRun", "1.GetResultXml", "ServiceProperties"));
}

TEST_F(Changes, AreNoneWithoutAService) {
  initializeWithoutService();
  dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, toolkit->addNamedWindow("host"));
  plexa->record->resultXml = "<Edited/>";
  EXPECT_EQ(older()->HasChanged(), boolean16False);
}

TEST_F(Changes, AreToldOfAPageThatWasNeverShown) {
  initialize();
  EXPECT_EQ(older()->HasChanged(), boolean16True);
  service->properties.clear();
  EXPECT_EQ(older()->HasChanged(), boolean16False);
}

TEST_F(Changes, AreNoneWhenTheServiceFails) {
  showPage();
  plexa->record->resultXml = "<Edited/>";
  service->failAt = "ServiceProperties";
  EXPECT_EQ(older()->HasChanged(), boolean16False);
  EXPECT_EQ(status(), "");
}

TEST_F(PropertiesDialog, PassesImageMetadataToTheViewpointWindows) {
  newer()->ImageMetaDataXml("<Image/>");
  EXPECT_EQ(dialog->viewPointPage().myImageMetaDataXml, "<Image/>");
  EXPECT_EQ(dialog->viewPointDialog().myImageMetaDataXml, "<Image/>");
}

TEST_F(PropertiesDialog, RefreshesTheViewpointPageWithImageMetadataAndBothWindowsWithProperties) {
  const auto refreshes = [this] { return std::ranges::count(toolkit->calls, "letPendingEventsRun"); };
  threadState().gViewPointX = "published";
  newer()->ImageMetaDataXml("<Image/>");
  EXPECT_EQ(refreshes(), 1);
  EXPECT_EQ(threadState().gViewPointX, "");
  newer()->ServicePropertiesXml("<Given/>");
  EXPECT_EQ(refreshes(), 3);
}

TEST_F(PropertiesDialog, KeepsServicePropertiesForTheThread) {
  newer()->ServicePropertiesXml("<Given/>");
  EXPECT_EQ(threadState().gServicePropertiesXml, "<Given/>");
}

TEST_F(PropertiesDialog, TakesDialogPropertiesAndForgetsThem) {
  older()->DialogProperties("<Anything/>");
  newer()->DialogProperties("nonsense");
  EXPECT_EQ(status(), "");
}

TEST_F(PropertiesDialog, ClosesTheViewpointPageByItsOwnMember) {
  EXPECT_EQ(dialog->CloseViewPoint(), boolean16False);
  dialog->viewPointPage().load();
  EXPECT_EQ(dialog->CloseViewPoint(), boolean16False);
  EXPECT_FALSE(dialog->viewPointPage().loaded());
}

}  // namespace
}  // namespace vlclientui::test
