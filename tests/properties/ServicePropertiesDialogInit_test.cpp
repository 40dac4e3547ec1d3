#include <filesystem>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "properties/ServicePropertiesDialog.h"
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

class PropertiesDialogInit : public PropertiesFixture {
 protected:
  /// What an Init with this configuration makes of the page's flag.
  bool srsReadOnlyAfter(const std::string& text) {
    EXPECT_EQ(older()->Init(text, nullptr, nullptr), boolean16True) << status();
    dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, toolkit->addNamedWindow("host"));
    return dialog->propertiesPage().mySrsReadOnly;
  }
};

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
  makeNewer();
  const WindowHandle host = toolkit->addNamedWindow("host");
  const std::vector<ObjectPtr> clients{std::make_shared<FakeServerClient>(nullptr),
                                       std::make_shared<FakeStranger>(), service, nullptr};
  for (const ObjectPtr& client : clients) {
    EXPECT_EQ(newer()->Init("", client, service), boolean16True);
    EXPECT_EQ(dialog->myOVLClient, client);
    EXPECT_EQ(dialog->myOVLClientInitialized, boolean16True);
    EXPECT_EQ(newer()->ShowPropertyPage(PropertyPageId::PropertyPageViewPoint, host), boolean16True);
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

}  // namespace
}  // namespace vlclientui::test
