#include <algorithm>

#include <gmock/gmock.h>

#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr auto metadata = PropertyPageId::PropertyPageMetadata;
constexpr auto properties = PropertyPageId::PropertyPageProperties;
constexpr auto viewPoint = PropertyPageId::PropertyPageViewPoint;
constexpr auto noPage = static_cast<PropertyPageId>(7);
constexpr PropertyPageId allPages[] = {metadata, properties, viewPoint};

constexpr const char* neverInitialized = "Cannot show without initializing the object";
constexpr const char* initFailed = "Initialization failed";

/// A dialog object with documents given by the host, and a window to embed pages in.
class EmbeddedPages : public PropertiesFixture {
 protected:
  EmbeddedPages() {
    newer()->serviceInfoXml("<Info/>");
    newer()->MetaDataXml("<Meta/>");
    newer()->ImageMetaDataXml("<Image/>");
  }

  [[nodiscard]] const std::vector<std::string>& calls() const { return toolkit->calls; }
  Boolean16 show(PropertyPageId page) { return older()->ShowPropertyPage(page, host); }
  /// What the toolkit was told from the look at the host's window on, up to the show of the page.
  [[nodiscard]] std::vector<std::string> embedding(PropertyPageId page) {
    toolkit->calls.clear();
    EXPECT_EQ(show(page), boolean16True) << status();
    const auto& all = calls();
    const auto begin = std::ranges::find(all, "windowRect host");
    auto end = std::ranges::find_if(all, [](const auto& call) { return call.starts_with("showWindow"); });
    if (end != all.end()) ++end;
    return {begin, end};
  }
  /// What the toolkit was told of that form since the last clear.
  [[nodiscard]] std::vector<std::string> callsOn(const std::string& form) const {
    std::vector<std::string> found;
    std::ranges::copy_if(calls(), std::back_inserter(found),
                         [&form](const auto& call) { return call.find(form) != std::string::npos; });
    return found;
  }
  void close(PropertyPageId page) {
    toolkit->calls.clear();
    EXPECT_EQ(older()->Close(page), boolean16True);
  }
  [[nodiscard]] Form& formOf(PropertyPageId page) const {
    if (page == metadata) return dialog->metadataPage();
    if (page == properties) return dialog->propertiesPage();
    return dialog->viewPointPage();
  }

  WindowHandle host = toolkit->addNamedWindow("host", {0, 0, 640, 480});
};

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
  // With data that came too late, the load would find no service to ask.
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

class ClosedPages : public EmbeddedPages {
 protected:
  ClosedPages() { initialize(); }
};

TEST_F(ClosedPages, GoBackToWhereTheMetadataPageCameFrom) {
  toolkit->setStyle(newer()->GetPropertyPageHandle(metadata), 0x10);
  show(metadata);
  close(metadata);
  EXPECT_THAT(callsOn("SourceMetadata"),
              ElementsAre("setParent SourceMetadata nothing", "setStyle SourceMetadata 0x10",
                          "destroyView SourceMetadata"));
}

TEST_F(ClosedPages, GoBackToWhereTheViewpointPageCameFrom) {
  toolkit->setStyle(newer()->GetPropertyPageHandle(viewPoint), 0x10);
  show(viewPoint);
  close(viewPoint);
  EXPECT_THAT(callsOn("ViewPoint"),
              ElementsAre("setParent ViewPoint nothing", "setStyle ViewPoint 0x10", "destroyView ViewPoint"));
}

TEST_F(ClosedPages, HaveNoWayBackForThePropertiesPage) {
  show(properties);
  close(properties);
  EXPECT_THAT(calls(), ElementsAre("destroyView ServiceProperties"));
}

TEST_F(ClosedPages, AreNeitherSavedNorPublished) {
  show(properties);
  plexa->record->resultXml = propertiesXml("<Edited/>");
  const std::size_t before = plexa->record->calls.size();
  close(properties);
  EXPECT_THAT(plexa->callsFrom(before), ElementsAre("1.ParentWindow 0", "1.released"));
  EXPECT_EQ(threadState().gServicePropertiesXml, service->properties);
}

TEST_F(ClosedPages, DetachTheEngineOfTheMetadataPageFirst) {
  const auto engine = plexa->createPlexa();
  show(metadata);
  dialog->metadataPage().myPlexa = engine;
  static_cast<void>(takeJournal());
  EXPECT_EQ(older()->Close(metadata), boolean16True);
  const auto journal = takeJournal();
  EXPECT_THAT(journal.at(0), HasSubstr(".ParentWindow 0"));
  EXPECT_EQ(journal.at(1), "setParent SourceMetadata nothing");
}

TEST_F(ClosedPages, LeaveTheOthersOpen) {
  for (const PropertyPageId page : allPages) show(page);
  const WindowHandle window = toolkit->windowOf(dialog->metadataPage());
  close(properties);
  close(noPage);
  EXPECT_EQ(toolkit->windowOf(dialog->metadataPage()), window);
  EXPECT_TRUE(dialog->viewPointPage().loaded());
}

