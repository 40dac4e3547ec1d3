#include "properties/ServicePropertiesDialog.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "frame/LiveObjects.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* srsReadOnlyConfiguration =
    "<Vorlane><Client><Init><PropertiesSRSReadonly>TRUE</PropertiesSRSReadonly></Init></Client></Vorlane>";

std::string configuration(const std::string& value) {
  return "<Vorlane><Client><Init><PropertiesSRSReadonly>" + value +
         "</PropertiesSRSReadonly></Init></Client></Vorlane>";
}

class PropertiesDialog : public PropertiesFixture {
 protected:
  /// What an Init with this configuration makes of the page's flag.
  bool srsReadOnlyAfter(const std::string& text) {
    EXPECT_EQ(older()->Init(text, nullptr, nullptr), boolean16True) << status();
    dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, toolkit->addNamedWindow("host"));
    return dialog->propertiesPage().mySrsReadOnly;
  }
};

class PropertiesDialogInit : public PropertiesDialog {};

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

TEST_F(PropertiesDialogInit, OfTheOlderGenerationAsksForDefinitionsByNumberAttributesFirst) {
  initialize();
  EXPECT_THAT(service->calls, ElementsAre("GetDefinition 1", "GetDefinition 2", "ServiceProperties",
                                          "GetImageMetadata 'Basic'"));
}

TEST_F(PropertiesDialogInit, OfTheNewerGenerationAsksForDefinitionsByKeyAttributesFirst) {
  makeNewer();
  ASSERT_EQ(newer()->Init("", nullptr, service), boolean16True);
  EXPECT_THAT(service->calls, ElementsAre("getProperty 'ClientXADef'", "getProperty 'ClientXFDef'",
                                          "ServiceProperties", "GetImageMetadata 'Basic'"));
}

TEST_F(PropertiesDialogInit, OfTheOlderGenerationAsksANewerServiceByNumberToo) {
  makeNewer();
  initialize();
  EXPECT_EQ(service->calls.front(), "GetDefinition 1");
}

TEST_F(PropertiesDialogInit, OfTheNewerGenerationFailsOnAnOlderServiceWithItsDescription) {
  EXPECT_EQ(newer()->Init("", nullptr, service), boolean16False);
  EXPECT_EQ(newer()->Status(), "an older service has no getProperty");
  EXPECT_EQ(dialog->myOVLClientInitialized, boolean16False);
}

TEST_F(PropertiesDialogInit, KeepsTheServicesDocumentsForTheThread) {
  initialize();
  EXPECT_EQ(threadState().gServicePropertiesXml, service->properties);
  EXPECT_EQ(threadState().gImageMetadataXml, service->metadata);
}

TEST_F(PropertiesDialogInit, OfOneObjectOverwritesTheDocumentsOfTheOther) {
  initialize();
  const auto other = std::make_shared<ServicePropertiesDialog>();
  service->properties = propertiesXml("<Other/>");
  queryInterface<IServicePropertiesDialog>(other)->Init("", nullptr, service);
  EXPECT_EQ(threadState().gServicePropertiesXml, propertiesXml("<Other/>"));
}

TEST_F(PropertiesDialogInit, WithoutAServiceTakesTheGivenMetadataInTheOlderGenerationOnly) {
  newer()->ImageMetaDataXml("<Given/>");
  threadState().gImageMetadataXml = "<Held/>";
  ASSERT_EQ(newer()->Init("", nullptr, nullptr), boolean16True);
  EXPECT_EQ(threadState().gImageMetadataXml, "<Held/>");
  ASSERT_EQ(older()->Init("", nullptr, nullptr), boolean16True);
  EXPECT_EQ(threadState().gImageMetadataXml, "<Given/>");
}

TEST_F(PropertiesDialogInit, WithoutAServiceLeavesTheThreadsProperties) {
  threadState().gServicePropertiesXml = "<Held/>";
  initializeWithoutService();
  EXPECT_EQ(threadState().gServicePropertiesXml, "<Held/>");
}

