#include "selection/ImageServicesControl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/Silence.h"
#include "selection/ImageServicesControlTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// At the start.

TEST_F(ImageServicesControlTest, ServerBoxStartsWithTheLocalServerAlone) {
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1"));
  EXPECT_EQ(control.uiTxtBoxServerName.text(), "127.0.0.1");
  EXPECT_THAT(server->requests, IsEmpty());
}

TEST_F(ImageServicesControlTest, ServerBoxReadsTheServersOfTheSettingsFileFromIndexOneOn) {
  system->writeFile(settingsFile, settingsWith({"beta", "alpha", "beta"}));
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("beta", "alpha", "beta", "127.0.0.1"));
  EXPECT_EQ(control.uiTxtBoxServerName.text(), "beta");
}

TEST_F(ImageServicesControlTest, LocalServerIsNotAddedWhenTheFileHasIt) {
  system->writeFile(settingsFile, settingsWith({"127.0.0.1", "alpha"}));
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1", "alpha"));
}

TEST_F(ImageServicesControlTest, ASettingsFileThatCannotBeReadLeavesTheLocalServer) {
  for (const char* text : {"", "no xml", "<Vorlane><Client/></Vorlane>", "<Vorlane>"}) {
    system->writeFile(settingsFile, text);
    const ImageServicesControl control(nullptr);
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1")) << text;
  }
}

TEST_F(ImageServicesControlTest, ASystemThatFailsLeavesAnEmptyServerBox) {
  system->everythingFails = true;
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), IsEmpty());
  EXPECT_EQ(control.uiTxtBoxServerName.text(), "");
}

TEST_F(ImageServicesControlTest, ControlsHaveTheirCaptionsAndStates) {
  ImageServicesControl control(nullptr);
  EXPECT_EQ(control.uiLblServerName.caption(), "Server &Name:");
  EXPECT_EQ(control.uiBtnBrowseServer.caption(), "...");
  EXPECT_EQ(control.Check1.caption(), "Only show services available in the current view's extent");
  EXPECT_FALSE(control.Check1.checked());
  EXPECT_EQ(control.Label3.caption(), "Title:");
  EXPECT_EQ(control.Label1.caption(), "Selected Services:");
  EXPECT_EQ(control.SelectButton.caption(), "&Select");
  EXPECT_EQ(control.Info.caption(), "&Properties...");
  EXPECT_FALSE(control.Info.enabled());
  EXPECT_EQ(control.Browse.caption(), "&Browse...");
  EXPECT_EQ(control.Remove.caption(), "&Remove");
  EXPECT_FALSE(control.Remove.enabled());
  EXPECT_EQ(control.geometry().width, 8700);
  EXPECT_EQ(control.geometry().height, 5715);
  EXPECT_EQ(control.queryInterface("_ImageServicesControl"), static_cast<Object*>(&control));
}

// The first load.

TEST_F(ImageServicesControlTest, FirstLoadAsksForTheServerOfTheBoxAtLevelOneWithTheWholeTemplate) {
  system->writeFile(settingsFile, settingsWith({"alpha"}));
  show([&](auto&, auto&) {
    EXPECT_THAT(server->requests,
                ElementsAre("<Vorlane><Client><SelectedImageServices><Name>old</Name></SelectedImageServices>"
                            "<ShowImageServicesDialog><MruServers><Placeholder/></MruServers>"
                            "</ShowImageServicesDialog><ServerInfo><Request><Server>alpha</Server>"
                            "<MetadataLevel>1</MetadataLevel></Request></ServerInfo></Client></Vorlane>"));
  });
}

TEST_F(ImageServicesControlTest, FirstLoadOfAListWithNamesGivesValuesThenFieldsThenThePlace) {
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_EQ(plexa->record->calls,
              joined({requestCalls(1), {valuesCall(2, rootRows), fieldsCall(2)}, placingCalls(2, control)}));
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
    EXPECT_THAT(control.ServiceNames, ElementsAre("A/B", "D"));
    EXPECT_EQ(control.myServerInfo, server->answer);
    EXPECT_EQ(control.SelectedServer, "127.0.0.1");
    EXPECT_TRUE(control.SelectButton.enabled());
    EXPECT_TRUE(control.Info.enabled());
  });
}

TEST_F(ImageServicesControlTest, HourglassCoversTheCallToTheServer) {
  server->duringCall = [&] { EXPECT_EQ(toolkit->pointers().back(), Pointer::Hourglass); };
  show([&](auto&, ImageServicesControl& control) { enterServer(control, "alpha"); });
  EXPECT_EQ(server->requests.size(), 2U);
}

