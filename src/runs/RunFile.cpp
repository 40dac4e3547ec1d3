#include "runs/RunFile.h"

#include <algorithm>
#include <array>
#include <limits>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::runs {
namespace {

constexpr std::size_t any = std::numeric_limits<std::size_t>::max();
constexpr const char* header = "vlrun";
constexpr const char* version = "1";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

struct Verb {
  const char* name;
  std::size_t least;  ///< words behind it
  std::size_t most;
};

constexpr std::array verbs{
    Verb{"open", 1, any}, Verb{"window", 1, 1},  Verb{"enter", 1, 1},     Verb{"leave", 0, 0},
    Verb{"set", 2, 2},    Verb{"path", 2, 2},    Verb{"choose", 2, any},  Verb{"press", 1, 1},
    Verb{"close", 0, 0},  Verb{"answer", 1, 2},  Verb{"mayanswer", 2, 2}, Verb{"file", 1, 1},
    Verb{"row", 1, 1},    Verb{"openrow", 1, 1}, Verb{"back", 0, 0},      Verb{"field", 2, 2},
    Verb{"button", 1, 1}, Verb{"read", 1, 1},    Verb{"expect", 2, 2},    Verb{"return", 0, 1}};

[[noreturn]] void fail(int line, const std::string& reason) {
  throw RuntimeFailure("line " + std::to_string(line) + ": " + reason);
}

bool isBlank(char character) { return character == ' ' || character == '\t' || character == '\r'; }

/// Takes one line apart.
class Line {
 public:
  Line(std::string_view text, int number) : text_(text), number_(number) {}

  std::vector<std::string> words() {
    std::vector<std::string> all;
    for (skip(); !atEnd() && text_[at_] != '#'; skip()) all.push_back(text_[at_] == '"' ? quoted() : plain());
    return all;
  }

 private:
  [[nodiscard]] bool atEnd() const { return at_ == text_.size(); }
  void skip() {
    while (!atEnd() && isBlank(text_[at_])) ++at_;
  }
  std::string plain() {
    const std::size_t begin = at_;
    while (!atEnd() && !isBlank(text_[at_])) ++at_;
    return std::string(text_.substr(begin, at_ - begin));
  }
  std::string quoted() {
    std::string word;
    for (++at_; !atEnd() && text_[at_] != '"'; ++at_) word += text_[at_] == '\\' ? escaped() : text_[at_];
    if (atEnd()) fail(number_, "a quote is not closed");
    ++at_;
    if (!atEnd() && !isBlank(text_[at_])) fail(number_, "a blank is missing behind a quote");
    return word;
  }
  char escaped() {
    ++at_;
    const char next = atEnd() ? '\0' : text_[at_];
    if (next == 'n') return '\n';
    if (next != '"' && next != '\\') fail(number_, R"(behind a \ in quotes stands n, " or \)");
    return next;
  }

  std::string_view text_;
  int number_;
  std::size_t at_ = 0;
};

void check(const RunStatement& statement) {
  const auto* const verb = std::ranges::find(verbs, std::string_view(statement.verb), &Verb::name);
  if (verb == verbs.end()) fail(statement.line, "'" + statement.verb + "' is unknown");
  const std::size_t count = statement.words.size();
  if (count < verb->least) fail(statement.line, "a word is missing behind '" + statement.verb + "'");
  if (count > verb->most)
    fail(statement.line, "too many words behind '" + statement.verb + "'; one with blanks needs quotes");
}

void checkHeader(const RunStatement& statement) {
  const bool isOne = statement.verb == header && statement.words.size() == 1;
  if (!isOne) fail(statement.line, "the file does not begin with 'vlrun 1'");
  if (statement.words.front() != version)
    fail(statement.line, "it was written by a newer program, as version " + statement.words.front());
}

std::string wordText(const std::string& word) {
  const bool isPlain = !word.empty() && word.front() != '"' && word.front() != '#' &&
                       std::ranges::none_of(word, [](char c) { return isBlank(c) || c == '\n'; });
  if (isPlain) return word;
  std::string text = "\"";
  for (const char character : word) {
    if (character == '"' || character == '\\') text += '\\';
    text += character == '\n' ? std::string("\\n") : std::string(1, character);
  }
  return text + "\"";
}

}  // namespace

std::vector<RunStatement> readRun(std::string_view text) {
  std::vector<RunStatement> statements;
  int number = 0;
  bool hasHeader = false;
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::vector<std::string> words = Line(text.substr(0, end), ++number).words();
    text.remove_prefix(std::min(end + 1, text.size()));
    if (words.empty()) continue;
    RunStatement statement{number, words.front(), {words.begin() + 1, words.end()}};
    if (!hasHeader) {
      checkHeader(statement);
      hasHeader = true;
      continue;
    }
    check(statement);
    statements.push_back(std::move(statement));
  }
  if (!hasHeader) fail(std::max(number, 1), "the file does not begin with 'vlrun 1'");
  return statements;
}

std::string runHeader() { return std::string(header) + " " + version + "\n"; }

std::string runLine(const RunStatement& statement) {
  std::string line = statement.verb;
  for (const std::string& word : statement.words) line += " " + wordText(word);
  return line + "\n";
}

}  // namespace vlclientui::runs
