#include "runs/RunRecorder.h"

#include <cctype>
#include <sstream>
#include <utility>

namespace vlclientui::runs {
namespace {

using Kind = Operation::Kind;

const char* verbOf(Kind kind) {
  switch (kind) {
    case Kind::Enter:
      return "enter";
    case Kind::Leave:
      return "leave";
    case Kind::Set:
      return "set";
    case Kind::Choose:
      return "choose";
    case Kind::Press:
      return "press";
    case Kind::Close:
      return "close";
    case Kind::Answer:
      return "answer";
    case Kind::MayAnswer:
      return "mayanswer";
    case Kind::File:
      return "file";
    case Kind::Row:
      return "row";
    case Kind::Open:
      return "openrow";
    case Kind::Back:
      return "back";
    case Kind::Field:
      return "field";
    case Kind::Button:
      return "button";
    case Kind::Dialog:
      return "open";
    case Kind::Return:
      return "return";
    case Kind::DialogEnd:
      break;
  }
  return "";
}

/// Whether the statement goes to its control by itself.
bool goesThere(Kind kind) {
  return kind == Kind::Set || kind == Kind::Choose || kind == Kind::Press || kind == Kind::Return;
}

/// "C:\folder\file" and its beginnings.
bool isLogicPath(const std::string& text) {
  return text.size() > 2 && std::isalpha(static_cast<unsigned char>(text[0])) != 0 && text[1] == ':' &&
         text[2] == '\\';
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines.empty() ? std::vector<std::string>{text} : lines;
}

std::vector<std::string> wordsOf(const std::string& first, const std::vector<std::string>& more) {
  std::vector<std::string> words;
  if (!first.empty()) words.push_back(first);
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

}  // namespace

RunRecorder::RunRecorder(const System& system, WithoutSecrets withoutSecrets)
    : system_(system),
      withoutSecrets_(std::move(withoutSecrets)),
      listener_([this](const Operation& operation) { hear(operation); }) {}

std::string RunRecorder::text() const {
  std::string text = runHeader();
  for (const RunStatement& statement : statements_) text += runLine(statement);
  return text;
}

void RunRecorder::hear(const Operation& operation) {
  if (operation.kind == Kind::Dialog) ++dialogs_;
  if (dialogs_ == 0) return;
  if (operation.kind == Kind::DialogEnd) {
    --dialogs_;
    return;
  }
  if (operation.kind == Kind::Dialog) window_.clear();
  if (!operation.window.empty() && operation.window != window_) {
    window_ = operation.window;
    statements_.push_back({0, "window", {window_}});
  }
  add(operation);
}

// Each key makes a new text of a box.
void RunRecorder::add(const Operation& operation) {
  if (goesThere(operation.kind)) replaceLast("enter", operation.control);
  if (operation.kind == Kind::Set) {
    replaceLast("set", operation.control);
    replaceLast("path", operation.control);
  }
  // Asked this time or not.
  if (operation.kind == Kind::MayAnswer && asked_.find(operation.more.at(0)) != std::string::npos)
    replaceLast("answer", operation.value);
  asked_ = operation.kind == Kind::Answer && !operation.more.empty() ? operation.more.front() : std::string();
  if (operation.kind == Kind::Field) replaceLast("field", operation.control);
  if (operation.kind == Kind::Open) replaceLast("row", operation.control);
  RunStatement statement{0, verbOf(operation.kind), {}};
  if (operation.kind == Kind::Set && isLogicPath(operation.value)) statement.verb = "path";
  if (!operation.control.empty()) statement.words.push_back(operation.control);
  for (std::string& value : valueOf(operation)) statement.words.push_back(std::move(value));
  statements_.push_back(std::move(statement));
}

void RunRecorder::replaceLast(const std::string& verb, const std::string& control) {
  if (statements_.empty() || statements_.back().verb != verb) return;
  if (!statements_.back().words.empty() && statements_.back().words.front() == control)
    statements_.pop_back();
}

std::vector<std::string> RunRecorder::valueOf(const Operation& operation) const {
  const std::string& value = operation.value;
  switch (operation.kind) {
    case Kind::Set:
    case Kind::File:
      return {isLogicPath(value) ? system_.nativePath(value) : withoutSecrets_(value)};
    case Kind::Choose:
      return linesOf(value);
    case Kind::Answer:
    case Kind::Field:
      return {value};
    case Kind::MayAnswer:
      return wordsOf(value, operation.more);
    case Kind::Dialog:
      return wordsOf(withoutSecrets_(value), operation.more);
    default:
      return {};
  }
}

}  // namespace vlclientui::runs