TEST_F(ImageServicesControlTest, FirstLoadOfASilentServerGivesFieldsThenTheMessageRow) {
  server->answer.clear();
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_EQ(plexa->record->calls, joined({requestCalls(1),
                                            {fieldsCall(2), valuesCall(2, serverNotFoundValues)},
                                            placingCalls(2, control)}));
    EXPECT_FALSE(control.SelectButton.enabled());
    EXPECT_FALSE(control.Info.enabled());
    EXPECT_EQ(control.SelectedServer, "");
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
  });
}

TEST_F(ImageServicesControlTest, FirstLoadWithoutServicesGivesFieldsThenTheEmptyRowAndDisablesNothing) {
  server->answer = serverInfoOf({});
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_EQ(plexa->record->calls, joined({requestCalls(1),
                                            {fieldsCall(2), valuesCall(2, emptyServerValues)},
                                            placingCalls(2, control)}));
    EXPECT_TRUE(control.SelectButton.enabled());
    EXPECT_TRUE(control.Info.enabled());
    EXPECT_EQ(control.SelectedServer, "127.0.0.1");
  });
}

TEST_F(ImageServicesControlTest, FirstLoadOfAnAnswerWithoutProvidersDoesNotTouchTheList) {
  for (const char* answer : {"<Vorlane/>", "<html><body>busy</body></html>", "not xml", "<Vorlane>", " "}) {
    server->answer = answer;
    show([&](auto&, ImageServicesControl& control) {
      mark();
      EXPECT_EQ(plexa->lastEngine(), nullptr) << answer;
      EXPECT_FALSE(control.Info.enabled()) << answer;
      EXPECT_EQ(control.myServerInfo, "") << answer;
      EXPECT_EQ(control.SelectedServer, "") << answer;
      EXPECT_EQ(toolkit->pointers().back(), Pointer::Default) << answer;
    });
  }
}

TEST_F(ImageServicesControlTest, WithoutAClientAMessageTellsSoAndTheListStays) {
  dialog = std::make_shared<ImageServicesDialog>();
  ASSERT_EQ(older(dialog)->Init("", nullptr), boolean16True);
  const MessageBox message{"Could not show the services. Client object is empty", "", MessageIcon::Critical,
                           MessageButtons::Ok};
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_THAT(toolkit->messages(), ElementsAre(message));
    EXPECT_EQ(plexa->lastEngine(), nullptr);
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
    enterServer(control, "alpha");
    EXPECT_THAT(toolkit->messages(), ElementsAre(message, message));
    EXPECT_EQ(plexa->lastEngine(), nullptr);
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  });
}

TEST_F(ImageServicesControlTest, ATemplateThatIsNoXmlGivesAMessageAndEndsTheLoad) {
  plexa->record->templateXml = "";
  const MessageBox message{"Invalid xml retrieved.", "Invalid Xml", MessageIcon::Critical,
                           MessageButtons::Ok};
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_THAT(toolkit->messages(), ElementsAre(message));
    EXPECT_THAT(server->requests, IsEmpty());
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
    enterServer(control, "alpha");
    EXPECT_THAT(toolkit->messages(), ElementsAre(message, message));
    EXPECT_THAT(server->requests, IsEmpty());
  });
}

TEST_F(ImageServicesControlTest, ATemplateWithoutTheRequestEndsTheLoadWithoutAWord) {
  plexa->record->templateXml = "<Vorlane/>";
  show([&](auto&, auto&) {
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    EXPECT_THAT(server->requests, IsEmpty());
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  });
}

TEST_F(ImageServicesControlTest, WithBothClientsTheOlderOneIsAsked) {
  const auto newerServer = std::make_shared<FakeServer>();
  ImageServicesControl control(nullptr);
  control.myClient = std::make_shared<FakeServerClient>(server);
  control.myOVLClient = std::make_shared<FakeOVLServerClient>(newerServer);
  control.ShowThePlexa();
  EXPECT_EQ(server->requests.size(), 1U);
  EXPECT_EQ(newerServer->requests.size(), 0U);
}

TEST_F(ImageServicesControlTest, TheNewerClientIsAskedWhenThereIsNoOlderOne) {
  ImageServicesControl control(nullptr);
  control.myOVLClient = std::make_shared<FakeOVLServerClient>(server);
  control.ShowThePlexa();
  EXPECT_EQ(server->requests.size(), 1U);
  EXPECT_THAT(shownNames(), ElementsAre("A", "D"));
}

