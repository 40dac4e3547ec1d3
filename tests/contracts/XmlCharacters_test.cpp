#include "contracts/XmlCharacters.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

using namespace std::string_literals;

/// The bytes of a code point, also of one that UTF-8 does not have.
std::string encoded(std::uint32_t code) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | code >> 6), byte(0x80 | (code & 0x3F))};
  if (code < 0x10000) {
    return {byte(0xE0 | code >> 12), byte(0x80 | (code >> 6 & 0x3F)), byte(0x80 | (code & 0x3F))};
  }
  return {byte(0xF0 | code >> 18), byte(0x80 | (code >> 12 & 0x3F)), byte(0x80 | (code >> 6 & 0x3F)),
          byte(0x80 | (code & 0x3F))};
}

/// The characters that the language of documents has.
bool mayStand(std::uint32_t code) {
  return code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
         (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

TEST(XmlCharacters, AreThoseThatADocumentMayHoldAndNoOther) {
  for (std::uint32_t code = 0; code <= 0x111000; ++code) {
    ASSERT_EQ(isXmlText(encoded(code)), mayStand(code)) << std::hex << code;
  }
}

TEST(XmlCharacters, AreNotMadeOfBytesThatAreNoUtf8) {
  for (const std::string& bytes :
       {"\x80"s, "\xBF"s, "\xC0\x80"s, "\xC1\xBF"s, "\xC2"s, "\xC2x"s, "\xE0\x80\x80"s, "\xE0\x9F\xBF"s,
        "\xE2\x82"s, "\xE2\x82x"s, "\xF0\x8F\xBF\xBF"s, "\xF0\x9F\x98"s, "\xF4\x90\x80\x80"s,
        "\xF5\x80\x80\x80"s, "\xFE"s, "\xFF"s}) {
    EXPECT_FALSE(isXmlText(bytes));
    EXPECT_FALSE(isXmlText("before " + bytes));
    EXPECT_FALSE(isXmlText(bytes + " behind"));
  }
  EXPECT_TRUE(isXmlText("\xE2\x82\xAC, \xF0\x9F\x98\x80"));
  EXPECT_TRUE(isXmlText(""));
}

}  // namespace
}  // namespace vlclientui
