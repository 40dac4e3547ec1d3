#pragma once

#include <string>
#include <string_view>

#include "contracts/controls/Controls.h"

/// Boxes hold numbers as texts under the user's locale.
namespace vlclientui {

/// @throws RuntimeFailure for an empty text and for one that is no number.
[[nodiscard]] double numberOf(const TextBox& box);
/// The same, with an empty text counting 0.
[[nodiscard]] double numberOrZero(const TextBox& box);
/// Shortest form, up to 15 digits. @throws RuntimeFailure (Overflow) for what is not finite.
[[nodiscard]] std::string plainText(double number);
/// @throws RuntimeFailure (DivisionByZero)
[[nodiscard]] double quotient(double dividend, double divisor);

/// A number in a text under a picture; a text that is no number, an empty one among them, stays as it is.
[[nodiscard]] std::string formattedText(const std::string& text, std::string_view picture);
void format(TextBox& box, std::string_view picture);

/// The number that is left when it has been shown under a picture, in plain text. @throws RuntimeFailure when
/// what is shown is no number.
[[nodiscard]] std::string roundedText(double number, std::string_view picture);

/// What a size shows whose plain text is "0": 0 under the picture "0.000".
[[nodiscard]] std::string zeroText();
/// Writes a computed size: its plain text under the picture, or zeroText.
void writeSize(TextBox& box, double size, std::string_view picture);

/// Text of documents, with "." and without a locale, as a number.
[[nodiscard]] double documentNumber(const std::string& text);

}  // namespace vlclientui