TEST_F(ImageServicesControlTest, ANewerClientThatIsNoneEndsTheLoadWithThePointerRestored) {
  ImageServicesControl control(nullptr);
  control.myOVLClient = std::make_shared<FakeStranger>();
  control.ShowThePlexa();
  EXPECT_EQ(plexa->lastEngine(), nullptr);
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
}

TEST_F(ImageServicesControlTest, FilterBoxShowsOnlyWhenAnExtentWasGiven) {
  show([&](auto&, ImageServicesControl& control) { EXPECT_FALSE(control.Check1.visible()); });
  show([&](auto&, ImageServicesControl& control) { EXPECT_TRUE(control.Check1.visible()); }, extent);
  show([&](auto&, ImageServicesControl& control) { EXPECT_FALSE(control.Check1.visible()); });
}

TEST_F(ImageServicesControlTest, FirstLoadIgnoresTheFilter) {
  server->answer =
      serverInfo({{"in", infoWithEnvelope(1, 2, 1, 2)}, {"out", infoWithEnvelope(20, 30, 1, 2)}});
  ImageServicesControl control(nullptr);
  control.myClient = std::make_shared<FakeServerClient>(server);
  control.FilterCalled = true;
  control.myXMax = 10;
  control.myYMax = 10;
  control.Check1.setChecked(true);
  control.ShowThePlexa();
  EXPECT_THAT(control.ServiceNames, ElementsAre("in", "out"));
}

// Rebuilding the surface.

TEST_F(ImageServicesControlTest, AnElementNameThatCannotBeMadeEndsTheRebuildBeforeShow) {
  server->answer = serverInfoOf({"fine", "R&amp;D"});
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_EQ(plexa->record->calls, requestCalls(1)) << "the new engine was told nothing";
    EXPECT_NE(plexa->lastEngine(), nullptr);
    EXPECT_TRUE(control.Info.enabled());
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  });
}

TEST_F(ImageServicesControlTest, AfterARebuildThatEndedEarlyTheRefreshGoesOnWithTheServerBox) {
  show([&](auto&, ImageServicesControl& control) {
    server->answer = serverInfoOf({"R&amp;D"});
    mark();
    enterServer(control, "alpha");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("alpha", "127.0.0.1"));
    EXPECT_THAT(control.ServiceNames, ElementsAre("R&D"));
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
  });
}

TEST_F(ImageServicesControlTest, OnLoadStartsFromTheServiceNamesAlone) {
  ImageServicesControl control(nullptr);
  control.AddElementToStringArray("left over");
  control.ServiceNames = {"A"};
  control.OnLoad(true);
  EXPECT_THAT(shownNames(), ElementsAre("A"));
  EXPECT_TRUE(ImageServicesControl::isArrayEmpty({}));
  EXPECT_FALSE(ImageServicesControl::isArrayEmpty({"A"}));
}

TEST_F(ImageServicesControlTest, AShowThatReportsFalseChangesNothing) {
  plexa->record->showAnswer = false;
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_TRUE(control.Info.enabled());
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(ImageServicesControlTest, NamesInAnyScriptAndWithBackslashesMakeFoldersAndRows) {
  server->answer = serverInfoOf({"\u65E5\u672C\\\u5730\u56F3", "\u00C5lesund"});
  show([&](auto&, auto&) {
    EXPECT_THAT(shownNames(), ElementsAre("\u65E5\u672C", "\u00C5lesund"));
    doubleClick("\u65E5\u672C");
    EXPECT_THAT(shownNames(), ElementsAre("\u5730\u56F3"));
  });
}

// Browsing for a server.

TEST_F(ImageServicesControlTest, BrowsingForAServerStartsAtTheNetworkWithItsTitleAndFlags) {
  show([&](auto&, ImageServicesControl& control) {
    control.uiBtnBrowseServer.userClicks();
    EXPECT_THAT(toolkit->folderDialogs(),
                ElementsAre(FolderDialog{18, toolkit->windowOf(control),
                                         "Select a network computer or share.", 0x241}));
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "127.0.0.1") << "a cancel changes nothing";
  });
}

TEST_F(ImageServicesControlTest, AChosenShareGoesToTheBoxWithoutItsDoubleBackslashesAndNothingIsRefreshed) {
  show([&](auto&, ImageServicesControl& control) {
    using namespace std::string_literals;
    toolkit->chooseFolder({"\\\\maps\\share\0rest"s, "share"});
    control.uiBtnBrowseServer.userClicks();
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "maps\\share");
    EXPECT_EQ(server->requests.size(), 1U);
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1"));
  });
}

