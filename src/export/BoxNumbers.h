#pragma once

#include <string>
#include <string_view>

#include "contracts/controls/Controls.h"

/// Reads and writes numbers in boxes, as texts under the user's locale.
namespace vlclientui {

/// @throws RuntimeFailure for an empty text and for one that is not a number.
[[nodiscard]] double numberOf(const TextBox& box);
/// The same, but an empty text is 0.
[[nodiscard]] double numberOrZero(const TextBox& box);
/// Shortest form, up to 15 digits. @throws RuntimeFailure (Overflow) for infinity and NaN.
[[nodiscard]] std::string plainText(double number);
/// @throws RuntimeFailure (DivisionByZero)
[[nodiscard]] double quotient(double dividend, double divisor);

/// The number in a text, shown by a picture. Any other text, the empty one included, stays unchanged.
[[nodiscard]] std::string formattedText(const std::string& text, std::string_view picture);
void format(TextBox& box, std::string_view picture);

/// A number rounded by showing it under a picture, in plain text. @throws RuntimeFailure when the shown text
/// is not a number.
[[nodiscard]] std::string roundedText(double number, std::string_view picture);

/// What a size with the plain text "0" shows: 0 under the picture "0.000".
[[nodiscard]] std::string zeroText();
/// Writes a computed size: its plain text under the picture, or zeroText.
void writeSize(TextBox& box, double size, std::string_view picture);

/// A number from a document: with "." under every locale.
[[nodiscard]] double documentNumber(const std::string& text);

}  // namespace vlclientui
