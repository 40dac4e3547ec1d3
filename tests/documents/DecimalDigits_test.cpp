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

TEST(DecimalDigits, RoundsTheLargestDoublesDownToWhatADoubleHolds) {
  const DecimalDigits largest = fifteenDigitsOf(std::numeric_limits<double>::max());
  EXPECT_EQ(largest.digits, "179769313486231");
  EXPECT_TRUE(largest.toDouble());
  EXPECT_EQ(fifteenDigitsOf(1.797693134862315e308).digits, "179769313486231");
}

TEST(DecimalDigits, CarriesANineOverThePoint) {
  const DecimalDigits rounded = DecimalDigits{"99996", 0}.roundedTo(3);
  EXPECT_EQ(rounded.wholePart(), "1");
  EXPECT_EQ(rounded.fractionPart(), "");
  EXPECT_EQ((DecimalDigits{"96", -2}.roundedTo(3).fractionPart()), "01");
}

TEST(DecimalDigits, KeepsZerosInTheMiddle) {
  DecimalDigits number;
  for (const char digit : {'1', '0', '0'}) number.appendWhole(digit);
  for (const char digit : {'0', '5'}) number.appendFraction(digit);
  EXPECT_EQ(number.wholePart(), "100");
  EXPECT_EQ(number.fractionPart(), "05");
  EXPECT_EQ(number.toDouble(), 100.05);
}

TEST(DecimalDigits, IsZeroWithoutDigits) {
  EXPECT_EQ(DecimalDigits{}.toDouble(), 0.0);
  EXPECT_EQ(DecimalDigits{}.wholePart(), "");
  EXPECT_EQ(DecimalDigits{}.fractionPart(), "");
  EXPECT_EQ(DecimalDigits{}.roundedTo(3).digits, "");
}

}  // namespace
}  // namespace vlclientui
