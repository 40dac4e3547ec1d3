#include "runs/RunPlayer.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <ranges>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "runs/ControlTexts.h"
#include "runs/RunSteps.h"

namespace vlclientui::runs {
namespace {

std::optional<MessageAnswer> answerOf(const std::string& word) {
  for (const auto each : {MessageAnswer::Ok, MessageAnswer::Cancel, MessageAnswer::Yes, MessageAnswer::No}) {
    if (word == wordOf(each)) return each;
  }
  return std::nullopt;
}

bool hasButton(MessageButtons buttons, MessageAnswer answer) {
  switch (buttons) {
    case MessageButtons::Ok:
      return answer == MessageAnswer::Ok;
    case MessageButtons::OkCancel:
      return answer == MessageAnswer::Ok || answer == MessageAnswer::Cancel;
    case MessageButtons::YesNo:
      return answer == MessageAnswer::Yes || answer == MessageAnswer::No;
    case MessageButtons::YesNoCancel:
      return answer != MessageAnswer::Ok;
  }
  return false;
}

/// That of a person who wants nothing to happen.
MessageAnswer harmlessAnswer(MessageButtons buttons) {
  for (const auto each : {MessageAnswer::Cancel, MessageAnswer::No}) {
    if (hasButton(buttons, each)) return each;
  }
  return MessageAnswer::Ok;
}

bool isInWindow(const std::string& verb) {
  return verb == "window" || verb == "enter" || verb == "leave" || verb == "set" || verb == "path" ||
         verb == "choose" || verb == "press" || verb == "return" || verb == "close";
}

}  // namespace

RunPlayer::RunPlayer(std::vector<RunStatement> statements, const System& system, RunHost host)
    : statements_(std::move(statements)), system_(system), host_(std::move(host)) {}

const RunStatement* RunPlayer::next() const {
  return at_ < statements_.size() && failure_.empty() ? &statements_[at_] : nullptr;
}

const RunStatement& RunPlayer::take() { return statements_[at_++]; }

void RunPlayer::run() {
  while (next()) perform(take());
  if (!failure_.empty()) throw RuntimeFailure(failure_);
}

// The newest one that stands, of the name that was asked for.
std::shared_ptr<Form> RunPlayer::window() {
  std::erase_if(windows_, [](const std::weak_ptr<Form>& each) {
    const auto form = each.lock();
    return !form || !form->loaded();
  });
  for (const auto& each : windows_ | std::views::reverse) {
    auto form = each.lock();
    if (form && (chosen_.empty() || form->formName() == chosen_)) return form;
  }
  return nullptr;
}

bool RunPlayer::isOpen() {
  return std::ranges::any_of(windows_, [](const std::weak_ptr<Form>& each) {
    const auto form = each.lock();
    return form && form->loaded() && form->onShow();
  });
}

// Pages stand in a window of the host and wait for nobody.
void RunPlayer::windowAppeared(Form& form) {
  windows_.push_back(form.weak_from_this());
  chosen_.clear();
  if (!form.onShow()) return;
  host_.later ? playLater() : playAtOnce(form);
}

void RunPlayer::playAtOnce(Form& form) {
  while (form.loaded() && form.onShow() && failure_.empty()) {
    if (next() && next()->verb != "open") {
      perform(take());
    } else {
      fail(next(), "the window is still open");
    }
  }
}

void RunPlayer::playLater() {
  if (std::exchange(isStepDue_, true)) return;
  host_.later([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) step();
  });
}

// The next one is due before this one is done: it may open a window, and return when that is closed.
void RunPlayer::step() {
  isStepDue_ = false;
  if (!isOpen()) return;
  playLater();
  if (!failure_.empty()) return closeAll();
  if (next() && next()->verb != "open") {
    perform(take());
  } else {
    fail(next(), "the window is still open");
  }
}

void RunPlayer::perform(const RunStatement& statement) {
  try {
    if (statement.verb == "open" && !isOpen()) {
      result_ = host_.showDialog(statement);
    } else if (statement.verb == "read" || statement.verb == "expect") {
      readOrExpect(statement);
    } else if (isInWindow(statement.verb)) {
      performInWindow(statement);
    } else if (statement.verb == "mayanswer") {
      return;  // Nothing asked.
    } else if (isEngineStep(statement.verb)) {
      doEngineStep(statement);
    } else {
      throw RuntimeFailure("nothing asks for it here");
    }
  } catch (const std::exception& failure) {
    fail(&statement, failure.what());
  }
  // Not before the step has ended: it may be in the middle of a message.
  if (!failure_.empty()) closeAll();
}

