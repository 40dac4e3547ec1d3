// The information window of ImageServicesControl and its four messages.

#include <filesystem>
#include <new>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ImageServicesControlSelectionTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ImageServicesControlSelectionTest, InformationMakesItsEngineCallsInOrderAndReleasesNoOther) {
  show([&](auto&, ImageServicesControl& control) {
    addListWindow(control);
    click("B", "/A");
    mark();
    control.Info.userClicks();
    EXPECT_THAT(newCalls(), ElementsAre("3.ModalFrame false", "3.Caption Service Properties",
                                        std::string("3.AttributeDefinition ") + attributeDefinition,
                                        std::string("3.FormDefinition ") + formDefinition,
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
