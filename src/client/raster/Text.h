#pragma once

#include <string>
#include <string_view>

namespace vlclientui::client {

[[nodiscard]] bool isUtf8(std::string_view text);
/// The text itself when it is UTF-8, else its bytes read as Latin-1: files carry both, and none says which.
[[nodiscard]] std::string utf8FromAny(std::string_view text);
/// Without white space at both ends.
[[nodiscard]] std::string trimmed(std::string_view text);
/// Up to the first line end that follows a non-blank character.
[[nodiscard]] std::string firstLine(std::string_view text);

/// With capital letters of ASCII made small, whatever the locale; so are all comparisons here.
[[nodiscard]] std::string lowered(std::string_view text);
[[nodiscard]] bool sameIgnoringCase(std::string_view one, std::string_view other);
[[nodiscard]] bool startsIgnoringCase(std::string_view text, std::string_view start);
[[nodiscard]] bool endsIgnoringCase(std::string_view text, std::string_view end);

/// Text content of an element: the reserved characters escaped, characters that XML cannot hold left out.
[[nodiscard]] std::string xmlEscaped(std::string_view text);
/// Shortest text that reads back as the same number; "." whatever the locale, never an exponent.
[[nodiscard]] std::string numberText(double value);

}  // namespace vlclientui::client
