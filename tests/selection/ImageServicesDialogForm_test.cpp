#include "selection/ImageServicesDialogForm.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/FirstServers.h"
#include "selection/SelectionTest.h"
#include "selection/SettingsDocument.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const MessageBox invalidTemplate{"Invalid xml retrieved.", "Invalid Xml", MessageIcon::Critical,
                                 MessageButtons::Ok};

class ImageServicesDialogFormTest : public SelectionTest {
 protected:
  ImageServicesDialogFormTest() { server->answer = serverInfoOf({"A", "B", "C"}); }

  [[nodiscard]] std::string result() { return older(dialog)->GetSelectedServices(); }

  static void pressOk(ImageServicesDialogForm& window) { window.controls().uibtnok.userClicks(); }

  [[nodiscard]] bool settingsExist() const { return fs::exists(system->nativeFile(settingsFile)); }
};

TEST_F(ImageServicesDialogFormTest, HasItsCaptionsAndOkIsDisabledAtFirst) {
  show([&](ImageServicesDialogForm& window, auto&) {
    EXPECT_EQ(window.caption(), "Add Vor Lane Connection");
    EXPECT_EQ(window.controls().uibtnok.caption(), "&OK");
    EXPECT_EQ(window.controls().uibtncancel.caption(), "&Cancel");
    EXPECT_FALSE(window.controls().uibtnok.enabled());
    EXPECT_FALSE(window.OkPressed);
  });
}

TEST_F(ImageServicesDialogFormTest, OkIsEnabledOnlyWhileTheSelectedListHoldsAnEntry) {
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("A");
    EXPECT_TRUE(window.controls().uibtnok.enabled());
    control.ListBox.userSelects({0});
    control.Remove.userClicks();
    EXPECT_FALSE(window.controls().uibtnok.enabled());
  });
}

TEST_F(ImageServicesDialogFormTest, OkWithThreeEntriesGivesThreeNamesInListOrder) {
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("B");
    doubleClick("A");
    toolkit->chooseFile("C:\\x.VLDef");
    control.Browse.userClicks();
    pressOk(window);
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_EQ(
      result(),
      "<SelectedImageServices><Name>ImageService://127.0.0.1/B</Name>"
      "<Name>ImageService://127.0.0.1/A</Name><Name>VLDef://C:\\x.VLDef</Name></SelectedImageServices>");
}

TEST_F(ImageServicesDialogFormTest, OkMakesItsEngineCallsInOrderAndReleasesBeforeItUnloads) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    mark();
    pressOk(window);
  });
  EXPECT_THAT(newCalls(), ElementsAre("3.AttributeDefinition C:\\Program\\VLClient.XADef", "3.GetTemplateXml",
                                      "3.ParentWindow 0", "3.released", "2.ParentWindow 0",
                                      "2.ParentWindow 0", "2.released"));
}

TEST_F(ImageServicesDialogFormTest, OkWritesTheSettingsFileFromTheTemplateAndTheServerBox) {
  system->writeFile(settingsFile, settingsWith({"alpha", "beta"}));
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    enterServer(control, "gamma");
    doubleClick("A");
    pressOk(window);
  });
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(),
            settingsWith({"gamma", "alpha", "beta", "127.0.0.1"}));
}

TEST_F(ImageServicesDialogFormTest, ServersInPlaceOfTheUsersFillTheBoxAndLeaveTheSettingsFile) {
  system->writeFile(settingsFile, settingsWith({"alpha", "beta"}));
  {
    const ServersInPlace servers({"recorded", "127.0.0.1"});
    show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
      EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("recorded", "127.0.0.1"));
      enterServer(control, "gamma");
      doubleClick("A");
      pressOk(window);
    });
  }
  EXPECT_EQ(result(), "<SelectedImageServices><Name>ImageService://gamma/A</Name></SelectedImageServices>");
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(), settingsWith({"alpha", "beta"}));
  EXPECT_THAT(firstServers(), ElementsAre("alpha", "beta", "127.0.0.1"));
}

TEST_F(ImageServicesDialogFormTest, AServerThatNeverAnsweredStaysOutOfTheFileUnlessItWasInTheBox) {
  system->writeFile(settingsFile, settingsWith({"old and silent"}));
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("A");
    server->answer.clear();
    enterServer(control, "new and silent");
    enterServer(control, "old and silent");
    pressOk(window);
  });
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(), settingsWith({"old and silent", "127.0.0.1"}));
}

