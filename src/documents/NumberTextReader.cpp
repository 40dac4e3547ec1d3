#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>

#include "contracts/RuntimeFailure.h"
#include "contracts/Utf8.h"
#include "documents/DecimalDigits.h"
#include "documents/NumberText.h"

namespace vlclientui {

namespace {

constexpr std::string_view noBreakSpace = "\u00A0";
constexpr std::string_view narrowNoBreakSpace = "\u202F";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                    [](char a, char b) { return asciiLower(a) == b; });
}

/// A number as written; whether it fits is the target's decision.
struct WrittenNumber {
  enum class Notation { Decimal, Bits, TooManyBits };

  Notation notation = Notation::Decimal;
  bool negative = false;
  DecimalDigits decimal;
  std::uint64_t bits = 0;

  [[nodiscard]] std::optional<double> toDouble() const;
};

std::optional<double> WrittenNumber::toDouble() const {
  if (notation == Notation::TooManyBits) return std::nullopt;
  // Deliberate: a sign before "&" is read and has no effect.
  if (notation == Notation::Bits) return static_cast<double>(bits);
  const auto value = decimal.toDouble();
  return value && negative ? -*value : value;
}

/// Reads the grammar told in NumberText.h; one function per rule, each moving `rest_` past what it took.
class NumberParser {
 public:
  NumberParser(std::string_view text, const LocaleFormat& locale)
      : rest_(text.substr(0, text.find('\0'))), locale_(locale) {}

  std::optional<WrittenNumber> parse() {
    while (takeSpace() || takeSignOrCurrency() || takeOpening()) {
    }
    if (!takeBits() && !takeDecimal()) return std::nullopt;
    while (takeSpace() || takeSignOrCurrency() || takeClosing()) {
    }
    if (!rest_.empty() || parentheses_ == Parentheses::Open) return std::nullopt;
    number_.negative = minusSeen_ || parentheses_ == Parentheses::Closed;
    return number_;
  }

 private:
  enum class Parentheses { None, Open, Closed };

  bool take(std::string_view token) {
    if (token.empty() || !rest_.starts_with(token)) return false;
    rest_.remove_prefix(token.size());
    return true;
  }

  /// Takes a mark that may occur once only.
  bool takeOnce(std::string_view token, bool& seen) {
    if (seen || !take(token)) return false;
    seen = true;
    return true;
  }

  bool takeSpace() {
    if (take(noBreakSpace)) return true;
    if (rest_.empty() || std::string_view(" \t\n\v\f\r").find(rest_.front()) == std::string_view::npos) {
      return false;
    }
    rest_.remove_prefix(1);
    return true;
  }

  bool takeSignOrCurrency() {
    return takeOnce("-", minusSeen_) || takeOnce("+", plusSeen_) ||
           takeOnce(locale_.currencySymbol, currencySeen_);
  }

  bool takeOpening() {
    if (parentheses_ != Parentheses::None || !take("(")) return false;
    parentheses_ = Parentheses::Open;
    return true;
  }

  bool takeClosing() {
    if (parentheses_ != Parentheses::Open || !take(")")) return false;
    parentheses_ = Parentheses::Closed;
    return true;
  }

  bool takeGroup() {
    if (take(locale_.groupSeparator)) return true;
    // Nobody types a no-break space, so a blank stands for it.
    const bool spaced =
        locale_.groupSeparator == noBreakSpace || locale_.groupSeparator == narrowNoBreakSpace;
    return spaced && (take(" ") || take(noBreakSpace));
  }

  bool takeDecimal() {
    while (takeDigit() || takePoint() || (digitSeen_ && (takeGroup() || takeExponent()))) {
    }
    number_.decimal.magnitude += exponent_.value_or(0);
    return digitSeen_;
  }

  bool takeDigit() {
    if (rest_.empty() || !isDigit(rest_.front())) return false;
    if (pointSeen_) {
      number_.decimal.appendFraction(rest_.front());
    } else {
      number_.decimal.appendWhole(rest_.front());
    }
    rest_.remove_prefix(1);
    digitSeen_ = true;
    return true;
  }

  bool takePoint() { return !exponent_ && takeOnce(locale_.decimalSeparator, pointSeen_); }

  bool takeExponent() {
    const std::string_view start = rest_;
    if (exponent_ || !(take("e") || take("E"))) return false;
    const bool negative = take("-");
    if (!negative) take("+");
    while (takeGroup()) {
    }
    const auto size = takeExponentDigits();
    if (!size) {
      rest_ = start;
      return false;
    }
    exponent_ = negative ? -*size : *size;
    return true;
  }

