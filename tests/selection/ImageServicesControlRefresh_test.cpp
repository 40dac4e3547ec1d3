// What a person does in the server box and at the filter, and what it does to list, box and pointer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ImageServicesControlTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Refreshing.

TEST_F(ImageServicesControlTest, EnterInTheServerBoxRefreshesAndTypingAloneDoesNot) {
  show([&](auto&, ImageServicesControl& control) {
    control.uiTxtBoxServerName.userTypes("alpha");
    control.uiTxtBoxServerName.userPresses(keyCode::backspace);
    control.uiTxtBoxServerName.userPresses(65);
    EXPECT_EQ(server->requests.size(), 1U);
    control.uiTxtBoxServerName.userPresses(keyCode::enter);
    EXPECT_EQ(server->requests.size(), 2U);
    EXPECT_THAT(server->requests.back(), testing::HasSubstr("<Server>alpha</Server>"));
    EXPECT_EQ(control.SelectedServer, "alpha");
  });
}

TEST_F(ImageServicesControlTest, APasswordInTheServerBoxGoesToTheClientLibraryAndNowhereElse) {
  show([&](auto& form, ImageServicesControl& control) {
    enterServer(control, "http://secret@alpha/wcs");
    EXPECT_EQ(clientLibrary->typedServers.back(), "http://secret@alpha/wcs");
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "http://alpha/wcs");
    EXPECT_THAT(server->requests.back(), testing::HasSubstr("<Server>http://alpha/wcs</Server>"));
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("http://alpha/wcs", "127.0.0.1"));
    doubleClick("D");
    EXPECT_EQ(control.SelectedFile, "ImageService://http://alpha/wcs/D");
    form.controls().uibtnok.userClicks();
  });
  EXPECT_THAT(system->readFile(settingsFile),
              testing::HasSubstr("<ServerName>http://alpha/wcs</ServerName>"));
  EXPECT_THAT(system->readFile(settingsFile), testing::Not(testing::HasSubstr("secret")));
}

TEST_F(ImageServicesControlTest, APasswordIsTakenAlsoWhereTheServerIsSilent) {
  show([&](auto&, ImageServicesControl& control) {
    server->answer.clear();
    enterServer(control, "http://secret@ghost");
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "http://ghost");
    EXPECT_EQ(control.SelectedServer, "http://ghost");
  });
}

TEST_F(ImageServicesControlTest, APasswordInTheSettingsFileIsNotShown) {
  system->writeFile(settingsFile, settingsWith({"http://secret@alpha"}));
  const ImageServicesControl control(nullptr);
  EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("http://alpha", "127.0.0.1"));
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
  system->writeFile(settingsFile, settingsWith({"a", "b"}));
  show([&](auto&, ImageServicesControl& control) {
    enterServer(control, "127.0.0.1");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1", "a", "b"));
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "127.0.0.1");
    EXPECT_EQ(control.uiTxtBoxServerName.index(), 0U);
  });
}

TEST_F(ImageServicesControlTest, ANewAnsweringServerIsAddedAtTheTopCaseIncluded) {
  system->writeFile(settingsFile, settingsWith({"server1"}));
  show([&](auto&, ImageServicesControl& control) {
    enterServer(control, "SERVER1");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("SERVER1", "server1", "127.0.0.1"));
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "SERVER1");
  });
}

TEST_F(ImageServicesControlTest, OnlyTheFirstOfADoubledEntryMoves) {
  system->writeFile(settingsFile, settingsWith({"a", "b", "b"}));
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
  system->writeFile(settingsFile, settingsWith({"a", "b"}));
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
      extent);
}

TEST_F(ImageServicesControlTest, AServiceTouchingTheViewAlongOneEdgeStays) {
  server->answer = serverInfo({{"edge", infoWithEnvelope(10, 30, -5, 20)}});
  show(
      [&](auto&, ImageServicesControl& control) {
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("edge"));
      },
      extent);
}

TEST_F(ImageServicesControlTest, AFilterThatRemovesEveryServiceGivesTheEmptyRow) {
  server->answer = serverInfo({{"out", infoWithEnvelope(20, 30, 1, 2)}});
  show(
      [&](auto&, ImageServicesControl& control) {
        control.Check1.userClicks();
        EXPECT_THAT(shownNames(), ElementsAre("(empty)"));
        EXPECT_TRUE(control.SelectButton.enabled());
      },
      extent);
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
      extent);
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
      extent);
}

}  // namespace
}  // namespace vlclientui::test
