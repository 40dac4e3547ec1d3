#include "documents/DecimalDigits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace vlclientui {

namespace {

// Far beyond any double, yet safe to add to an exponent.
constexpr long long beyondDoubles = 400;

void dropZerosAtEnd(std::string& digits) { digits.erase(digits.find_last_not_of('0') + 1); }

void addOneToLastDigit(DecimalDigits& number) {
  std::string& digits = number.digits;
  digits.erase(digits.find_last_not_of('9') + 1);
  if (!digits.empty()) {
    ++digits.back();
    return;
  }
  digits.push_back('1');
  ++number.magnitude;
}

}  // namespace

void DecimalDigits::appendWhole(char digit) {
  if (digits.empty() && digit == '0') return;
  digits += digit;
  ++magnitude;
}

void DecimalDigits::appendFraction(char digit) {
  if (digits.empty() && digit == '0') {
    --magnitude;
  } else {
    digits += digit;
  }
}

std::optional<double> DecimalDigits::toDouble() const {
  if (digits.empty() || magnitude < -beyondDoubles) return 0.0;
  if (magnitude > beyondDoubles) return std::nullopt;
  const std::string text = "0." + digits + "e" + std::to_string(magnitude);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc()) return value;
  // The error code does not say whether the number is too large or too small.
  return magnitude > 0 ? std::nullopt : std::optional(0.0);
}

DecimalDigits DecimalDigits::roundedTo(long long decimals) const {
  const long long kept = magnitude + decimals;
  if (kept < 0 || digits.empty()) return {};
  if (kept >= static_cast<long long>(digits.size())) return *this;
  const auto length = static_cast<std::size_t>(kept);
  DecimalDigits rounded{digits.substr(0, length), magnitude};
  if (digits[length] >= '5') addOneToLastDigit(rounded);
  dropZerosAtEnd(rounded.digits);
  return rounded.digits.empty() ? DecimalDigits{} : rounded;
}

std::string DecimalDigits::wholePart() const {
  if (magnitude <= 0) return {};
  const auto length = static_cast<std::size_t>(magnitude);
  std::string whole = digits.substr(0, length);
  whole.resize(length, '0');
  return whole;
}

std::string DecimalDigits::fractionPart() const {
  if (magnitude < 0) return std::string(static_cast<std::size_t>(-magnitude), '0') + digits;
  return digits.substr(std::min(static_cast<std::size_t>(magnitude), digits.size()));
}

DecimalDigits fifteenDigitsOf(double value) {
  if (value == 0) return {};
  std::array<char, 32> buffer{};
  char* const begin = buffer.data();
  const auto end =
      std::to_chars(begin, begin + buffer.size(), std::abs(value), std::chars_format::scientific, 14).ptr;
  // Always "d.dddddddddddddde+xx".
  const std::string_view text(begin, static_cast<std::size_t>(end - begin));
  const char* exponentText = begin + text.find('e') + 1;
  if (*exponentText == '+') ++exponentText;
  int exponent = 0;
  std::from_chars(exponentText, end, exponent);
  DecimalDigits number{std::string(text.substr(0, 1)), exponent + 1LL};
  number.digits.append(text.substr(2, 14));
  // The largest doubles round up to what no double holds; the digits below them still read back.
  if (!number.toDouble()) --number.digits.back();
  dropZerosAtEnd(number.digits);
  return number;
}

}  // namespace vlclientui
