#include "contracts/Utf8.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

std::string written(char32_t code) {
  std::string text;
  appendUtf8(text, code);
  return text;
}

bool isSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

TEST(Utf8, EveryCharacterReadsBackAsItWasWritten) {
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    const std::string text = written(code);
    const Utf8Character read = firstUtf8Character(text + "x");
    ASSERT_EQ(read.length, isSurrogate(code) ? 0 : text.size())
        << std::hex << static_cast<std::uint32_t>(code);
    ASSERT_EQ(read.code, isSurrogate(code) ? 0 : code) << std::hex << static_cast<std::uint32_t>(code);
  }
}

TEST(Utf8, WritesOneToFourBytes) {
  EXPECT_EQ(written('a'), "a");
  EXPECT_EQ(written(0xFC), "\xC3\xBC");
  EXPECT_EQ(written(0x20AC), "\xE2\x82\xAC");
  EXPECT_EQ(written(0x1F5FA), "\xF0\x9F\x97\xBA");
}

TEST(Utf8, OverlongFormsSurrogatesAndCutCharactersAreNone) {
  for (const char* bytes :
       {"\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "a\xE2\x82", "\x80", "\xC3x", "\xFF"}) {
    EXPECT_FALSE(isUtf8(bytes));
    EXPECT_FALSE(isUtf8("before " + std::string(bytes) + " behind"));
  }
  EXPECT_TRUE(isUtf8("\xE2\x82\xAC\xF0\x9F\x97\xBA"));
  EXPECT_TRUE(isUtf8(""));
}

TEST(Utf8, ACutTextEndsBehindAWholeCharacter) {
  const std::string text = "a\xE2\x82\xAC\xC3\xBC";
  EXPECT_EQ(utf8Start(text, 6), text);
  EXPECT_EQ(utf8Start(text, 99), text);
  EXPECT_EQ(utf8Start(text, 5), "a\xE2\x82\xAC");
  EXPECT_EQ(utf8Start(text, 4), "a\xE2\x82\xAC");
  EXPECT_EQ(utf8Start(text, 3), "a");
  EXPECT_EQ(utf8Start(text, 0), "");
}

TEST(Utf8, CountsCharactersAndNotBytes) {
  EXPECT_EQ(utf8Characters(""), 0U);
  EXPECT_EQ(utf8Characters("abc"), 3U);
  EXPECT_EQ(utf8Characters(written(0xFC) + "x" + written(0x20AC) + written(0x1F5FA)), 4U);
}

}  // namespace
}  // namespace vlclientui
