#include <cassert>
#include <cmath>
#include <string>

#include "documents/DecimalDigits.h"
#include "documents/NumberText.h"

namespace vlclientui {

namespace {

constexpr long long mostDecimals = 15;
constexpr long long mostWholeDigits = 15;

std::string signOf(double value) { return value < 0 ? "-" : ""; }

std::string notFiniteText(double value) { return std::isnan(value) ? "NaN" : signOf(value) + "Infinity"; }

/// "1.5E-07": one digit before the point, two digits of exponent at least.
std::string exponentText(const DecimalDigits& number, const std::string& decimalSeparator) {
  const long long exponent = number.magnitude - 1;
  std::string mantissa = number.digits.substr(0, 1);
  if (number.digits.size() > 1) mantissa += decimalSeparator + number.digits.substr(1);
  std::string size = std::to_string(std::abs(exponent));
  if (size.size() < 2) size.insert(0, 1, '0');
  return mantissa + (exponent < 0 ? "E-" : "E+") + size;
}

std::string fixedText(const DecimalDigits& number, const std::string& decimalSeparator) {
  const std::string whole = number.wholePart();
  const std::string fraction = number.fractionPart();
  const std::string text = whole.empty() ? "0" : whole;
  return fraction.empty() ? text : text + decimalSeparator + fraction;
}

/// How many digits a picture asks for.
struct Picture {
  explicit Picture(std::string_view picture);

  std::size_t wholeDigits = 0;     ///< at least this many before the point
  std::size_t fractionDigits = 0;  ///< at least this many behind it
  long long decimals = 0;          ///< at most this many behind it
  bool hasPoint = false;
};

Picture::Picture(std::string_view picture) {
  assert(picture.find_first_not_of("#0.") == std::string_view::npos);
  const std::size_t point = picture.find('.');
  hasPoint = point != std::string_view::npos;
  const std::string_view whole = picture.substr(0, point);
  const std::string_view fraction = hasPoint ? picture.substr(point + 1) : std::string_view();
  const std::size_t firstForced = whole.find('0');
  if (firstForced != std::string_view::npos) wholeDigits = whole.size() - firstForced;
  fractionDigits = fraction.find_last_of('0') + 1;
  decimals = static_cast<long long>(fraction.size());
}

std::string pictureText(double value, const Picture& picture, const LocaleFormat& locale) {
  const DecimalDigits rounded = fifteenDigitsOf(value).roundedTo(picture.decimals);
  std::string whole = rounded.wholePart();
  if (whole.size() < picture.wholeDigits) whole.insert(0, picture.wholeDigits - whole.size(), '0');
  std::string fraction = rounded.fractionPart();
  if (fraction.size() < picture.fractionDigits) fraction.resize(picture.fractionDigits, '0');
  return signOf(value) + whole + (picture.hasPoint ? locale.decimalSeparator : "") + fraction;
}

}  // namespace

std::string doubleToText(double value, const LocaleFormat& locale) {
  if (!std::isfinite(value)) return notFiniteText(value);
  const DecimalDigits number = fifteenDigitsOf(value);
  const auto decimals = static_cast<long long>(number.digits.size()) - number.magnitude;
  const bool fixed = number.magnitude <= mostWholeDigits && decimals <= mostDecimals;
  return signOf(value) +
         (fixed ? fixedText(number, locale.decimalSeparator) : exponentText(number, locale.decimalSeparator));
}

std::string formatDouble(double value, std::string_view picture, const LocaleFormat& locale) {
  if (!std::isfinite(value)) return notFiniteText(value);
  return pictureText(value, Picture(picture), locale);
}

}  // namespace vlclientui