TEST_F(PropertiesDialogInit, OfTheOlderGenerationIgnoresItsClientWhateverItIs) {
  EXPECT_EQ(older()->Init("", std::make_shared<FakeStranger>(), service), boolean16True);
  EXPECT_EQ(older()->Init("", std::make_shared<FakeServerClient>(nullptr), service), boolean16True);
  EXPECT_EQ(dialog->myClient, nullptr);
  EXPECT_EQ(dialog->myOVLClient, nullptr);
}

TEST_F(PropertiesDialogInit, OfTheNewerGenerationKeepsItsClient) {
  const auto client = std::make_shared<FakeOVLServerClient>(nullptr);
  ASSERT_EQ(newer()->Init("", client, nullptr), boolean16True);
  EXPECT_EQ(dialog->myOVLClient, client);
  EXPECT_EQ(dialog->myOVLClientInitialized, boolean16True);
}

TEST_F(PropertiesDialogInit, OfTheNewerGenerationTakesAClientOfAnyKindAsItIs) {
  const std::vector<ObjectPtr> clients{std::make_shared<FakeServerClient>(nullptr),
                                       std::make_shared<FakeStranger>(), service, nullptr};
  for (const ObjectPtr& client : clients) {
    EXPECT_EQ(newer()->Init("", client, service), boolean16True);
    EXPECT_EQ(dialog->myOVLClient, client);
    EXPECT_EQ(dialog->myOVLClientInitialized, boolean16True);
    EXPECT_EQ(newer()->ShowPropertyPage(PropertyPageId::PropertyPageViewPoint, 0), boolean16True);
    EXPECT_EQ(status(), "");
  }
}

TEST_F(PropertiesDialogInit, OfTheNewerGenerationKeepsItsClientThoughItFails) {
  std::filesystem::remove(system->nativeFile("C:\\Program\\VLClient.Xfdef"));
  const auto client = std::make_shared<FakeStranger>();
  EXPECT_EQ(newer()->Init("", client, nullptr), boolean16False);
  EXPECT_EQ(dialog->myOVLClient, client);
  EXPECT_EQ(dialog->myOVLClientInitialized, boolean16False);
}

TEST_F(PropertiesDialogInit, OfTheOlderGenerationClearsTheMarkOfTheNewerFromItsStart) {
  ASSERT_EQ(newer()->Init("", nullptr, nullptr), boolean16True);
  service->failAtCall = 1;
  EXPECT_EQ(older()->Init("", nullptr, service), boolean16False);
  EXPECT_EQ(dialog->myOVLClientInitialized, boolean16False);
}

TEST_F(PropertiesDialogInit, MakesNewFormsEachTime) {
  initialize();
  const auto* const page = &dialog->propertiesPage();
  const auto window = dialog->window();
  ASSERT_TRUE(window);
  initialize();
  EXPECT_NE(dialog->window(), window);
  EXPECT_NE(&dialog->propertiesPage(), page);
}

TEST_F(PropertiesDialogInit, ShowsNothing) {
  initialize();
  EXPECT_THAT(toolkit->calls, IsEmpty());
}

TEST_F(PropertiesDialogInit, ReadsItsConfigurationAsText) {
  EXPECT_TRUE(srsReadOnlyAfter(srsReadOnlyConfiguration));
  EXPECT_FALSE(srsReadOnlyAfter(configuration("false")));
  EXPECT_TRUE(srsReadOnlyAfter(configuration("-1")));
  EXPECT_FALSE(srsReadOnlyAfter(configuration("0")));
}

TEST_F(PropertiesDialogInit, ReadsItsConfigurationAsTheNameOfAFile) {
  system->writeFile("C:\\Config\\init.xml", srsReadOnlyConfiguration);
  EXPECT_TRUE(srsReadOnlyAfter("C:\\Config\\init.xml"));
}

TEST_F(PropertiesDialogInit, TakesAConfigurationThatSaysNothing) {
  for (const char* const text : {"", "<Vorlane/>", "<Vorlane>", "C:\\nothing\\there.xml"}) {
    EXPECT_FALSE(srsReadOnlyAfter(text)) << text;
  }
}

TEST_F(PropertiesDialogInit, FailsOnAFlagThatIsNoBoolean) {
  EXPECT_EQ(older()->Init(configuration("perhaps"), nullptr, nullptr), boolean16False);
  EXPECT_THAT(status(), HasSubstr("Type mismatch"));
}