void RunPlayer::performInWindow(const RunStatement& statement) {
  if (statement.verb == "window") return choose(statement.words.front());
  const auto form = window();
  if (!form) throw RuntimeFailure("no window is open");
  // The step may close the window that its controls stand in.
  form->holdControlsWhile(
      [&] { doStep(*form, statement, [this](const std::string& file) { return logicPath(file); }); });
}

void RunPlayer::choose(const std::string& name) {
  chosen_ = name;
  if (!window()) throw RuntimeFailure("there is no such window");
}

std::string RunPlayer::readValue(const std::string& what) {
  if (what == "message") return message_;
  if (what == "result") return result_;
  const auto form = window();
  if (!form) throw RuntimeFailure("no window is open");
  return readIn(*form, what);
}

void RunPlayer::readOrExpect(const RunStatement& statement) {
  const std::string& what = statement.words.front();
  const std::string value = readValue(what);
  if (statement.verb == "read") return host_.tellRead(what, value);
  const std::string& expected = statement.words[1];
  // Documents and messages are long, and a piece of them tells enough.
  const bool isPart = what == "message" || what == "result";
  const bool isSo = isPart ? value.find(expected) != std::string::npos : value == expected;
  if (!isSo) throw RuntimeFailure("it is '" + value + "', not '" + expected + "'");
}

void RunPlayer::passOverQuestions(const std::string& text) {
  const auto isOther = [&text](const RunStatement& each) {
    return each.verb == "mayanswer" && (text.empty() || text.find(each.words[1]) == std::string::npos);
  };
  while (next() && isOther(*next())) ++at_;
}

MessageAnswer RunPlayer::answer(const MessageBox& box) {
  message_ = box.text;
  if (!failure_.empty()) return harmlessAnswer(box.buttons);
  passOverQuestions(box.text);
  if (!next() || (next()->verb != "answer" && next()->verb != "mayanswer")) {
    const RunStatement* const asked = at_ > 0 ? &statements_[at_ - 1] : nullptr;
    fail(asked, "a message came up that no 'answer' follows: " + box.text);
    return harmlessAnswer(box.buttons);
  }
  const RunStatement& statement = take();
  const auto given = answerOf(statement.words.front());
  if (given && hasButton(box.buttons, *given)) {
    if (statement.words.size() < 2 || box.text.find(statement.words[1]) != std::string::npos) return *given;
    fail(&statement, "the message is another one: " + box.text);
  } else {
    fail(&statement, "the message has no such button: " + box.text);
  }
  return harmlessAnswer(box.buttons);
}

std::optional<std::string> RunPlayer::chooseFile(const FileDialog& /*dialog*/) {
  const auto file = nextFile();
  return file ? std::optional(logicPath(*file)) : std::nullopt;
}

// Computers of the network are no folders.
std::optional<FolderChoice> RunPlayer::chooseFolder(const FolderDialog& /*dialog*/) {
  const auto folder = nextFile();
  if (!folder) return std::nullopt;
  constexpr std::string_view computer = "\\\\";
  if (folder->starts_with(computer)) return FolderChoice{*folder, folder->substr(computer.size())};
  const auto whole = std::filesystem::absolute(*folder).lexically_normal();
  return FolderChoice{logicPath(*folder),
                      (whole.has_filename() ? whole : whole.parent_path()).filename().string()};
}

std::optional<std::string> RunPlayer::nextFile() {
  passOverQuestions({});
  if (!next() || next()->verb != "file") {
    fail(at_ > 0 ? &statements_[at_ - 1] : nullptr, "it asks for a file, and no 'file' follows");
    return std::nullopt;
  }
  const std::string& file = take().words.front();
  return file.empty() ? std::nullopt : std::optional(file);
}

std::string RunPlayer::logicPath(const std::string& file) const {
  return system_.logicPath(std::filesystem::absolute(file).lexically_normal().string());
}

// Without a statement it is the end of the file that comes too early.
void RunPlayer::fail(const RunStatement* statement, const std::string& reason) {
  if (!failure_.empty()) return;
  std::string place = statement ? "line " + std::to_string(statement->line) + ": " : "at the end: ";
  const auto form = window();
  if (form) place += "window " + form->formName() + ", ";
  if (statement) {
    place += statement->verb;
    if (!statement->words.empty()) place += " " + statement->words.front();
    place += ": ";
  }
  failure_ = place + reason;
}

void RunPlayer::closeAll() {
  const auto windows = windows_;
  for (const auto& each : windows | std::views::reverse) {
    const auto form = each.lock();
    if (form && form->loaded()) form->userCloses();
  }
}

}  // namespace vlclientui::runs
