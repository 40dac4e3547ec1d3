// How the focus moves, and when a click counts.

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Focus : public SampleFormTest {
 protected:
  Focus() {
    controls().box.userFocuses();
    takeLog();
  }
};

class Clicks : public Focus {};

TEST_F(Focus, IsLostOnTheOldControlAndThenGainedOnTheNew) {
  controls().otherBox.userFocuses();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "otherBox got focus"));
  EXPECT_TRUE(controls().otherBox.hasFocus());
  EXPECT_FALSE(controls().box.hasFocus());
}

TEST_F(Focus, IsGainedOnlyWhenTheLostHandlerHasRunToItsEnd) {
  when("box lost focus", [&] {
    controls().otherBox.setText("written while losing");
    EXPECT_EQ(form.focusedControl(), nullptr);
  });
  controls().otherBox.userFocuses();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "otherBox changed", "otherBox got focus"));
}

TEST_F(Focus, RaisesNothingWhenItMovesToWhereItIs) {
  controls().box.userFocuses();
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, StaysAwayFromLabelsAndHostedControlsThemselves) {
  controls().label.userFocuses();
  controls().hosted.userFocuses();
  EXPECT_TRUE(controls().box.hasFocus());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, StaysAwayFromDisabledAndHiddenControls) {
  controls().otherBox.setEnabled(false);
  controls().otherBox.userFocuses();
  controls().list.setVisible(false);
  controls().list.userFocuses();
  EXPECT_TRUE(controls().box.hasFocus());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, IsLostWithItsEventWhenTheControlIsDisabled) {
  controls().box.setEnabled(false);
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
  EXPECT_EQ(form.focusedControl(), nullptr);
}

TEST_F(Focus, IsLostWithItsEventWhenTheControlIsHidden) {
  controls().box.setVisible(false);
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
  EXPECT_EQ(form.focusedControl(), nullptr);
}

TEST_F(Focus, IsNotLostWhenAnotherControlIsDisabledOrHidden) {
  controls().otherBox.setEnabled(false);
  controls().list.setVisible(false);
  EXPECT_TRUE(controls().box.hasFocus());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, GoesNowhereWhenTheLostHandlerDisablesTheNewControl) {
  when("box lost focus", [&] { controls().otherBox.setEnabled(false); });
  controls().otherBox.userFocuses();
  EXPECT_EQ(form.focusedControl(), nullptr);
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
}

TEST_F(Focus, LeavesForSomethingThatIsNoControl) {
  form.userFocusesElsewhere();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
  EXPECT_EQ(form.focusedControl(), nullptr);
  form.userFocusesElsewhere();
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, DoesNotMoveForAMessageBox) {
  toolkit.showMessage({"Text", ""});
  EXPECT_TRUE(controls().box.hasFocus());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, DoesNotMoveForAFileDialogOrPendingEvents) {
  static_cast<void>(toolkit.openFile({}));
  static_cast<void>(toolkit.browseForFolder({}));
  toolkit.letPendingEventsRun();
  EXPECT_TRUE(controls().box.hasFocus());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Focus, LiesInTheHostedControlOfAnInnerControl) {
  EXPECT_FALSE(form.focusLiesIn(controls().hosted));
  controls().hosted.innerBox.userFocuses();
  EXPECT_TRUE(form.focusLiesIn(controls().hosted));
  EXPECT_TRUE(form.focusLiesIn(controls().hosted.innerBox));
  EXPECT_FALSE(form.focusLiesIn(controls().hosted.innerButton));
  EXPECT_FALSE(form.focusLiesIn(controls().box));
}

TEST_F(Focus, IsLostByAnInnerControlWhenItsHostIsHidden) {
  controls().hosted.innerBox.userFocuses();
  takeLog();
  controls().hosted.setVisible(false);
  EXPECT_THAT(takeLog(), ElementsAre("innerBox lost focus", "hosted hidden"));
}

TEST_F(Focus, IsGivenToTheFirstControlInTabOrderWhenTheWindowAppears) {
  form.unload();
  takeLog();
  controls().box.setEnabled(false);
  form.windowAppeared();
  EXPECT_THAT(takeLog(), ElementsAre("otherBox got focus"));
}

