// The lower half of ImageServicesControl: events of the list, references, files, the information window.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ImageServicesControl.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const char* const kAttributeDefinition = "<ImageServiceInfo><Attributes/></ImageServiceInfo>";
const char* const kFormDefinition = "<ImageServiceInfo><Form/></ImageServiceInfo>";

std::string definitionFile(const std::string& section) {
  return "<Vorlane><AddImageServiceInformation>" + section + "</AddImageServiceInformation></Vorlane>";
}

std::string titled(const std::string& title) {
  return "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>" + title +
         "</Title></KeyDetails></ImageServiceInfo>";
}

class ImageServicesControlSelectionTest : public SelectionTest {
 protected:
  ImageServicesControlSelectionTest() {
    server->answer = serverInfo({{"A\\B", titled("Bee")}, {"D", titled("Dee")}, {"E"}});
    system->writeFile("C:\\Program\\VLClient.Xfdef", definitionFile(kFormDefinition));
    system->writeFile("C:\\Program\\VLClient.XADef", definitionFile(kAttributeDefinition));
  }

  static Texts entries(const ImageServicesControl& control) { return control.ListBox.entries(); }

  void fill(ImageServicesControl& control, const Texts& files) {
    for (const std::string& file : files) {
      toolkit->chooseFile(file);
      control.Browse.userClicks();
    }
  }

  static MessageBox fileMessage(const std::string& file, const std::string& complaint) {
    return {"The file: 'C:\\Program\\" + file + "' is " + complaint + ". Cannot show information.", "Error",
            MessageIcon::Exclamation, MessageButtons::Ok};
  }
};

// Rows by double click.

TEST_F(ImageServicesControlSelectionTest, DoubleClickOnAServiceAtTheRootAddsItsReference) {
  show([&](auto&, ImageServicesControl& control) {
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    doubleClick("D");
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/D"));
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/D");
    EXPECT_EQ(control.TheListCount, 1);
    EXPECT_EQ(changes, 1);
  });
}

TEST_F(ImageServicesControlSelectionTest, DoubleClickBelowTheRootTakesTheParentPathFromTheEvent) {
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("A");
    doubleClick("B", "/A");
    doubleClick("B", "A");
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/A/B"))
        << "a slash is put in where the path has none";
  });
}

TEST_F(ImageServicesControlSelectionTest, DoubleClickTrimsThePath) {
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("D ", "/");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/D");
  });
}

TEST_F(ImageServicesControlSelectionTest, DoubleClickOnAFolderEntersItAndAddsNothing) {
  show([&](auto&, ImageServicesControl& control) {
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    mark();
    doubleClick("a");
    EXPECT_THAT(newCalls(), ElementsAre(testing::StartsWith("2.SetOption List_Values ")));
    EXPECT_THAT(shownNames(), ElementsAre("B"));
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_EQ(control.SelectedFile, "");
    EXPECT_EQ(changes, 0);
  });
}

TEST_F(ImageServicesControlSelectionTest, BackspaceOnTheListGoesUp) {
  show([&](auto&, auto&) {
    doubleClick("A");
    backspace("/A");
    EXPECT_THAT(shownNames(), ElementsAre("A", "D", "E"));
  });
}

TEST_F(ImageServicesControlSelectionTest, BackspaceAtTheRootAddsAndChangesNothingWhateverTheEventCarries) {
  show([&](auto&, ImageServicesControl& control) {
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    click("E");
    mark();
    backspace();
    notify({"DblClick", "", "/", "D", 8});
    notify({"DblClick", "", "/A", "A", 8});
    notify({"DblClick", "", "", "..", 8});
    EXPECT_THAT(newCalls(), IsEmpty());
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/E");
    EXPECT_EQ(changes, 0);
  });
}

