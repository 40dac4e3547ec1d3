// Holds the conversions against the table of recorded answers, one test per function and locale. Columns of
// tests/data/numbers.tsv: function, locale, picture, input, outcome, output; characters beyond ASCII and
// control characters are written as \uXXXX.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"
#include "documents/TextCase.h"
#include "support/TestFolders.h"

namespace vlclientui {
namespace {

struct Row {
  std::string function;
  std::string locale;
  std::string picture;
  std::string input;
  std::string outcome;
  std::string output;
};

const std::map<std::string, LocaleFormat>& locales() {
  static const std::map<std::string, LocaleFormat> known = {
      {"en-US", {".", ",", "$"}},
      {"de-DE", {",", ".", "\u20AC"}},
      {"fr-FR", {",", "\u00A0", "\u20AC"}},
      {"de-CH", {".", "\u2019", "CHF"}},
  };
  return known;
}

std::string utf8Of(unsigned codeUnit) {
  const auto byte = [](unsigned value) { return std::string(1, static_cast<char>(value)); };
  if (codeUnit < 0x80) return byte(codeUnit);
  if (codeUnit < 0x800) return byte(0xC0U | (codeUnit >> 6U)) + byte(0x80U | (codeUnit & 0x3FU));
  return byte(0xE0U | (codeUnit >> 12U)) + byte(0x80U | ((codeUnit >> 6U) & 0x3FU)) +
         byte(0x80U | (codeUnit & 0x3FU));
}

std::string unescaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    if (!text.starts_with("\\u")) {
      result += text.front();
      text.remove_prefix(1);
      continue;
    }
    unsigned codeUnit = 0;
    std::from_chars(text.data() + 2, text.data() + 6, codeUnit, 16);
    result += utf8Of(codeUnit);
    text.remove_prefix(6);
  }
  return result;
}

std::vector<Row> readTable() {
  std::ifstream file(testDataFolder() + "/numbers.tsv", std::ios::binary);
  std::vector<Row> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    const auto cells = splitAt(line, '\t');
    if (cells.size() != 6) throw std::runtime_error("not six cells: " + line);
    rows.push_back({cells[0], cells[1], cells[2], unescaped(cells[3]), cells[4], unescaped(cells[5])});
  }
  return rows;
}

const std::vector<Row>& table() {
  static const std::vector<Row> rows = readTable();
  return rows;
}

double number(std::string_view text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) throw std::runtime_error("not a double: " + std::string(text));
  return value;
}