TEST_F(Focus, IsFoundInsideAHostedControlWhenTheWindowAppears) {
  form.unload();
  takeLog();
  for (Control* const control :
       {static_cast<Control*>(&controls().box), static_cast<Control*>(&controls().otherBox),
        static_cast<Control*>(&controls().typing), static_cast<Control*>(&controls().drop),
        static_cast<Control*>(&controls().list), static_cast<Control*>(&controls().check),
        static_cast<Control*>(&controls().button), static_cast<Control*>(&controls().picture)}) {
    control->setVisible(false);
  }
  form.windowAppeared();
  EXPECT_THAT(takeLog(), ElementsAre("innerBox got focus"));
}

TEST(FirstFocus, IsTheFormsOwnChoiceWhereThatCanTakeIt) {
  headless::HeadlessToolkit toolkit;
  SampleForm form(toolkit);
  form.setFirstFocus(&form.controls().list);
  form.windowAppeared();
  EXPECT_TRUE(form.controls().list.hasFocus());
  form.unload();
  form.setFirstFocus(&form.controls().list);
  form.controls().list.setEnabled(false);
  form.windowAppeared();
  EXPECT_TRUE(form.controls().box.hasFocus());
}

TEST_F(Clicks, MoveTheFocusToTheButtonFirst) {
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "button got focus", "button clicked"));
  EXPECT_TRUE(controls().button.hasFocus());
}

TEST_F(Clicks, OnTheFocusedButtonRaiseTheClickAlone) {
  controls().button.userFocuses();
  takeLog();
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("button clicked"));
}

TEST_F(Clicks, OnAPictureButtonMoveTheFocusToo) {
  controls().picture.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "picture got focus", "picture clicked"));
}

TEST_F(Clicks, DoNotCountWhenTheLostFocusHandlerShowedAMessageBox) {
  when("box lost focus", [&] { toolkit.showMessage({"Complaint", ""}); });
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "button got focus"));
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("button clicked"));
}

TEST_F(Clicks, CountWhenAMessageBoxWasShownBefore) {
  toolkit.showMessage({"Earlier", ""});
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "button got focus", "button clicked"));
}

TEST_F(Clicks, DoNotReachADisabledOrHiddenButton) {
  controls().button.setEnabled(false);
  controls().button.userClicks();
  controls().picture.setVisible(false);
  controls().picture.userClicks();
  EXPECT_THAT(takeLog(), IsEmpty());
  EXPECT_TRUE(controls().box.hasFocus());
}

TEST_F(Clicks, DoNotCountWhenTheLostFocusHandlerDisabledTheButton) {
  when("box lost focus", [&] { controls().button.setEnabled(false); });
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
}

TEST_F(Clicks, DoNotCountWhenTheLostFocusHandlerUnloadedTheForm) {
  when("box lost focus", [&] { form.unload(); });
  controls().button.userClicks();
  EXPECT_THAT(form.log, ElementsAre("box lost focus"));
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Clicks, DoNotReachTheOldButtonWhenTheLostFocusHandlerMadeNewControls) {
  when("box lost focus", [&] {
    form.unload();
    form.load();
  });
  controls().button.userClicks();
  EXPECT_THAT(form.log, ElementsAre("box lost focus"));
  EXPECT_TRUE(form.loaded());
  EXPECT_EQ(form.livingSets(), 1);
}

TEST_F(Clicks, OfEscapeClickTheCancelButton) {
  form.userPressesEscape();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "button got focus", "button clicked"));
  form.setCancelButton(nullptr);
  form.userPressesEscape();
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Clicks, OfEnterInABoxClickTheDefaultButtonAfterTheBoxIsLeft) {
  EXPECT_FALSE(controls().box.userPresses(keyCode::enter));
  takeLog();
  form.setDefaultButton(&controls().button);
  EXPECT_TRUE(controls().box.userPresses(keyCode::enter));
  EXPECT_THAT(takeLog(), ElementsAre("form previews 13", "box key 13/0", "box lost focus", "button got focus",
                                     "button clicked"));
}

