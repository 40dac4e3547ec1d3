// The focus that enters a form and leaves it, and the life of a form in events of its own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "headless/HeadlessToolkit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

/// A form for tests that tells of its own events.
class TellingForm : public Form {
 public:
  struct Controls {
    explicit Controls(TellingForm& form)
        : box(form, "box"), other(form, "other"), button(form, "button", "&B"), hosted(&form, "hosted", "") {}
    TextBox box;
    TextBox other;
    Button button;
    HostedControl hosted;
  };

  explicit TellingForm(Toolkit& toolkit) : Form(toolkit, "TellingForm") {}

  Controls& controls() {
    load();
    return *controls_;
  }
  Log takeLog() { return std::exchange(log, {}); }

  Log log;
  std::function<void()> whenEntered = [] {};
  std::function<void()> whenActivated = [] {};

 protected:
  std::shared_ptr<void> buildControls() override {
    controls_ = std::make_shared<Controls>(*this);
    for (TextBox* const box : {&controls_->box, &controls_->other}) {
      box->gotFocus.connect([this, box] { log.push_back(box->name() + " got"); });
      box->lostFocus.connect([this, box] { log.push_back(box->name() + " lost"); });
    }
    controls_->button.click.connect([this] { log.emplace_back("click"); });
    return controls_;
  }
  void dropControls() override { controls_.reset(); }
  void onActivate() override {
    log.emplace_back("activate");
    whenActivated();
  }
  void onEnter() override {
    log.emplace_back("enter");
    whenEntered();
  }
  void onLeave() override { log.emplace_back("leave"); }

 private:
  std::shared_ptr<Controls> controls_;
};

class FormFocus : public testing::Test {
 protected:
  FormFocus() { form.load(); }
  headless::HeadlessToolkit toolkit;
  TellingForm form{toolkit};
};

TEST_F(FormFocus, EntersWithTheFirstControlThatGetsIt) {
  form.controls().other.userFocuses();
  EXPECT_THAT(form.takeLog(), ElementsAre("enter", "other got"));
}

TEST_F(FormFocus, DoesNotEnterAgainWhileItIsInside) {
  form.controls().box.userFocuses();
  form.takeLog();
  form.controls().other.userFocuses();
  form.userEnters();
  EXPECT_THAT(form.takeLog(), ElementsAre("box lost", "other got"));
}

TEST_F(FormFocus, EntersWithAClickBeforeTheClick) {
  form.controls().button.userClicks();
  EXPECT_THAT(form.takeLog(), ElementsAre("enter", "click"));
}

TEST_F(FormFocus, EntersWithAMoveToWhatIsNoControl) {
  form.userFocusesElsewhere();
  EXPECT_THAT(form.takeLog(), ElementsAre("enter"));
}

TEST_F(FormFocus, DoesNotEnterWithAControlThatCannotTakeIt) {
  form.controls().box.setEnabled(false);
  form.controls().box.userFocuses();
  EXPECT_THAT(form.takeLog(), IsEmpty());
}

TEST_F(FormFocus, LeavesTheControlAndThenTheForm) {
  form.controls().box.userFocuses();
  form.takeLog();
  form.userLeaves();
  form.userLeaves();
  EXPECT_THAT(form.takeLog(), ElementsAre("box lost", "leave"));
  EXPECT_EQ(form.focusedControl(), nullptr);
}

TEST_F(FormFocus, DoesNotLeaveWhereItNeverWas) {
  form.userLeaves();
  EXPECT_THAT(form.takeLog(), IsEmpty());
}

TEST_F(FormFocus, IsNoMatterOfAFormThatIsNotLoaded) {
  form.unload();
  form.userActivates();
  form.userEnters();
  form.userLeaves();
  EXPECT_THAT(form.takeLog(), IsEmpty());
}

TEST_F(FormFocus, EntersANewWindowAnew) {
  form.controls().box.userFocuses();
  form.unload();
  form.load();
  form.takeLog();
  form.userEnters();
  EXPECT_THAT(form.takeLog(), ElementsAre("enter"));
}

TEST_F(FormFocus, ComesWithTheWindowAfterItsActivation) {
  form.windowAppeared();
  EXPECT_THAT(form.takeLog(), ElementsAre("activate", "enter", "box got"));
}

