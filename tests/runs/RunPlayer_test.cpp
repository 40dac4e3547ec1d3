#include "runs/RunPlayer.h"

#include <deque>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "headless/HeadlessToolkit.h"
#include "runs/RunForm.h"
#include "support/TestSystem.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RunPlayer : public testing::Test {
 protected:
  /// @returns why it ended early; empty where it did not.
  std::string play(const std::string& lines) {
    runs::RunHost host{
        [this](const runs::RunStatement& open) {
          if (open.words.front() == "nothing") throw RuntimeFailure("there is no such dialog");
          form_->showModal();
          return form_->kept;
        },
        [this](const std::string& what, const std::string& value) { read_.push_back(what + "=" + value); }};
    runs::RunPlayer player(runs::readRun("vlrun 1\n" + lines), system_, std::move(host));
    try {
      player.run();
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return {};
  }

  TestSystem system_;
  headless::HeadlessToolkit toolkit_;
  std::shared_ptr<RunForm> form_ = std::make_shared<RunForm>(toolkit_);
  std::vector<std::string> read_;
};

TEST_F(RunPlayer, DoesWhatAPersonWouldDo) {
  EXPECT_EQ(
      play(
          "open form\nset number 12\nset check on\nset check on\nchoose choice \"two three\"\n"
          "choose list a c\nread check\nread list\nread choice.entries\nread caption\npress ok\nread result"),
      "");
  EXPECT_THAT(read_, ElementsAre("check=on", "list=a\nc", "choice.entries=one\ntwo three", "caption=Run",
                                 "result=12 two three"));
  EXPECT_FALSE(form_->loaded());
}

TEST_F(RunPlayer, TellsEntriesOfTheSameTextApart) {
  EXPECT_EQ(play("open form\nchoose twins other \"same #2\"\nchoose report \"one #2\"\n"),
            "at the end: window RunForm, the window is still open");
  EXPECT_EQ(
      play("open form\nchoose twins same\nclose"),
      "line 3: window RunForm, choose twins: there are 3 entries 'same'; 'same #1' is the first of them");
  EXPECT_EQ(play("open form\nchoose twins \"same #4\"\nclose"),
            "line 3: window RunForm, choose twins: there is no entry 'same #4'; there are: same, other, "
            "same, same");
}

TEST_F(RunPlayer, AnswersMessagesAndFileDialogs) {
  EXPECT_EQ(
      play("open form\npress ask\nanswer No Really\nexpect file No\nexpect message Really?\n"
           "press browse\nfile /out/a.tif\nread file\npress browse\nfile \"\"\nexpect file nothing\nclose"),
      "");
  EXPECT_THAT(read_, ElementsAre("file=" + system_.logicPath("/out/a.tif")));
}

TEST_F(RunPlayer, ChoosesFoldersAndComputers) {
  EXPECT_EQ(
      play("open form\npress folder\nfile /out/maps/\nread file\npress folder\nfile \\\\OFFICE\nread file\n"
           "press folder\nfile \"\"\nread file\nclose"),
      "");
  EXPECT_THAT(read_, ElementsAre("file=" + system_.logicPath("/out/maps/") + " maps",
                                 "file=\\\\OFFICE OFFICE", "file=nothing"));
  EXPECT_EQ(play("open form\npress folder\nclose"),
            "line 3: window RunForm, press folder: it asks for a file, and no 'file' follows");
}

TEST_F(RunPlayer, AnswersQuestionsThatMayComeUp) {
  EXPECT_EQ(play("open form\npress ask\nmayanswer No Really\nexpect file No\nclose"), "");
  EXPECT_EQ(play("open form\nset number 1\nmayanswer Ok exists\npress ask\nmayanswer Ok exists\nanswer Yes\n"
                 "mayanswer Ok exists\nexpect file Yes\npress browse\nmayanswer Ok exists\nfile /out/a\n"
                 "press ok\nmayanswer Ok exists\nexpect result 1"),
            "");
  EXPECT_THAT(play("open form\npress ask\nmayanswer Ok exists\nclose"),
              HasSubstr("a message came up that no 'answer' follows: Really?"));
}

TEST_F(RunPlayer, PressesEnterForTheDefaultButton) {
  EXPECT_EQ(play("open form\nset number 12\nreturn\nexpect result 12"), "");
  EXPECT_EQ(play("open form\nset number 13\nreturn check\nexpect result 13"), "");
  EXPECT_EQ(play("open form\nset number 14\nleave\nreturn\nexpect result 14"), "");
  EXPECT_EQ(play("open form\npress ask\nanswer No\nreturn browse\nfile /out/a\nclose"), "");
}

TEST_F(RunPlayer, PressesEnterWhereTheBoxThatIsLeftHasSomethingToSay) {
  EXPECT_EQ(play("open form\nset number x\nreturn number\nanswer Ok enter\nread number\nreturn\n"
                 "expect result 0"),
            "");
  EXPECT_THAT(read_, ElementsAre("number=0"));
}

