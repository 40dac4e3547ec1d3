#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contracts/LocaleFormat.h"

/// Numbers to text and back under the user's locale. Separators are data; no process locale is read or set.
/// Texts are UTF-8. All readers throw RuntimeFailure: TypeMismatch for a text that is no number, Overflow
/// for a number that the target cannot hold.
namespace vlclientui {

/// Parsing is correctly rounded.
[[nodiscard]] double textToDouble(std::string_view text, const LocaleFormat& locale);
/// True exactly when textToDouble would succeed.
[[nodiscard]] bool isNumeric(std::string_view text, const LocaleFormat& locale);
/// Halves to even.
[[nodiscard]] std::int16_t textToInt16(std::string_view text, const LocaleFormat& locale);
[[nodiscard]] std::int32_t textToInt32(std::string_view text, const LocaleFormat& locale);
/// "True" and "False" in any case, or a number, zero being false.
[[nodiscard]] bool textToBoolean(std::string_view text, const LocaleFormat& locale);

/// Halves to even, range checked. @throws RuntimeFailure (Overflow)
[[nodiscard]] std::int16_t doubleToInt16(double value);
[[nodiscard]] std::int32_t doubleToInt32(double value);

/// Shortest text of up to 15 significant digits. Below 1 in fixed form whenever 15 decimals suffice for
/// the significant digits, else in exponent form ("3.33333333333333E-02"); from 1E+15 in exponent form.
[[nodiscard]] std::string doubleToText(double value, const LocaleFormat& locale);

/// Picture of "#" (a digit if any), "0" (a digit always) and "." (the locale's decimal separator).
/// Rounds halves away from zero. The integer part has no forced digit: 0.5 under "###.000" is ".500".
[[nodiscard]] std::string formatDouble(double value, std::string_view picture, const LocaleFormat& locale);

}  // namespace vlclientui