TEST_F(FormFocus, StaysOutsideOfAPageThatAppears) {
  form.windowAppeared(Form::FirstFocus::LeftAlone);
  EXPECT_THAT(form.takeLog(), ElementsAre("activate"));
  EXPECT_EQ(form.focusedControl(), nullptr);
}

TEST_F(FormFocus, IsForgottenWithoutAnEventWhenTheWindowIsLost) {
  form.controls().box.userFocuses();
  form.takeLog();
  form.windowLost();
  EXPECT_THAT(form.takeLog(), IsEmpty());
  EXPECT_EQ(form.focusedControl(), nullptr);
  form.controls().box.userFocuses();
  EXPECT_THAT(form.takeLog(), ElementsAre("enter", "box got"));
}

TEST_F(FormFocus, GoesNowhereWhenEnteringUnloadsTheForm) {
  form.whenEntered = [this] { form.unload(); };
  form.controls().box.userFocuses();
  EXPECT_FALSE(form.loaded());
  EXPECT_THAT(form.takeLog(), ElementsAre("enter"));
}

TEST_F(FormFocus, ReachesTheControlThoughEnteringFails) {
  form.whenEntered = [] { throw std::runtime_error("entering fails"); };
  form.controls().box.userFocuses();
  EXPECT_TRUE(form.controls().box.hasFocus());
  EXPECT_THAT(toolkit.failures(), ElementsAre("entering fails"));
}

TEST_F(FormFocus, GoesNowhereWhenActivationUnloadsTheForm) {
  form.whenActivated = [this] { form.unload(); };
  form.windowAppeared();
  EXPECT_THAT(form.takeLog(), ElementsAre("activate"));
}

class SharedForm : public testing::Test {
 protected:
  headless::HeadlessToolkit toolkit;
  std::shared_ptr<TellingForm> form = std::make_shared<TellingForm>(toolkit);
};

TEST_F(SharedForm, LivesUntilAnEventOfItsControlHasReturned) {
  const std::weak_ptr<TellingForm> watch = form;
  form->controls().box.change.connect([&] {
    form.reset();
    EXPECT_FALSE(watch.expired());
  });
  watch.lock()->controls().box.userTypes("x");
  EXPECT_TRUE(watch.expired());
}

TEST_F(SharedForm, LivesUntilAWriteFromCodeHasReturned) {
  const std::weak_ptr<TellingForm> watch = form;
  TextBox& box = form->controls().box;
  box.change.connect([&] {
    form.reset();
    EXPECT_FALSE(watch.expired());
  });
  box.setText("x");
  EXPECT_TRUE(watch.expired());
}

TEST_F(SharedForm, LivesUntilAFailureOfItsEventIsReported) {
  TextBox& box = form->controls().box;
  box.change.connect([&] {
    form.reset();
    throw std::runtime_error("after the release");
  });
  box.userTypes("x");
  EXPECT_EQ(form, nullptr);
  EXPECT_THAT(toolkit.failures(), ElementsAre("after the release"));
}

TEST_F(SharedForm, LivesUntilTheFocusHasMoved) {
  form->whenEntered = [&] { form.reset(); };
  form->controls().box.userFocuses();
  EXPECT_EQ(form, nullptr);
}

/// A window of nothing that takes the focus: a text, and a group that holds another one.
class StillForm : public Form {
 public:
  explicit StillForm(Toolkit& toolkit) : Form(toolkit, "StillForm") {}

 protected:
  std::shared_ptr<void> buildControls() override { return std::make_shared<Controls>(*this); }
  void dropControls() override {}

 private:
  struct Controls {
    explicit Controls(StillForm& form) : text(form, "text", "Text"), group(&form, "group", "Group") {}
    Label text;
    HostedControl group;
    Label inner{group, "inner", "Inner"};
  };
};

TEST(FormsOfTextsAlone, AppearWithoutAnyFocus) {
  headless::HeadlessToolkit toolkit;
  StillForm form(toolkit);
  form.load();
  form.windowAppeared();
  EXPECT_TRUE(form.loaded());
  EXPECT_FALSE(form.focusedControl());
}

}  // namespace
}  // namespace vlclientui::test