/// Shortest text that gives the same double back.
std::string exact(double value) {
  char buffer[64];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

/// The most that a picture's rounding takes from a number or adds to it.
double lossUnder(const std::string& picture) {
  if (picture.empty()) return 0;
  const auto point = picture.find('.');
  const auto decimals = point == std::string::npos ? 0 : picture.size() - point - 1;
  return 0.5 * std::pow(10, -static_cast<double>(decimals));
}

std::string boolean(bool value) { return value ? "True" : "False"; }

std::string converted(const Row& row, const LocaleFormat& locale) {
  static const std::map<std::string, std::function<std::string(const Row&, const LocaleFormat&)>> functions =
      {
          {"text_to_double",
           [](const Row& r, const LocaleFormat& l) { return exact(textToDouble(r.input, l)); }},
          {"is_numeric", [](const Row& r, const LocaleFormat& l) { return boolean(isNumeric(r.input, l)); }},
          {"text_to_int16",
           [](const Row& r, const LocaleFormat& l) { return std::to_string(textToInt16(r.input, l)); }},
          {"text_to_int32",
           [](const Row& r, const LocaleFormat& l) { return std::to_string(textToInt32(r.input, l)); }},
          {"text_to_boolean",
           [](const Row& r, const LocaleFormat& l) { return boolean(textToBoolean(r.input, l)); }},
          {"double_to_int16",
           [](const Row& r, const LocaleFormat&) { return std::to_string(doubleToInt16(number(r.input))); }},
          {"double_to_int32",
           [](const Row& r, const LocaleFormat&) { return std::to_string(doubleToInt32(number(r.input))); }},
          {"double_to_text",
           [](const Row& r, const LocaleFormat& l) { return doubleToText(number(r.input), l); }},
          {"format_double",
           [](const Row& r, const LocaleFormat& l) { return formatDouble(number(r.input), r.picture, l); }},
      };
  return functions.at(row.function)(row, locale);
}

std::string outcomeName(FailureKind kind) {
  switch (kind) {
    case FailureKind::TypeMismatch:
      return "type_mismatch";
    case FailureKind::Overflow:
      return "overflow";
    default:
      return "another failure";
  }
}

std::string actualAnswer(const Row& row) {
  try {
    return "ok " + converted(row, locales().at(row.locale));
  } catch (const RuntimeFailure& failure) {
    return outcomeName(failure.kind());
  }
}

/// A text that the source of the table read one digit off the nearest double, or took for too large or too
/// small at an end of the range; in these locales the answer is the double as the compiler has it.
struct Correction {
  std::string text;
  double nearest = 0;
  std::set<std::string> locales;
};

const std::vector<Correction>& corrections() {
  static const std::vector<Correction> known = {
      {"1e308", 1e308, {"de-DE", "fr-FR", "de-CH"}},
      {"99999999999999999999", 99999999999999999999.0, {"de-DE", "fr-FR", "de-CH"}},
      {"79228162514264337593543950335", 79228162514264337593543950335.0, {"de-DE", "fr-FR", "de-CH"}},
      {"123456789012345678901234567890", 123456789012345678901234567890.0, {"de-DE", "fr-FR", "de-CH"}},
      {"123456789,123456789", 123456789.123456789, {"de-DE", "fr-FR"}},
      {"123456789,123456789", 123456789123456789.0, {"en-US"}},
      {"0.1000000000000000055511151231257827", 1000000000000000055511151231257827.0, {"de-DE"}},
      {"0.0000000000000000000000000000000000000000000001", 1e-46, {"de-CH"}},
      {"0." + std::string(300, '0') + "1", 1e-301, {"en-US", "de-CH"}},
      {"1.7976931348623157E308", 1.7976931348623157E308, {"en-US", "de-CH"}},
      {"1.7976931348623157E+308", 1.7976931348623157E308, {"en-US", "de-CH"}},
      {"2.2250738585072014E-308", 2.2250738585072014E-308, {"de-CH"}},
      {"2.2250738585072014E-308", 22250738585072014E-308, {"de-DE"}},
      {"4.9E-324", 4.9E-324, {"de-CH"}},
  };
  return known;
}

const Correction* correctionOf(const Row& row) {
  const auto found = std::ranges::find_if(corrections(), [&](const Correction& correction) {
    return correction.text == row.input && correction.locales.contains(row.locale);
  });
  return found == corrections().end() ? nullptr : &*found;
}

std::string recordedAnswer(const Row& row) {
  // The table tells why a text is not numeric, the function only that it is not.
  if (row.function == "is_numeric" && row.outcome != "ok") return "ok False";
  if (row.outcome != "ok") return row.outcome;
  return "ok " + (row.function == "text_to_double" ? exact(number(row.output)) : row.output);
}

std::string expectedAnswer(const Row& row) {
  if (const Correction* const correction = correctionOf(row)) {
    if (row.function == "text_to_double") return "ok " + exact(correction->nearest);
    if (row.function == "is_numeric" || row.function == "text_to_boolean") return "ok True";
  }
  return recordedAnswer(row);
}

class NumberTextTable : public testing::TestWithParam<std::tuple<std::string, std::string>> {};

TEST_P(NumberTextTable, GivesTheRecordedAnswers) {
  const auto& [function, locale] = GetParam();
  std::size_t compared = 0;
  for (const Row& row : table()) {
    if (row.function != function || row.locale != locale) continue;
    ++compared;
    EXPECT_EQ(actualAnswer(row), expectedAnswer(row))
        << "input [" << row.input << "] picture [" << row.picture << "]";
  }
  EXPECT_GT(compared, 150U);
}

TEST(NumberTextCorrections, StandOnlyWhereTheRecordedAnswerIsAnother) {
  std::set<std::pair<std::string, std::string>> needed;
  for (const Row& row : table()) {
    if (expectedAnswer(row) != recordedAnswer(row)) needed.insert({row.locale, row.input});
  }
  for (const Correction& correction : corrections()) {
    for (const std::string& locale : correction.locales) {
      EXPECT_EQ(needed.count({locale, correction.text}), 1U) << locale << " " << correction.text;
    }
  }
}

/// Of what is shown, only pictures without a forced digit may leave nothing to read.
TEST(NumberTextShown, ReadsBackUnderItsLocaleInEveryRow) {
  std::size_t readBack = 0;
  for (const Row& row : table()) {
    if (row.function != "double_to_text" && row.function != "format_double") continue;
    if (row.picture == "###" && std::abs(number(row.input)) < 0.5) continue;
    const LocaleFormat& locale = locales().at(row.locale);
    const std::string shown = converted(row, locale);
    ASSERT_TRUE(isNumeric(shown, locale)) << row.locale << " " << shown;
    const double value = number(row.input);
    EXPECT_NEAR(textToDouble(shown, locale), value, lossUnder(row.picture) + std::abs(value) * 1e-14)
        << shown;
    ++readBack;
  }
  EXPECT_GT(readBack, 3000U);
}

std::string testName(const testing::TestParamInfo<NumberTextTable::ParamType>& info) {
  return replacedAll(std::get<0>(info.param) + "_" + std::get<1>(info.param), "-", "_");
}

INSTANTIATE_TEST_SUITE_P(EveryLocale, NumberTextTable,
                         testing::Combine(testing::Values("text_to_double", "is_numeric", "text_to_int16",
                                                          "text_to_int32", "text_to_boolean",
                                                          "double_to_text", "format_double"),
                                          testing::Values("en-US", "de-DE", "fr-FR", "de-CH")),
                         testName);

INSTANTIATE_TEST_SUITE_P(WholeNumbers, NumberTextTable,
                         testing::Combine(testing::Values("double_to_int16", "double_to_int32"),
                                          testing::Values("en-US")),
                         testName);

}  // namespace
}  // namespace vlclientui
