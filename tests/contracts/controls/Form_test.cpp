#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Forms : public SampleFormTest {};
class Unloading : public SampleFormTest {};
class Failures : public SampleFormTest {};

TEST(FormLoading, HappensAtTheFirstTouchOfAControl) {
  headless::HeadlessToolkit toolkit;
  SampleForm form(toolkit);
  EXPECT_FALSE(form.loaded());
  EXPECT_EQ(form.livingSets(), 0);
  form.controls().box.setText("x");
  EXPECT_TRUE(form.loaded());
  EXPECT_EQ(form.loads, 1);
}

TEST(FormLoading, HappensAtShowWhenNothingWasTouched) {
  headless::HeadlessToolkit toolkit;
  SampleForm form(toolkit);
  toolkit.scriptModal([&](Form& shown) { EXPECT_TRUE(shown.loaded()); });
  form.showModal();
  EXPECT_EQ(form.loads, 1);
}

TEST_F(Forms, LoadOnlyOnce) {
  form.load();
  static_cast<void>(controls());
  EXPECT_EQ(form.loads, 1);
  EXPECT_EQ(form.livingSets(), 1);
}

TEST_F(Forms, KeepTheirFieldsWhenTheControlsAreGone) {
  controls().box.setText("x");
  form.unload();
  EXPECT_EQ(form.livingSets(), 0);
  EXPECT_THAT(form.log, ElementsAre("box changed"));
  EXPECT_THAT(form.ControlContainer::controls(), IsEmpty());
}

TEST_F(Forms, HaveNewControlsAtEachShow) {
  controls().box.setText("first show");
  controls().typing.addEntry("entry");
  controls().list.setEnabled(false);
  form.showModal();
  EXPECT_EQ(controls().box.text(), "");
  EXPECT_EQ(controls().typing.count(), 0U);
  EXPECT_TRUE(controls().list.enabled());
  EXPECT_EQ(form.loads, 2);
}

TEST_F(Forms, KeepWhatWasWrittenBeforeTheShow) {
  controls().box.setText("prepared");
  std::string seen;
  toolkit.scriptModal([&](Form&) { seen = controls().box.text(); });
  form.showModal();
  EXPECT_EQ(seen, "prepared");
}

TEST_F(Forms, DoNotHearOldControlsAfterAnUnload) {
  form.unload();
  form.load();
  takeLog();
  controls().box.userPresses(65);
  EXPECT_THAT(takeLog(), ElementsAre("form previews 65", "box key 65/0"));
}

TEST_F(Forms, TellTheirViewOfANewCaption) {
  int told = 0;
  form.captionChanged.connect([&] { ++told; });
  form.setCaption("New");
  EXPECT_EQ(form.caption(), "New");
  EXPECT_EQ(told, 1);
}

TEST(FormRelease, RunsNoUnloadRule) {
  headless::HeadlessToolkit toolkit;
  int unloads = 0;
  {
    SampleForm form(toolkit);
    form.whenUnloading = [&] { ++unloads; };
    form.load();
  }
  EXPECT_EQ(unloads, 0);
}

TEST(FormRelease, TakesTheWindowAway) {
  headless::HeadlessToolkit toolkit;
  WindowHandle window = 0;
  {
    SampleForm form(toolkit);
    window = toolkit.windowOf(form.controls().hosted);
    EXPECT_TRUE(toolkit.hasWindow(window));
  }
  EXPECT_FALSE(toolkit.hasWindow(window));
}

TEST_F(Unloading, RunsTheUnloadRuleWhileTheControlsStillLive) {
  controls().box.setText("last words");
  std::string seen;
  form.whenUnloading = [&] { seen = controls().box.text(); };
  form.unload();
  EXPECT_EQ(seen, "last words");
  EXPECT_EQ(form.unloads, 1);
}

TEST_F(Unloading, OfAFormThatIsNotLoadedDoesNothing) {
  form.unload();
  form.unload();
  EXPECT_EQ(form.unloads, 1);
}

TEST_F(Unloading, InsideItsOwnUnloadRuleDoesNothing) {
  form.whenUnloading = [&] { form.unload(); };
  form.unload();
  EXPECT_EQ(form.unloads, 1);
  EXPECT_FALSE(form.loaded());
}