TEST_F(ImageServicesDialogFormTest, ServersThatDifferInCaseAreTwoAndADoubledOneGoesOutOnce) {
  system->writeFile(settingsFile, settingsWith({"Server1", "SERVER1", "Server1"}));
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    pressOk(window);
  });
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(), settingsWith({"Server1", "SERVER1", "127.0.0.1"}));
}

TEST_F(ImageServicesDialogFormTest, ABoxOfTwentyFiveServersRoundTripsAsItsFirstTwenty) {
  Texts servers;
  for (int i = 1; i <= 25; ++i) servers.push_back("server" + std::to_string(i));
  system->writeFile(settingsFile, settingsWith(servers));
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    EXPECT_EQ(control.uiTxtBoxServerName.count(), 26U);
    doubleClick("A");
    pressOk(window);
  });
  const Texts firstTwenty(servers.begin(), servers.begin() + 20);
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(), settingsWith(firstTwenty));
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    EXPECT_EQ(control.uiTxtBoxServerName.count(), 21U);
    EXPECT_EQ(control.uiTxtBoxServerName.entry(20), "127.0.0.1");
    enterServer(control, "127.0.0.1");
    doubleClick("A");
    pressOk(window);
  });
  Texts next{"127.0.0.1"};
  next.insert(next.end(), servers.begin(), servers.begin() + 19);
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(), settingsWith(next));
}

TEST_F(ImageServicesDialogFormTest, ATemplateWithoutPlaceholderLosesTheFirstServerAtTheNextStart) {
  plexa->record->templateXml =
      "<Vorlane><Client><SelectedImageServices/><ShowImageServicesDialog><MruServers/>"
      "</ShowImageServicesDialog><ServerInfo><Request><Server/><MetadataLevel/></Request></ServerInfo>"
      "</Client></Vorlane>";
  system->writeFile(settingsFile, settingsWith({"a", "b"}));
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    pressOk(window);
  });
  EXPECT_THAT(readMruServers("C:\\Documents\\Ostrel\\Vor Lane"), ElementsAre("b", "127.0.0.1"));
}

TEST_F(ImageServicesDialogFormTest, CancelLeavesNoResultAndTheSettingsUntouched) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    window.controls().uibtncancel.userClicks();
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_EQ(result(), "");
  EXPECT_FALSE(settingsExist());
}

TEST_F(ImageServicesDialogFormTest, TheCloseBoxActsAsCancel) {
  const std::string before = settingsWith({"alpha"});
  system->writeFile(settingsFile, before);
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    enterServer(control, "beta");
    doubleClick("A");
    window.userCloses();
  });
  EXPECT_EQ(result(), "");
  EXPECT_EQ(system->readFile(settingsFile), before);
}

TEST_F(ImageServicesDialogFormTest, TheResultStaysUntilTheNextShowEnds) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    pressOk(window);
  });
  const std::string first = result();
  EXPECT_NE(first, "");
  show([&](ImageServicesDialogForm& window, auto&) {
    EXPECT_EQ(result(), first);
    EXPECT_FALSE(window.OkPressed);
    window.controls().uibtncancel.userClicks();
  });
  EXPECT_EQ(result(), "");
}

TEST_F(ImageServicesDialogFormTest, UnloadingDetachesTheListBeforeItsRelease) {
  show([&](ImageServicesDialogForm& window, auto&) {
    mark();
    window.userCloses();
  });
  EXPECT_THAT(newCalls(), ElementsAre("2.ParentWindow 0", "2.ParentWindow 0", "2.released"));
}

TEST_F(ImageServicesDialogFormTest, UnloadingIsNotHidingTheControl) {
  bool looked = false;
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    click("A");
    // Within an event of its own the control outlives the unloading.
    control.abc.connect([&] {
      window.unload();
      EXPECT_THAT(control.myFile, IsEmpty());
      EXPECT_THAT(control.MRUServers, IsEmpty());
      looked = true;
    });
    control.SelectButton.userClicks();
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_TRUE(looked);
}

TEST_F(ImageServicesDialogFormTest, EachShowHasNewControls) {
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("A");
    control.uiTxtBoxServerName.userTypes("typed");
    control.FilterCalled = true;
  });
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    EXPECT_EQ(control.ListBox.count(), 0U);
    EXPECT_EQ(control.uiTxtBoxServerName.text(), "127.0.0.1");
    EXPECT_FALSE(control.FilterCalled);
    EXPECT_TRUE(control.visible());
    EXPECT_FALSE(window.controls().uibtnok.enabled());
  });
}

