#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contracts/System.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

/// Converts texts with paths between the logic, which computes with drives and backslashes, and a person, who
/// sees and types native paths. Texts without paths, and paths without a counterpart, stay unchanged; neither
/// function throws.
struct PathTexts {
  /// The logic's text as it is shown: messages, tool tips, entries that hold paths.
  std::function<std::string(const std::string&)> shown;
  /// The logic's form of a typed text. Converts a native absolute path and nothing else.
  std::function<std::string(const std::string&)> typed;
};

/// Translates by the system's own paths. A path in a text begins with a drive ("C:\") and ends at the quote
/// that stands before it, at the tag behind it where it is the text of an element, else at the end of its
/// line.
[[nodiscard]] PathTexts pathTextsOf(std::shared_ptr<const System> system);

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
