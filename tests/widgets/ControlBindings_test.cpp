#include "widgets/ControlBindings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include "widgets/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ControlBindings : public WidgetTest {
 protected:
  void fillServers() {
    form.afterLoad = [this] {
      for (const char* name : {"one", "two", "three"}) controls().server.addEntry(name);
      controls().server.setText("one");
      for (const char* name : {"red", "green"}) controls().choice.addEntry(name);
      for (const char* name : {"a", "b", "c", "d"}) controls().list.addEntry(name);
    };
  }
  [[nodiscard]] std::vector<std::string> keysLeftOut(std::vector<std::string> log) {
    std::erase_if(log, [](const std::string& line) { return line.find(" key ") != std::string::npos; });
    return log;
  }
  static void clickRow(QListWidget& list, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers,
                      list.visualItemRect(list.item(row)).center());
  }
};

TEST_F(ControlBindings, CaptionsComeFromTheControls) {
  show([this] {
    EXPECT_EQ(widget<QLabel>("caption").text(), "&Name:");
    EXPECT_EQ(widget<QPushButton>("button").text(), "&Press");
    EXPECT_EQ(widget<QCheckBox>("check").text(), "&Filter");
    EXPECT_EQ(widget<QToolButton>("picture").text(), "");
    controls().caption.setCaption("Other");
    EXPECT_EQ(widget<QLabel>("caption").text(), "Other");
  });
}

TEST_F(ControlBindings, EveryControlMirrorsItsCommonState) {
  show([this] {
    auto& box = widget<QLineEdit>("box");
    controls().box.setEnabled(false);
    EXPECT_FALSE(box.isEnabled());
    controls().box.setVisible(false);
    EXPECT_FALSE(box.isVisible());
    controls().box.setVisible(true);
    controls().box.setEnabled(true);
    EXPECT_TRUE(box.isVisible() && box.isEnabled());
    controls().box.setToolTip("In C:\\maps");
    EXPECT_EQ(box.toolTip().toStdString(), "In " + system->home().string() + "/maps");
    const QColor normal = box.palette().color(QPalette::Text);
    controls().box.setTextColor(TextColor::Red);
    EXPECT_GT(box.palette().color(QPalette::Text).red(), 150);
    controls().box.setTextColor(TextColor::Normal);
    EXPECT_EQ(box.palette().color(QPalette::Text), normal);
  });
}

TEST_F(ControlBindings, TextBoxShowsWhatIsWritten) {
  show([this] {
    controls().box.setText("h\xc3\xb6he");
    EXPECT_EQ(widget<QLineEdit>("box").text(), QString::fromUtf8("h\xc3\xb6he"));
    EXPECT_THAT(takeLog(), ElementsAre("box change h\xc3\xb6he"));
  });
}

TEST_F(ControlBindings, TypingInATextBoxIsAPersonsTyping) {
  show([this] {
    QTest::keyClicks(&widget("box"), "ab");
    EXPECT_THAT(keysLeftOut(takeLog()), ElementsAre("box change a", "box change ab"));
    EXPECT_EQ(controls().box.text(), "ab");
  });
}

TEST_F(ControlBindings, CursorStaysWhereAPersonTypes) {
  show([this] {
    controls().box.setText("ad");
    auto& box = widget<QLineEdit>("box");
    box.setCursorPosition(1);
    QTest::keyClicks(&box, "bc");
    EXPECT_EQ(controls().box.text(), "abcd");
    EXPECT_EQ(box.cursorPosition(), 3);
  });
}