TEST_F(ImageServicesControlTest, AChosenComputerWithoutPathGivesItsDisplayName) {
  show([&](auto&, ImageServicesControl& control) {
    toolkit->chooseFolder({std::nullopt, "maps"});
    control.uiBtnBrowseServer.userClicks();
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "maps");
  });
}

// Hiding and leaving.

TEST_F(ImageServicesControlTest, HidingFillsTheListsOnce) {
  system->writeFile(settingsFile, settingsWith({"a", "b", "a", "A"}));
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("D");
    control.setVisible(false);
    control.setVisible(false);
    EXPECT_THAT(control.myFile, ElementsAre("ImageService://a/D", ""));
    EXPECT_THAT(control.MRUServers, ElementsAre("a", "b", "A", "127.0.0.1"));
  });
}

TEST_F(ImageServicesControlTest, HidingWithAnEmptyListStillLeavesOneEmptyString) {
  ImageServicesControl control(nullptr);
  control.setVisible(false);
  EXPECT_THAT(control.myFile, ElementsAre(""));
}

TEST_F(ImageServicesControlTest, PlexaResetDetachesTheEngineOnlyForTrue) {
  show([&](auto&, ImageServicesControl& control) {
    mark();
    control.plexaReset(false);
    EXPECT_THAT(newCalls(), IsEmpty());
    control.plexaReset(true);
    EXPECT_THAT(newCalls(), ElementsAre("2.ParentWindow 0"));
  });
}

TEST_F(ImageServicesControlTest, UpdateListViewRaisesNothingWithoutAListAndWithOneThatFails) {
  std::vector<SilentEnd> ends;
  const SilenceListener listener([&](const SilentEnd& end) {
    if (end.routine == "ImageServicesControl::updateListView") ends.push_back(end);
  });
  ImageServicesControl unshown(nullptr);
  EXPECT_NO_THROW(unshown.updateListView());
  EXPECT_EQ(ends.size(), 1U);
  show([&](auto&, ImageServicesControl& control) {
    plexa->record->failAt = "SetOption List_Values";
    EXPECT_NO_THROW(control.updateListView());
    plexa->record->failAt.clear();
    mark();
    control.updateListView();
    EXPECT_EQ(newCalls().size(), 1U);
  });
  EXPECT_EQ(ends.size(), 2U);
}

TEST_F(ImageServicesControlTest, PlexaResetRaisesNothingWithoutAnEngineAndWithOneThatFails) {
  std::vector<SilentEnd> ends;
  const SilenceListener listener([&](const SilentEnd& end) {
    if (end.routine == "ImageServicesControl::plexaReset") ends.push_back(end);
  });
  ImageServicesControl unshown(nullptr);
  EXPECT_NO_THROW(unshown.plexaReset(boolean16True));
  EXPECT_TRUE(ends.empty());
  show([&](auto&, ImageServicesControl& control) {
    plexa->record->failAt = "ParentWindow";
    EXPECT_NO_THROW(control.plexaReset(boolean16True));
    plexa->record->failAt.clear();
    EXPECT_EQ(ends.size(), 1U);
  });
}

TEST_F(ImageServicesControlTest, NoShownEngineIsReleasedBeforeItWasDetached) {
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control);
    enterServer(control, "alpha");
    click("D");
    control.Info.userClicks();
    control.Info.userClicks();
  });
  const Texts& calls = plexa->record->calls;
  int shownEngines = 0;
  for (int engine = 1; engine < 20; ++engine) {
    const std::string number = std::to_string(engine) + ".";
    const auto at = [&](const std::string& call) { return std::ranges::find(calls, number + call); };
    if (at("Show") == calls.end()) continue;
    ++shownEngines;
    EXPECT_LT(at("ParentWindow 0"), at("released")) << "engine " << engine;
    EXPECT_NE(at("released"), calls.end()) << "engine " << engine;
  }
  EXPECT_EQ(shownEngines, 4);
}

TEST_F(ImageServicesControlTest, ControlAndF1OpenTheHelpPageOfTheWindow) {
  show([&](auto&, ImageServicesControl& control) {
    control.uiTxtBoxServerName.userFocuses();
    control.uiTxtBoxServerName.userPresses(keyCode::f1);
    EXPECT_THAT(system->launched, IsEmpty());
    control.uiTxtBoxServerName.userPresses(keyCode::f1, keyModifier::control);
    EXPECT_THAT(system->launched,
                ElementsAre("hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Adding_an_Image_Service.htm"));
  });
}

}  // namespace
}  // namespace vlclientui::test
