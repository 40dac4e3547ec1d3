// The lower half of ImageServicesControl: events of the list, references and files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ImageServicesControlSelectionTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(ImageServicesControlSelectionTest, AControlThatAHostPlacesNowhereTakesADoubleClickToo) {
  ImageServicesControl alone(nullptr);
  EXPECT_EQ(alone.typeName(), "ImageServicesControl");
  alone.ServiceNames = {"D"};
  alone.OnLoad(boolean16True);
  doubleClick("D");
  EXPECT_THAT(entries(alone), testing::SizeIs(1));
}

}  // namespace
}  // namespace vlclientui::test