TEST_F(ImageServicesControlSelectionTest, DoubleClickOnTheMessageRowsAddsNothing) {
  for (const std::string& answer : {std::string(), serverInfoOf({})}) {
    server->answer = answer;
    show([&](auto&, ImageServicesControl& control) {
      int changes = 0;
      control.abc.connect([&] { ++changes; });
      doubleClick(answer.empty() ? "(Server not found)" : "(empty)");
      EXPECT_THAT(entries(control), IsEmpty());
      EXPECT_EQ(control.TheListCount, 0);
      EXPECT_EQ(changes, 1) << "the change is told all the same";
    });
  }
}

TEST_F(ImageServicesControlSelectionTest, DoubleClickOnASelectedRowAddsAndSaysNothing) {
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("D");
    doubleClick("D");
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/D"));
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(ImageServicesControlSelectionTest, TheSameServiceOfTwoServersGivesTwoEntries) {
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("D");
    enterServer(control, "alpha");
    doubleClick("D");
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/D", "ImageService://alpha/D"));
  });
}

TEST_F(ImageServicesControlSelectionTest, AFolderWhoseRowsCannotBeMadeEndsSilently) {
  server->answer = serverInfoOf({"A/b&amp;c", "D"});
  show([&](auto&, ImageServicesControl& control) {
    mark();
    doubleClick("A");
    EXPECT_THAT(newCalls(), IsEmpty());
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  });
}

// Rows by click.

TEST_F(ImageServicesControlSelectionTest, ClickShowsTheTitleAndTakesTheRowInHand) {
  show([&](auto&, ImageServicesControl& control) {
    click("D");
    EXPECT_EQ(control.Desc.text(), "Dee");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/D");
    click("b", "/A");
    EXPECT_EQ(control.Desc.text(), "Bee") << "the whole path in any case, with the slash in front dropped";
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/A/b");
    EXPECT_THAT(entries(control), IsEmpty());
  });
}

TEST_F(ImageServicesControlSelectionTest, ClickOnAServiceWithoutTitleSaysSo) {
  show([&](auto&, ImageServicesControl& control) {
    click("E");
    EXPECT_EQ(control.Desc.text(), "Title not defined for this service");
    click("B", "/Elsewhere");
    EXPECT_EQ(control.Desc.text(), "Title not defined for this service");
  });
}

TEST_F(ImageServicesControlSelectionTest, ClickOnAParentRowTakesThePathOfTheParent) {
  show([&](auto&, ImageServicesControl& control) {
    click("..", "/A");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/A");
    click("..", "/");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/..");
  });
}

TEST_F(ImageServicesControlSelectionTest, ClickWhileNoServerHasAnsweredStillHasFourParts) {
  server->answer.clear();
  show([&](auto&, ImageServicesControl& control) {
    click("(Server not found)");
    EXPECT_EQ(control.SelectedFile, "ImageService:///(Server not found)");
    EXPECT_EQ(control.Desc.text(), "Title not defined for this service");
  });
}

TEST_F(ImageServicesControlSelectionTest, AnyEventEmptiesTheTitleFirst) {
  show([&](auto&, ImageServicesControl& control) {
    for (const char* name : {"KeyDown", "", "click", "DBLCLICK", "Changed"}) {
      click("D");
      ASSERT_EQ(control.Desc.text(), "Dee");
      notify({name, "", "/", "E", 0});
      EXPECT_EQ(control.Desc.text(), "") << name;
      EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/D") << "and does nothing further: " << name;
    }
    EXPECT_THAT(entries(control), IsEmpty());
  });
}

// Select.

TEST_F(ImageServicesControlSelectionTest, SelectWithNoRowClickedAddsNothing) {
  show([&](auto&, ImageServicesControl& control) {
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    control.SelectButton.userClicks();
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_EQ(control.TheListCount, 0);
    EXPECT_EQ(changes, 1);
  });
}

TEST_F(ImageServicesControlSelectionTest, SelectTwiceAfterOneClickGivesOneEntry) {
  show([&](auto&, ImageServicesControl& control) {
    click("D");
    control.SelectButton.userClicks();
    control.SelectButton.userClicks();
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/D"));
  });
}

