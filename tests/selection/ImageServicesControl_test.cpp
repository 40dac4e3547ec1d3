#include "selection/ImageServicesControl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ListDocuments.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const char* const kExtent =
    "<AddImageServiceDialog><CustomEnvelope><XMin>0</XMin><YMin>0</YMin><XMax>10</XMax><YMax>10</YMax>"
    "</CustomEnvelope></AddImageServiceDialog>";

class ImageServicesControlTest : public SelectionTest {
 protected:
  ImageServicesControlTest() { server->answer = serverInfoOf({"A/B", "D"}); }

  [[nodiscard]] static Texts requestCalls(int engine) {
    const std::string number = std::to_string(engine) + ".";
    return {number + "AttributeDefinition C:\\Program\\VLClient.XADef", number + "GetTemplateXml",
            number + "released"};
  }

  [[nodiscard]] Texts placingCalls(int engine, ImageServicesControl& control) const {
    const std::string number = std::to_string(engine) + ".";
    return {number + "ParentWindow " + std::to_string(toolkit->windowOf(control)),
            number + "DataXml <root><xfd_header/></root>",
            number + "Height 226",
            number + "Width 480",
            number + "Top 26",
            number + "SetOption ShowVScrollBar False",
            number + "Show"};
  }

  [[nodiscard]] static std::string fieldsCall(int engine) {
    return std::to_string(engine) + ".SetOption List_Fields " + listFields;
  }
  [[nodiscard]] static std::string valuesCall(int engine, const std::string& values) {
    return std::to_string(engine) + ".SetOption List_Values " + values;
  }

  static Texts joined(std::initializer_list<Texts> lists) {
    Texts all;
    for (const Texts& list : lists) all.insert(all.end(), list.begin(), list.end());
    return all;
  }

  const std::string rootRows =
      "<list_values><A icon=\"fldr\" displayName=\"A\"/><D icon=\"VLSERVICE\" displayName=\"D\" "
      "Geographic_Region=\"\" Pixel_Unit=\"\" Pixel_Source=\"\" Color_Space=\"\" Pixel_Type=\"\" "
      "Bit_Depth=\"\" Bands=\"\"/></list_values>";
};

// At the start.

TEST_F(ImageServicesControlTest, ServerBoxStartsWithTheLocalServerAlone) {
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1"));
  EXPECT_EQ(control.uiTxtBoxServerName.text(), "127.0.0.1");
  EXPECT_THAT(server->requests, IsEmpty());
}

TEST_F(ImageServicesControlTest, ServerBoxReadsTheServersOfTheSettingsFileFromIndexOneOn) {
  system->writeFile(kSettingsFile, settingsWith({"beta", "alpha", "beta"}));
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("beta", "alpha", "beta", "127.0.0.1"));
  EXPECT_EQ(control.uiTxtBoxServerName.text(), "beta");
}

TEST_F(ImageServicesControlTest, LocalServerIsNotAddedWhenTheFileHasIt) {
  system->writeFile(kSettingsFile, settingsWith({"127.0.0.1", "alpha"}));
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1", "alpha"));
}

TEST_F(ImageServicesControlTest, ASettingsFileThatCannotBeReadLeavesTheLocalServer) {
  for (const char* text : {"", "no xml", "<Vorlane><Client/></Vorlane>", "<Vorlane>"}) {
    system->writeFile(kSettingsFile, text);
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
  system->writeFile(kSettingsFile, settingsWith({"alpha"}));
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
  show([&](auto&, ImageServicesControl& control) { EXPECT_TRUE(control.Check1.visible()); }, kExtent);
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

// Refreshing.

TEST_F(ImageServicesControlTest, EnterInTheServerBoxRefreshesAndTypingAloneDoesNot) {
  show([&](auto&, ImageServicesControl& control) {
    control.uiTxtBoxServerName.userTypes("alpha");
    control.uiTxtBoxServerName.userPresses(keyCode::escape);
    control.uiTxtBoxServerName.userPresses(65);
    EXPECT_EQ(server->requests.size(), 1U);
    control.uiTxtBoxServerName.userPresses(keyCode::enter);
    EXPECT_EQ(server->requests.size(), 2U);
    EXPECT_THAT(server->requests.back(), testing::HasSubstr("<Server>alpha</Server>"));
    EXPECT_EQ(control.SelectedServer, "alpha");
  });
}

TEST_F(ImageServicesControlTest, ARefreshDetachesTheFormerEngineAndMakesANewOne) {
  show([&](auto&, ImageServicesControl& control) {
    mark();
    enterServer(control, "alpha");
    EXPECT_EQ(newCalls(), joined({requestCalls(3),
                                  {"2.ParentWindow 0", "2.released", valuesCall(4, rootRows), fieldsCall(4)},
                                  placingCalls(4, control)}));
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
  });
}

TEST_F(ImageServicesControlTest, ARefreshOfASilentServerEmptiesTheListAndSetsTheArrow) {
  show([&](auto&, ImageServicesControl& control) {
    server->answer.clear();
    mark();
    enterServer(control, "ghost");
    EXPECT_EQ(newCalls(),
              joined({requestCalls(3),
                      {"2.ParentWindow 0", "2.released", fieldsCall(4), valuesCall(4, serverNotFoundValues)},
                      placingCalls(4, control)}));
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Arrow));
    EXPECT_THAT(control.ServiceNames, IsEmpty());
    EXPECT_EQ(control.myServerInfo, "");
    EXPECT_EQ(control.SelectedServer, "ghost");
    EXPECT_FALSE(control.SelectButton.enabled());
    EXPECT_FALSE(control.Info.enabled());
  });
}

