#include "export/ExportDialogForm.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QProgressDialog>
#include <QPushButton>
#include <algorithm>

#include <gmock/gmock.h>

#include "widgets/ExportWindow.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(ExportWindow, EveryControlHasExactlyOneWidgetOfItsKind) {
  ExportDialogForm form(*toolkit);
  form.load();
  EXPECT_THAT(toolkit->missingWidgets(form), IsEmpty());
  form.unload();
}

TEST_F(ExportWindow, FirstDisplayFillsTheBoxesFromTheService) {
  show([this] {
    EXPECT_EQ(window->windowTitle(), "Export Image Properties");
    EXPECT_EQ(widget<QGroupBox>("Frame1").title().remove('&'), "Extents");
    EXPECT_EQ(box("uiTxtLeft").text(), "1000.000");
    EXPECT_EQ(box("uiTxtTop").text(), "2000.000");
    EXPECT_EQ(box("uiTxtCols").text(), "1000");
    EXPECT_EQ(widget<QComboBox>("FormatCombo").currentText(), "TIFF-No Compression");
    EXPECT_FALSE(box("uiTxtMB").isEnabled());
  });
}

TEST_F(ExportWindow, LeavingABoxRecalculatesWhatFollowsIt) {
  show([this] {
    typeInto("uiTxtCols", "500");
    EXPECT_EQ(box("uiTxtGSDX").text(), "1.0000");
    QTest::keyClick(&box("uiTxtCols"), Qt::Key_Tab);
    EXPECT_EQ(box("uiTxtGSDX").text(), "2.0000");
    EXPECT_EQ(box("uiTxtRight").text(), "2000.000");
  });
}

TEST_F(ExportWindow, ARefusalIsToldOnceRestoresTheTextAndRecalculatesNothing) {
  answerMessages();
  show([this] {
    typeInto("uiTxtWidth", "wide");
    QTest::keyClick(&box("uiTxtWidth"), Qt::Key_Tab);
    EXPECT_EQ(box("uiTxtWidth").text(), "1000.000");
    EXPECT_EQ(box("uiTxtRight").text(), "2000.000");
  });
  EXPECT_EQ(messages.size(), 1U);
}

TEST_F(ExportWindow, AClickOnOkLeavesTheEditedBoxFirst) {
  answerMessages();
  const std::string request = show([this] {
    typeInto("uiTxtCols", "500");
    QTest::mouseClick(&widget("Command1"), Qt::LeftButton);
  });
  EXPECT_THAT(request, HasSubstr("500"));
  EXPECT_THAT(service->exportRequest, HasSubstr(request));
}

TEST_F(ExportWindow, EscapeWritesNothing) {
  EXPECT_EQ(show([this] { QTest::keyClick(window, Qt::Key_Escape); }), "");
  EXPECT_EQ(service->exportRequest, "");
}

TEST_F(ExportWindow, OkShowsAsTheDefaultButtonAndNoOtherDoes) {
  show([this] {
    EXPECT_TRUE(widget<QPushButton>("Command1").isDefault());
    EXPECT_FALSE(widget<QPushButton>("Command2").isDefault());
    EXPECT_FALSE(widget<QPushButton>("OpenFile").isDefault());
  });
}

TEST_F(ExportWindow, EnterWhereTheWindowItselfHoldsTheFocusPressesOk) {
  show([this] {
    window->setFocus(Qt::OtherFocusReason);
    QTest::keyClick(window, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_FALSE(window && window->isVisible());
  });
  EXPECT_NE(service->exportRequest, "");
}

TEST_F(ExportWindow, EnterOnAClosedListPressesOk) {
  show([this] { QTest::keyClick(&widget("FormatCombo"), Qt::Key_Return); });
  EXPECT_NE(service->exportRequest, "");
}

TEST_F(ExportWindow, OkHeldByItsMnemonicLeavesTheEditedBoxFirst) {
  show([this] {
    typeInto("uiTxtCols", "500");
    QTest::keyClick(&box("uiTxtCols"), Qt::Key_O, Qt::AltModifier);
    // The button shows for a moment that it is pressed.
    EXPECT_TRUE(QTest::qWaitFor([this] { return !service->exportRequest.empty(); }));
  });
  EXPECT_THAT(service->exportRequest, HasSubstr("<ApproxMB>1.5</ApproxMB>"));
}

TEST_F(ExportWindow, AProgressWindowOverTheExportTakesInputAndTheWindowNone) {
  bool canceled = false;
  service->exportAnswer = false;
  service->duringExport = [&] {
    QProgressDialog progress("Exporting", "Cancel", 0, 100);
    progress.setMinimumDuration(0);
    progress.setValue(1);
    progress.show();
    QTest::keyClick(&box("uiTxtCols"), Qt::Key_7);
    QTest::mouseClick(&widget("Command2"), Qt::LeftButton);
    QTest::keyClick(window, Qt::Key_O, Qt::AltModifier);
    QTest::keyClick(window, Qt::Key_Escape);
    window->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(box("uiTxtCols").text(), "1000");
    QTest::mouseClick(progress.findChild<QPushButton*>(), Qt::LeftButton);
    canceled = progress.wasCanceled();
  };
  answerMessages();
  show([this] {
    QTest::mouseClick(&widget("Command1"), Qt::LeftButton);
    EXPECT_TRUE(window->isVisible());
    EXPECT_THAT(messages, ElementsAre("Could not export image."));
    typeInto("uiTxtCols", "500");
    EXPECT_EQ(box("uiTxtCols").text(), "500");
  });
  EXPECT_TRUE(canceled);
  EXPECT_EQ(std::ranges::count(service->calls, "ExportImage"), 1);
}

TEST_F(ExportWindow, InputThatWaitedWhileEventsRanInTheExportIsLost) {
  service->exportAnswer = false;
  service->duringExport = [&] {
    QCoreApplication::postEvent(&box("uiTxtCols"), new QKeyEvent(QEvent::KeyPress, Qt::Key_7, {}, "7"));
    QCoreApplication::processEvents();
  };
  answerMessages();
  show([this] {
    QTest::mouseClick(&widget("Command1"), Qt::LeftButton);
    EXPECT_EQ(box("uiTxtCols").text(), "1000");
  });
}

}  // namespace
}  // namespace vlclientui::test
