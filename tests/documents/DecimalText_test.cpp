#include "documents/DecimalText.h"

#include <cstddef>
#include <fstream>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "support/TestFolders.h"

namespace vlclientui {
namespace {

TEST(DecimalText, HasAPointOrAComma) {
  EXPECT_EQ(readDecimal("12.5"), 12.5);
  EXPECT_EQ(readDecimal("12,5"), 12.5);
  EXPECT_EQ(readDecimal("-3"), -3);
  EXPECT_EQ(readDecimal("1e3"), 1000);
}

TEST(DecimalText, MayHaveOnePlusAndBlanksAround) {
  EXPECT_EQ(readDecimal(" \t+7.25\r\n"), 7.25);
  EXPECT_EQ(readDecimal("+-7"), std::nullopt);
  EXPECT_EQ(readDecimal("++7"), std::nullopt);
  EXPECT_EQ(readDecimal("+"), std::nullopt);
}

TEST(DecimalText, IsNoOtherText) {
  for (const char* text : {"", "  ", "1.2.3", "1,234.5", "7 m", "0x10", "inf", "nan", "1e999"})
    EXPECT_EQ(readDecimal(text), std::nullopt) << text;
}

// The schema of the properties is held to the same texts: tests/pages/CheckDecimals.cmake.
TEST(DecimalText, IsWhatTheSchemaOfThePropertiesTakes) {
  std::ifstream file(testDataFolder() + "/decimals.tsv");
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    const std::size_t tab = line.find('\t');
    if (line.starts_with('#')) continue;
    ASSERT_NE(tab, std::string::npos) << line;
    const std::string text = std::regex_replace(
        std::regex_replace(line.substr(tab + 1), std::regex(R"(\\t)"), "\t"), std::regex(R"(\\n)"), "\n");
    EXPECT_EQ(readDecimal(text).has_value(), line.substr(0, tab) == "read") << line;
    ++count;
  }
  EXPECT_GT(count, 40);
}

}  // namespace
}  // namespace vlclientui
