#pragma once

#include <string>
#include <string_view>

namespace vlclientui::client {

/// The text itself if it is UTF-8, otherwise its bytes read as Latin-1: files contain both without saying
/// which.
[[nodiscard]] std::string utf8FromAny(std::string_view text);
/// Without white space at both ends.
[[nodiscard]] std::string trimmed(std::string_view text);
/// Up to the first line end that follows a non-blank character.
[[nodiscard]] std::string firstLine(std::string_view text);

/// ASCII capitals made small, whatever the locale. All comparisons here are done so.
[[nodiscard]] std::string lowered(std::string_view text);
[[nodiscard]] bool sameIgnoringCase(std::string_view one, std::string_view other);
[[nodiscard]] bool startsIgnoringCase(std::string_view text, std::string_view start);
[[nodiscard]] bool endsIgnoringCase(std::string_view text, std::string_view end);

/// Escapes reserved characters and drops those that XML cannot hold.
[[nodiscard]] std::string xmlEscaped(std::string_view text);
/// The shortest text that reads back as the same number; always with ".", never with an exponent.
[[nodiscard]] std::string numberText(double value);

}  // namespace vlclientui::client
