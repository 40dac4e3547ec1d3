#include "documents/DecimalText.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vlclientui