TEST_F(ControlBindings, TypingComboMirrorsEntriesTextAndSelectionWithoutEvents) {
  fillServers();
  show([this] {
    auto& server = widget<QComboBox>("server");
    EXPECT_EQ(server.count(), 3);
    EXPECT_EQ(server.currentText(), "one");
    controls().server.removeEntry(1);
    controls().server.insertEntry(0, "new");
    controls().server.setText("new");
    controls().server.setCurrentSelection(0);
    ASSERT_EQ(server.count(), 3);
    EXPECT_EQ(server.itemText(0), "new");
    EXPECT_EQ(server.itemText(2), "three");
    EXPECT_EQ(server.currentIndex(), 0);
    EXPECT_EQ(server.currentText(), "new");
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(ControlBindings, TypingInAComboChangesTextOnly) {
  fillServers();
  show([this] {
    auto& server = widget<QComboBox>("server");
    server.setFocus(Qt::MouseFocusReason);
    server.lineEdit()->selectAll();
    takeLog();
    QTest::keyClicks(&server, "tw");
    EXPECT_THAT(keysLeftOut(takeLog()), ElementsAre("server change t", "server change tw"));
    EXPECT_EQ(server.currentText(), "tw");
    EXPECT_EQ(controls().server.text(), "tw");
  });
}

TEST_F(ControlBindings, TypedTextThatEqualsAnEntryPicksNothing) {
  fillServers();
  show([this] {
    auto& server = widget<QComboBox>("server");
    server.setFocus(Qt::MouseFocusReason);
    server.lineEdit()->selectAll();
    QTest::keyClicks(&server, "two");
    takeLog();
    QTest::keyClick(&server, Qt::Key_Return);
    widget("button").setFocus(Qt::TabFocusReason);
    EXPECT_THAT(takeLog(), ElementsAre("server key 13/0", "server lost focus", "button got focus"));
    EXPECT_FALSE(controls().server.index());
  });
}

TEST_F(ControlBindings, PickingAnEntryIsASelectionAlsoOfTheSameOne) {
  fillServers();
  show([this] {
    auto& server = widget<QComboBox>("server");
    server.setFocus(Qt::MouseFocusReason);
    takeLog();
    for (int repeat = 0; repeat < 2; ++repeat) {
      server.showPopup();
      server.view()->setCurrentIndex(server.model()->index(1, 0));
      QTest::keyClick(server.view(), Qt::Key_Return);
      EXPECT_THAT(takeLog(), ElementsAre("server click two"));
    }
    EXPECT_EQ(server.currentText(), "two");
  });
}

TEST_F(ControlBindings, WheelOverAComboPicksNothing) {
  fillServers();
  show([this] {
    auto& server = widget<QComboBox>("server");
    QWheelEvent wheel(QPointF(5, 5), server.mapToGlobal(QPoint(5, 5)), {}, QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&server, &wheel);
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_EQ(controls().server.text(), "one");
  });
}

TEST_F(ControlBindings, ComboShowsAndTakesNativePaths) {
  show([this] {
    const QString home = QString::fromStdString(system->home().string());
    auto& server = widget<QComboBox>("server");
    controls().server.setText("C:\\maps");
    EXPECT_EQ(server.currentText(), home + "/maps");
    server.setFocus(Qt::MouseFocusReason);
    server.lineEdit()->end(false);
    QTest::keyClicks(&server, "/x");
    EXPECT_EQ(controls().server.text(), "C:\\maps\\x");
    EXPECT_EQ(server.currentText(), home + "/maps/x");
    controls().server.addEntry("C:\\maps");
    EXPECT_EQ(server.itemText(0), home + "/maps");
  });
}

TEST_F(ControlBindings, DropDownMirrorsAndPicks) {
  fillServers();
  show([this] {
    auto& choice = widget<QComboBox>("choice");
    controls().choice.setCurrentSelection(1);
    EXPECT_EQ(choice.currentIndex(), 1);
    EXPECT_THAT(takeLog(), IsEmpty());
    choice.setFocus(Qt::TabFocusReason);
    takeLog();
    QTest::keyClick(&choice, Qt::Key_Up);
    EXPECT_THAT(keysLeftOut(takeLog()), ElementsAre("choice click red"));
    EXPECT_EQ(controls().choice.index(), 0U);
  });
}

TEST_F(ControlBindings, ListBoxTakesExtendedSelectionsOfAPersonOnly) {
  fillServers();
  show([this] {
    auto& list = widget<QListWidget>("list");
    clickRow(list, 1);
    clickRow(list, 3, Qt::ControlModifier);
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "list got focus", "list click", "list click"));
    EXPECT_TRUE(controls().list.selected(1) && controls().list.selected(3));
    EXPECT_FALSE(controls().list.selected(2));
    clickRow(list, 1, Qt::ShiftModifier);
    EXPECT_TRUE(controls().list.selected(2));
  });
}

TEST_F(ControlBindings, MarksTravelWithTheirRowsInTheList) {
  fillServers();
  show([this] {
    auto& list = widget<QListWidget>("list");
    clickRow(list, 2);
    takeLog();
    controls().list.removeEntry(0);
    controls().list.insertEntry(0, "x");
    controls().list.insertEntry(0, "y");
    EXPECT_EQ(list.count(), 5);
    ASSERT_EQ(list.selectedItems().size(), 1);
    EXPECT_EQ(list.selectedItems().first()->text(), "c");
    controls().list.removeEntry(3);
    EXPECT_TRUE(list.selectedItems().isEmpty());
    controls().list.clear();
    EXPECT_EQ(list.count(), 0);
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(ControlBindings, ListShowsNativePathsAndKeepsTheOwnTexts) {
  show([this] {
    controls().list.addEntry("VLDef://C:\\maps\\a.VLDef");
    EXPECT_EQ(widget<QListWidget>("list").item(0)->text().toStdString(),
              "VLDef://" + system->home().string() + "/maps/a.VLDef");
    EXPECT_EQ(controls().list.entry(0), "VLDef://C:\\maps\\a.VLDef");
  });
}

TEST_F(ControlBindings, CheckBoxMirrorsAndClicks) {
  show([this] {
    auto& check = widget<QCheckBox>("check");
    controls().check.setChecked(true);
    EXPECT_TRUE(check.isChecked());
    EXPECT_THAT(takeLog(), ElementsAre("check on"));
    QTest::mouseClick(&check, Qt::LeftButton, {}, QPoint(8, check.height() / 2));
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "check got focus", "check off"));
    EXPECT_FALSE(check.isChecked());
    QTest::keyClick(&check, Qt::Key_Space);
    EXPECT_THAT(takeLog(), ElementsAre("check key 32/0", "check on"));
  });
}

TEST_F(ControlBindings, ButtonTakesTheFocusBeforeItIsClicked) {
  show([this] {
    QTest::mouseClick(&widget("button"), Qt::LeftButton);
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "button got focus", "button click"));
    EXPECT_TRUE(widget("button").hasFocus());
    QTest::mouseClick(&widget("picture"), Qt::LeftButton);
    EXPECT_THAT(takeLog(), ElementsAre("button lost focus", "picture got focus", "picture click"));
  });
}

