// What reads as a number, by the grammar at the head of NumberText.h.

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"

namespace vlclientui {
namespace {

const LocaleFormat english{".", ",", "$"};
const LocaleFormat german{",", ".", "\u20AC"};
const LocaleFormat french{",", "\u202F", "\u20AC"};
const LocaleFormat swiss{".", "\u2019", "CHF"};

void expectNumber(const std::string& text, double value, const LocaleFormat& locale = english) {
  EXPECT_TRUE(isNumeric(text, locale)) << "'" << text << "'";
  EXPECT_EQ(textToDouble(text, locale), value) << "'" << text << "'";
}

void expectNone(const std::string& text, const LocaleFormat& locale = english) {
  EXPECT_FALSE(isNumeric(text, locale)) << "'" << text << "'";
}

TEST(NumberGrammar, SignsStandBeforeOrBehindAndOnceEach) {
  expectNumber("-5", -5);
  expectNumber("5-", -5);
  expectNumber("+5", 5);
  expectNumber("5+", 5);
  expectNumber("- 5", -5);
  expectNumber("+-5", -5);
  expectNone("--5");
  expectNone("-5-");
  expectNone("++5");
}

TEST(NumberGrammar, ParenthesesMakeTheNumberNegativeAndHaveToClose) {
  expectNumber("(5)", -5);
  expectNumber("( 5 )", -5);
  expectNumber("-(5)", -5);
  expectNone("(5");
  expectNone("5)");
  expectNone("((5))");
  expectNone("(5))");
}

TEST(NumberGrammar, TheCurrencyStandsBeforeOrBehindAndOnce) {
  expectNumber("$5", 5);
  expectNumber("5$", 5);
  expectNumber("-$5", -5);
  expectNumber("$-5", -5);
  expectNumber("5 \u20AC", 5, german);
  expectNumber("CHF 5", 5, swiss);
  expectNone("$5$");
  expectNone("5 \u20AC");
  expectNone("CH 5", swiss);
}

TEST(NumberGrammar, SpaceStandsAroundTheNumberAndNotInIt) {
  expectNumber(" \t\r\n5\v\f ", 5);
  expectNumber("\u00A05\u00A0", 5);
  expectNone("5 5");
  expectNone("5 .5");
  expectNone("5\u20095");
}

TEST(NumberGrammar, GroupsStandAnywhereBehindADigit) {
  expectNumber("1,2,34", 1234);
  expectNumber("1,,234", 1234);
  expectNumber("1,", 1);
  expectNumber("1.2,3", 1.23);
  expectNumber("1\u2019234.5", 1234.5, swiss);
  expectNone(",1");
  expectNone("$,1");
  expectNone("1'234", swiss);
}

TEST(NumberGrammar, ThePointStandsOnceAndNeedsADigitOnOneSide) {
  expectNumber(".5", .5);
  expectNumber("5.", 5);
  expectNumber("-.5", -.5);
  expectNone(".");
  expectNone("-.");
  expectNone("1.2.3");
  expectNone("..5");
}

TEST(NumberGrammar, TheExponentStandsBehindADigitOnceAndIsWhole) {
  expectNumber("1e3", 1000);
  expectNumber("1E+3", 1000);
  expectNumber("1.5e-3", .0015);
  expectNumber("5.e1", 50);
  expectNumber("1e,3", 1000);
  expectNumber("1e003", 1000);
  expectNumber("1e3-", -1000);
  for (const char* const text : {"e3", ".e3", "1e", "1e+", "1e3e3", "1e2.5", "1e 3", "1ee3", "1e+-3"}) {
    expectNone(text);
  }
}

TEST(NumberGrammar, BitsAreHexadecimalOrOctalDigitsBehindTheirLetter) {
  expectNumber("&HfF", 255);
  expectNumber("&hFF", 255);
  expectNumber("&O17", 15);
  expectNumber(" &H10 ", 16);
  expectNumber("&HFFFFFFFFFFFFFFFF", 18446744073709551615.0);
  for (const char* const text : {"&", "&H", "&O", "&HG", "&O8", "&O18", "&B1", "& H1", "&H1.5", "1&H1"}) {
    expectNone(text);
  }
}

TEST(NumberGrammar, ASignBeforeBitsHasNoEffect) {
  expectNumber("-&H10", 16);
  expectNumber("(&H10)", 16);
}

TEST(NumberGrammar, WordsAndEmptyTextsAreNoNumbers) {
  for (const char* const text : {"", " ", "-", "$", "()", "five", "5 m", "Infinity", "NaN", "inf", "0x10",
                                 "1_000", "\u0665", "\xFF", "5\xFF"}) {
    expectNone(text);
  }
}

TEST(NumberGrammar, AZeroByteEndsTheText) {
  expectNumber(std::string("5\0x", 3), 5);
  expectNone(std::string("\0005", 2));
}

TEST(NumberGrammar, WhatNoDoubleHoldsIsNotNumeric) {
  expectNumber("1.7976931348623157e308", std::numeric_limits<double>::max());
  expectNone("1.7976931348623159e308");
  expectNone("-1e309");
  expectNone(std::string(400, '9'));
  expectNumber(std::string(400, '9') + "e-399", 10);
}

TEST(NumberGrammar, ANegativeZeroReadsAsZero) {
  expectNumber("-0", 0);
  expectNumber("(0.0)", 0);
  expectNumber("-1e-400", 0);
}

TEST(WholeNumberGrammar, BitsHaveToFitTheWidth) {
  EXPECT_EQ(textToInt16("&H7FFF", english), 32767);
  EXPECT_EQ(textToInt16("&H8000", english), -32768);
  EXPECT_THROW(static_cast<void>(textToInt16("&H10000", english)), RuntimeFailure);
  EXPECT_EQ(textToInt32("&H80000000", english), std::numeric_limits<std::int32_t>::min());
  EXPECT_THROW(static_cast<void>(textToInt32("&H100000000", english)), RuntimeFailure);
}

TEST(WholeNumberGrammar, TakesWhatADoubleTakesAndRoundsIt) {
  EXPECT_EQ(textToInt16("(1,5)", german), -2);
  EXPECT_EQ(textToInt16("32.767", german), 32767);
  EXPECT_EQ(textToInt32("2147483647,4", french), 2147483647);
  EXPECT_THROW(static_cast<void>(textToInt16("32768", english)), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(textToInt32("1e10", english)), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(textToInt32("one", english)), RuntimeFailure);
}

TEST(WholeNumberGrammar, WhatIsNoNumberEndsAtTheUpperBoundOfThirtyTwoBits) {
  EXPECT_EQ(doubleToInt32(std::nan("")), std::numeric_limits<std::int32_t>::max());
  EXPECT_THROW(static_cast<void>(doubleToInt16(std::nan(""))), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(doubleToInt32(HUGE_VAL)), RuntimeFailure);
}

TEST(TruthGrammar, WordsStandWithoutSpaceAndNumbersAsEverywhere) {
  EXPECT_TRUE(textToBoolean("#TRUE#", english));
  EXPECT_TRUE(textToBoolean(" -1 ", english));
  EXPECT_TRUE(textToBoolean("&H10", english));
  EXPECT_FALSE(textToBoolean("&H0", english));
  EXPECT_FALSE(textToBoolean("0,00", german));
  for (const char* const text : {" true", "true ", "#true", "yes", "", "wahr"}) {
    EXPECT_THROW(static_cast<void>(textToBoolean(text, english)), RuntimeFailure) << text;
  }
}

TEST(NumberText, ReadsBackWhatItWroteToFifteenDigits) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 4'000; ++i) {
    const double mantissa = std::uniform_real_distribution<double>(-10, 10)(random);
    const double value = mantissa * std::pow(10, std::uniform_int_distribution<int>(-300, 300)(random));
    for (const LocaleFormat& locale : {english, german, french, swiss}) {
      const double back = textToDouble(doubleToText(value, locale), locale);
      ASSERT_NEAR(back, value, std::abs(value) * 1e-14) << doubleToText(value, locale);
      ASSERT_EQ(doubleToText(back, locale), doubleToText(value, locale));
    }
  }
}

TEST(NumberText, ReadsBackTheEndsOfTheRange) {
  constexpr double largest = std::numeric_limits<double>::max();
  EXPECT_EQ(doubleToText(largest, german), "1,79769313486231E+308");
  EXPECT_NEAR(textToDouble(doubleToText(largest, german), german) / largest, 1, 1e-14);
  EXPECT_TRUE(isNumeric(formatDouble(-largest, "###.000", french), french));
  constexpr double smallest = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(textToDouble(doubleToText(smallest, french), french), smallest);
}

}  // namespace
}  // namespace vlclientui