TEST_F(Unloading, InsideAHandlerDestroysTheControlsOnlyAfterTheOutermostEvent) {
  Button* const clicked = &controls().button;
  std::string nameAfterUnload;
  when("button clicked", [&] {
    form.unload();
    EXPECT_FALSE(form.loaded());
    EXPECT_EQ(form.livingSets(), 1);
    nameAfterUnload = clicked->name();
  });
  controls().button.userClicks();
  EXPECT_EQ(nameAfterUnload, "button");
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Unloading, InsideANestedEventWaitsForTheOutermost) {
  int living = -1;
  form.react = [&](const std::string& entry) {
    if (entry == "button clicked") {
      controls().box.setText("nested");
      living = form.livingSets();
    }
    if (entry == "box changed") form.unload();
  };
  controls().button.userClicks();
  EXPECT_EQ(living, 1);
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Unloading, InsideAnEventThatCodeRaisedDestroysTheControlsOnlyAfterIt) {
  int living = -1;
  when("box changed", [&] {
    form.unload();
    living = form.livingSets();
  });
  controls().box.setText("written");
  EXPECT_EQ(living, 1);
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Unloading, InsideTheLostFocusOfAControlThatIsHiddenIsSafe) {
  controls().hosted.innerBox.userFocuses();
  when("innerBox lost focus", [&] { form.unload(); });
  controls().hosted.setVisible(false);
  EXPECT_FALSE(form.loaded());
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Unloading, AndLoadingAgainInsideAHandlerKeepsBothSetsUntilItReturns) {
  int living = 0;
  when("button clicked", [&] {
    form.unload();
    form.load();
    living = form.livingSets();
  });
  controls().button.userClicks();
  EXPECT_EQ(living, 2);
  EXPECT_EQ(form.livingSets(), 1);
  EXPECT_TRUE(form.loaded());
}

TEST_F(Unloading, RaisesNoFocusEvent) {
  controls().box.userFocuses();
  takeLog();
  form.unload();
  EXPECT_THAT(takeLog(), IsEmpty());
  EXPECT_EQ(form.focusedControl(), nullptr);
}

TEST_F(Unloading, ByTheFrameRunsTheUnloadRule) {
  form.userCloses();
  EXPECT_EQ(form.unloads, 1);
  EXPECT_FALSE(form.loaded());
}

TEST_F(Unloading, WhoseRuleFailsLeavesTheFormLoaded) {
  form.whenUnloading = [] { throw RuntimeFailure("cannot unload"); };
  form.userCloses();
  EXPECT_TRUE(form.loaded());
  EXPECT_THAT(toolkit.failures(), ElementsAre("cannot unload"));
  form.whenUnloading = nullptr;
  form.userCloses();
  EXPECT_FALSE(form.loaded());
}

TEST_F(Failures, OfAHandlerReachTheTopLevelHandlerAndTheFormLivesOn) {
  when("button clicked", [] { throw RuntimeFailure("the handler fails"); });
  EXPECT_NO_THROW(controls().button.userClicks());
  EXPECT_THAT(toolkit.failures(), ElementsAre("the handler fails"));
  form.react = nullptr;
  takeLog();
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("button clicked"));
}

TEST_F(Failures, OfAnyExceptionTypeReachTheTopLevelHandler) {
  when("button clicked", [] { throw std::logic_error("not of ours"); });
  controls().button.userClicks();
  when("button clicked", [] { throw 17; });
  EXPECT_NO_THROW(controls().button.userClicks());
  ASSERT_EQ(toolkit.failures().size(), 2U);
  EXPECT_EQ(toolkit.failures()[0], "not of ours");
}

TEST_F(Failures, DoNotKeepOldControlsAlive) {
  when("button clicked", [&] {
    form.unload();
    throw 17;
  });
  controls().button.userClicks();
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(Failures, OfAHandlerThatCodeRaisedReachTheCode) {
  when("box changed", [] { throw RuntimeFailure("the handler fails"); });
  EXPECT_THROW(controls().box.setText("x"), RuntimeFailure);
  EXPECT_THAT(toolkit.failures(), IsEmpty());
  EXPECT_EQ(controls().box.text(), "x");
}

TEST_F(Failures, OfALostFocusHandlerEndTheClick) {
  controls().box.userFocuses();
  takeLog();
  when("box lost focus", [] { throw RuntimeFailure("the handler fails"); });
  controls().button.userClicks();
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus"));
  EXPECT_THAT(toolkit.failures(), ElementsAre("the handler fails"));
}

TEST_F(Failures, OfAPersonsImpossibleChoiceAreReportedToo) {
  controls().drop.userSelects(4);
  EXPECT_EQ(toolkit.failures().size(), 1U);
}

}  // namespace
}  // namespace vlclientui::test
