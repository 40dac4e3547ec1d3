#include "platform/XmlWriter.h"

#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "platform/RandomXml.h"
#include "platform/XmlReader.h"
#include "platform/XmlTestDocument.h"

namespace vlclientui::platform {
namespace {

/// A document with one element, to whose content single nodes are added by hand.
class WrittenNodes : public testing::Test {
 protected:
  WrittenNodes() : document_(readXmlText("<a/>")) {}

  xmlNode* root() { return xmlDocGetRootElement(document_.get()); }

  void addText(const char* text) { xmlAddChild(root(), xmlNewDocText(document_.get(), bytes(text))); }
  void addCData(const std::string& text) {
    xmlAddChild(root(),
                xmlNewCDataBlock(document_.get(), bytes(text.c_str()), static_cast<int>(text.size())));
  }
  void addAttribute(const char* value) {
    xmlNewNsProp(root(), nullptr, bytes("b"), nullptr);
    xmlNode* piece = xmlNewDocText(document_.get(), bytes(value));
    piece->parent = reinterpret_cast<xmlNode*>(root()->properties);
    root()->properties->children = root()->properties->last = piece;
  }

  static const xmlChar* bytes(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

  XmlDocPtr document_;
};

TEST_F(WrittenNodes, OfTextHaveTheirMarkEscaped) {
  addText("<b> & \"it's\" ]]> end");
  EXPECT_EQ(toXml(root()), "<a>&lt;b&gt; &amp; \"it's\" ]]&gt; end</a>");
}

TEST_F(WrittenNodes, OfTextKeepTabsAndLineEndsButACarriageReturn) {
  addText("1\t2\n3\r4");
  EXPECT_EQ(toXml(root()), "<a>1\t2\n3&#13;4</a>");
}

TEST_F(WrittenNodes, AsValuesKeepAllWhiteSpaceByNumber) {
  addAttribute("1\t2\n3\r4\"5'6<7>8&");
  EXPECT_EQ(toXml(root()), "<a b=\"1&#9;2&#10;3&#13;4&quot;5'6&lt;7&gt;8&amp;\"/>");
  EXPECT_EQ(toXml(reinterpret_cast<xmlNode*>(root()->properties)),
            "b=\"1&#9;2&#10;3&#13;4&quot;5'6&lt;7&gt;8&amp;\"");
}

TEST_F(WrittenNodes, OfSectionsAreSplitWhereTheyWouldEnd) {
  addCData("a]]>b]]>");
  const std::string text = toXml(root());
  EXPECT_EQ(text, "<a><![CDATA[a]]]]><![CDATA[>b]]]]><![CDATA[>]]></a>");
  EXPECT_EQ(parsed(text)->documentElement()->text(), "a]]>b]]>");
}

TEST_F(WrittenNodes, OfSectionsMayBeEmptyOrHoldBrackets) {
  addCData("");
  addCData("]]");
  addCData("]>");
  const std::string text = toXml(root());
  EXPECT_EQ(text, "<a><![CDATA[]]><![CDATA[]]]]><![CDATA[]>]]></a>");
  EXPECT_EQ(parsed(text)->documentElement()->text(), "]]]>");
}

TEST_F(WrittenNodes, BeyondAsciiAreWrittenAsTheyAre) {
  addText("\xC2\x80 \xE2\x82\xAC \xF0\x9F\x98\x80 \x7F");
  EXPECT_EQ(toXml(root()), "<a>\xC2\x80 \xE2\x82\xAC \xF0\x9F\x98\x80 \x7F</a>");
}

TEST(XmlWriter, WritesEveryAsciiCharacterSoThatItComesBack) {
  for (char character = 0x20; character < 0x7F; ++character) {
    const auto document = parsed("<a b=''/>");
    const std::string text = std::string("x") + character + "y";
    document->documentElement()->setText(text);
    document->documentElement()->setAttribute("b", text);
    const auto again = parsed(document->xml());
    EXPECT_EQ(again->documentElement()->text(), text);
    EXPECT_EQ(again->documentElement()->getNamedItem("b"), text);
  }
  for (const char* text : {"x\ty", "x\ny", "x\ry", "x\r\ny"}) {
    const auto document = parsed("<a/>");
    document->documentElement()->setAttribute("b", text);
    EXPECT_EQ(parsed(document->xml())->documentElement()->getNamedItem("b"), text);
  }
}

/// A reader joins sections that touch.
std::string withJoinedSections(std::string text) {
  constexpr std::string_view between = "]]><![CDATA[";
  for (auto at = text.find(between); at != std::string::npos; at = text.find(between)) {
    text.erase(at, between.size());
  }
  return text;
}

TEST(XmlWriter, WritesWhatReadsAndWritesTheSame) {
  RandomXml chance(3);
  for (int round = 0; round < 200; ++round) {
    const auto document = parsed(chance.document());
    const auto again = parsed(document->xml());
    EXPECT_EQ(again->xml(), withJoinedSections(document->xml()));
    EXPECT_EQ(again->documentElement()->text(), document->documentElement()->text());
    EXPECT_EQ(again->selectNodes("//*").size(), document->selectNodes("//*").size());
    EXPECT_EQ(again->selectNodes("//comment()").size(), document->selectNodes("//comment()").size());
  }
}

TEST(XmlWriter, WritesEachNodeAsItStandsInTheWhole) {
  RandomXml chance(5);
  const auto document = parsed(chance.document());
  const std::string whole = document->xml();
  for (const XmlNodePtr& node : document->selectNodes("//node()")) {
    EXPECT_NE(whole.find(node->xml()), std::string::npos) << node->xml();
  }
  for (const XmlNodePtr& attribute : document->selectNodes("//@*")) {
    EXPECT_NE(whole.find(" " + attribute->xml()), std::string::npos) << attribute->xml();
  }
}

TEST(XmlWriter, WritesAnElementWithoutContentAsOneTag) {
  EXPECT_EQ(rewritten("<a></a>"), "<a/>");
  EXPECT_EQ(rewritten("<a><b></b><c> </c></a>"), "<a><b/><c/></a>");
  EXPECT_EQ(rewritten("<a><!----></a>"), "<a><!----></a>");
}

TEST(XmlWriter, WritesInstructionsWithAndWithoutContent) {
  EXPECT_EQ(rewritten("<?a?><b><?c   d ?></b>"), "<?a?><b><?c d ?></b>");
}

TEST(XmlWriter, WritesPrefixesAsTheyWereDeclared) {
  const char* text = "<p:a xmlns:p=\"u\" xmlns=\"v\" p:b=\"1\"><c><p:d xmlns:p=\"w\"/></c></p:a>";
  EXPECT_EQ(rewritten(text), text);
}

TEST(XmlWriter, DeclaresOnANodeOfTheMiddleWhatItUsesOfItsAncestors) {
  const auto document = parsed("<p:a xmlns:p='u' xmlns:q='v' xmlns='w'><b q:c='1'><p:d/></b><e/></p:a>");
  const auto found = document->documentElement()->childNodes();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[1]->xml(), "<e xmlns=\"w\"/>");
  const auto alone = parsed(found[0]->xml());
  EXPECT_EQ(alone->selectNodes("//*[local-name()='d' and namespace-uri()='u']").size(), 1U);
  EXPECT_EQ(alone->selectNodes("//@*[namespace-uri()='v']").size(), 1U);
  EXPECT_EQ(alone->selectNodes("/*[namespace-uri()='w']").size(), 1U);
}

TEST(XmlWriter, WritesATreeOfAnyWidth) {
  std::string text = "<a>";
  for (int count = 0; count < 20000; ++count) text += "<b/>";
  text += "</a>";
  EXPECT_EQ(rewritten(text), text);
}

}  // namespace
}  // namespace vlclientui::platform