TEST_F(ControlBindings, SpaceAndEnterClickTheFocusedButton) {
  show([this] {
    widget("button").setFocus(Qt::TabFocusReason);
    takeLog();
    QTest::keyClick(&widget("button"), Qt::Key_Space);
    QTest::keyClick(&widget("button"), Qt::Key_Return);
    EXPECT_THAT(takeLog(), ElementsAre("button key 32/0", "button click", "button key 13/0", "button click"));
  });
}

TEST_F(ControlBindings, MnemonicMovesTheFocusAndClicks) {
  show([this] {
    QTest::keyClick(&widget("box"), Qt::Key_P, Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!form.log.empty() && form.log.back() == "button click", 2000);
    EXPECT_THAT(keysLeftOut(takeLog()), ElementsAre("box lost focus", "button got focus", "button click"));
  });
}

TEST_F(ControlBindings, MnemonicOfALabelLeadsToItsNeighbor) {
  show([this] {
    widget("button").setFocus(Qt::TabFocusReason);
    takeLog();
    QTest::keyClick(&widget("button"), Qt::Key_N, Qt::AltModifier);
    EXPECT_THAT(keysLeftOut(takeLog()), ElementsAre("button lost focus", "box got focus"));
  });
}

TEST_F(ControlBindings, DisabledButtonTakesNoClick) {
  show([this] {
    controls().button.setEnabled(false);
    QTest::mouseClick(&widget("button"), Qt::LeftButton);
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(ControlBindings, KindsAcceptTheirOwnWidgetsOnly) {
  QLineEdit edit;
  QComboBox combo;
  QCheckBox check;
  QPushButton button;
  using widgets::widgetSuits;
  EXPECT_TRUE(widgetSuits(ControlKind::TextBox, edit));
  EXPECT_FALSE(widgetSuits(ControlKind::TextBox, combo));
  EXPECT_TRUE(widgetSuits(ControlKind::DropDown, combo));
  EXPECT_FALSE(widgetSuits(ControlKind::TypingCombo, combo));
  combo.setEditable(true);
  EXPECT_TRUE(widgetSuits(ControlKind::TypingCombo, combo));
  EXPECT_FALSE(widgetSuits(ControlKind::Button, check));
  EXPECT_TRUE(widgetSuits(ControlKind::Button, button));
  EXPECT_FALSE(widgetSuits(ControlKind::CheckBox, button));
  EXPECT_FALSE(widgetSuits(ControlKind::ListBox, edit));
  EXPECT_FALSE(widgetSuits(ControlKind::Label, edit));
  EXPECT_TRUE(widgetSuits(ControlKind::Hosted, edit));
}

}  // namespace
}  // namespace vlclientui::test