TEST_F(ImageServicesControlSelectionTest, SelectAddsAFolderRowToo) {
  show([&](auto&, ImageServicesControl& control) {
    click("A");
    control.SelectButton.userClicks();
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/A"));
  });
}

TEST_F(ImageServicesControlSelectionTest, SelectRefusesAMessageRowOnlyByItsPathFromADoubleClick) {
  server->answer = serverInfoOf({});
  show([&](auto&, ImageServicesControl& control) {
    doubleClick("(empty)");
    control.SelectButton.userClicks();
    EXPECT_THAT(entries(control), IsEmpty());
    // A click leaves the path without a slash in front, which the test for message rows does not know.
    click("(empty)");
    control.SelectButton.userClicks();
    EXPECT_THAT(entries(control), ElementsAre("ImageService://127.0.0.1/(empty)"));
  });
}

// Browse.

TEST_F(ImageServicesControlSelectionTest, BrowseOpensAFileDialogWithItsFilter) {
  show([&](auto&, ImageServicesControl& control) {
    control.Browse.userClicks();
    EXPECT_THAT(
        toolkit->fileDialogs(),
        ElementsAre(FileDialog{"",
                               "Image Service Reference (*.VLRef)|*.VLRef|Image Service Definition (*.VLDef) "
                               "|*.VLDef|All files (*.*)|*.*",
                               ""}));
    EXPECT_THAT(entries(control), IsEmpty()) << "a cancel adds nothing";
  });
}

TEST_F(ImageServicesControlSelectionTest, BrowseAddsReferenceFilesAsTheyStandAndDefinitionsWithTheirPrefix) {
  show([&](auto&, ImageServicesControl& control) {
    fill(control, {"C:\\a.VLRef", "C:\\b.vldef", "C:\\c.VLREF"});
    EXPECT_THAT(entries(control), ElementsAre("C:\\a.VLRef", "VLDef://C:\\b.vldef", "C:\\c.VLREF"));
    EXPECT_EQ(control.TheListCount, 1);
  });
}

TEST_F(ImageServicesControlSelectionTest, BrowseReadsTheLastFiveCharactersAlone) {
  show([&](auto&, ImageServicesControl& control) {
    fill(control, {"x.VLREF", "x.vlref", "xvlref", "VLDEF", "\u5730vldef"});
    EXPECT_THAT(entries(control),
                ElementsAre("x.VLREF", "x.vlref", "xvlref", "VLDef://VLDEF", "VLDef://\u5730vldef"));
  });
}

TEST_F(ImageServicesControlSelectionTest, BrowseOnAnyOtherFileAddsNothing) {
  show([&](auto&, ImageServicesControl& control) {
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    fill(control, {"a.txt", "ref", "a.VLRef ", ".VLRe"});
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_EQ(changes, 4);
  });
}

TEST_F(ImageServicesControlSelectionTest, BrowseOnAFileThatIsSelectedAddsNothing) {
  show([&](auto&, ImageServicesControl& control) {
    fill(control, {"a.VLDef", "a.VLDef", "A.VLDef", "a.VLRef", "a.VLRef"});
    EXPECT_THAT(entries(control), ElementsAre("VLDef://a.VLDef", "VLDef://A.VLDef", "a.VLRef"));
  });
}

// The selected list.

TEST_F(ImageServicesControlSelectionTest, RemoveTakesTwoAdjacentSelectedEntries) {
  show([&](auto&, ImageServicesControl& control) {
    fill(control, {"a.VLRef", "b.VLRef", "c.VLRef", "d.VLRef"});
    control.ListBox.userSelects({1, 2});
    EXPECT_TRUE(control.Remove.enabled());
    control.Remove.userClicks();
    EXPECT_THAT(entries(control), ElementsAre("a.VLRef", "d.VLRef"));
    EXPECT_FALSE(control.Remove.enabled());
    EXPECT_EQ(control.TheListCount, 1);
  });
}

