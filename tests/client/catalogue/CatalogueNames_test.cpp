#include "client/catalogue/CatalogueNames.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/LibXmlService.h"
#include "selection/ListDocuments.h"

namespace vlclientui::client {
namespace {

using Texts = std::vector<std::string>;

Texts shown(const std::vector<CatalogueName>& names) {
  Texts out;
  for (const CatalogueName& name : names) out.push_back(name.shown);
  return out;
}

// Names that stand out by one character, at the front, in the middle, at the end and alone.
Texts namesWith(const std::string& character) {
  return {character + "a", "a" + character + "a", "a" + character, character};
}

const Texts beyondAscii = {"\u2013",  "\u2014", "\u00FC",     "\u00DF",    "\u5730", "\U0001F5FA", "\u00A0",
                           "a\u0301", "\u0301", "\u00D7",     "\u2039",    "\u203A", "\u0661",     "\u00AD",
                           "\u200B",  "\u200D", "\u00B7",     "\u0219",    "\uFFFD", "\uFEFF",     "\u0085",
                           "\u3000",  "\u2028", "\U0001F1E8", "\U000F0000"};

Texts allNames() {
  Texts names;
  for (char c = 0x20; c < 0x7F; ++c) {
    if (c == '/') continue;
    for (std::string& name : namesWith(std::string(1, c))) names.push_back(std::move(name));
  }
  for (const std::string& character : beyondAscii) {
    for (std::string& name : namesWith(character)) names.push_back(std::move(name));
  }
  const std::set<std::string> different(names.begin(), names.end());
  return {different.begin(), different.end()};
}

TEST(CatalogueNames, CanAllBeShownInTheList) {
  const auto document = platform::LibXmlService(platform::PathTranslation("/")).createDocument();
  for (const std::string& name : allNames()) {
    const std::string carried = carriedName(name);
    EXPECT_NO_THROW((void)document->createElement(XmlNameFromLabel(carried))) << name;
    EXPECT_EQ(carriedName(carried), carried) << name;
  }
}

TEST(CatalogueNames, KeepWhatTheListCanShow) {
  for (const std::string name : {"Terrain_30m", "9 West(1)", "a [b] <c>+d", "a.v2-x", "\u5730\u56FE",
                                 "\u00FCber", "\U0001F5FA", "a\u0301", "\u0219ir", "2021"}) {
    EXPECT_EQ(carriedName(name), name);
  }
}

TEST(CatalogueNames, HaveAnUnderscoreForEachCharacterThatItCannot) {
  EXPECT_EQ(carriedName("Plan, sheet 1"), "Plan_ sheet 1");
  EXPECT_EQ(carriedName("R&D 100% #1"), "R_D 100_ _1");
  EXPECT_EQ(carriedName("a\u2013b"), "a_b");
  EXPECT_EQ(carriedName("a\u00A0b"), "a_b");
  EXPECT_EQ(carriedName("a\\b:c"), "a_b_c");
  EXPECT_EQ(carriedName(""), "_");
}

TEST(CatalogueNames, HaveAnUnderscoreAtTheirEndsWhereAReferenceWouldLoseTheBlank) {
  EXPECT_EQ(carriedName(" a b "), "_a b_");
  EXPECT_EQ(carriedName(" "), "_");
}

TEST(CatalogueNames, BeginAsElementsMay) {
  EXPECT_EQ(carriedName("-a"), "_a");
  EXPECT_EQ(carriedName(".a"), "_a");
  EXPECT_EQ(carriedName("\u0301a"), "_a");
  EXPECT_EQ(carriedName("1a"), "1a");
}

TEST(CatalogueNames, AreNoneOfTheListsMessages) {
  EXPECT_EQ(carriedName("(empty)"), "_empty)");
  EXPECT_EQ(carriedName("(Server not found)"), "_Server not found)");
}

TEST(CatalogueNames, OfFilesThatWouldShareOneKeepTheExtensions) {
  EXPECT_EQ(shown(nameSiblings({{"a", "a.tif"}, {"a", "a.png"}, {"b", "b.tif"}})),
            (Texts{"a.tif", "a.png", "b"}));
  EXPECT_EQ(shown(nameSiblings({{"a, b", "a, b.tif"}, {"a; b", "a; b.png"}})),
            (Texts{"a_ b.tif", "a_ b.png"}));
}

TEST(CatalogueNames, OfAFileGivesWayToAFolders) {
  EXPECT_EQ(shown(nameSiblings({{"Roads", "Roads"}, {"Roads", "Roads.tif"}})), (Texts{"Roads", "Roads.tif"}));
  EXPECT_EQ(shown(nameSiblings({{"Roads", "Roads"}, {"roads", "roads.tif"}})), (Texts{"Roads", "roads.tif"}));
}

TEST(CatalogueNames, ThatBecomeTheSameAreMarked) {
  const Texts names =
      shown(nameSiblings({{"a,b", "a,b.tif"}, {"a;b", "a;b.tif"}, {"A", "A.tif"}, {"a", "a.tif"}}));
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 4U);
  EXPECT_TRUE(names[0].starts_with("a_b.tif_")) << names[0];
  EXPECT_EQ(names[0].size(), std::string("a_b.tif_123456").size());
  EXPECT_NE(nameKey(names[2]), nameKey(names[3]));
}

TEST(CatalogueNames, ThatAreTheirOwnAreNotMarked) {
  const Texts names = shown(nameSiblings({{"a_b", "a_b.tif"}, {"a,b", "a,b.tif"}}));
  // Both keep their extensions first.
  EXPECT_EQ(names[0], "a_b.tif");
  EXPECT_TRUE(names[1].starts_with("a_b.tif_")) << names[1];
}

TEST(CatalogueNames, DoNotDependOnTheOrder) {
  std::vector<Sibling> siblings;
  for (const std::string& name : allNames()) siblings.push_back({name, name + ".tif"});
  const auto named = nameSiblings(siblings);
  std::ranges::reverse(siblings);
  auto turned = nameSiblings(siblings);
  std::ranges::reverse(turned);
  EXPECT_TRUE(named == turned);
  std::set<std::string> keys;
  for (const CatalogueName& name : named) EXPECT_TRUE(keys.insert(nameKey(name.shown)).second) << name.shown;
}

TEST(CatalogueNames, DependOnNoMoreThanThoseConcerned) {
  std::vector<Sibling> siblings;
  for (const std::string& name : allNames()) siblings.push_back({name, name + ".tif"});
  const auto all = nameSiblings(siblings);
  for (std::size_t i = 0; i < siblings.size(); ++i) {
    for (const std::string& wanted : {all[i].shown, all[i].real}) {
      const auto places = siblingsConcerned(siblings, wanted);
      std::vector<Sibling> some;
      for (const std::size_t place : places) some.push_back(siblings[place]);
      const auto own = std::ranges::find(places, i);
      ASSERT_NE(own, places.end()) << wanted;
      EXPECT_TRUE(nameSiblings(some)[static_cast<std::size_t>(own - places.begin())] == all[i]) << wanted;
    }
  }
}

TEST(CatalogueNames, AreTextOrNone) {
  for (const char* name : {"a\xFF", "a\nb", "a\x7F", "\x01", "a\xED\xA0\x80", "\uFFFE", "a\uFFFFb"})
    EXPECT_FALSE(isTextName(name));
  for (const std::string& name : allNames()) EXPECT_TRUE(isTextName(name)) << name;
}

}  // namespace
}  // namespace vlclientui::client
