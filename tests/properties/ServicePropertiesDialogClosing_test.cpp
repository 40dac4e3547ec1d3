#include <gmock/gmock.h>

#include "EmbeddedPages.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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

/// Hosts that break the protocol.
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

}  // namespace
}  // namespace vlclientui::test