TEST_F(ImageServicesControlTest, ASilentServerStaysInTheBoxAsTextAndAddsNoEntry) {
  show([&](auto&, ImageServicesControl& control) {
    server->answer.clear();
    enterServer(control, "ghost");
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "ghost");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1"));
  });
}

TEST_F(ImageServicesControlTest, ARefreshWithAnAnswerWithoutProvidersChangesNothing) {
  show([&](auto&, ImageServicesControl& control) {
    const std::string before = control.myServerInfo;
    for (const char* answer : {"<Vorlane/>", "<Other/>", "text", "<Vorlane><Server></Vorlane>"}) {
      server->answer = answer;
      mark();
      enterServer(control, "alpha");
      EXPECT_THAT(control.ServiceNames, ElementsAre("A/B", "D")) << answer;
      EXPECT_EQ(control.myServerInfo, before) << answer;
      EXPECT_EQ(control.SelectedServer, "127.0.0.1") << answer;
      EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1")) << answer;
      EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default)) << answer;
      EXPECT_EQ(newCalls().size(), 3U) << "the request alone: " << answer;
    }
  });
}

TEST_F(ImageServicesControlTest, ARefreshEmptiesTheReferenceInHand) {
  show([&](auto&, ImageServicesControl& control) {
    click("D");
    ASSERT_EQ(control.SelectedFile, "ImageService://127.0.0.1/D");
    enterServer(control, "alpha");
    EXPECT_EQ(control.SelectedFile, "");
    control.SelectButton.userClicks();
    EXPECT_EQ(control.ListBox.count(), 0U);
  });
}

TEST_F(ImageServicesControlTest, ARefreshGoesBackToTheRootOfTheFolders) {
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("A");
    EXPECT_THAT(shownNames(), ElementsAre("B"));
    enterServer(control, "alpha");
    EXPECT_THAT(shownNames(), ElementsAre("A", "D"));
  });
}

TEST_F(ImageServicesControlTest, ASilentOrEmptyAnswerLeavesThePositionInTheFolders) {
  for (const std::string& answer : {std::string(), serverInfoOf({})}) {
    server->answer = serverInfoOf({"A/B", "D"});
    show([&](auto&, ImageServicesControl& control) {
      doubleClick("A");
      server->answer = answer;
      enterServer(control, "ghost");
      backspace();
      EXPECT_THAT(shownNames(), ElementsAre("A", "D")) << "the way up from the folder is still there";
    });
  }
}

TEST_F(ImageServicesControlTest, AnAnsweringServerMovesToTheTopOfTheBox) {
  system->writeFile(kSettingsFile, settingsWith({"a", "b"}));
  show([&](auto&, ImageServicesControl& control) {
    enterServer(control, "127.0.0.1");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1", "a", "b"));
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "127.0.0.1");
    EXPECT_EQ(control.uiTxtBoxServerName.index(), 0U);
  });
}

TEST_F(ImageServicesControlTest, ANewAnsweringServerIsAddedAtTheTopCaseIncluded) {
  system->writeFile(kSettingsFile, settingsWith({"server1"}));
  show([&](auto&, ImageServicesControl& control) {
    enterServer(control, "SERVER1");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("SERVER1", "server1", "127.0.0.1"));
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "SERVER1");
  });
}

TEST_F(ImageServicesControlTest, OnlyTheFirstOfADoubledEntryMoves) {
  system->writeFile(kSettingsFile, settingsWith({"a", "b", "b"}));
  show([&](auto&, ImageServicesControl& control) {
    enterServer(control, "b");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("b", "a", "b", "127.0.0.1"));
  });
}

