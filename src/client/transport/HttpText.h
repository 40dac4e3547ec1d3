#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vlclientui::client {

/// ASCII capitals made small, whatever the locale.
[[nodiscard]] std::string smallLetters(std::string_view text);
/// Whether two words are the same but for capitals.
[[nodiscard]] bool isSameWord(std::string_view one, std::string_view other);
/// Without blanks, tabs and line ends at both ends.
[[nodiscard]] std::string_view withoutBlanks(std::string_view text);
/// A number of digits alone; nothing for any other text and for one that is too large.
[[nodiscard]] std::optional<std::uint64_t> wholeNumber(std::string_view text);

}  // namespace vlclientui::client
