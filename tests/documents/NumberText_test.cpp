#include "documents/NumberText.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui {
namespace {

const LocaleFormat kEnglish{".", ",", "$"};
const LocaleFormat kGerman{",", ".", "\u20AC"};
const LocaleFormat kFrench{",", "\u202F", "\u20AC"};
const LocaleFormat kSwiss{".", "\u2019", "CHF"};

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
  EXPECT_EQ(textToDouble("1,234.5", kEnglish), 1234.5);
  EXPECT_EQ(textToDouble("1.234,5", kGerman), 1234.5);
  EXPECT_EQ(textToDouble("1\u202F234,5", kFrench), 1234.5);
}

TEST(NumberTextReader, TakesAPointForAGroupUnderTheGermanLocale) {
  EXPECT_EQ(textToDouble("359.5", kGerman), 3595);
  EXPECT_TRUE(isNumeric("359.5", kGerman));
}

TEST(NumberTextReader, RefusesAPointUnderTheFrenchLocale) {
  EXPECT_FALSE(isNumeric("359.5", kFrench));
  EXPECT_TRUE(isNumeric("359,5", kFrench));
}

TEST(NumberTextReader, TakesAnySpaceForTheGroupsOfANarrowNoBreakSpace) {
  EXPECT_EQ(textToDouble("1 234", kFrench), 1234);
  EXPECT_EQ(textToDouble("1\u00A0234", kFrench), 1234);
  EXPECT_FALSE(isNumeric("1 234", kEnglish));
}

TEST(NumberTextReader, TellsNoNumberFromTooLargeANumber) {
  EXPECT_EQ(kindOfFailure("five", kEnglish), FailureKind::TypeMismatch);
  EXPECT_EQ(kindOfFailure("", kEnglish), FailureKind::TypeMismatch);
  EXPECT_EQ(kindOfFailure("1e309", kEnglish), FailureKind::Overflow);
  EXPECT_EQ(kindOfFailure("&HFFFFFFFFFFFFFFFFF", kEnglish), FailureKind::Overflow);
}

TEST(NumberTextReader, NamesTheTextThatItRefuses) {
  try {
    static_cast<void>(textToDouble("five", kEnglish));
    FAIL() << "read";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("\"five\""), std::string::npos);
  }
}

TEST(NumberTextReader, CutsALongTextInAFailureBetweenCharacters) {
  const std::string text = std::string(59, 'x') + "\u20AC" + std::string(1000, 'x');
  try {
    static_cast<void>(textToDouble(text, kEnglish));
    FAIL() << "read";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("x...\""), std::string::npos);
    EXPECT_EQ(failure.description().find('\xE2'), std::string::npos);
  }
}

TEST(NumberTextReader, RoundsToTheNearestDoubleHoweverLongTheText) {
  EXPECT_EQ(textToDouble("9007199254740993", kEnglish), 9007199254740992.0);
  EXPECT_EQ(textToDouble("9007199254740993" + std::string(".") + std::string(500, '0') + "1", kEnglish),
            9007199254740994.0);
}

TEST(NumberTextReader, LetsDigitsAndExponentMakeUpForEachOther) {
  EXPECT_EQ(textToDouble("1" + std::string(1000, '0') + "e-1000", kEnglish), 1);
  EXPECT_EQ(textToDouble("0." + std::string(1000, '0') + "1e1001", kEnglish), 1);
}

TEST(NumberTextReader, LivesWithExponentsOfAnySize) {
  EXPECT_EQ(kindOfFailure("1e99999999999999999999999", kEnglish), FailureKind::Overflow);
  EXPECT_EQ(textToDouble("1e-99999999999999999999999", kEnglish), 0);
  EXPECT_EQ(textToDouble("0e99999999999999999999999", kEnglish), 0);
}

TEST(NumberTextReader, MatchesNothingByAnEmptySeparator) {
  const LocaleFormat nothing{"", "", ""};
  EXPECT_EQ(textToDouble("12", nothing), 12);
  EXPECT_FALSE(isNumeric("1.2", nothing));
}

TEST(NumberTextReader, StopsAtAZeroByte) { EXPECT_EQ(textToDouble(std::string("12\0zz", 5), kEnglish), 12); }

TEST(NumberTextReader, GivesTheBitsOfHexadecimalAndOctalNumbers) {
  EXPECT_EQ(textToInt16("&HFFFF", kEnglish), -1);
  EXPECT_EQ(textToInt32("&HFFFF", kEnglish), 65535);
  EXPECT_EQ(textToInt32("&HFFFFFFFF", kEnglish), -1);
  EXPECT_EQ(textToInt32("&o17", kEnglish), 15);
}

TEST(NumberTextReader, HalvesRoundToEvenInWholeNumbers) {
  EXPECT_EQ(textToInt32("0.5", kEnglish), 0);
  EXPECT_EQ(textToInt32("1.5", kEnglish), 2);
  EXPECT_EQ(textToInt32("2,5", kGerman), 2);
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
  EXPECT_TRUE(textToBoolean("tRUE", kEnglish));
  EXPECT_FALSE(textToBoolean("FALSE", kEnglish));
  EXPECT_FALSE(textToBoolean("#False#", kEnglish));
  EXPECT_TRUE(textToBoolean("0,1", kGerman));
  EXPECT_FALSE(textToBoolean("0", kGerman));
  EXPECT_THROW(static_cast<void>(textToBoolean("yes", kEnglish)), RuntimeFailure);
}

