#include "documents/NumberText.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui {
namespace {

const LocaleFormat english{".", ",", "$"};
const LocaleFormat german{",", ".", "\u20AC"};
const LocaleFormat french{",", "\u202F", "\u20AC"};
const LocaleFormat swiss{".", "\u2019", "CHF"};

FailureKind kindOfFailure(const std::string& text, const LocaleFormat& locale) {
  try {
    static_cast<void>(textToDouble(text, locale));
  } catch (const RuntimeFailure& failure) {
    return failure.kind();
  }
  ADD_FAILURE() << text << " was read";
  return FailureKind::General;
}

TEST(NumberTextReader, ReadsThePointOfEachLocale) {
  EXPECT_EQ(textToDouble("1,234.5", english), 1234.5);
  EXPECT_EQ(textToDouble("1.234,5", german), 1234.5);
  EXPECT_EQ(textToDouble("1\u202F234,5", french), 1234.5);
}

TEST(NumberTextReader, TakesAPointForAGroupUnderTheGermanLocale) {
  EXPECT_EQ(textToDouble("359.5", german), 3595);
  EXPECT_TRUE(isNumeric("359.5", german));
}

TEST(NumberTextReader, RefusesAPointUnderTheFrenchLocale) {
  EXPECT_FALSE(isNumeric("359.5", french));
  EXPECT_TRUE(isNumeric("359,5", french));
}

TEST(NumberTextReader, TakesAnySpaceForTheGroupsOfANarrowNoBreakSpace) {
  EXPECT_EQ(textToDouble("1 234", french), 1234);
  EXPECT_EQ(textToDouble("1\u00A0234", french), 1234);
  EXPECT_FALSE(isNumeric("1 234", english));
}

TEST(NumberTextReader, TellsNoNumberFromTooLargeANumber) {
  EXPECT_EQ(kindOfFailure("five", english), FailureKind::TypeMismatch);
  EXPECT_EQ(kindOfFailure("", english), FailureKind::TypeMismatch);
  EXPECT_EQ(kindOfFailure("1e309", english), FailureKind::Overflow);
  EXPECT_EQ(kindOfFailure("&HFFFFFFFFFFFFFFFFF", english), FailureKind::Overflow);
}

TEST(NumberTextReader, NamesTheTextThatItRefuses) {
  try {
    static_cast<void>(textToDouble("five", english));
    FAIL() << "read";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("\"five\""), std::string::npos);
  }
}

TEST(NumberTextReader, CutsALongTextInAFailureBetweenCharacters) {
  const std::string text = std::string(59, 'x') + "\u20AC" + std::string(1000, 'x');
  try {
    static_cast<void>(textToDouble(text, english));
    FAIL() << "read";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("x...\""), std::string::npos);
    EXPECT_EQ(failure.description().find('\xE2'), std::string::npos);
  }
}

TEST(NumberTextReader, RoundsToTheNearestDoubleHoweverLongTheText) {
  EXPECT_EQ(textToDouble("9007199254740993", english), 9007199254740992.0);
  EXPECT_EQ(textToDouble("9007199254740993" + std::string(".") + std::string(500, '0') + "1", english),
            9007199254740994.0);
}

TEST(NumberTextReader, LetsDigitsAndExponentMakeUpForEachOther) {
  EXPECT_EQ(textToDouble("1" + std::string(1000, '0') + "e-1000", english), 1);
  EXPECT_EQ(textToDouble("0." + std::string(1000, '0') + "1e1001", english), 1);
}

TEST(NumberTextReader, LivesWithExponentsOfAnySize) {
  EXPECT_EQ(kindOfFailure("1e99999999999999999999999", english), FailureKind::Overflow);
  EXPECT_EQ(textToDouble("1e-99999999999999999999999", english), 0);
  EXPECT_EQ(textToDouble("0e99999999999999999999999", english), 0);
}

TEST(NumberTextReader, MatchesNothingByAnEmptySeparator) {
  const LocaleFormat nothing{"", "", ""};
  EXPECT_EQ(textToDouble("12", nothing), 12);
  EXPECT_FALSE(isNumeric("1.2", nothing));
}

TEST(NumberTextReader, StopsAtAZeroByte) { EXPECT_EQ(textToDouble(std::string("12\0zz", 5), english), 12); }

TEST(NumberTextReader, GivesTheBitsOfHexadecimalAndOctalNumbers) {
  EXPECT_EQ(textToInt16("&HFFFF", english), -1);
  EXPECT_EQ(textToInt32("&HFFFF", english), 65535);
  EXPECT_EQ(textToInt32("&HFFFFFFFF", english), -1);
  EXPECT_EQ(textToInt32("&o17", english), 15);
}

TEST(NumberTextReader, HalvesRoundToEvenInWholeNumbers) {
  EXPECT_EQ(textToInt32("0.5", english), 0);
  EXPECT_EQ(textToInt32("1.5", english), 2);
  EXPECT_EQ(textToInt32("2,5", german), 2);
  EXPECT_EQ(doubleToInt16(-3.5), -4);
  EXPECT_EQ(doubleToInt32(2147483646.5), 2147483646);
}

