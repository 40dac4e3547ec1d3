#include <gmock/gmock.h>

#include "EmbeddedPages.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(EmbeddedPages, PutTheMetadataPageIntoTheWindowFirstAndMakeItAChildThen) {
  initialize();
  EXPECT_THAT(embedding(metadata),
              ElementsAre("windowRect host", "styleOf SourceMetadata", "setParent SourceMetadata host",
                          "setStyle SourceMetadata 0x40000000", "showWindow SourceMetadata 5"));
}

TEST_F(EmbeddedPages, PutThePropertiesPageIntoTheWindowAndLeaveItsStyle) {
  initialize();
  EXPECT_THAT(embedding(properties),
              ElementsAre("windowRect host", "styleOf ServiceProperties", "setParent ServiceProperties host",
                          "showWindow ServiceProperties 5"));
}

TEST_F(EmbeddedPages, MakeTheViewpointPageAChildFirstAndPutItIntoTheWindowThen) {
  initialize();
  EXPECT_THAT(embedding(viewPoint),
              ElementsAre("windowRect host", "styleOf ViewPoint", "setStyle ViewPoint 0x40000000",
                          "setParent ViewPoint host", "showWindow ViewPoint 5"));
}

TEST_F(EmbeddedPages, StandInTheWindowOfTheHostAtTheToldPlace) {
  initialize();
  for (const PropertyPageId page : allPages) {
    EXPECT_EQ(show(page), boolean16True);
    const Form& form = formOf(page);
    const WindowHandle window = toolkit->windowOf(form);
    EXPECT_EQ(toolkit->parentOf(window), host);
    EXPECT_TRUE(toolkit->isShown(window));
    EXPECT_EQ(form.left(), 29.8);
    EXPECT_EQ(form.top(), 134.1);
  }
}

TEST_F(EmbeddedPages, AddTheChildBitToTheStyleThatThePageHas) {
  initialize();
  for (const PropertyPageId page : {metadata, viewPoint}) {
    toolkit->setStyle(newer()->GetPropertyPageHandle(page), 0x10);
    EXPECT_THAT(embedding(page), Contains(HasSubstr(" 0x40000010")));
  }
}

TEST_F(EmbeddedPages, GiveTheMetadataPageTheService) {
  initialize();
  show(metadata);
  EXPECT_EQ(dialog->metadataPage().myImageServiceObject, service);
}

TEST_F(EmbeddedPages, GiveTheMetadataPageAllDocumentsWhichItKeepsWithoutAService) {
  initializeWithoutService();
  show(metadata);
  const SourceMetadata& page = dialog->metadataPage();
  EXPECT_EQ(page.myServiceInfoXml, "<Info/>");
  EXPECT_EQ(page.myMetaDataXml, "<Meta/>");
  EXPECT_EQ(page.myImageMetaDataXml, "<Image/>");
  EXPECT_EQ(page.myImageServiceObject, nullptr);
}

TEST_F(EmbeddedPages, GiveThePropertiesPageTheServiceAndTheFlag) {
  older()->Init(
      "<Vorlane><Client><Init><PropertiesSRSReadonly>True</PropertiesSRSReadonly></Init></Client></Vorlane>",
      nullptr, service);
  show(properties);
  EXPECT_EQ(dialog->propertiesPage().myImageServiceObject, service);
  EXPECT_TRUE(dialog->propertiesPage().mySrsReadOnly);
}

TEST_F(EmbeddedPages, GiveTheViewpointPageTheServiceAlone) {
  initialize();
  show(viewPoint);
  const ViewPoint& page = dialog->viewPointPage();
  EXPECT_EQ(page.myImageServiceObject, service);
  EXPECT_EQ(page.myServiceInfoXml, "");
  EXPECT_EQ(page.myMetaDataXml, "");
}

TEST_F(EmbeddedPages, GiveTheViewpointPageAllDocumentsWhenTheHostEmbedsItItself) {
  initialize();
  newer()->GetPropertyPageHandle(viewPoint);
  const ViewPoint& page = dialog->viewPointPage();
  EXPECT_EQ(page.myServiceInfoXml, "<Info/>");
  EXPECT_EQ(page.myMetaDataXml, "<Meta/>");
  EXPECT_EQ(page.myImageMetaDataXml, "<Image/>");
  EXPECT_EQ(page.myImageServiceObject, service);
}

TEST_F(EmbeddedPages, GetTheirDataBeforeTheyLoad) {
  initialize();
  static_cast<void>(takeJournal());
  show(properties);
  // Data set after the load would be too late: the load asks the service.
  EXPECT_THAT(takeJournal(),
              testing::IsSupersetOf({"createView ServiceProperties", "GetDefinition 2", "1.Show"}));
  EXPECT_FALSE(dialog->propertiesPage().controls().ErrorLabel.visible());
}

