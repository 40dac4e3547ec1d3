// Documents of servers, as trees and as records.
#include "client/network/XmlTree.h"

#include <utility>

#include <gtest/gtest.h>

namespace vlclientui::client::network {
namespace {

using Words = std::vector<std::string>;

/// Elements "Item" are records; what is told of them is written down.
class Written final : public XmlRecords {
 public:
  [[nodiscard]] bool isRecord(std::string_view name) const override { return name == "Item"; }
  void begin(std::string_view name) override { events.push_back("+" + std::string(name)); }
  void end(std::string_view name, std::string_view text) override {
    events.push_back("-" + std::string(name) + "=" + std::string(text));
  }

  Words events;
};

/// What is told of the records of a document, well-formed or not.
Words toldOf(const std::string& document) {
  Written written;
  static_cast<void>(XmlTree::parse(document, written));
  return written.events;
}

std::string rootText(const std::string& document) {
  const auto tree = XmlTree::parse(document);
  return tree ? tree->root().text() : "no document";
}

std::string nested(int depth, const std::string& name) {
  std::string begins;
  std::string ends;
  for (int level = 0; level < depth; ++level) {
    begins += "<" + name + ">";
    ends += "</" + name + ">";
  }
  return begins + "in" + ends;
}

TEST(XmlTree, LeadsAlongPathsWhateverThePrefixes) {
  const auto tree =
      XmlTree::parse(R"(<a:R xmlns:a="u"><b:S xmlns:b="v"><T>one</T><a:T>two</a:T></b:S><S>late</S></a:R>)");
  ASSERT_TRUE(tree);
  EXPECT_EQ(tree->root().name(), "R");
  EXPECT_EQ(tree->root().at("S/T").text(), "one");
  EXPECT_EQ(tree->root().at("").name(), "R");
  EXPECT_EQ(tree->root().child("S").children("T").size(), 2U);
  EXPECT_EQ(tree->root().child("S").children("T")[1].text(), "two");
  EXPECT_EQ(tree->root().children().size(), 2U);
}

TEST(XmlTree, AnswersNothingForElementsThatAreNotThere) {
  const auto tree = XmlTree::parse("<R><S/></R>");
  ASSERT_TRUE(tree);
  const XmlElement missing = tree->root().at("S/T/U");
  EXPECT_FALSE(missing);
  EXPECT_TRUE(tree->root().child("S"));
  EXPECT_FALSE(tree->root().child("s")) << "capitals count";
  EXPECT_EQ(missing.name(), "");
  EXPECT_EQ(missing.text(), "");
  EXPECT_EQ(missing.attribute("a"), "");
  EXPECT_TRUE(missing.children().empty());
  EXPECT_TRUE(missing.children("V").empty());
  EXPECT_FALSE(missing.at("V/W"));
}

TEST(XmlTree, ReadsAttributesByTheirLocalNames) {
  const auto tree = XmlTree::parse(
      R"(<R xmlns:x="u" x:href=" http://h/?a=1&amp;b=2 " code="&#x41;&lt;" xmlns:code="v" empty=""/>)");
  ASSERT_TRUE(tree);
  EXPECT_EQ(tree->root().attribute("href"), "http://h/?a=1&b=2");
  EXPECT_EQ(tree->root().attribute("code"), "A<");
  EXPECT_EQ(tree->root().attribute("empty"), "");
  EXPECT_EQ(tree->root().attribute("x:href"), "") << "a prefix is no part of a name";
}

TEST(XmlTree, JoinsTheTextsOfAnElement) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {"<R> one <S>two</S> three </R>", "one two three"},
      {"<R><![CDATA[<b> & ]]>plain</R>", "<b> & plain"},
      {"<R>a<!-- not this -->b<?nor this?>c</R>", "abc"},
      {"<R>&lt;&gt;&amp;&quot;&apos;&#228;&#x1F30D;</R>", "<>&\"'\xC3\xA4\xF0\x9F\x8C\x8D"},
      {"<R>\r\n\t </R>", ""},
      {"<R/>", ""},
      {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?><R>\xC3\xA4</R>", "\xC3\xA4"},
      {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><R>\xE4</R>", "\xC3\xA4"},
  };
  for (const auto& [document, text] : table) EXPECT_EQ(rootText(document), text) << document;
}

TEST(XmlTree, IsNoneForATextThatIsNotWellFormed) {
  const std::string zero("<R>\0</R>", 8);
  for (const std::string& text :
       {std::string(), std::string("  "), std::string("word"), std::string("<R>"), std::string("<R></S>"),
        std::string("<R/><S/>"), std::string("<R a=1/>"), std::string("<R>&unknown;</R>"),
        std::string("<R a='1' a='2'/>"), std::string("<R><![CDATA[</R>"), std::string("<R>\xE4</R>"),
        std::string("<!-- alone -->"), std::string("<R/>rest"), zero}) {
    EXPECT_FALSE(XmlTree::parse(text)) << text;
  }
}

TEST(XmlTree, RefusesElementsThatAreFarTooDeepWithoutHarm) {
  EXPECT_EQ(rootText(nested(200, "D")), "in");
  EXPECT_FALSE(XmlTree::parse(nested(100000, "D")));
  EXPECT_FALSE(XmlTree::parse("<R>" + nested(100000, "Item") + "</R>"));
}

TEST(XmlTree, OutlivesItsElementsAndItsText) {
  std::string text = "<R><S>kept</S></R>";
  auto tree = XmlTree::parse(text);
  ASSERT_TRUE(tree);
  text.assign(text.size(), '?');
  const XmlTree moved = *std::move(tree);
  EXPECT_EQ(moved.root().at("S").text(), "kept");
}

TEST(XmlTree, HoldsBrothersByTheThousands) {
  std::string text = "<R>";
  for (int i = 0; i < 5000; ++i) text += "<S>" + std::to_string(i) + "</S>";
  const auto tree = XmlTree::parse(text + "</R>");
  ASSERT_TRUE(tree);
  ASSERT_EQ(tree->root().children("S").size(), 5000U);
  EXPECT_EQ(tree->root().children("S").back().text(), "4999");
}

TEST(XmlRecords, AreToldInOrderAndStandInNoTree) {
  Written written;
  const auto tree = XmlTree::parse(
      R"(<p:R xmlns:p="u"><p:Item><p:a>1</p:a></p:Item><S>kept</S><Item>2</Item></p:R>)", written);
  ASSERT_TRUE(tree);
  EXPECT_EQ(written.events, (Words{"+Item", "+a", "-a=1", "-Item=", "+Item", "-Item=2"}));
  ASSERT_EQ(tree->root().children().size(), 1U);
  EXPECT_EQ(tree->root().child("S").text(), "kept");
  EXPECT_EQ(tree->root().text(), "kept");
}

TEST(XmlRecords, BringTheTextBehindTheLastElement) {
  const std::vector<std::pair<std::string, Words>> table = {
      {"<R><Item>a<b/>c</Item></R>", {"+Item", "+b", "-b=", "-Item=c"}},
      {"<R><Item> x <![CDATA[<&]]>&amp;&#65; </Item></R>", {"+Item", "-Item= x <&&A "}},
      {"<R><Item>a<!-- b -->c</Item></R>", {"+Item", "-Item=ac"}},
      {"<R><Item><Item>in</Item></Item></R>", {"+Item", "+Item", "-Item=in", "-Item="}},
      {"<R><S><Item/></S>Item</R>", {"+Item", "-Item="}},
      {"<R><item/>Item</R>", {}},
  };
  for (const auto& [document, events] : table) EXPECT_EQ(toldOf(document), events) << document;
}

TEST(XmlRecords, BeforeAnErrorAreToldThoughThereIsNoTree) {
  Written written;
  EXPECT_FALSE(XmlTree::parse("<R><Item>1</Item><Item>2", written));
  ASSERT_GE(written.events.size(), 3U);
  EXPECT_EQ(written.events[1], "-Item=1");
  EXPECT_EQ(written.events[2], "+Item");
}

TEST(XmlRecords, AloneMakeNoTree) {
  Written written;
  EXPECT_FALSE(XmlTree::parse("<Item>1</Item>", written)) << "no root is left";
  EXPECT_EQ(written.events, (Words{"+Item", "-Item=1"}));
}

TEST(XmlRecords, HoldNoTextOfEntities) {
  const std::string definitions = R"(<!DOCTYPE R [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;">
      <!ENTITY e "<Item>made up</Item>"><!ENTITY f SYSTEM "file:///etc/passwd">]>)";
  EXPECT_EQ(toldOf(definitions + "<R><Item>x&b;&f;&b;y</Item></R>"), (Words{"+Item", "-Item=xy"}));
  EXPECT_EQ(toldOf(definitions + "<R><Item>x&e;y</Item></R>"), (Words{"+Item", "-Item=xy"}));
  EXPECT_EQ(toldOf(definitions + "<R>&e;&e;</R>"), Words());
}

TEST(NumbersInATextOfAServer, AreReadOrAllLeft) {
  using Numbers = std::vector<double>;
  const std::vector<std::pair<std::string, Numbers>> table = {
      {"1 2", {1, 2}}, {" 1.5,\t-2e3\r\n+.5 ", {1.5, -2000, 0.5}},
      {"7", {7}},      {"", {}},
      {" , ", {}},     {"1 two 3", {}},
      {"1 nan", {}},   {"inf", {}},
      {"1e400", {}},   {"5m", {}},
      {"0x10", {}},    {"+", {}},
      {"+-5", {}},     {"1.2.3", {}},
      {"1-2", {}},     {"1;2", {}},
  };
  for (const auto& [text, numbers] : table) EXPECT_EQ(numbersIn(text), numbers) << text;
}

}  // namespace
}  // namespace vlclientui::client::network