  std::optional<long long> takeExponentDigits() {
    // No text is long enough for its digits to make up for such an exponent.
    constexpr long long limit = 1'000'000'000'000;
    if (rest_.empty() || !isDigit(rest_.front())) return std::nullopt;
    long long size = 0;
    for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1)) {
      size = std::min(size * 10 + (rest_.front() - '0'), limit);
    }
    return size;
  }

  bool takeBits() {
    if (rest_.size() < 2 || rest_[0] != '&') return false;
    const char letter = asciiLower(rest_[1]);
    if (letter != 'h' && letter != 'o') return false;
    const std::string_view digits = letter == 'h' ? "0123456789abcdefABCDEF" : "01234567";
    const std::size_t end = std::min(rest_.find_first_not_of(digits, 2), rest_.size());
    if (end == 2) return false;
    const auto result =
        std::from_chars(rest_.data() + 2, rest_.data() + end, number_.bits, letter == 'h' ? 16 : 8);
    rest_.remove_prefix(end);
    number_.notation =
        result.ec == std::errc() ? WrittenNumber::Notation::Bits : WrittenNumber::Notation::TooManyBits;
    return true;
  }

  std::string_view rest_;
  const LocaleFormat& locale_;
  WrittenNumber number_;
  bool minusSeen_ = false;
  bool plusSeen_ = false;
  bool currencySeen_ = false;
  bool digitSeen_ = false;
  bool pointSeen_ = false;
  Parentheses parentheses_ = Parentheses::None;
  std::optional<long long> exponent_;
};

/// The text for a failure's description: whole characters, a line's worth of them.
std::string quoted(std::string_view text) {
  constexpr std::size_t longest = 60;
  const std::string_view start = utf8Start(text, longest);
  return "\"" + std::string(start) + (start.size() < text.size() ? "...\"" : "\"");
}

WrittenNumber readNumber(std::string_view text, const LocaleFormat& locale) {
  auto number = NumberParser(text, locale).parse();
  if (!number) failTypeMismatch(quoted(text) + " is not a number");
  return std::move(*number);
}

double requireDouble(const WrittenNumber& number, std::string_view text) {
  const auto value = number.toDouble();
  if (!value) failOverflow(quoted(text) + " is too large");
  return *value;
}

/// The number of the same width that has these bits.
template <typename Integer>
Integer fromBits(std::uint64_t bits, std::string_view text) {
  using Unsigned = std::make_unsigned_t<Integer>;
  if (bits > std::numeric_limits<Unsigned>::max()) failOverflow(quoted(text) + " has too many bits");
  return static_cast<Integer>(static_cast<Unsigned>(bits));
}

}  // namespace

double textToDouble(std::string_view text, const LocaleFormat& locale) {
  return requireDouble(readNumber(text, locale), text);
}

bool isNumeric(std::string_view text, const LocaleFormat& locale) {
  const auto number = NumberParser(text, locale).parse();
  return number && number->toDouble();
}

std::int16_t textToInt16(std::string_view text, const LocaleFormat& locale) {
  const auto number = readNumber(text, locale);
  if (number.notation == WrittenNumber::Notation::Bits) return fromBits<std::int16_t>(number.bits, text);
  return doubleToInt16(requireDouble(number, text));
}

std::int32_t textToInt32(std::string_view text, const LocaleFormat& locale) {
  const auto number = readNumber(text, locale);
  if (number.notation == WrittenNumber::Notation::Bits) return fromBits<std::int32_t>(number.bits, text);
  return doubleToInt32(requireDouble(number, text));
}

bool textToBoolean(std::string_view text, const LocaleFormat& locale) {
  if (equalsIgnoringCase(text, "true") || equalsIgnoringCase(text, "#true#")) return true;
  if (equalsIgnoringCase(text, "false") || equalsIgnoringCase(text, "#false#")) return false;
  return textToDouble(text, locale) != 0;
}

std::int16_t doubleToInt16(double value) {
  const std::int32_t whole = doubleToInt32(value);
  if (whole < std::numeric_limits<std::int16_t>::min() || whole > std::numeric_limits<std::int16_t>::max()) {
    failOverflow(std::to_string(whole) + " needs more than 16 bits");
  }
  return static_cast<std::int16_t>(whole);
}

std::int32_t doubleToInt32(double value) {
  // Deliberate: what is no number passes every range check and ends at the upper bound.
  if (std::isnan(value)) return std::numeric_limits<std::int32_t>::max();
  const double whole = std::nearbyint(value);
  if (whole < std::numeric_limits<std::int32_t>::min() || whole > std::numeric_limits<std::int32_t>::max()) {
    failOverflow("a whole number needs more than 32 bits");
  }
  return static_cast<std::int32_t>(whole);
}

}  // namespace vlclientui