TEST_F(ImageServicesControlTest, AnEmptyServerBoxKeepsTheServerAndAddsNoEntry) {
  show([&](auto&, ImageServicesControl& control) {
    enterServer(control, "");
    EXPECT_EQ(server->requests.size(), 2U);
    EXPECT_EQ(control.SelectedServer, "127.0.0.1");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1"));
  });
}

TEST_F(ImageServicesControlTest, PickingAnEntryRefreshesOnceUnderItsOwnHourglass) {
  system->writeFile(kSettingsFile, settingsWith({"a", "b"}));
  show([&](auto&, ImageServicesControl& control) {
    mark();
    control.uiTxtBoxServerName.userSelects(1);
    EXPECT_EQ(server->requests.size(), 2U) << "selecting the moved entry raises nothing";
    EXPECT_EQ(control.SelectedServer, "b");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("b", "a", "127.0.0.1"));
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "b");
    EXPECT_THAT(newPointers(),
                ElementsAre(Pointer::Hourglass, Pointer::Hourglass, Pointer::Default, Pointer::Default));
  });
}

TEST_F(ImageServicesControlTest, PickingASilentEntryEndsWithTheDefaultPointer) {
  show([&](auto&, ImageServicesControl& control) {
    server->answer.clear();
    mark();
    control.uiTxtBoxServerName.userSelects(0);
    EXPECT_THAT(newPointers(),
                ElementsAre(Pointer::Hourglass, Pointer::Hourglass, Pointer::Arrow, Pointer::Default));
  });
}

// The filter.

TEST_F(ImageServicesControlTest, TickingTheFilterReloadsWithItAndClearingItReloadsWithout) {
  server->answer =
      serverInfo({{"in", infoWithEnvelope(1, 2, 1, 2)}, {"out", infoWithEnvelope(20, 30, 1, 2)}});
  show(
      [&](auto&, ImageServicesControl& control) {
        EXPECT_THAT(shownNames(), ElementsAre("in", "out"));
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("in"));
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("in", "out"));
        EXPECT_EQ(server->requests.size(), 3U);
      },
      kExtent);
}

TEST_F(ImageServicesControlTest, AServiceTouchingTheViewAlongOneEdgeStays) {
  server->answer = serverInfo({{"edge", infoWithEnvelope(10, 30, -5, 20)}});
  show(
      [&](auto&, ImageServicesControl& control) {
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("edge"));
      },
      kExtent);
}

TEST_F(ImageServicesControlTest, AFilterThatRemovesEveryServiceGivesTheEmptyRow) {
  server->answer = serverInfo({{"out", infoWithEnvelope(20, 30, 1, 2)}});
  show(
      [&](auto&, ImageServicesControl& control) {
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("(empty)"));
        EXPECT_TRUE(control.SelectButton.enabled());
      },
      kExtent);
}

TEST_F(ImageServicesControlTest, WithoutAnExtentTheBoxNeverFilters) {
  server->answer = serverInfo({{"out", infoWithEnvelope(20, 30, 1, 2)}});
  show([&](auto&, ImageServicesControl& control) {
    control.Check1.userClicks();
    EXPECT_FALSE(control.Check1.checked()) << "a hidden box takes no click";
    control.Check1.setChecked(true);
    EXPECT_THAT(shownNames(), ElementsAre("out"));
  });
}

TEST_F(ImageServicesControlTest, AnEnvelopeThatIsNoNumberEndsTheRefreshWithNothingChanged) {
  server->answer = serverInfo({{"a",
                                "<ImageServiceInfo><Name>n</Name><GeographicEnvelope><XMin>1,5</XMin>"
                                "</GeographicEnvelope></ImageServiceInfo>"}});
  show(
      [&](auto&, ImageServicesControl& control) {
        mark();
        control.Check1.userClicks();
        EXPECT_EQ(newCalls().size(), 3U) << "the request alone";
        EXPECT_THAT(control.ServiceNames, ElementsAre("a"));
        EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
        EXPECT_THAT(toolkit->failures(), IsEmpty());
      },
      kExtent);
}

TEST_F(ImageServicesControlTest, ServicesEnvelopesHaveAPointAlsoUnderACommaLocale) {
  system->locale = {",", ".", "\u20AC"};
  server->answer =
      serverInfo({{"in", infoWithEnvelope(9.5, 12, 1, 2)}, {"out", infoWithEnvelope(10.5, 12, 1, 2)}});
  show(
      [&](auto&, ImageServicesControl& control) {
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("in"));
      },
      kExtent);
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
  system->writeFile(kSettingsFile, settingsWith({"a", "b", "a", "A"}));
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