TEST_F(PropertiesDialogInit, TellsInTheStatusThatTheFormDefinitionIsMissing) {
  std::filesystem::remove(system->nativeFile("C:\\Program\\VLClient.Xfdef"));
  EXPECT_EQ(older()->Init("", nullptr, service), boolean16False);
  EXPECT_EQ(status(), "Initialization failed. File 'C:\\Program\\VLClient.Xfdef' does not exist.");
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(PropertiesDialogInit, TellsInTheStatusThatTheFormDefinitionDoesNotParse) {
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane>");
  EXPECT_EQ(older()->Init("", nullptr, service), boolean16False);
  EXPECT_EQ(status(), "Initialization failed. File 'C:\\Program\\VLClient.Xfdef' is an invalid xad.");
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(PropertiesDialogInit, TellsInABoxThatTheAttributeDefinitionIsMissing) {
  std::filesystem::remove(system->nativeFile("C:\\Program\\VLClient.XADef"));
  threadState().gStatus = "former";
  EXPECT_EQ(older()->Init("", nullptr, service), boolean16False);
  EXPECT_EQ(status(), "former");
  EXPECT_THAT(
      toolkit->messages(),
      ElementsAre(MessageBox{"Initialization failed. File 'C:\\Program\\VLClient.XADef' does not exist.",
                             "Error", MessageIcon::Critical, MessageButtons::Ok}));
}

TEST_F(PropertiesDialogInit, TellsInABoxThatTheAttributeDefinitionDoesNotParse) {
  system->writeFile("C:\\Program\\VLClient.XADef", "");
  threadState().gStatus = "former";
  EXPECT_EQ(newer()->Init("", nullptr, nullptr), boolean16False);
  EXPECT_EQ(status(), "former");
  EXPECT_THAT(
      toolkit->messages(),
      ElementsAre(MessageBox{"Initialization failed. File 'C:\\Program\\VLClient.XADef' is an invalid xad.",
                             "Invalid XAD", MessageIcon::Critical, MessageButtons::Ok}));
}

TEST_F(PropertiesDialogInit, LooksAtTheFormDefinitionFirst) {
  std::filesystem::remove_all(system->nativeFile("C:\\Program"));
  EXPECT_EQ(older()->Init("", nullptr, nullptr), boolean16False);
  EXPECT_THAT(status(), HasSubstr("VLClient.Xfdef"));
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(PropertiesDialogInit, MakesTheUsersFolderWhenItIsMissing) {
  initializeWithoutService();
  EXPECT_EQ(threadState().UserDataFolder, "C:\\Documents\\Ostrel\\Vor Lane");
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\Documents\\Ostrel\\Vor Lane \\ "));
}

TEST_F(PropertiesDialogInit, SucceedsWhenTheUsersFolderCannotBeMade) {
  system->folderCreationWorks = false;
  initializeWithoutService();
}

TEST_F(PropertiesDialogInit, ThatFailsAtAnyCallOfTheServiceTellsWhy) {
  initialize();
  const auto calls = service->calls;
  for (std::size_t call = 1; call <= calls.size(); ++call) {
    service->calls.clear();
    service->failAtCall = call;
    EXPECT_EQ(older()->Init("", nullptr, service), boolean16False);
    EXPECT_EQ(status(), "the service fails at " + calls[call - 1]);
    EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  }
}

TEST_F(PropertiesDialogInit, FailsOnAnObjectThatIsNoService) {
  EXPECT_EQ(older()->Init("", nullptr, std::make_shared<FakeStranger>()), boolean16False);
  EXPECT_THAT(status(), HasSubstr("no image service"));
}

TEST_F(PropertiesDialogInit, ThatSucceedsAfterAFailureCountsAndClearsNoStatus) {
  service->failAtCall = 1;
  EXPECT_EQ(older()->Init("", nullptr, service), boolean16False);
  initialize();
  EXPECT_EQ(older()->Status(), "the service fails at GetDefinition 1");
  EXPECT_EQ(older()->ShowPropertyPage(static_cast<PropertyPageId>(7), 0), boolean16True);
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
