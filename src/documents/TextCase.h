#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Small operations on UTF-8 texts. None of them throws on bytes that are no UTF-8: such bytes pass through
/// as they are.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Character by character by the simple mapping of Unicode: no character becomes two, and no process
/// locale counts.
[[nodiscard]] std::string lowerCased(std::string_view utf8);
[[nodiscard]] std::string upperCased(std::string_view utf8);

/// Orders texts by their UTF-16 code units, which puts characters above U+FFFF below U+E000.
/// @returns below 0, 0 or above 0.
[[nodiscard]] int compareByCodeUnit(std::string_view a, std::string_view b);

/// Without the blanks (U+0020 and nothing else) at both ends.
[[nodiscard]] std::string trimmedBlanks(std::string_view text);

/// Every `from` replaced, left to right; what was put in is not searched again. An empty `from` changes
/// nothing.
[[nodiscard]] std::string replacedAll(std::string_view text, std::string_view from, std::string_view to);

/// The parts between separators, empty ones included: "A/" gives "A" and "". An empty text has no parts.
[[nodiscard]] std::vector<std::string> splitAt(std::string_view text, char separator);

}  // namespace vlclientui
#pragma GCC visibility pop