TEST(NumberTextReader, ChecksTheRangeOfWholeNumbersAfterRounding) {
  EXPECT_EQ(doubleToInt16(32767.4), 32767);
  EXPECT_THROW(static_cast<void>(doubleToInt16(32767.5)), RuntimeFailure);
  EXPECT_EQ(doubleToInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
  EXPECT_THROW(static_cast<void>(doubleToInt32(2147483647.5)), RuntimeFailure);
}

TEST(NumberTextReader, ReadsTruthAsAWordOrANumber) {
  EXPECT_TRUE(textToBoolean("tRUE", english));
  EXPECT_FALSE(textToBoolean("FALSE", english));
  EXPECT_FALSE(textToBoolean("#False#", english));
  EXPECT_TRUE(textToBoolean("0,1", german));
  EXPECT_FALSE(textToBoolean("0", german));
  EXPECT_THROW(static_cast<void>(textToBoolean("yes", english)), RuntimeFailure);
}

TEST(NumberTextWriter, WritesThePointOfTheLocale) {
  EXPECT_EQ(doubleToText(-359.5, english), "-359.5");
  EXPECT_EQ(doubleToText(-359.5, german), "-359,5");
  EXPECT_EQ(doubleToText(1234567.5, french), "1234567,5");
}

TEST(NumberTextWriter, StaysInFixedFormWhileFifteenDecimalsSuffice) {
  EXPECT_EQ(doubleToText(0.00001, english), "0.00001");
  EXPECT_EQ(doubleToText(1e-15, english), "0.000000000000001");
  EXPECT_EQ(doubleToText(1e-16, english), "1E-16");
  EXPECT_EQ(doubleToText(0.1 / 3, english), "3.33333333333333E-02");
}

TEST(NumberTextWriter, TurnsToExponentFormAboveFifteenDigits) {
  EXPECT_EQ(doubleToText(999999999999999.0, english), "999999999999999");
  EXPECT_EQ(doubleToText(999999999999999.9, english), "1E+15");
  EXPECT_EQ(doubleToText(-1.5e100, german), "-1,5E+100");
}

TEST(NumberTextWriter, WritesNoSignForZero) {
  EXPECT_EQ(doubleToText(-0.0, english), "0");
  EXPECT_EQ(formatDouble(-0.0, "###.0", english), ".0");
}

TEST(NumberTextWriter, WritesWhatIsNotFiniteSoThatNoReaderTakesIt) {
  for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_FALSE(isNumeric(doubleToText(value, english), english));
    EXPECT_EQ(formatDouble(value, "###", english), doubleToText(value, english));
  }
}

TEST(NumberPicture, ForcesNoDigitBeforeThePoint) {
  EXPECT_EQ(formatDouble(0.5, "###.000", english), ".500");
  EXPECT_EQ(formatDouble(0.5, "###.000", german), ",500");
  EXPECT_EQ(formatDouble(0.5, "0.000", french), "0,500");
}

TEST(NumberPicture, GivesNoTextForZeroWithoutForcedDigits) {
  EXPECT_EQ(formatDouble(0, "###", english), "");
  EXPECT_EQ(formatDouble(500.0 / 1024, "###", english), "");
  EXPECT_EQ(formatDouble(512.0 / 1024, "###", english), "1");
  EXPECT_EQ(formatDouble(1023.0 / 1024, "###", english), "1");
}

TEST(NumberPicture, RoundsHalvesOfTheWrittenDigitsAwayFromZero) {
  EXPECT_EQ(formatDouble(10.5, "###", english), "11");
  EXPECT_EQ(formatDouble(-2.5, "###", english), "-3");
  EXPECT_EQ(formatDouble(1.0005, "###.000", english), "1.001");
  EXPECT_EQ(formatDouble(2.65, "###.0", german), "2,7");
}

TEST(NumberPicture, CarriesThroughNines) {
  EXPECT_EQ(formatDouble(999.9995, "###.000", english), "1000.000");
  EXPECT_EQ(formatDouble(0.9996, "###.000", english), "1.000");
  EXPECT_EQ(formatDouble(0.0096, "###.00", english), ".01");
}

TEST(NumberPicture, LeavesOptionalDecimalsOut) {
  EXPECT_EQ(formatDouble(1.5, "0.0##", english), "1.5");
  EXPECT_EQ(formatDouble(1.0, "0.0##", english), "1.0");
  EXPECT_EQ(formatDouble(7, "000", english), "007");
}

TEST(NumberPicture, AppliesToTheNumberWhereItsPlainTextHasAnExponent) {
  for (const LocaleFormat& locale : {english, german, french, swiss}) {
    const std::string& point = locale.decimalSeparator;
    EXPECT_EQ(formatDouble(1.5e-7, "###.000000000", locale), point + "000000150");
    EXPECT_EQ(formatDouble(-3.33333333333333e-5, "###.000000000000", locale), "-" + point + "000033333333");
    EXPECT_EQ(formatDouble(1e-7, "0.000", locale), "0" + point + "000");
    EXPECT_EQ(formatDouble(1.5e15, "###.000", locale), "1500000000000000" + point + "000");
    EXPECT_EQ(formatDouble(-1.23456789012345e20, "###", locale), "-123456789012345000000");
  }
}

TEST(NumberPicture, TreatsNumbersOnBothSidesOfTheExponentAlike) {
  EXPECT_EQ(formatDouble(0.0001, "###.000000", german), ",000100");
  EXPECT_EQ(formatDouble(0.00009999, "###.000000", german), ",000100");
  EXPECT_EQ(formatDouble(999999999999999.0, "###.0", french), "999999999999999,0");
  EXPECT_EQ(formatDouble(1000000000000000.0, "###.0", french), "1000000000000000,0");
}

TEST(NumberText, PaysNoHeedToTheLocaleOfTheProcess) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  EXPECT_EQ(doubleToText(textToDouble("1,5", german), english), "1.5");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

}  // namespace
}  // namespace vlclientui
