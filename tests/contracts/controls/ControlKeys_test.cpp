#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Keys : public SampleFormTest {};

TEST_F(Keys, AreRaisedOnTheFormFirstAndThenOnTheControl) {
  controls().box.userPresses(keyCode::enter);
  EXPECT_THAT(takeLog(), ElementsAre("form previews 13", "box key 13/0"));
}

TEST_F(Keys, PassTheContainersFromTheOutsideInwards) {
  controls().hosted.innerBox.userPresses(keyCode::f1, keyModifier::control);
  EXPECT_THAT(takeLog(), ElementsAre("form previews 112", "hosted previews 112", "innerBox key 112/2"));
}

TEST_F(Keys, OfTabRaiseNothing) {
  controls().box.userPresses(9);
  controls().box.userPresses(9, keyModifier::shift);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Keys, OfEveryOtherKindAreRaised) {
  form.setCancelButton(nullptr);
  for (const int key : {keyCode::backspace, keyCode::enter, keyCode::escape, 16, 17, 18, 32, 65, 123}) {
    controls().box.userPresses(key);
    EXPECT_THAT(takeLog(),
                ElementsAre("form previews " + std::to_string(key), "box key " + std::to_string(key) + "/0"));
  }
}

TEST_F(Keys, CarryTheModifiersShiftCtrlAndAltAsASum) {
  for (int shift = 0; shift < 8; ++shift) {
    controls().box.userPresses(65, shift);
    EXPECT_EQ(takeLog().back(), "box key 65/" + std::to_string(shift));
  }
}

TEST_F(Keys, LeaveOtherModifiersOut) {
  controls().box.userPresses(keyCode::f1, keyModifier::control + 8);
  EXPECT_EQ(takeLog().back(), "box key 112/2");
  controls().box.userPresses(keyCode::f1, 0x30);
  EXPECT_EQ(takeLog().back(), "box key 112/0");
}

TEST_F(Keys, DoNotReachDisabledOrHiddenControls) {
  controls().box.setEnabled(false);
  controls().box.userPresses(65);
  controls().hosted.setVisible(false);
  takeLog();
  controls().hosted.innerBox.userPresses(65);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Keys, EndAtTheHandlerThatUnloadsTheForm) {
  when("form previews 65", [&] { form.unload(); });
  controls().hosted.innerBox.userPresses(65);
  EXPECT_THAT(form.log, ElementsAre("form previews 65"));
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Keys, WhoseHandlerFailsReachTheTopLevelHandler) {
  when("form previews 65", [] { throw RuntimeFailure("no help"); });
  controls().box.userPresses(65);
  EXPECT_THAT(toolkit.failures(), ElementsAre("no help"));
  EXPECT_THAT(form.log, ElementsAre("form previews 65"));
}

}  // namespace
}  // namespace vlclientui::test