TEST_F(EmbeddedPages, BeginWithNewDocumentsByTheGenerationOfTheService) {
  initialize();
  service->calls.clear();
  service->properties = propertiesXml("<New/>");
  EXPECT_EQ(show(noPage), boolean16True);
  EXPECT_THAT(service->calls, ElementsAre("GetDefinition 1", "GetDefinition 2", "ServiceProperties",
                                          "GetImageMetadata 'Basic'"));
  EXPECT_EQ(threadState().gServicePropertiesXml, propertiesXml("<New/>"));
  service->type = "iovlIMAGEservice";
  service->calls.clear();
  newer()->GetPropertyPageHandle(noPage);
  EXPECT_THAT(service->calls, ElementsAre("getProperty 'ClientXADef'", "getProperty 'ClientXFDef'",
                                          "ServiceProperties", "GetImageMetadata 'Basic'"));
}

TEST_F(EmbeddedPages, AreReadyWithoutAServiceToo) {
  initializeWithoutService();
  for (const PropertyPageId page : allPages) EXPECT_EQ(show(page), boolean16True);
  EXPECT_THAT(service->calls, IsEmpty());
}

TEST_F(EmbeddedPages, AreNotShownBeforeInit) {
  for (const PropertyPageId page : {metadata, properties, viewPoint, noPage}) {
    threadState().gStatus.clear();
    toolkit->calls.clear();
    EXPECT_EQ(show(page), boolean16False);
    EXPECT_EQ(status(), neverInitialized);
    EXPECT_THAT(calls(), IsEmpty());
  }
}

TEST_F(EmbeddedPages, AreNotShownAfterAFailedInit) {
  service->failAtCall = 1;
  ASSERT_EQ(older()->Init("", nullptr, service), boolean16False);
  EXPECT_EQ(show(properties), boolean16False);
  EXPECT_EQ(status(), initFailed);
  EXPECT_EQ(newer()->ShowPropertyPage(viewPoint, host), boolean16False);
}

TEST_F(EmbeddedPages, GiveTheirHandlesBeforeInitAndAfterAFailedOne) {
  for (const PropertyPageId page : allPages) EXPECT_NE(newer()->GetPropertyPageHandle(page), 0);
  service->failAtCall = 1;
  ASSERT_EQ(older()->Init("", nullptr, service), boolean16False);
  for (const PropertyPageId page : allPages) {
    const WindowHandle window = newer()->GetPropertyPageHandle(page);
    EXPECT_EQ(window, toolkit->windowOf(formOf(page)));
    EXPECT_EQ(formOf(page).left(), 29.8);
  }
}

TEST_F(EmbeddedPages, AreThreeAndNoOthers) {
  initialize();
  toolkit->calls.clear();
  for (const int id : {0, 4, 7, -1}) {
    EXPECT_EQ(show(static_cast<PropertyPageId>(id)), boolean16True);
    EXPECT_EQ(newer()->GetPropertyPageHandle(static_cast<PropertyPageId>(id)), 0);
  }
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(EmbeddedPages, AreNotPutAnywhereWhenTheHostAsksForAHandle) {
  initialize();
  toolkit->calls.clear();
  const WindowHandle window = newer()->GetPropertyPageHandle(properties);
  EXPECT_EQ(window, toolkit->windowOf(dialog->propertiesPage()));
  EXPECT_THAT(calls(), Not(Contains(HasSubstr("setParent"))));
  EXPECT_FALSE(toolkit->isShown(window));
}

TEST_F(EmbeddedPages, TellWhyTheServiceFailedAtAnyCall) {
  initialize();
  const std::vector<std::string> names{"GetDefinition 1", "GetDefinition 2", "ServiceProperties",
                                       "GetImageMetadata 'Basic'"};
  for (std::size_t call = 1; call <= names.size(); ++call) {
    service->failAtCall = call;
    service->calls.clear();
    EXPECT_EQ(show(properties), boolean16False);
    EXPECT_EQ(status(), "the service fails at " + names[call - 1]);
    service->calls.clear();
    EXPECT_EQ(newer()->GetPropertyPageHandle(properties), 0);
  }
}

TEST_F(EmbeddedPages, TellWhyTheToolkitFailed) {
  initialize();
  for (const char* const call : {"windowRect host", "styleOf", "setParent", "showWindow"}) {
    toolkit->failAt = call;
    EXPECT_EQ(show(properties), boolean16False);
    EXPECT_EQ(status(), std::string("the toolkit fails at ") + call);
  }
}

}  // namespace
}  // namespace vlclientui::test
