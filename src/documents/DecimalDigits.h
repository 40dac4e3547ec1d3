#pragma once

#include <optional>
#include <string>

namespace vlclientui {

/// An unsigned number in decimal digits: 0.d1d2d3... times ten to the power of `magnitude`. Never has leading
/// zeros; `digits` is empty for zero. Internal to the conversions of NumberText.
struct DecimalDigits {
  std::string digits;
  long long magnitude = 0;

  /// Adds a digit before the point, in reading order. @param digit '0' to '9'.
  void appendWhole(char digit);
  /// Adds a digit behind the point; no whole digit may follow.
  void appendFraction(char digit);

  /// The nearest double, halves to even. Zero when too small. @returns nothing when too large.
  [[nodiscard]] std::optional<double> toDouble() const;

  /// The number rounded to so many decimals, halves away from zero. @param decimals 0 or more.
  [[nodiscard]] DecimalDigits roundedTo(long long decimals) const;

  /// What stands before the point; empty for a number below 1.
  [[nodiscard]] std::string wholePart() const;
  /// What stands behind the point, without zeros at its end unless `digits` has them.
  [[nodiscard]] std::string fractionPart() const;
};

/// The 15 significant digits nearest to a finite value, its sign left out, zeros at the end dropped. They
/// always read back as a double: the largest values round down.
[[nodiscard]] DecimalDigits fifteenDigitsOf(double value);

}  // namespace vlclientui
