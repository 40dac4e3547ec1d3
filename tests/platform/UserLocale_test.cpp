#include "platform/UserLocale.h"

#include <string>

#include <gtest/gtest.h>
#include <locale.h>

namespace vlclientui::platform {
namespace {

constexpr std::int32_t theUsers = 0x400;

struct Known {
  const char* name;
  std::int32_t id;
  const char* decimal;
  const char* group;
  const char* currency;
};

constexpr Known known[] = {
    {"en_US", 0x409, ".", ",", "$"},
    {"de_DE", 0x407, ",", ".", "\xE2\x82\xAC"},
    {"de_CH", 0x807, ".", "\xE2\x80\x99", "CHF"},
    {"fr_FR", 0x40C, ",", "\xE2\x80\xAF", "\xE2\x82\xAC"},
};

void expectSame(const UserLocale& locale, const Known& expected, const std::string& asked) {
  EXPECT_EQ(locale.id, expected.id) << asked;
  EXPECT_EQ(locale.format.decimalSeparator, expected.decimal) << asked;
  EXPECT_EQ(locale.format.groupSeparator, expected.group) << asked;
  EXPECT_EQ(locale.format.currencySymbol, expected.currency) << asked;
}

TEST(UserLocale, OfTheTableIsFoundByNameAndByIdentity) {
  for (const Known& each : known) {
    expectSame(findLocale(std::string(each.name)), each, each.name);
    expectSame(findLocale(each.id), each, each.name);
  }
}

TEST(UserLocale, IsNamedWithDashEncodingAndModifierToo) {
  for (const char* name : {"de-CH", "de_CH.UTF-8", "de-CH.utf8", "de_CH@euro", "de_CH.ISO-8859-1@euro"}) {
    expectSame(findLocale(std::string(name)), known[2], name);
  }
}

TEST(UserLocale, WithoutANameIsTheEnglishOne) {
  for (const char* name : {"", "C", "POSIX", "C.UTF-8", "POSIX@x", ".UTF-8", "@x"}) {
    expectSame(findLocale(std::string(name)), known[0], name);
  }
}

TEST(UserLocale, OfAnUnknownRegionIsThatOfItsLanguageUnderTheUsersIdentity) {
  for (const auto& [name, like] : {std::pair("de_ZZ", 1), std::pair("fr_ZZ.UTF-8", 3), std::pair("en_ZZ", 0),
                                   std::pair("de", 1), std::pair("fr", 3)}) {
    Known expected = known[like];
    expected.id = theUsers;
    expectSame(findLocale(std::string(name)), expected, name);
  }
}

TEST(UserLocale, OfAnUnknownLanguageIsLikeTheEnglishOne) {
  Known expected = known[0];
  expected.id = theUsers;
  for (const char* name : {"zz_ZZ", "tlh", "no such locale", "\xFF\xFE", "a_b_c"}) {
    expectSame(findLocale(std::string(name)), expected, name);
  }
}

TEST(UserLocale, OfAnUnknownIdentityHasNone) {
  Known expected = known[0];
  expected.id = 0;
  for (const std::int32_t id : {0, 1, -1, 0x400, 0x40A, 0x7FFFFFFF}) {
    expectSame(findLocale(id), expected, std::to_string(id));
  }
}

TEST(UserLocale, NeverTouchesTheLocaleOfTheProcess) {
  const std::string before = setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE", "it_IT.UTF-8", "zz_ZZ", ""}) (void)findLocale(std::string(name));
  EXPECT_EQ(setlocale(LC_ALL, nullptr), before);
}

}  // namespace
}  // namespace vlclientui::platform
