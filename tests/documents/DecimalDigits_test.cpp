#include "documents/DecimalDigits.h"

#include <limits>

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

TEST(DecimalDigits, CollectsDigitsAroundThePoint) {
  DecimalDigits number;
  for (const char digit : {'0', '1', '2'}) number.appendWhole(digit);
  for (const char digit : {'5', '0'}) number.appendFraction(digit);
  EXPECT_EQ(number.wholePart(), "12");
  EXPECT_EQ(number.fractionPart(), "50");
  EXPECT_EQ(number.toDouble(), 12.5);
}

TEST(DecimalDigits, CountsZerosBehindThePoint) {
  DecimalDigits number;
  for (const char digit : {'0', '0', '7'}) number.appendFraction(digit);
  EXPECT_EQ(number.digits, "7");
  EXPECT_EQ(number.magnitude, -2);
  EXPECT_EQ(number.fractionPart(), "007");
  EXPECT_EQ(number.wholePart(), "");
}

TEST(DecimalDigits, FillsTheWholePartWithZeros) {
  const DecimalDigits number{"12", 5};
  EXPECT_EQ(number.wholePart(), "12000");
  EXPECT_EQ(number.fractionPart(), "");
}

TEST(DecimalDigits, TellsTooLargeFromTooSmall) {
  EXPECT_FALSE((DecimalDigits{"2", 309}).toDouble());
  EXPECT_FALSE((DecimalDigits{"2", 1'000'000'000'000}).toDouble());
  EXPECT_EQ((DecimalDigits{"2", -323}).toDouble(), 0.0);
  EXPECT_EQ((DecimalDigits{"2", -1'000'000'000'000}).toDouble(), 0.0);
  EXPECT_EQ((DecimalDigits{"49", -323}).toDouble(), std::numeric_limits<double>::denorm_min());
}

TEST(DecimalDigits, RoundsHalvesAwayFromZero) {
  EXPECT_EQ((DecimalDigits{"125", 1}).roundedTo(1).fractionPart(), "3");
  EXPECT_EQ((DecimalDigits{"1249", 1}).roundedTo(1).fractionPart(), "2");
  EXPECT_EQ((DecimalDigits{"999", 1}).roundedTo(1).wholePart(), "10");
  EXPECT_EQ((DecimalDigits{"5", 0}).roundedTo(0).wholePart(), "1");
  EXPECT_EQ((DecimalDigits{"9", -1}).roundedTo(0).digits, "");
  EXPECT_EQ((DecimalDigits{"14", 0}).roundedTo(0).digits, "");
}

TEST(DecimalDigits, KeepsFifteenDigitsOfADouble) {
  EXPECT_EQ(fifteenDigitsOf(-2.0 / 3).digits, "666666666666667");
  EXPECT_EQ(fifteenDigitsOf(0.1 + 0.2).digits, "3");
  EXPECT_EQ(fifteenDigitsOf(1e300).magnitude, 301);
  EXPECT_EQ(fifteenDigitsOf(0).digits, "");
}

}  // namespace
}  // namespace vlclientui
