// What a form tells after a click that did nothing.

#include <gtest/gtest.h>

#include "contracts/Silence.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "headless/HeadlessToolkit.h"

namespace vlclientui::test {
namespace {

class NoticingForm : public Form {
 public:
  struct Controls {
    explicit Controls(NoticingForm& form)
        : box(form, "box"),
          check(form, "check", "&C"),
          button(form, "button", "&B"),
          other(form, "other", "&O") {}
    TextBox box;
    CheckBox check;
    Button button;
    Button other;
  };

  explicit NoticingForm(Toolkit& toolkit) : Form(toolkit, "NoticingForm") {}
  Controls& controls() {
    load();
    return *controls_;
  }
  std::function<void()> whenClicked = [] {
    endSilently("the disk is full", "first");
    endSilently("nothing was written", "second");
  };

 protected:
  std::shared_ptr<void> buildControls() override {
    controls_ = std::make_shared<Controls>(*this);
    controls_->button.click.connect([this] { whenClicked(); });
    return controls_;
  }
  void dropControls() override { controls_.reset(); }

 private:
  std::shared_ptr<Controls> controls_;
};

class FormNotice : public testing::Test {
 protected:
  FormNotice() {
    form->noticeChanged.connect([this] { ++changes; });
  }
  void clickInVain() { controls().button.userClicks(); }
  [[nodiscard]] NoticingForm::Controls& controls() const { return form->controls(); }

  headless::HeadlessToolkit toolkit;
  std::shared_ptr<NoticingForm> form = std::make_shared<NoticingForm>(toolkit);
  int changes = 0;
};

TEST_F(FormNotice, TellsTheFirstReasonOfAClickThatEndedSilently) {
  clickInVain();
  EXPECT_EQ(form->notice(), "the disk is full");
  EXPECT_EQ(changes, 1);
}

TEST_F(FormNotice, IsEmptyAfterAClickThatWentWell) {
  clickInVain();
  form->whenClicked = [] {};
  clickInVain();
  EXPECT_EQ(form->notice(), "");
}

TEST_F(FormNotice, GoesWithTheNextEditAndNotWithAMoveOfTheFocusOrAKey) {
  clickInVain();
  controls().box.userFocuses();
  controls().box.userPresses(keyCode::f1);
  EXPECT_EQ(form->notice(), "the disk is full");
  controls().box.userTypes("x");
  EXPECT_EQ(form->notice(), "");
  clickInVain();
  controls().check.userClicks();
  EXPECT_EQ(form->notice(), "");
  clickInVain();
  controls().other.userClicks();
  EXPECT_EQ(form->notice(), "");
}

TEST_F(FormNotice, SaysNothingWhereAMessageTold) {
  form->whenClicked = [this] {
    endSilently("the disk is full", "first");
    toolkit.showMessage({.text = "The disk is full.", .title = ""});
  };
  clickInVain();
  EXPECT_EQ(form->notice(), "");
}

TEST_F(FormNotice, SaysNothingOfAWindowThatHasClosed) {
  form->whenClicked = [this] {
    endSilently("the disk is full", "first");
    form->unload();
  };
  clickInVain();
  EXPECT_EQ(form->notice(), "");
}

TEST_F(FormNotice, DoesNotOutliveItsWindow) {
  clickInVain();
  form->unload();
  form->load();
  EXPECT_EQ(form->notice(), "");
}

TEST_F(FormNotice, OfAWindowThatAClickOpensStaysThere) {
  const auto inner = std::make_shared<NoticingForm>(toolkit);
  std::string told;
  toolkit.scriptModal([&](Form&) {
    inner->controls().button.userClicks();
    told = inner->notice();
  });
  form->whenClicked = [&] { inner->showModal(); };
  clickInVain();
  EXPECT_EQ(told, "the disk is full");
  EXPECT_EQ(form->notice(), "");
}

}  // namespace
}  // namespace vlclientui::test
