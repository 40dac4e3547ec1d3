#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HostedControls : public SampleFormTest {};

TEST_F(HostedControls, RaiseTheHideEventOncePerChange) {
  controls().hosted.setVisible(false);
  controls().hosted.setVisible(false);
  EXPECT_EQ(controls().hosted.hides, 1);
  controls().hosted.setVisible(true);
  EXPECT_EQ(controls().hosted.hides, 1);
  controls().hosted.setVisible(false);
  EXPECT_EQ(controls().hosted.hides, 2);
}

TEST_F(HostedControls, AreHiddenBeforeTheEvent) {
  bool visible = true;
  when("hosted hidden", [&] { visible = controls().hosted.visible(); });
  controls().hosted.setVisible(false);
  EXPECT_FALSE(visible);
}

TEST_F(HostedControls, RaiseNoHideEventOnUnload) {
  form.unload();
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(HostedControls, RaiseNoHideEventWhenTheWindowIsClosedByItsFrame) {
  form.showModal();
  EXPECT_FALSE(form.loaded());
  EXPECT_THAT(form.log, testing::Not(testing::Contains("hosted hidden")));
}

TEST_F(HostedControls, AreToldThatTheWindowHasAppearedBeforeAnyControlHasTheFocus) {
  std::vector<const Control*> focused;
  controls().hosted.whenShown = [&] { focused.push_back(form.focusedControl()); };
  form.windowAppeared();
  EXPECT_THAT(focused, ElementsAre(nullptr));
  EXPECT_TRUE(form.focusedControl());
}

TEST_F(HostedControls, MayUnloadTheFormAsTheWindowAppears) {
  controls().hosted.whenShown = [&] { form.unload(); };
  form.windowAppeared();
  EXPECT_FALSE(form.loaded());
}

TEST_F(HostedControls, KeepTheirInnerControlsFromInputWhileHidden) {
  controls().hosted.setVisible(false);
  takeLog();
  controls().hosted.innerBox.userTypes("typed");
  controls().hosted.innerButton.userClicks();
  EXPECT_EQ(controls().hosted.innerBox.text(), "");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(HostedControls, KnowTheFormThatTheyStandOn) {
  EXPECT_EQ(controls().hosted.topForm(), &form);
  EXPECT_EQ(controls().hosted.innerBox.form(), &form);
  EXPECT_EQ(controls().hosted.viewName(), "SampleHosted");
}

TEST_F(HostedControls, KeepTheirControlsToThemselves) {
  EXPECT_EQ(controls().hosted.findControl("innerBox"), &controls().hosted.innerBox);
  EXPECT_EQ(form.findControl("innerBox"), nullptr);
  EXPECT_EQ(form.findControl("hosted"), &controls().hosted);
}

TEST(HostedControlWithoutAForm, HasStateAndEventsButNoFocus) {
  SampleHosted alone(nullptr, "alone");
  int changes = 0;
  int clicks = 0;
  alone.innerBox.change.connect([&] { ++changes; });
  alone.innerButton.click.connect([&] { ++clicks; });
  alone.innerBox.userFocuses();
  alone.innerBox.userTypes("typed");
  alone.innerButton.userClicks();
  EXPECT_EQ(alone.topForm(), nullptr);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(alone.innerBox.hasFocus());
  alone.setVisible(false);
  EXPECT_EQ(alone.hides, 1);
}

TEST(HostedControlWithoutAForm, HasNoWindow) {
  headless::HeadlessToolkit toolkit;
  const SampleHosted alone(nullptr, "alone");
  EXPECT_EQ(toolkit.windowOf(alone), 0);
}

TEST_F(HostedControls, WithoutRulesOfTheirOwnAreShownAndHiddenAllTheSame) {
  HostedControl plain(nullptr, "plain", "HostedControl");
  plain.windowAppeared();
  plain.setVisible(false);
  EXPECT_FALSE(plain.visible());
}

}  // namespace
}  // namespace vlclientui::test
