#include "widgets/FormBinder.h"

#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "widgets/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using FormBinder = WidgetTest;

/// A widget inside the window that belongs to no control, as an engine's list does.
QWidget& addStranger(QWidget& slot) {
  auto* stranger = new QTreeView;
  slot.layout()->addWidget(stranger);
  stranger->show();
  return *stranger;
}

TEST_F(FormBinder, EveryControlHasItsWidget) {
  show([this] { EXPECT_THAT(toolkit->missingWidgets(form), IsEmpty()); });
}

TEST_F(FormBinder, MissingDoubledAndWrongWidgetsAreTold) {
  show([this] {
    widget("box").setObjectName("elsewhere");
    (new QPushButton(toolkit->viewOf(form)))->setObjectName("button");
    widget("inner").setObjectName("");
    (new QLabel(&widget("hosted")))->setObjectName("inner");
    EXPECT_THAT(toolkit->missingWidgets(form), ElementsAre("box", "button", "inner"));
  });
}

TEST_F(FormBinder, ControlOfAHostedControlIsLookedForInItsOwnLayout) {
  show([this] {
    (new QLineEdit(toolkit->viewOf(form)))->setObjectName("inner");
    EXPECT_THAT(toolkit->missingWidgets(form), IsEmpty());
  });
}

TEST_F(FormBinder, FirstControlHasTheFocusWhenTheWindowAppears) {
  form.afterLoad = [this] { takeLog(); };
  show([this] {
    EXPECT_EQ(form.focusedControl(), &controls().box);
    EXPECT_TRUE(widget("box").hasFocus());
  });
}

TEST_F(FormBinder, MovingTheFocusLosesItOnceAndThenGainsIt) {
  show([this] {
    QTest::mouseClick(&widget("server"), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "server got focus"));
    QTest::keyClick(&widget("server"), Qt::Key_Tab);
    EXPECT_THAT(takeLog(), ElementsAre("server lost focus", "choice got focus"));
  });
}

TEST_F(FormBinder, FocusMovedByTheLogicMovesTheWidgetFocus) {
  show([this] {
    form.moveFocus(&controls().hosted.inner);
    EXPECT_TRUE(widget("inner").hasFocus());
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "inner got focus"));
  });
}

TEST_F(FormBinder, FocusOnAWidgetWithoutAControlIsElsewhere) {
  show([this] {
    QWidget& stranger = addStranger(widget<QFrame>("slot"));
    stranger.setFocus(Qt::MouseFocusReason);
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
    EXPECT_EQ(form.focusedControl(), nullptr);
    widget("box").setFocus(Qt::MouseFocusReason);
    EXPECT_THAT(takeLog(), ElementsAre("box got focus"));
  });
}

TEST_F(FormBinder, AClickIntoAWindowThatIsNotActiveYetCountsOnceItIs) {
  show([this] {
    widget("box").setFocus();
    takeLog();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    widget("list").setFocus(Qt::MouseFocusReason);
    EXPECT_THAT(takeLog(), IsEmpty());
    toolkit->viewOf(form)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(toolkit->viewOf(form)));
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "list got focus"));
  });
}

TEST_F(FormBinder, SwitchingWindowsMovesNoFocus) {
  show([this] {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    toolkit->viewOf(form)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(toolkit->viewOf(form)));
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(FormBinder, PopupsMoveNoFocus) {
  form.afterLoad = [this] { controls().choice.addEntry("red"); };
  show([this] {
    auto& choice = widget<QComboBox>("choice");
    choice.setFocus(Qt::TabFocusReason);
    takeLog();
    choice.showPopup();
    choice.hidePopup();
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_TRUE(controls().choice.hasFocus());
  });
}

TEST_F(FormBinder, MessagesMoveNoFocus) {
  show([this] {
    answerNextMessage();
    toolkit->showMessage({"text", "title"});
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_TRUE(controls().box.hasFocus());
  });
}

TEST_F(FormBinder, ClickAfterAMessageOfTheLostFocusDoesNotCount) {
  show([this] {
    controls().box.lostFocus.connect([this] { toolkit->showMessage({"wrong value", ""}); });
    answerNextMessage();
    QTest::mouseClick(&widget("button"), Qt::LeftButton);
    EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "button got focus"));
    EXPECT_FALSE(widget<QPushButton>("button").isDown());
    QTest::mouseClick(&widget("button"), Qt::LeftButton);
    EXPECT_THAT(takeLog(), ElementsAre("button click"));
  });
}

