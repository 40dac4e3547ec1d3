#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Run files: operations on the library's windows as text, one in a line. docs/run-files.md describes them.
#pragma GCC visibility push(default)
namespace vlclientui::runs {

struct RunStatement {
  int line = 0;
  std::string verb;
  std::vector<std::string> words;  ///< behind it, without quotes

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