TEST_F(ClosedPages, TakeTheOneWindowDialogAlong) {
  for (const PropertyPageId page : {metadata, properties, viewPoint, noPage}) {
    initialize();
    ASSERT_TRUE(dialog->window());
    close(page);
    EXPECT_FALSE(dialog->window());
  }
}

TEST_F(ClosedPages, AreMadeAnewWhenShownAgain) {
  for (const PropertyPageId page : allPages) {
    show(page);
    const WindowHandle before = toolkit->windowOf(formOf(page));
    close(page);
    EXPECT_EQ(show(page), boolean16True);
    EXPECT_NE(toolkit->windowOf(formOf(page)), before);
    EXPECT_EQ(toolkit->parentOf(toolkit->windowOf(formOf(page))), host);
  }
}

TEST_F(ClosedPages, MayBeClosedTwiceAndBeforeAnyShow) {
  for (const PropertyPageId page : allPages) {
    close(page);
    show(page);
    close(page);
    close(page);
  }
  EXPECT_EQ(status(), "");
}

TEST_F(ClosedPages, MayBeClosedOnAnObjectThatWasNeverInitialized) {
  const auto fresh = std::make_shared<ServicePropertiesDialog>();
  for (const PropertyPageId page : {metadata, properties, viewPoint, noPage}) {
    EXPECT_EQ(fresh->Close(page), boolean16True);
  }
}

TEST_F(ClosedPages, EndSilentlyWhenTheToolkitFails) {
  show(viewPoint);
  toolkit->failAt = "setParent";
  EXPECT_EQ(older()->Close(viewPoint), boolean16False);
  EXPECT_EQ(status(), "");
  EXPECT_TRUE(dialog->viewPointPage().loaded());
}

/// Hosts that do what they should not.
class MisbehavingHosts : public EmbeddedPages {
 protected:
  MisbehavingHosts() { initialize(); }
};

TEST_F(MisbehavingHosts, ShowAPageTwiceInOneWindowAndInAnother) {
  const WindowHandle second = toolkit->addNamedWindow("second");
  for (const PropertyPageId page : allPages) {
    EXPECT_EQ(show(page), boolean16True);
    const WindowHandle window = toolkit->windowOf(formOf(page));
    EXPECT_EQ(show(page), boolean16True);
    EXPECT_EQ(older()->ShowPropertyPage(page, second), boolean16True);
    EXPECT_EQ(toolkit->windowOf(formOf(page)), window);
    EXPECT_EQ(toolkit->parentOf(window), second);
  }
}

TEST_F(MisbehavingHosts, FindAPageThatWasShownTwiceBackInTheirFirstWindow) {
  const WindowHandle second = toolkit->addNamedWindow("second");
  show(viewPoint);
  older()->ShowPropertyPage(viewPoint, second);
  close(viewPoint);
  EXPECT_THAT(callsOn("ViewPoint"), ElementsAre("setParent ViewPoint host", "setStyle ViewPoint 0x40000000",
                                                "destroyView ViewPoint"));
}

TEST_F(MisbehavingHosts, CloseTheirWindowBeforeTheyCloseThePages) {
  for (const PropertyPageId page : allPages) show(page);
  toolkit->removeWindow(host);
  EXPECT_NO_THROW(static_cast<void>(older()->HasChanged()));
  EXPECT_NO_THROW(static_cast<void>(older()->Refresh()));
  EXPECT_THAT(older()->GetUpdatedProperties(), HasSubstr("ViewPointX"));
  for (const PropertyPageId page : allPages) EXPECT_EQ(older()->Close(page), boolean16True);
}

TEST_F(MisbehavingHosts, CloseTheirWindowAndShowThePagesInAnother) {
  for (const PropertyPageId page : allPages) show(page);
  toolkit->removeWindow(host);
  const WindowHandle second = toolkit->addNamedWindow("second");
  for (const PropertyPageId page : allPages) {
    EXPECT_EQ(older()->ShowPropertyPage(page, second), boolean16True);
    const WindowHandle window = toolkit->windowOf(formOf(page));
    EXPECT_NE(window, 0);
    EXPECT_EQ(toolkit->parentOf(window), second);
  }
}

TEST_F(MisbehavingHosts, CloseTheirWindowAndDropTheObject) {
  for (const PropertyPageId page : allPages) show(page);
  toolkit->removeWindow(host);
  EXPECT_NO_THROW(dialog.reset());
}

TEST_F(MisbehavingHosts, DropTheObjectWithItsPagesOpen) {
  for (const PropertyPageId page : allPages) show(page);
  dialog.reset();
  EXPECT_THAT(toolkit->childWindows(host), IsEmpty());
  EXPECT_EQ(plexa->lastEngine(), nullptr);
}

TEST_F(MisbehavingHosts, ShowPagesInWindowsThatAreNone) {
  for (const PropertyPageId page : allPages) {
    EXPECT_EQ(older()->ShowPropertyPage(page, 9999), boolean16True);
    EXPECT_EQ(older()->ShowPropertyPage(page, 0), boolean16True);
  }
}

