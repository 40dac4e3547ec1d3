#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contracts/LocaleFormat.h"

/// Numbers to text and back under the user's locale. Separators are data; no process locale is read or set.
/// Texts are UTF-8. All readers throw RuntimeFailure: TypeMismatch for a text that is no number, Overflow
/// for a number that the target cannot hold.
///
/// What reads as a number:
///
///     text     = prefix body suffix [NUL and anything behind it]
///     prefix   = { space | "+" | "-" | "(" | currency }
///     suffix   = { space | "+" | "-" | ")" | currency }
///     body     = { digit | group | point | exponent }
///              | "&" ("H" hexadecimal digits | "O" octal digits)     either letter in either case
///     exponent = ("E" | "e") ["+" | "-"] { group } digits
///
/// Every mark of prefix and suffix stands once at most in the whole text; a parenthesis that opens must
/// close. "-" and parentheses both make the number negative. A body has a digit; a group separator and
/// the exponent come behind one. The point stands once and before the exponent. Group separators may
/// stand anywhere, in threes or not. Space is a blank, a tab, a line end or a no-break space. Where the group
/// separator is a no-break space, a blank does as well.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The nearest double, halves to even; a number too small becomes zero. No text reads as infinite.
[[nodiscard]] double textToDouble(std::string_view text, const LocaleFormat& locale);
/// True exactly when textToDouble would succeed. Never throws RuntimeFailure.
[[nodiscard]] bool isNumeric(std::string_view text, const LocaleFormat& locale);
/// Rounds halves to even. A number written with "&" gives the bits: "&HFFFF" is -1 in 16 bits.
[[nodiscard]] std::int16_t textToInt16(std::string_view text, const LocaleFormat& locale);
[[nodiscard]] std::int32_t textToInt32(std::string_view text, const LocaleFormat& locale);
/// "True" and "False" (also "#TRUE#" and "#FALSE#") in any case and without space around them, or a
/// number, zero being false.
[[nodiscard]] bool textToBoolean(std::string_view text, const LocaleFormat& locale);

/// Halves to even, range checked. @throws RuntimeFailure (Overflow)
[[nodiscard]] std::int16_t doubleToInt16(double value);
/// As above; NaN gives the largest number.
[[nodiscard]] std::int32_t doubleToInt32(double value);

/// Shortest text of up to 15 significant digits. Below 1 in fixed form whenever 15 decimals suffice for
/// the significant digits, else in exponent form ("3.33333333333333E-02"); from 1E+15 in exponent form.
/// What is not finite gives "Infinity", "-Infinity" or "NaN", which no reader takes.
[[nodiscard]] std::string doubleToText(double value, const LocaleFormat& locale);

/// Picture of "#" (a digit if any), "0" (a digit always) and "." (the locale's decimal separator).
/// Rounds the 15 significant digits, halves away from zero. Nothing forces a digit before the point: 0.5
/// under "###.000" is ".500", 0 under "###" is empty. A negative number keeps its sign when it rounds to
/// zero. Applies to every finite number alike, also where doubleToText turns to exponent form.
[[nodiscard]] std::string formatDouble(double value, std::string_view picture, const LocaleFormat& locale);

}  // namespace vlclientui
#pragma GCC visibility pop