TEST_F(ImageServicesDialogFormTest, AnInvalidTemplateAtOkLeavesTheWindowOpenWithItsControlHidden) {
  for (const char* text : {"", "<Vorlane>", "text"}) {
    plexa->record->templateXml = templateXml;
    show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
      doubleClick("A");
      plexa->record->templateXml = text;
      pressOk(window);
      EXPECT_EQ(toolkit->messages().back(), invalidTemplate);
      EXPECT_TRUE(window.loaded());
      EXPECT_TRUE(window.OkPressed);
      EXPECT_FALSE(control.visible());
    });
    EXPECT_FALSE(settingsExist());
  }
  EXPECT_EQ(toolkit->messages().size(), 3U);
}

TEST_F(ImageServicesDialogFormTest, OkAfterARepairedTemplateGivesTheSelectionOnce) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    plexa->record->templateXml = "";
    pressOk(window);
    plexa->record->templateXml = templateXml;
    pressOk(window);
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_EQ(result(),
            "<SelectedImageServices><Name>ImageService://127.0.0.1/A</Name></SelectedImageServices>");
}

TEST_F(ImageServicesDialogFormTest, ClosingAfterAnInvalidTemplateKeepsTheResultOfTheShowBefore) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("B");
    pressOk(window);
  });
  const std::string before = result();
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    plexa->record->templateXml = "";
    pressOk(window);
    window.userCloses();
  });
  EXPECT_EQ(result(), before);
}

TEST_F(ImageServicesDialogFormTest, ATemplateWithoutItsElementsEndsSilentlyAndTheWindowStays) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    plexa->record->templateXml = "<Vorlane><Client><SelectedImageServices/></Client></Vorlane>";
    pressOk(window);
    EXPECT_TRUE(window.loaded());
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  });
  EXPECT_EQ(result(), "") << "the servers come before the result";
}

TEST_F(ImageServicesDialogFormTest, AttributesOfTheTemplatesRootStayOnTheResult) {
  plexa->record->templateXml =
      "<Vorlane><Client><SelectedImageServices a=\"1\"><x/><y/></SelectedImageServices>"
      "<ShowImageServicesDialog><MruServers/></ShowImageServicesDialog><ServerInfo><Request><Server/>"
      "<MetadataLevel/></Request></ServerInfo></Client></Vorlane>";
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    pressOk(window);
  });
  EXPECT_EQ(result(),
            "<SelectedImageServices a=\"1\"><Name>ImageService://127.0.0.1/A</Name></SelectedImageServices>");
}

TEST_F(ImageServicesDialogFormTest,
       AFolderThatCannotBeWrittenLosesTheSettingsSilentlyAndKeepsTheOldFileWhole) {
  const std::string before = settingsWith({"alpha"});
  system->writeFile(settingsFile, before);
  const fs::path folder = system->nativeFile(settingsFile).parent_path();
  const fs::path aside = folder.string() + " aside";
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    // A file in place of the folder refuses every user, also one who may write anywhere.
    fs::rename(folder, aside);
    system->writeFile("C:\\Documents\\Ostrel\\Vor Lane", "in the way");
    pressOk(window);
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_NE(result(), "");
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  EXPECT_THAT(toolkit->failures(), IsEmpty());
  fs::remove(folder);
  fs::rename(aside, folder);
  EXPECT_EQ(system->readFile(settingsFile), before);
}

TEST_F(ImageServicesDialogFormTest, ASettingsPathThatIsAFolderIsLeftAlone) {
  fs::create_directories(system->nativeFile(settingsFile) / "inside");
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("A");
    pressOk(window);
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_NE(result(), "");
  EXPECT_TRUE(fs::exists(system->nativeFile(settingsFile) / "inside"));
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(ImageServicesDialogFormTest, AReferenceThatXmlCannotHoldEndsSilently) {
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    toolkit->chooseFile("C:\\a\x01.VLRef");
    control.Browse.userClicks();
    pressOk(window);
    EXPECT_TRUE(window.loaded());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  });
  EXPECT_EQ(result(), "");
  EXPECT_FALSE(settingsExist());
}

}  // namespace
}  // namespace vlclientui::test