TEST_F(ImageServicesControlSelectionTest, RemovingTheLastEntryTellsOfAnEmptyList) {
  show([&](auto&, ImageServicesControl& control) {
    fill(control, {"a.VLRef"});
    control.ListBox.userSelects({0});
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    control.Remove.userClicks();
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_EQ(control.TheListCount, 0);
    EXPECT_GE(changes, 1);
  });
}

TEST_F(ImageServicesControlSelectionTest, AClickOnTheListEnablesRemoveAlsoWithNothingSelected) {
  show([&](auto&, ImageServicesControl& control) {
    control.ListBox.userSelects({});
    EXPECT_TRUE(control.Remove.enabled());
  });
}

TEST_F(ImageServicesControlSelectionTest, LeavingTheListKeepsRemoveOnlyWhileAnEntryIsSelected) {
  show([&](auto&, ImageServicesControl& control) {
    fill(control, {"a.VLRef"});
    int changes = 0;
    control.abc.connect([&] { ++changes; });
    control.ListBox.userFocuses();
    control.ListBox.userSelects({0});
    control.Desc.userFocuses();
    EXPECT_TRUE(control.Remove.enabled());
    EXPECT_EQ(changes, 1);
    control.ListBox.userFocuses();
    control.ListBox.userSelects({});
    control.Desc.userFocuses();
    EXPECT_FALSE(control.Remove.enabled());
    EXPECT_EQ(changes, 2);
  });
}

TEST_F(ImageServicesControlSelectionTest, TheListBeginsEmptyAtEachShow) {
  show([&](ImageServicesDialogForm& window, auto&) {
    doubleClick("D");
    window.controls().uibtnok.userClicks();
  });
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_THAT(entries(control), IsEmpty());
    EXPECT_EQ(control.SelectedFile, "");
    EXPECT_EQ(control.Desc.text(), "");
  });
}

// The information window.