TEST(NumberTextWriter, WritesThePointOfTheLocale) {
  EXPECT_EQ(doubleToText(-359.5, kEnglish), "-359.5");
  EXPECT_EQ(doubleToText(-359.5, kGerman), "-359,5");
  EXPECT_EQ(doubleToText(1234567.5, kFrench), "1234567,5");
}

TEST(NumberTextWriter, StaysInFixedFormWhileFifteenDecimalsSuffice) {
  EXPECT_EQ(doubleToText(0.00001, kEnglish), "0.00001");
  EXPECT_EQ(doubleToText(1e-15, kEnglish), "0.000000000000001");
  EXPECT_EQ(doubleToText(1e-16, kEnglish), "1E-16");
  EXPECT_EQ(doubleToText(0.1 / 3, kEnglish), "3.33333333333333E-02");
}

TEST(NumberTextWriter, TurnsToExponentFormAboveFifteenDigits) {
  EXPECT_EQ(doubleToText(999999999999999.0, kEnglish), "999999999999999");
  EXPECT_EQ(doubleToText(999999999999999.9, kEnglish), "1E+15");
  EXPECT_EQ(doubleToText(-1.5e100, kGerman), "-1,5E+100");
}

TEST(NumberTextWriter, WritesNoSignForZero) {
  EXPECT_EQ(doubleToText(-0.0, kEnglish), "0");
  EXPECT_EQ(formatDouble(-0.0, "###.0", kEnglish), ".0");
}

TEST(NumberTextWriter, WritesWhatIsNotFiniteSoThatNoReaderTakesIt) {
  for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_FALSE(isNumeric(doubleToText(value, kEnglish), kEnglish));
    EXPECT_EQ(formatDouble(value, "###", kEnglish), doubleToText(value, kEnglish));
  }
}

TEST(NumberPicture, ForcesNoDigitBeforeThePoint) {
  EXPECT_EQ(formatDouble(0.5, "###.000", kEnglish), ".500");
  EXPECT_EQ(formatDouble(0.5, "###.000", kGerman), ",500");
  EXPECT_EQ(formatDouble(0.5, "0.000", kFrench), "0,500");
}

TEST(NumberPicture, GivesNoTextForZeroWithoutForcedDigits) {
  EXPECT_EQ(formatDouble(0, "###", kEnglish), "");
  EXPECT_EQ(formatDouble(500.0 / 1024, "###", kEnglish), "");
  EXPECT_EQ(formatDouble(512.0 / 1024, "###", kEnglish), "1");
  EXPECT_EQ(formatDouble(1023.0 / 1024, "###", kEnglish), "1");
}

TEST(NumberPicture, RoundsHalvesOfTheWrittenDigitsAwayFromZero) {
  EXPECT_EQ(formatDouble(10.5, "###", kEnglish), "11");
  EXPECT_EQ(formatDouble(-2.5, "###", kEnglish), "-3");
  EXPECT_EQ(formatDouble(1.0005, "###.000", kEnglish), "1.001");
  EXPECT_EQ(formatDouble(2.65, "###.0", kGerman), "2,7");
}

TEST(NumberPicture, CarriesThroughNines) {
  EXPECT_EQ(formatDouble(999.9995, "###.000", kEnglish), "1000.000");
  EXPECT_EQ(formatDouble(0.9996, "###.000", kEnglish), "1.000");
  EXPECT_EQ(formatDouble(0.0096, "###.00", kEnglish), ".01");
}

TEST(NumberPicture, LeavesOptionalDecimalsOut) {
  EXPECT_EQ(formatDouble(1.5, "0.0##", kEnglish), "1.5");
  EXPECT_EQ(formatDouble(1.0, "0.0##", kEnglish), "1.0");
  EXPECT_EQ(formatDouble(7, "000", kEnglish), "007");
}

TEST(NumberPicture, AppliesToTheNumberWhereItsPlainTextHasAnExponent) {
  for (const LocaleFormat& locale : {kEnglish, kGerman, kFrench, kSwiss}) {
    const std::string& point = locale.decimalSeparator;
    EXPECT_EQ(formatDouble(1.5e-7, "###.000000000", locale), point + "000000150");
    EXPECT_EQ(formatDouble(-3.33333333333333e-5, "###.000000000000", locale), "-" + point + "000033333333");
    EXPECT_EQ(formatDouble(1e-7, "0.000", locale), "0" + point + "000");
    EXPECT_EQ(formatDouble(1.5e15, "###.000", locale), "1500000000000000" + point + "000");
    EXPECT_EQ(formatDouble(-1.23456789012345e20, "###", locale), "-123456789012345000000");
  }
}

TEST(NumberPicture, TreatsNumbersOnBothSidesOfTheExponentAlike) {
  EXPECT_EQ(formatDouble(0.0001, "###.000000", kGerman), ",000100");
  EXPECT_EQ(formatDouble(0.00009999, "###.000000", kGerman), ",000100");
  EXPECT_EQ(formatDouble(999999999999999.0, "###.0", kFrench), "999999999999999,0");
  EXPECT_EQ(formatDouble(1000000000000000.0, "###.0", kFrench), "1000000000000000,0");
}

TEST(NumberText, PaysNoHeedToTheLocaleOfTheProcess) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  EXPECT_EQ(doubleToText(textToDouble("1,5", kGerman), kEnglish), "1.5");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

}  // namespace
}  // namespace vlclientui
