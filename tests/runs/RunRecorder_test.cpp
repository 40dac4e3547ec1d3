#include "runs/RunRecorder.h"

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"
#include "runs/RunForm.h"
#include "runs/RunPlayer.h"
#include "support/TestSystem.h"

namespace vlclientui::test {
namespace {

/// What a host hands to the recorder: here one word is secret.
std::string hidden(const std::string& typed) { return typed == "secret" ? "***" : typed; }

class RunRecorder : public testing::Test {
 protected:
  /// What is written down while a person acts in the window.
  std::string record(const std::function<void(RunForm::Controls&)>& person) {
    runs::RunRecorder recorder(system_, hidden);
    toolkit_.scriptModal([&](Form& /*form*/) {
      const std::shared_ptr<RunForm> kept = form_;
      person(form_->controls());
    });
    tellOperation({Operation::Kind::Dialog, {}, "form", "a service", {"properties", "<a b=\"1\"/>"}});
    form_->showModal();
    tellOperation({Operation::Kind::DialogEnd, {}, {}, {}, {}});
    return recorder.text();
  }

  TestSystem system_;
  headless::HeadlessToolkit toolkit_;
  std::shared_ptr<RunForm> form_ = std::make_shared<RunForm>(toolkit_);
};

constexpr const char* opened =
    "vlrun 1\nopen form \"a service\" properties \"<a b=\\\"1\\\"/>\"\nwindow RunForm\n";

TEST_F(RunRecorder, WritesTheLastTextOfABoxAndNoKeys) {
  EXPECT_EQ(record([](RunForm::Controls& window) {
              window.file.userFocuses();
              window.number.userFocuses();
              for (const char* text : {"1", "12", "123"}) window.number.userTypes(text);
              window.check.userClicks();
              window.choice.userFocuses();
              window.choice.userSelects(1);
              window.list.userSelects({0, 2});
              window.ok.userClicks();
            }),
            std::string(opened) +
                "enter file\nset number 123\nset check on\nchoose choice \"two three\"\nchoose list a "
                "c\npress ok\n");
}

TEST_F(RunRecorder, WritesAnswersAndFilesBehindWhatAskedForThem) {
  toolkit_.answerMessage(MessageAnswer::No);
  toolkit_.chooseFile("C:\\out\\a.tif");
  EXPECT_EQ(record([](RunForm::Controls& window) {
              window.ask.userClicks();
              window.browse.userClicks();
              window.file.userTypes("C:\\b.tif");
              window.number.form()->userCloses();
            }),
            std::string(opened) + "press ask\nanswer No\npress browse\nfile " +
                system_.nativePath("C:\\out\\a.tif") + "\npath file " + system_.nativePath("C:\\b.tif") +
                "\nclose\n");
}

TEST_F(RunRecorder, WritesWhatItsPlayerDoesAgain) {
  const std::string first = record([](RunForm::Controls& window) {
    window.number.userFocuses();
    window.number.userTypes("42");
    window.choice.userSelects(1);
    window.ok.userClicks();
  });
  EXPECT_EQ(form_->kept, "42 two three");
  form_->kept.clear();
  runs::RunRecorder recorder(system_, hidden);
  runs::RunPlayer player(
      runs::readRun(first), system_,
      {[this](const runs::RunStatement&) {
         tellOperation({Operation::Kind::Dialog, {}, "form", "a service", {"properties", "<a b=\"1\"/>"}});
         form_->showModal();
         return form_->kept;
       },
       {}});
  player.run();
  EXPECT_EQ(form_->kept, "42 two three");
  EXPECT_EQ(recorder.text(), first);
}

TEST_F(RunRecorder, WritesEnterInPlaceOfWhatComesOfIt) {
  const std::string first = record([](RunForm::Controls& window) {
    window.file.userFocuses();
    window.number.userTypes("7");
    window.check.userFocuses();
    window.check.userPresses(keyCode::enter);
  });
  EXPECT_EQ(first, std::string(opened) + "enter file\nset number 7\nreturn check\n");
  EXPECT_EQ(form_->kept, "7 ");
}

TEST_F(RunRecorder, WritesEnterOnAButtonAsItsClickAndOutsideOfControlsWithoutOne) {
  toolkit_.answerMessage(MessageAnswer::Yes);
  EXPECT_EQ(record([](RunForm::Controls& window) {
              window.ask.userFocuses();
              window.ask.userPresses(keyCode::enter);
              window.ask.userPresses(keyCode::enter, keyModifier::control);
              window.ask.form()->userFocusesElsewhere();
              window.ask.form()->userPressesEnter();
            }),
            std::string(opened) + "press ask\nanswer Yes\nleave\nreturn\n");
}

TEST_F(RunRecorder, KeepsNoSecretThatIsTyped) {
  EXPECT_EQ(record([](RunForm::Controls& window) { window.file.userTypes("secret"); }),
            std::string(opened) + "set file ***\nclose\n");
}

TEST_F(RunRecorder, WritesAFolderThatWasChosen) {
  toolkit_.chooseFolder({std::string("C:\\maps") + '\0' + "x", "maps"});
  toolkit_.chooseFolder({std::nullopt, "OFFICE"});
  EXPECT_EQ(record([](RunForm::Controls& window) {
              window.folder.userClicks();
              window.folder.userClicks();
              window.folder.userClicks();
            }),
            std::string(opened) + "press folder\nfile " + system_.nativePath("C:\\maps") +
                "\npress folder\nfile \\\\OFFICE\npress folder\nfile \"\"\nclose\n");
}

TEST_F(RunRecorder, WritesAListWithoutRowsSoThatThePlayerEmptiesIt) {
  const std::string run = record([](RunForm::Controls& window) {
    window.list.userSelects({1});
    window.list.userSelects({});
  });
  EXPECT_EQ(run, std::string(opened) + "choose list b\nchoose list \"\"\nclose\n");
}

TEST_F(RunRecorder, TellsEntriesOfTheSameTextApart) {
  EXPECT_EQ(record([](RunForm::Controls& window) {
              window.twins.userSelects({1, 2});
              window.report.userSelects(0);
            }),
            std::string(opened) + "choose twins other \"same #2\"\nchoose report \"one #1\"\nclose\n");
}

TEST_F(RunRecorder, MarksAQuestionThatComesUpOnlyWhereAFileIs) {
  const Operation goesOn{Operation::Kind::MayAnswer, {}, {}, "Ok", {"exists"}};
  const auto may = [&](const std::string& asked) {
    return record([&](RunForm::Controls& window) {
      window.ask.userClicks();
      if (!asked.empty())
        toolkit_.showMessage({asked, "", MessageIcon::Information, MessageButtons::OkCancel});
      tellOperation(goesOn);
    });
  };
  const std::string begin = std::string(opened) + "press ask\nanswer Yes\n";
  EXPECT_EQ(may(""), begin + "mayanswer Ok exists\nclose\n");
  EXPECT_EQ(may("It exists."), begin + "mayanswer Ok exists\nclose\n");
  EXPECT_EQ(may("Another."), begin + "answer Ok\nmayanswer Ok exists\nclose\n");
}

TEST_F(RunRecorder, LeavesOutWhatHappensOutsideOfDialogs) {
  runs::RunRecorder recorder(system_, hidden);
  toolkit_.scriptModal([this](Form& /*form*/) { form_->controls().number.userTypes("1"); });
  form_->showModal();
  EXPECT_EQ(recorder.count(), 0U);
}

}  // namespace
}  // namespace vlclientui::test