TEST_F(RunPlayer, TellsWhereEnterDoesNothing) {
  form_->load();
  form_->setDefaultButton(nullptr);
  EXPECT_EQ(play("open form\nleave\nreturn\nclose"),
            "line 4: window RunForm, return: Enter does nothing here: the window has no default button");
}

TEST_F(RunPlayer, TakesEveryRowOfAListAway) {
  EXPECT_EQ(play("open form\nchoose list a b\nchoose list \"\"\nread list\nclose"), "");
  EXPECT_THAT(read_, ElementsAre("list="));
}

TEST_F(RunPlayer, TellsOfAWindowThatTakesNoInput) {
  for (const char* step : {"set number 1", "choose list a", "press ok", "leave", "close"}) {
    std::string reason;
    form_->withoutInput([&] { reason = play(std::string("open form\n") + step); });
    EXPECT_THAT(reason, testing::StartsWith("line 3: window RunForm, ")) << step;
    EXPECT_THAT(reason, HasSubstr("the window takes no input now")) << step;
    form_->userCloses();
  }
}

TEST_F(RunPlayer, OpensSeveralWindowsOneAfterTheOther) {
  EXPECT_EQ(play("open form\nset number 1\npress ok\nexpect result 1\nopen form\nexpect number \"\"\nclose"),
            "");
}

TEST_F(RunPlayer, NamesLineWindowAndControlOfWhatCannotBeDone) {
  const std::pair<const char*, const char*> cases[] = {
      {"open nothing", "line 2: open nothing: there is no such dialog"},
      {"set number 1", "line 2: set number: no window is open"},
      {"open form\nset width 1",
       "line 3: window RunForm, set width: there is no such control; there are number, file, check, choice, "
       "list, "
       "ask, browse, folder, ok, twins, report"},
      {"open form\nset ok 1", "line 3: window RunForm, set ok: nothing can be typed into it"},
      {"open form\npress number", "line 3: window RunForm, press number: it is no button"},
      {"open form\nset check maybe",
       "line 3: window RunForm, set check: it is set to on or off, not 'maybe'"},
      {"open form\nchoose choice four",
       "line 3: window RunForm, choose choice: there is no entry 'four'; there are: one, two three"},
      {"open form\nexpect number 5", "line 3: window RunForm, expect number: it is '', not '5'"},
      {"open form\nexpect number.color red",
       "line 3: window RunForm, expect number.color: a control has no 'color'"},
      {"open form\nwindow Other", "line 3: window Other: there is no such window"},
      {"open form\nanswer Ok", "line 3: window RunForm, answer Ok: nothing asks for it here"},
      {"open form\nrow World", "line 3: window RunForm, row World: no list or page has a row 'World'"},
      {"open form\nset number 1", "at the end: window RunForm, the window is still open"},
      {"open form\nopen form", "line 3: window RunForm, open form: the window is still open"},
      {"open form\npress ask",
       "line 3: window RunForm, press ask: a message came up that no 'answer' follows: Really?"},
      {"open form\npress ask\nanswer Ok",
       "line 4: window RunForm, answer Ok: the message has no such button: Really?"},
      {"open form\npress ask\nanswer Yes Overwrite",
       "line 4: window RunForm, answer Yes: the message is another one: Really?"},
      {"open form\npress browse",
       "line 3: window RunForm, press browse: it asks for a file, and no 'file' follows"},
  };
  for (const auto& [lines, reason] : cases) {
    EXPECT_EQ(play(lines), reason) << lines;
    EXPECT_FALSE(form_->loaded()) << lines;
  }
}

TEST_F(RunPlayer, RefusesWhatIsDisabledOrHidden) {
  form_->load();
  form_->controls().file.setEnabled(false);
  form_->controls().check.setVisible(false);
  EXPECT_THAT(play("open form\nset file a"), HasSubstr("set file: it is disabled"));
  form_->load();
  form_->controls().check.setVisible(false);
  EXPECT_THAT(play("open form\nset check on"), HasSubstr("set check: it is hidden"));
}

TEST_F(RunPlayer, EndsWhereLeavingABoxIsRefusedWithoutAnAnswer) {
  EXPECT_EQ(play("open form\nset number x\nset file a\npress ok"),
            "line 4: window RunForm, set file: a message came up that no 'answer' follows: Cannot enter "
            "characters");
  EXPECT_EQ(play("open form\nset number x\nleave\nanswer Ok\nexpect number 0\nclose"), "");
}

TEST_F(RunPlayer, StepsThroughWindowsByTheClockOfTheirHost) {
  std::deque<std::function<void()>> due;
  toolkit_.scriptModal([&due](Form& form) {
    while (form.loaded() && !due.empty()) {
      const auto next = due.front();
      due.pop_front();
      next();
    }
  });
  runs::RunPlayer player(runs::readRun("vlrun 1\nopen form\nset number 7\npress ok\nexpect result 7"),
                         system_,
                         {[this](const runs::RunStatement&) {
                            form_->showModal();
                            return form_->kept;
                          },
                          {},
                          [&due](std::function<void()> action) { due.push_back(std::move(action)); }});
  player.run();
  EXPECT_EQ(form_->kept, "7 ");
}

}  // namespace
}  // namespace vlclientui::test
