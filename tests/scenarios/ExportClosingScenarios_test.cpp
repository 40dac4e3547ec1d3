// OK, Cancel and the file of the export window.

#include <algorithm>

#include <gmock/gmock.h>

#include "contracts/controls/Form.h"
#include "scenarios/ExportVisit.h"

namespace vlclientui::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const refusal = "Export Properties|Cannot enter characters";

class ExportClosing : public ExportVisit {};

TEST_F(ExportClosing, OkLeavesTheEditedBoxFirst) {
  visit([&] {
    person->type("uiTxtCols", "500");
    person->click("Command1");
  });
  EXPECT_EQ(requested("GSDX"), "no GSDX");
  EXPECT_EQ(requested("Cols"), "500");
  // The estimate follows the columns only when their box has been left.
  EXPECT_EQ(requested("ApproxMB"), "1.5");
}

TEST_F(ExportClosing, EnterLeavesTheEditedBoxAndPressesOk) {
  visit([&] {
    person->type("uiTxtCols", "500");
    person->pressEnter();
  });
  EXPECT_TRUE(exported());
  EXPECT_EQ(requested("ApproxMB"), "1.5");
}

TEST_F(ExportClosing, ARefusalKeepsOkFromBeingPressedUntilTheNextTime) {
  visit([&] {
    person->type("uiTxtHeight", "tall");
    person->pressEnter();
    EXPECT_THAT(person->messages(), ElementsAre(refusal));
    EXPECT_FALSE(exported());
    EXPECT_EQ(person->focus(), "Command1");
    person->type("uiTxtHeight", "tall");
    person->click("Command1");
    EXPECT_THAT(person->messages(), ElementsAre(refusal, refusal));
    EXPECT_FALSE(exported());
    person->pressEnter();
  });
  EXPECT_TRUE(exported());
}

TEST_F(ExportClosing, EnterOnAComplaintThatTheLeavingRaisesShowsItAndExportsNothing) {
  visit([&] {
    person->type("uiTxtRows", "2001");
    person->pressEnter();
    ASSERT_EQ(person->messages().size(), 1U);
    EXPECT_THAT(person->messages().front(), HasSubstr("Warning|Number of rows cannot be more than"));
  });
  EXPECT_FALSE(exported());
}

TEST_F(ExportClosing, EnterOnCancelCloses) {
  visit([&] {
    person->type("uiTxtCols", "many");
    person->click("Command2");
    EXPECT_THAT(person->messages(), ElementsAre(refusal));
    EXPECT_EQ(person->focus(), "Command2");
    person->pressEnter();
    EXPECT_FALSE(person->windowIsOpen());
  });
  EXPECT_FALSE(exported());
}

TEST_F(ExportClosing, EscapeCancelAndTheCloseBoxExportNothing) {
  for (int way = 0; way < 3; ++way) {
    visit([&] {
      person->type("uiTxtCols", "500");
      if (way == 0) person->pressEscape();
      if (way == 1) person->click("Command2");
      if (way == 2) person->closeByFrame();
      EXPECT_FALSE(person->windowIsOpen());
    });
    EXPECT_EQ(dialog->iExportImageDialog_GetUpdatedProperties(), "");
  }
  EXPECT_FALSE(exported());
  EXPECT_THAT(person->messages(), IsEmpty());
}

TEST_F(ExportClosing, AFileIsChosenUnderTheFilterOfItsFormat) {
  visit([&] {
    person->pick("FormatCombo", "PNG");
    person->chooseFile("C:\\Out\\area.doc");
    person->click("OpenFile");
    expectText("uiTxtFileName", "C:\\Out\\area.doc.PNG");
    person->click("OpenFile");
    expectText("uiTxtFileName", "C:\\Out\\area.doc.PNG");
    person->click("Command1");
  });
  EXPECT_THAT(person->saveDialogs(), ElementsAre(HasSubstr("Export image to:|PNG"), HasSubstr("|PNG")));
  EXPECT_EQ(requested("FileName"), "C:\\Out\\area.doc.PNG");
  EXPECT_EQ(requested("Format"), "PNG");
}

TEST_F(ExportClosing, ATypedNameGetsTheExtensionOfTheFormatWhenItIsLeft) {
  visit([&] {
    edit("uiTxtFileName", "C:\\Out\\report.final.png");
    expectText("uiTxtFileName", "C:\\Out\\report.final.Tif");
  });
}

TEST_F(ExportClosing, AServiceThatCannotExportSaysWhyAndTheWindowStays) {
  service->exportAnswer = false;
  service->statusAnswer = "<Item><Message>The disk is full.</Message></Item>";
  visit([&] {
    person->click("Command1");
    EXPECT_THAT(person->messages(), ElementsAre("Error|Could not export image.The disk is full."));
    EXPECT_TRUE(person->windowIsOpen());
    person->closeByFrame();
  });
  EXPECT_EQ(requested("OutputType"), "File");
}

TEST_F(ExportClosing, NothingThatAPersonDoesCountsWhileTheExportRuns) {
  service->exportAnswer = false;
  service->duringExport = [&] {
    person->type("uiTxtCols", "7");
    person->click("ExportMD");
    person->click("Command2");
    person->pressEnter();
    person->pressEscape();
    person->closeByFrame();
  };
  visit([&] {
    person->click("Command1");
    EXPECT_TRUE(person->windowIsOpen());
    expectText("uiTxtCols", "1000");
    EXPECT_EQ(person->focus(), "Command1");
    EXPECT_EQ(std::ranges::count(service->calls, "ExportImage"), 1);
    service->duringExport = nullptr;
    service->exportAnswer = true;
    person->click("Command1");
  });
  EXPECT_EQ(requested("ExportMetadataXml"), "False");
}

TEST_F(ExportClosing, AWindowShownAgainWhileItIsOpenStaysAsItIs) {
  visit([&] {
    edit("uiTxtCols", "500");
    threadState().exportDialogStatus.clear();
    EXPECT_EQ(dialog->iExportImageDialog_ShowModalDialog(), boolean16False);
    EXPECT_EQ(threadState().exportDialogStatus, Form::alreadyOnShow);
    EXPECT_TRUE(person->windowIsOpen());
    expectText("uiTxtCols", "500");
  });
}

TEST_F(ExportClosing, EachShowBeginsAnew) {
  visit([&] { edit("uiTxtCols", "500"); });
  visit([&] { expectText("uiTxtCols", "1000"); });
  visit([&] { person->click("Command1"); });
  EXPECT_TRUE(exported());
}

}  // namespace

}  // namespace vlclientui::test