TEST_F(ImageServicesControlSelectionTest, InformationMakesItsEngineCallsInOrderAndReleasesNoOther) {
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control);
    click("B", "/A");
    mark();
    control.Info.userClicks();
    EXPECT_THAT(newCalls(), ElementsAre("3.ModalFrame false", "3.Caption Service Properties",
                                        std::string("3.AttributeDefinition ") + kAttributeDefinition,
                                        std::string("3.FormDefinition ") + kFormDefinition,
                                        "3.DataXml " + titled("Bee"), "3.DataRootPath //", "3.Show"));
    EXPECT_THAT(newPointers(), IsEmpty());
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(ImageServicesControlSelectionTest, ASecondInformationWindowDetachesAndHidesTheFirst) {
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control);
    click("D");
    control.Info.userClicks();
    mark();
    control.Info.userClicks();
    const Texts calls = newCalls();
    ASSERT_EQ(calls.size(), 10U);
    EXPECT_THAT(Texts(calls.begin(), calls.begin() + 4),
                ElementsAre("3.ParentWindow 0", "3.Visible false", "3.released", "4.ModalFrame false"));
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationWithoutFormDefinitionsTellsThatTheFileIsMissing) {
  std::filesystem::remove(system->nativeFile("C:\\Program\\VLClient.Xfdef"));
  show([&](auto&, ImageServicesControl& control) {
    control.Info.userClicks();
    EXPECT_THAT(toolkit->messages(), ElementsAre(fileMessage("VLClient.Xfdef", "missing")));
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationTellsOfACorruptedFormDefinitionFile) {
  for (const char* text : {"", "no xml", "<Vorlane>"}) {
    system->writeFile("C:\\Program\\VLClient.Xfdef", text);
    show([&](auto&, ImageServicesControl& control) { control.Info.userClicks(); });
    EXPECT_EQ(toolkit->messages().back(), fileMessage("VLClient.Xfdef", "corrupted")) << text;
  }
  EXPECT_EQ(toolkit->messages().size(), 3U);
}

TEST_F(ImageServicesControlSelectionTest, InformationWithoutAttributeDefinitionsTellsThatTheFileIsMissing) {
  show([&](auto&, ImageServicesControl& control) {
    std::filesystem::remove(system->nativeFile("C:\\Program\\VLClient.XADef"));
    control.Info.userClicks();
    EXPECT_THAT(toolkit->messages(), ElementsAre(fileMessage("VLClient.XADef", "missing")));
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationTellsOfACorruptedAttributeDefinitionFile) {
  show([&](auto&, ImageServicesControl& control) {
    system->writeFile("C:\\Program\\VLClient.XADef", "<Vorlane");
    control.Info.userClicks();
    EXPECT_THAT(toolkit->messages(), ElementsAre(fileMessage("VLClient.XADef", "corrupted")));
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationEndsSilentlyWithoutAServiceInHand) {
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control);
    mark();
    control.Info.userClicks();
    control.SelectedFile = "C:\\maps\\a.VLRef";
    control.Info.userClicks();
    control.SelectedFile = "VLDef://a.VLDef";
    control.Info.userClicks();
    EXPECT_THAT(newCalls(), IsEmpty());
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationEndsSilentlyWithoutTheEnginesListWindow) {
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control, "chs list");
    addListWindow(control, "CH");
    addListWindow(control, "list CHS");
    click("D");
    mark();
    control.Info.userClicks();
    EXPECT_THAT(newCalls(), IsEmpty());
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationOfAServiceThatIsNotFoundShowsEmptyData) {
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control, "CHSx");
    click("B");
    mark();
    control.Info.userClicks();
    EXPECT_THAT(newCalls(), testing::IsSupersetOf({"3.FormDefinition", "3.DataXml", "3.Show"}))
        << "no leaf match, and a definition file without the section gives an empty definition";
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationSetsTheListWindowBackToItsFormerState) {
  for (const bool enabled : {true, false}) {
    show([&](auto&, ImageServicesControl& control) {
      const WindowHandle list = addListWindow(control);
      toolkit->enableWindow(list, enabled);
      click("D");
      plexa->record->duringShow = [&] { toolkit->enableWindow(list, !enabled); };
      control.Info.userClicks();
      plexa->record->duringShow = nullptr;
      EXPECT_EQ(toolkit->isWindowEnabled(list), enabled);
    });
  }
}

TEST_F(ImageServicesControlSelectionTest, InformationSetsTheListWindowBackAlsoWhenShowThrowsOrReportsFalse) {
  show([&](auto&, ImageServicesControl& control) {
    const WindowHandle list = addListWindow(control);
    click("D");
    plexa->record->showAnswer = false;
    plexa->record->duringShow = [&] { toolkit->enableWindow(list, false); };
    control.Info.userClicks();
    EXPECT_TRUE(toolkit->isWindowEnabled(list));
    plexa->record->duringShow = [&] {
      toolkit->enableWindow(list, false);
      throw std::bad_alloc();
    };
    control.Info.userClicks();
    EXPECT_TRUE(toolkit->isWindowEnabled(list));
    plexa->record->duringShow = [&] {
      toolkit->enableWindow(list, false);
      throw 7;
    };
    control.Info.userClicks();
    plexa->record->duringShow = nullptr;
    EXPECT_TRUE(toolkit->isWindowEnabled(list));
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  });
}

TEST_F(ImageServicesControlSelectionTest, InformationTakesTheTopmostOfTheListWindows) {
  show([&](auto&, ImageServicesControl& control) {
    const WindowHandle lower = addListWindow(control, "CHS 1");
    const WindowHandle upper = addListWindow(control, "CHS 2");
    addListWindow(control, "other");
    toolkit->enableWindow(upper, false);
    click("D");
    plexa->record->duringShow = [&] {
      toolkit->enableWindow(lower, false);
      toolkit->enableWindow(upper, true);
    };
    control.Info.userClicks();
    plexa->record->duringShow = nullptr;
    EXPECT_FALSE(toolkit->isWindowEnabled(upper));
    EXPECT_FALSE(toolkit->isWindowEnabled(lower)) << "no other window is looked at";
  });
}

}  // namespace
}  // namespace vlclientui::test
