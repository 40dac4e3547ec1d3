#include "client/raster/Text.h"

#include <string>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

TEST(Text, NumbersAreWrittenWithAsFewDigitsAsReadBackTheSame) {
  EXPECT_EQ(numberText(0.1), "0.1");
  EXPECT_EQ(numberText(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(numberText(452000), "452000");
}

TEST(Text, NumbersAreWrittenWithoutExponentAndWithoutNegativeZero) {
  EXPECT_EQ(numberText(1e21), "1000000000000000000000");
  EXPECT_EQ(numberText(2.5e-7), "0.00000025");
  EXPECT_EQ(numberText(-0.0), "0");
}

TEST(Text, ReservedCharactersAreEscaped) { EXPECT_EQ(xmlEscaped("a<b>&\"c'"), "a&lt;b&gt;&amp;\"c'"); }

TEST(Text, CharactersThatXmlCannotHoldAreLeftOut) {
  EXPECT_EQ(xmlEscaped(std::string("a\x01z\tq\0r", 7)), "az\tqr");
  EXPECT_EQ(xmlEscaped("x\xEF\xBF\xBFy"), "xy");
}

TEST(Text, BytesThatAreNotUtf8AreReadAsLatin1) {
  EXPECT_EQ(utf8FromAny("Z\xFCrich"), "Z\xC3\xBCrich");
  EXPECT_EQ(utf8FromAny("Z\xC3\xBCrich"), "Z\xC3\xBCrich");
}

TEST(Text, FirstLineSkipsBlankLinesBeforeIt) {
  EXPECT_EQ(firstLine("\r\n  \nTitle here\r\nmore"), "Title here");
  EXPECT_EQ(firstLine(" \n "), "");
}

TEST(Text, TrimmingKeepsInnerWhiteSpace) { EXPECT_EQ(trimmed(" \ta  b\n"), "a  b"); }

TEST(RasterTextCase, CountsForNothingInComparisons) {
  EXPECT_EQ(lowered("VLDef \xC3\x84"), "vldef \xC3\x84");
  EXPECT_TRUE(sameIgnoringCase("VLRef", "vlrEF"));
  EXPECT_FALSE(sameIgnoringCase("VLRef", "VLRe"));
  EXPECT_TRUE(startsIgnoringCase("vldef://a", "VLDef://"));
  EXPECT_FALSE(startsIgnoringCase("vld", "VLDef://"));
  EXPECT_TRUE(endsIgnoringCase("a.VLREF", ".vlref"));
  EXPECT_FALSE(endsIgnoringCase("ref", ".vlref"));
}

}  // namespace
}  // namespace vlclientui::client