TEST_F(MisbehavingHosts, CloseTheMetadataPageWhileItTellsOfALock) {
  const auto callback = std::make_shared<FakePropertiesCallback>();
  callback->duringCall = [this] { older()->Close(metadata); };
  extension()->SetCallback(callback);
  show(metadata);
  SourceMetadata& page = dialog->metadataPage();
  page.dispatch([&page] { page.FireOnChange.raise("<Locked/>"); });
  EXPECT_EQ(callback->told.size(), 1U);
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(MisbehavingHosts, DropTheObjectWhileItTellsOfALock) {
  const auto callback = std::make_shared<FakePropertiesCallback>();
  callback->duringCall = [this] { dialog.reset(); };
  extension()->SetCallback(callback);
  show(metadata);
  SourceMetadata& page = dialog->metadataPage();
  page.dispatch([&page] { page.FireOnChange.raise("<Locked/>"); });
  EXPECT_EQ(callback->told.size(), 1U);
}

TEST_F(MisbehavingHosts, FindAMissingCallbackAtTheTopLevel) {
  SourceMetadata& page = dialog->metadataPage();
  page.load();
  page.dispatch([&page] { page.FireOnChange.raise("<Locked/>"); });
  EXPECT_THAT(toolkit->failures(), ElementsAre(HasSubstr("SetCallback")));
}

TEST_F(MisbehavingHosts, InitializeAgainWithPagesOpen) {
  for (const PropertyPageId page : allPages) show(page);
  initialize();
  EXPECT_EQ(show(properties), boolean16True);
  EXPECT_EQ(toolkit->childWindows(host).size(), 2U);
}

class ModalWindows : public EmbeddedPages {};

TEST_F(ModalWindows, OfThePropertiesAreRefusedWithMinusOne) {
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), neverInitialized);
  service->failAtCall = 1;
  older()->Init("", nullptr, service);
  EXPECT_EQ(newer()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), initFailed);
}

TEST_F(ModalWindows, OfThePropertiesGetAllDocumentsThisObjectAndTheService) {
  initialize();
  const auto window = dialog->window();
  bool shown = false;
  toolkit->scriptModal([&](Form& form) { shown = &form == window.get(); });
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
  EXPECT_TRUE(shown);
  EXPECT_EQ(window->myServiceInfoXml, "<Info/>");
  EXPECT_EQ(window->myMetaDataXml, "<Meta/>");
  EXPECT_EQ(window->myImageMetaDataXml, "<Image/>");
  EXPECT_EQ(window->myDialogObject, dialog.get());
  EXPECT_FALSE(window->mySrsReadOnly);
  EXPECT_EQ(window->myImageServiceObject, service);
}

TEST_F(ModalWindows, OfThePropertiesGetTheFlagOfTheConfigurationAlsoAfterAnInitThatSaysNothing) {
  const std::string readOnly =
      "<Vorlane><Client><Init><PropertiesSRSReadonly>True</PropertiesSRSReadonly></Init></Client></Vorlane>";
  ASSERT_EQ(older()->Init(readOnly, nullptr, service), boolean16True);
  ASSERT_EQ(older()->Init("", nullptr, nullptr), boolean16True);
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
  EXPECT_TRUE(dialog->window()->mySrsReadOnly);
  EXPECT_EQ(dialog->window()->myImageServiceObject, service);
}

TEST_F(ModalWindows, OfThePropertiesAreGoneAfterAClose) {
  initialize();
  close(viewPoint);
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_THAT(status(), HasSubstr("Object not set"));
  initialize();
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
}

TEST_F(ModalWindows, OfThePropertiesOutliveACloseWhileTheyAreOpen) {
  initialize();
  toolkit->scriptModal([this](Form&) { older()->Close(noPage); });
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
  EXPECT_FALSE(dialog->window());
}

TEST_F(ModalWindows, OfTheViewpointNeedNoInit) {
  bool shown = false;
  toolkit->scriptModal([&shown](Form& form) { shown = form.formName() == "ViewPointDialogForm"; });
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16True);
  EXPECT_TRUE(shown);
  EXPECT_EQ(status(), "");
}

TEST_F(ModalWindows, OfTheViewpointGetTheServiceAndTheImageMetadata) {
  initialize();
  EXPECT_EQ(newer()->ShowViewPointModalDialog(), boolean16True);
  EXPECT_EQ(dialog->viewPointDialog().myImageServiceObject, service);
  EXPECT_EQ(dialog->viewPointDialog().myImageMetaDataXml, "<Image/>");
}

TEST_F(ModalWindows, OfTheViewpointOutliveAnInitWhileTheyAreOpen) {
  initialize();
  toolkit->scriptModal([this](Form&) { initialize(); });
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16True);
}

TEST_F(ModalWindows, EndWithAFailureOfTheToolkit) {
  initialize();
  toolkit->failAt = "runModal";
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), "the toolkit fails at runModal");
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16False);
}

}  // namespace
}  // namespace vlclientui::test
