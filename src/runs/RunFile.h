#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Run files: operations on the library's windows as text, one in a line. docs/run-files.md describes them.
#pragma GCC visibility push(default)
namespace vlclientui::runs {

/// One line of a run file.
struct RunStatement {
  /// Its number in the file, from 1.
  int line = 0;
  /// The first word, such as "press".
  std::string verb;
  std::vector<std::string> words;  ///< behind it, without quotes

  /// Whether line, verb and words are equal.
  bool operator==(const RunStatement&) const = default;
};

/// Reads and checks the whole text first: verbs, numbers of words, quotes.
/// @throws RuntimeFailure that names the line.
[[nodiscard]] std::vector<RunStatement> readRun(std::string_view text);

/// The first line of every file, with its end.
[[nodiscard]] std::string runHeader();

/// A statement as a line, with its end; words are quoted where they need to be.
[[nodiscard]] std::string runLine(const RunStatement& statement);

}  // namespace vlclientui::runs
#pragma GCC visibility pop
