#include "documents/TextCase.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlclientui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextCase, MapsAsciiLetters) {
  EXPECT_EQ(lowerCased("AZaz[@`{09"), "azaz[@`{09");
  EXPECT_EQ(upperCased("AZaz[@`{09"), "AZAZ[@`{09");
  EXPECT_EQ(lowerCased(""), "");
}

TEST(TextCase, MapsLettersOfOtherScripts) {
  EXPECT_EQ(lowerCased("\u00C4\u00D6\u0416\u03A9"), "\u00E4\u00F6\u0436\u03C9");
  EXPECT_EQ(upperCased("\u00E9\u0436\u03C9"), "\u00C9\u0416\u03A9");
  EXPECT_EQ(lowerCased("\U00010400x"), "\U00010428x");
}

TEST(TextCase, MapsOneCharacterToOne) {
  EXPECT_EQ(upperCased("stra\u00DFe"), "STRA\u00DFE");
  EXPECT_EQ(upperCased("\u00FF"), "\u0178");
}

TEST(TextCase, LetsTheLengthInBytesChange) { EXPECT_EQ(lowerCased("\u212A"), "k"); }

TEST(TextCase, PassesBytesThroughThatAreNoUtf8) {
  EXPECT_EQ(lowerCased("\xC3"), "\xC3");
  EXPECT_EQ(lowerCased("A\xFF"
                       "B"),
            "a\xFF"
            "b");
  EXPECT_EQ(upperCased("\xC3x\xE2\x82"), "\xC3X\xE2\x82");
  EXPECT_EQ(lowerCased("\xED\xA0\x80Q"), "\xED\xA0\x80q");
  EXPECT_EQ(lowerCased("\xC0\x80Q\xF4\x90\x80\x80"), "\xC0\x80q\xF4\x90\x80\x80");
}

TEST(TextCase, KeepsZeroBytes) {
  EXPECT_EQ(upperCased(std::string("a\0\u00E4", 4)), std::string("A\0\u00C4", 4));
}

TEST(CodeUnitOrder, ComparesLikeBytesWithinTheBasicPlane) {
  EXPECT_LT(compareByCodeUnit("Zebra", "apple"), 0);
  EXPECT_GT(compareByCodeUnit("\u00E4", "z"), 0);
  EXPECT_LT(compareByCodeUnit("\uD7FF", "\uE000"), 0);
  EXPECT_EQ(compareByCodeUnit("same", "same"), 0);
}

TEST(CodeUnitOrder, PutsAShorterTextFirst) {
  EXPECT_LT(compareByCodeUnit("a", "ab"), 0);
  EXPECT_GT(compareByCodeUnit("ab", "a"), 0);
  EXPECT_LT(compareByCodeUnit("", "a"), 0);
  EXPECT_EQ(compareByCodeUnit("", ""), 0);
}

TEST(CodeUnitOrder, PutsSurrogatesBelowTheEndOfTheBasicPlane) {
  EXPECT_LT(compareByCodeUnit("\U00010000", "\uE000"), 0);
  EXPECT_GT(compareByCodeUnit("\uFF21", "\U0001F600"), 0);
  EXPECT_GT(compareByCodeUnit("\U00010000", "\uD7FF"), 0);
  EXPECT_LT(compareByCodeUnit("\U00010000", "\U00010001"), 0);
}

TEST(TrimmedBlanks, TakesBlanksAndNothingElse) {
  EXPECT_EQ(trimmedBlanks("  a b  "), "a b");
  EXPECT_EQ(trimmedBlanks("\t a\n "), "\t a\n");
  EXPECT_EQ(trimmedBlanks("\u00A0 "), "\u00A0");
  EXPECT_EQ(trimmedBlanks("   "), "");
  EXPECT_EQ(trimmedBlanks(""), "");
}

TEST(ReplacedAll, ReplacesEveryOccurrenceOnce) {
  EXPECT_EQ(replacedAll("1.2.3", ".", ","), "1,2,3");
  EXPECT_EQ(replacedAll("aaa", "aa", "a"), "aa");
  EXPECT_EQ(replacedAll("a", "a", "aa"), "aa");
  EXPECT_EQ(replacedAll("a b", " ", ""), "ab");
  EXPECT_EQ(replacedAll("", "a", "b"), "");
}

TEST(ReplacedAll, ChangesNothingForAnEmptySearch) { EXPECT_EQ(replacedAll("abc", "", "x"), "abc"); }

TEST(SplitAt, KeepsEmptyParts) {
  EXPECT_THAT(splitAt("A/B", '/'), ElementsAre("A", "B"));
  EXPECT_THAT(splitAt("A/", '/'), ElementsAre("A", ""));
  EXPECT_THAT(splitAt("/", '/'), ElementsAre("", ""));
  EXPECT_THAT(splitAt("A//B", '/'), ElementsAre("A", "", "B"));
  EXPECT_THAT(splitAt("A", '/'), ElementsAre("A"));
}

TEST(SplitAt, GivesNoPartsOfAnEmptyText) { EXPECT_THAT(splitAt("", '/'), IsEmpty()); }

}  // namespace
}  // namespace vlclientui
