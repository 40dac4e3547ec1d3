#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contracts/System.h"

namespace vlclientui::widgets {

/// How texts with paths pass between the rules, which compute with drives and backslashes, and a person,
/// who sees and types the paths of this machine. Both ways leave texts without paths as they are, and paths
/// that have no form on the other side too; neither throws.
struct PathTexts {
  /// Text of the rules to the text that is shown: messages, tool tips, entries that hold paths.
  std::function<std::string(const std::string&)> shown;
  /// What a person typed to the text of the rules: an absolute path of this machine and nothing else.
  std::function<std::string(const std::string&)> typed;
};

/// Translates by the system's own paths. A path in a text begins with a drive ("C:\") and ends at the quote
/// that stands before it, at the tag behind it where it is the text of an element, else at the end of its
/// line.
[[nodiscard]] PathTexts pathTextsOf(std::shared_ptr<const System> system);

}  // namespace vlclientui::widgets
