// One form, one window after the other: what changes while a window is made or taken away.

#include "contracts/Silence.h"
#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A window system that runs an action while it makes or removes a window.
class BusyToolkit : public headless::HeadlessToolkit {
 public:
  std::function<void()> whileMaking;
  std::function<void()> whileTakingAway;
  int made = 0;
  int takenAway = 0;

  void createView(Form& form) override {
    ++made;
    if (whileMaking) whileMaking();
    HeadlessToolkit::createView(form);
  }
  void destroyView(Form& form) override {
    ++takenAway;
    if (whileTakingAway) whileTakingAway();
    HeadlessToolkit::destroyView(form);
  }
};

/// A form that runs an action while it loads.
class LoadingForm : public SampleForm {
 public:
  using SampleForm::SampleForm;
  std::function<void()> whileLoading;

 protected:
  void onLoad() override {
    SampleForm::onLoad();
    if (whileLoading) whileLoading();
  }
};

class FormWindows : public testing::Test {
 protected:
  BusyToolkit toolkit;
  LoadingForm form{toolkit};
};

TEST_F(FormWindows, AreToldFromEachOtherByTheirNumber) {
  const auto none = form.windowNumber();
  form.load();
  const auto first = form.windowNumber();
  EXPECT_NE(first, none);
  form.unload();
  EXPECT_NE(form.windowNumber(), first);
  form.load();
  EXPECT_NE(form.windowNumber(), first);
}

TEST_F(FormWindows, KeepTheirNumberWhateverAPersonDoesInThem) {
  form.load();
  const auto number = form.windowNumber();
  form.userActivates();
  form.controls().box.userFocuses();
  form.controls().box.userTypes("x");
  form.moveTo(10, 10);
  form.userLeaves();
  EXPECT_EQ(form.windowNumber(), number);
}

TEST(ReleasedForms, TellTheTopLevelHandlerWhenTheirWindowFailsToGo) {
  BusyToolkit toolkit;
  toolkit.whileTakingAway = [] { throw RuntimeFailure("the window stays"); };
  {
    SampleForm form(toolkit);
    form.load();
  }
  EXPECT_THAT(toolkit.failures(), ElementsAre("the window stays"));
}

TEST(ReleasedForms, GoThoughTheTopLevelHandlerFailsToo) {
  struct DeafToolkit : BusyToolkit {
    void reportFailure(const std::string&) override { throw RuntimeFailure("nobody hears"); }
  } toolkit;
  toolkit.whileTakingAway = [] { throw RuntimeFailure("the window stays"); };
  std::vector<SilentEnd> heard;
  const SilenceListener listener([&](const SilentEnd& end) { heard.push_back(end); });
  {
    SampleForm form(toolkit);
    form.load();
  }
  EXPECT_THAT(heard, ElementsAre(SilentEnd{"Form", "the top-level handler has failed"}));
}

TEST_F(FormWindows, ThatAreMadeAreNotMadeTwice) {
  toolkit.whileMaking = [this] { form.load(); };
  form.load();
  EXPECT_EQ(toolkit.made, 1);
  EXPECT_EQ(form.loads, 1);
  EXPECT_EQ(form.livingSets(), 1);
}

TEST_F(FormWindows, ThatAreMadeCannotBeClosedYet) {
  toolkit.whileMaking = [this] { form.userCloses(); };
  form.load();
  EXPECT_TRUE(form.loaded());
  EXPECT_EQ(toolkit.takenAway, 0);
}

TEST_F(FormWindows, ThatAreTakenAwayAreNotTakenAwayTwice) {
  form.load();
  toolkit.whileTakingAway = [this] { form.unload(); };
  form.unload();
  EXPECT_EQ(toolkit.takenAway, 1);
  EXPECT_EQ(form.unloads, 1);
}

TEST_F(FormWindows, ThatAreTakenAwayAreNotLoadedMeanwhile) {
  form.load();
  toolkit.whileTakingAway = [this] { form.load(); };
  form.unload();
  EXPECT_FALSE(form.loaded());
  EXPECT_EQ(form.loads, 1);
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(FormWindows, ThatCloseInTheirLoadRuleDoNotAppear) {
  form.whileLoading = [this] { form.unload(); };
  toolkit.scriptModal([](Form&) { ADD_FAILURE() << "no window may appear"; });
  form.showModal();
  EXPECT_FALSE(form.loaded());
  EXPECT_EQ(form.livingSets(), 0);
}

TEST_F(FormWindows, ThatAreShownInTheLoadRuleOfTheFormerAppearOnce) {
  int shown = 0;
  toolkit.scriptModal([&shown](Form&) { ++shown; });
  toolkit.scriptModal([](Form&) { ADD_FAILURE() << "the former has closed"; });
  form.whileLoading = [this] {
    if (form.loads > 1) return;
    form.unload();
    form.showModal();
  };
  form.showModal();
  EXPECT_EQ(shown, 1);
  EXPECT_FALSE(form.onShow());
}

TEST_F(FormWindows, ThatFailToLoadLeaveNoShowBehind) {
  form.whileLoading = [] { throw RuntimeFailure("the load rule fails"); };
  EXPECT_THROW(form.showModal(), RuntimeFailure);
  EXPECT_FALSE(form.onShow());
  EXPECT_FALSE(form.loaded());
  form.whileLoading = {};
  EXPECT_NO_THROW(form.showModal());
  EXPECT_EQ(form.loads, 2);
}

TEST_F(FormWindows, ThatGoWithAWindowOfTheHostForgetTheFocusWithoutAnEvent) {
  form.load();
  const WindowHandle host = toolkit.addHostWindow("host");
  toolkit.setParent(toolkit.windowOf(form), host);
  form.controls().box.userFocuses();
  form.log.clear();
  toolkit.removeWindow(host);
  EXPECT_EQ(form.focusedControl(), nullptr);
  EXPECT_THAT(form.log, IsEmpty());
}

TEST_F(FormWindows, ThatGoWithAWindowOfTheHostLeaveTheControlsAsTheyStand) {
  form.load();
  form.controls().box.setText("kept");
  const WindowHandle host = toolkit.addHostWindow("host");
  const WindowHandle former = toolkit.windowOf(form);
  toolkit.setParent(former, host);
  toolkit.removeWindow(host);
  EXPECT_NE(toolkit.windowOf(form), former) << "made anew where it is asked for";
  EXPECT_EQ(form.controls().box.text(), "kept");
  form.unload();
  EXPECT_FALSE(form.loaded());
}

TEST_F(FormWindows, OfAnUnloadRuleThatFailsStayOpen) {
  form.load();
  const auto number = form.windowNumber();
  form.whenUnloading = [] { throw RuntimeFailure("the unload rule fails"); };
  form.userCloses();
  EXPECT_TRUE(form.loaded());
  EXPECT_EQ(form.windowNumber(), number);
  EXPECT_THAT(toolkit.failures(), ElementsAre("the unload rule fails"));
  form.whenUnloading = {};
  form.userCloses();
  EXPECT_FALSE(form.loaded());
}

}  // namespace
}  // namespace vlclientui::test
