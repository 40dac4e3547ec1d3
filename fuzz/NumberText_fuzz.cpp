// Input: one byte that picks the locale, then the text. The readers may refuse the text with a RuntimeFailure
// and in no other way; what they accept must survive being written and read again.

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"

namespace {

using namespace vlclientui;

const std::array<LocaleFormat, 5> locales = {{
    {".", ",", "$"},
    {",", ".", "\u20AC"},
    {",", "\u202F", "\u20AC"},
    {".", "\u2019", "CHF"},
    {"", "", ""},  // nothing configured: odd, but no reason to hang or to read beyond the text
}};

void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", property);
  std::abort();
}

template <typename Reader>
auto readOrNothing(Reader reader, std::string_view text, const LocaleFormat& locale)
    -> std::optional<decltype(reader(text, locale))> {
  try {
    return reader(text, locale);
  } catch (const RuntimeFailure&) {
    return std::nullopt;
  }
}

double roundedTo15Digits(double value) {
  std::array<char, 64> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, 14)
          .ptr;
  double rounded = 0;
  if (std::from_chars(buffer.data(), end, rounded).ec != std::errc()) {
    return std::copysign(std::numeric_limits<double>::infinity(), value);
  }
  return rounded;
}

void checkWritten(double value, const LocaleFormat& locale) {
  const std::string text = doubleToText(value, locale);
  const double expected = roundedTo15Digits(value);
  const auto again = readOrNothing(textToDouble, text, locale);
  require(again.has_value(), "a written number can be read");
  // The largest numbers would round up beyond the range, so they are rounded towards zero.
  if (!std::isfinite(expected)) {
    return require(*again / value > 0.99 && *again / value <= 1,
                   "a number at the end of the range stays in it");
  }
  require(*again == expected, "a written number keeps 15 digits");
}

void checkPictures(double value, const LocaleFormat& locale) {
  for (const char* picture : {"###", "###.0", "###.000", "###.000000000000", "0.000"}) {
    const std::string text = formatDouble(value, picture, locale);
    if (text.empty()) require(std::abs(value) < 0.5, "only a number that rounds to zero has no text");
  }
}

void checkText(std::string_view text, const LocaleFormat& locale) {
  const auto value = readOrNothing(textToDouble, text, locale);
  require(isNumeric(text, locale) == value.has_value(), "a text is numeric exactly when it can be read");
  const auto narrow = readOrNothing(textToInt16, text, locale);
  const auto wide = readOrNothing(textToInt32, text, locale);
  if (narrow && value && text.find('&') == std::string_view::npos) {
    require(wide == *narrow, "a small whole number is the same in both widths");
  }
  static_cast<void>(readOrNothing(textToBoolean, text, locale));
  if (!value) return;
  require(std::isfinite(*value), "no text is infinite or no number");
  if (locale.decimalSeparator.empty()) return;
  checkWritten(*value, locale);
  checkPictures(*value, locale);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  checkText(text, locales[data[0] % locales.size()]);
  return 0;
}