TEST_F(Clicks, OfEnterWithAModifierClickNothing) {
  form.setDefaultButton(&controls().button);
  EXPECT_FALSE(controls().box.userPresses(keyCode::enter, keyModifier::control));
  EXPECT_FALSE(controls().box.userPresses(keyCode::escape, keyModifier::shift));
  EXPECT_TRUE(controls().box.hasFocus());
}

TEST_F(Clicks, OfEnterAreToldAsOneOperation) {
  form.setDefaultButton(&controls().button);
  std::vector<Operation> told;
  const OperationListener listener([&told](const Operation& operation) { told.push_back(operation); });
  controls().box.userPresses(keyCode::enter);
  EXPECT_THAT(told, ElementsAre(Operation{Operation::Kind::Return, form.formName(), "box", {}}));
  EXPECT_THAT(takeLog(), Contains("button clicked"));
  told.clear();
  form.userPressesEnter();
  EXPECT_THAT(told, ElementsAre(Operation{Operation::Kind::Return, form.formName(), {}, {}}));
  told.clear();
  controls().button.userPresses(keyCode::enter);
  EXPECT_THAT(told, ElementsAre(Operation{Operation::Kind::Press, form.formName(), "button", {}}));
}

TEST_F(Clicks, OfEnterOnAButtonClickThatButtonAndNotTheDefaultOne) {
  form.setDefaultButton(&controls().button);
  controls().picture.userFocuses();
  takeLog();
  EXPECT_TRUE(controls().picture.userPresses(keyCode::enter));
  EXPECT_THAT(takeLog(), Contains("picture clicked"));
  EXPECT_TRUE(controls().picture.hasFocus());
}

TEST_F(Clicks, OfEnterDoNotCountWhenTheLostFocusHandlerShowedAMessageBox) {
  form.setDefaultButton(&controls().button);
  when("box lost focus", [&] { toolkit.showMessage({"Complaint", ""}); });
  EXPECT_TRUE(controls().box.userPresses(keyCode::enter));
  EXPECT_THAT(takeLog(), Not(Contains("button clicked")));
  EXPECT_TRUE(controls().button.hasFocus());
}

TEST_F(Clicks, OfEnterDoNothingOverADisabledDefaultButton) {
  form.setDefaultButton(&controls().button);
  controls().button.setEnabled(false);
  EXPECT_TRUE(controls().box.userPresses(keyCode::enter));
  EXPECT_TRUE(controls().box.hasFocus());
}

TEST_F(Clicks, OfEscapeInABoxClickTheCancelButton) {
  EXPECT_TRUE(controls().box.userPresses(keyCode::escape));
  EXPECT_THAT(takeLog(), Contains("button clicked"));
}

TEST_F(Clicks, OfEnterAndEscapeKnowNoButtonAfterAnUnload) {
  form.setDefaultButton(&controls().button);
  form.unload();
  EXPECT_EQ(form.defaultButton(), nullptr);
  EXPECT_FALSE(form.userPressesEnter());
  EXPECT_FALSE(form.userPressesEscape());
}

TEST_F(Clicks, AndAllElseDoNothingWhileTheFormTakesNoInput) {
  form.withoutInput([&] {
    EXPECT_FALSE(form.acceptsInput());
    controls().button.userClicks();
    controls().button.userFocuses();
    controls().box.userTypes("typed");
    EXPECT_FALSE(controls().box.userPresses(keyCode::escape));
    form.userFocusesElsewhere();
    form.userPressesEnter();
    form.userPressesEscape();
    form.userCloses();
  });
  EXPECT_THAT(takeLog(), IsEmpty());
  EXPECT_TRUE(form.loaded());
  EXPECT_TRUE(controls().box.hasFocus());
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), Contains("button clicked"));
}

TEST_F(Clicks, CountAgainAfterAFailureInsideTheTimeWithoutInput) {
  EXPECT_THROW(form.withoutInput([] { throw RuntimeFailure("broken"); }), RuntimeFailure);
  EXPECT_TRUE(form.acceptsInput());
}

TEST_F(Clicks, OnAButtonInsideADisabledHostDoNothing) {
  controls().hosted.setEnabled(false);
  controls().hosted.innerButton.userClicks();
  EXPECT_THAT(takeLog(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