TEST_F(FormBinder, DisablingTheFocusedControlGivesTheFocusToNoOther) {
  show([this] {
    widget("button").setFocus(Qt::TabFocusReason);
    takeLog();
    controls().button.setEnabled(false);
    EXPECT_THAT(takeLog(), ElementsAre("button lost focus"));
    EXPECT_EQ(form.focusedControl(), nullptr);
    EXPECT_EQ(toolkit->viewOf(form)->focusWidget(), toolkit->viewOf(form));
  });
}

TEST_F(FormBinder, TabGoesOnFromTheControlThatWasTakenAway) {
  show([this] {
    for (const auto& [key, next] : {std::pair{Qt::Key_Tab, "picture"}, {Qt::Key_Backtab, "check"}}) {
      controls().button.setVisible(true);
      widget("button").setFocus(Qt::TabFocusReason);
      controls().button.setVisible(false);
      QTest::keyClick(toolkit->viewOf(form), key);
      EXPECT_TRUE(widget(next).hasFocus()) << next;
    }
  });
}

TEST_F(FormBinder, HidingAHostedControlTakesTheFocusOutOfIt) {
  show([this] {
    widget("inner").setFocus(Qt::TabFocusReason);
    takeLog();
    controls().hosted.setVisible(false);
    EXPECT_THAT(takeLog(), ElementsAre("inner lost focus"));
    EXPECT_FALSE(widget("inner").isVisible());
  });
}

TEST_F(FormBinder, KeysReachTheControlBeforeTheWidget) {
  show([this] {
    std::string textAtKey = "none";
    controls().box.keyDown.connect([&](const KeyEvent&) { textAtKey = controls().box.text(); });
    QTest::keyClick(&widget("box"), Qt::Key_A);
    EXPECT_EQ(textAtKey, "");
    EXPECT_THAT(takeLog(), ElementsAre("box key 65/0", "box change a"));
  });
}

TEST_F(FormBinder, TabIsNoKeyOfAControl) {
  show([this] {
    QTest::keyClick(&widget("box"), Qt::Key_Tab);
    EXPECT_THAT(takeLog(), Not(Contains(testing::HasSubstr(" key "))));
  });
}

TEST_F(FormBinder, KeysPassTheFormFirst) {
  show([this] {
    form.keyPreview.connect(
        [this](const KeyEvent& key) { form.log.push_back("form " + std::to_string(key.keyCode)); });
    QTest::keyClick(&widget("inner"), Qt::Key_F1);
    EXPECT_THAT(takeLog(), ElementsAre("form 112", "inner key 112/0"));
  });
}

TEST_F(FormBinder, EnterInTheServerBoxPressesNoButton) {
  show([this] {
    widget("server").setFocus(Qt::MouseFocusReason);
    takeLog();
    QTest::keyClick(&widget("server"), Qt::Key_Return);
    EXPECT_THAT(takeLog(), ElementsAre("server key 13/0"));
    EXPECT_TRUE(form.loaded());
  });
}

TEST_F(FormBinder, FailureOfAHandlerIsShownAndTheWindowLivesOn) {
  show([this] {
    controls().button.click.connect([] { throw RuntimeFailure("handler failed"); });
    answerNextMessage();
    QTest::mouseClick(&widget("button"), Qt::LeftButton);
    EXPECT_THAT(messages, ElementsAre(QStringLiteral("handler failed")));
    EXPECT_TRUE(form.loaded());
  });
}

TEST_F(FormBinder, UnloadInsideAHandlerLeavesNothingBehind) {
  show([this] {
    controls().button.click.connect([this] { form.unload(); });
    QTest::mouseClick(&widget("button"), Qt::LeftButton);
    EXPECT_FALSE(form.loaded());
    EXPECT_EQ(toolkit->viewOf(form), nullptr);
  });
}

TEST_F(FormBinder, UnloadInsideAKeyHandlerUsesTheKeyUp) {
  show([this] {
    controls().box.keyDown.connect([this](const KeyEvent&) { form.unload(); });
    QTest::keyClick(&widget("box"), Qt::Key_A);
    EXPECT_FALSE(form.loaded());
    EXPECT_THAT(takeLog(), ElementsAre("box key 65/0"));
  });
}

}  // namespace
}  // namespace vlclientui::test
