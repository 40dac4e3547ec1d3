#include "engine/SourceText.h"

#include <gmock/gmock.h>

namespace vlclientui::engine {
namespace {

using testing::ElementsAre;

std::vector<std::string> namesIn(std::string_view document) {
  std::vector<std::string> names;
  const ElementSpans spans(document);
  for (const auto& element : spans.elements()) names.emplace_back(element.name);
  return names;
}

std::string edited(const std::string& document, std::string_view path, std::string_view value) {
  return withElementText(document, {}, path, value);
}

TEST(ElementSpans, StandInDocumentOrderWithTheirParents) {
  const ElementSpans spans("<a><b/><c><d/></c></a>");
  EXPECT_THAT(namesIn("<a><b/><c><d/></c></a>"), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(spans.childrenOf(0), ElementsAre(1U, 2U));
  EXPECT_EQ(spans.at({1, 0}), 3U);
  EXPECT_EQ(spans.at({2}), ElementSpans::none);
}

TEST(ElementSpans, AreNoneInCommentsInstructionsSectionsAndDeclarations) {
  EXPECT_THAT(namesIn("<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e \"]>\"><!-- ]><x> --><?p ]>?>]>"
                      "<a><!-- <x> --><![CDATA[<x>]]><?p <x>?><b/></a>"),
              ElementsAre("a", "b"));
}

TEST(ElementSpans, TagsMayHoldBracketsInQuotes) {
  EXPECT_THAT(namesIn("<a x='>' y=\"/>\"><b z='<'/></a>"), ElementsAre("a", "b"));
}

TEST(ElementSpans, OfATextThatIsNoDocumentDoNoHarm) {
  for (const auto* text :
       {"", "<", "</a>", "<a", "<a b='", "<!--", "<!DOCTYPE", "<![CDATA[", "<?", "<a></b></c>"})
    EXPECT_LE(ElementSpans(text).elements().size(), 1U) << text;
}

TEST(ElementText, ReplacesWhatStandsBetweenTheTags) {
  EXPECT_EQ(edited("<a><b x='1' >old</b ></a>", "a/b", "new"), "<a><b x='1' >new</b ></a>");
  EXPECT_EQ(edited("<a><b><![CDATA[x]]></b></a>", "a/b", "y"), "<a><b>y</b></a>");
}

TEST(ElementText, OpensAnElementThatHasNoEndTag) {
  EXPECT_EQ(edited("<a><b x=\"/\" /></a>", "a/b", "new"), "<a><b x=\"/\" >new</b></a>");
  EXPECT_EQ(edited("<a/>", "a/b", "new"), "<a><b>new</b></a>");
}

TEST(ElementText, EscapesMarkup) {
  EXPECT_EQ(edited("<a><b/></a>", "a/b", "<&>\r\n"), "<a><b>&lt;&amp;&gt;&#13;\n</b></a>");
}

TEST(ElementText, TheFirstElementOfANameCounts) {
  EXPECT_EQ(edited("<a><c><b/></c><b>1</b><b>2</b></a>", "a/b", "3"), "<a><c><b/></c><b>3</b><b>2</b></a>");
}

TEST(ElementText, MissingElementsStandBehindTheLastChildWithItsIndent) {
  EXPECT_EQ(edited("<a>\n  <b/>\n</a>", "a/c/d", "1"), "<a>\n  <b/>\n  <c><d>1</d></c>\n</a>");
  EXPECT_EQ(edited("<a><b/></a>", "a/c", "1"), "<a><b/><c>1</c></a>");
  EXPECT_EQ(edited("<a> </a>", "a/c", "1"), "<a> <c>1</c></a>");
}

TEST(ElementText, BeginsAtTheElementThatThePositionsNameAndLeavesTheRest) {
  EXPECT_EQ(withElementText("<r><a><b/></a><a><b/></a></r>", {1}, "a/b", "x"),
            "<r><a><b/></a><a><b>x</b></a></r>");
  EXPECT_EQ(withElementText("<r/>", {4}, "a/b", "x"), "<r/>");
}

}  // namespace
}  // namespace vlclientui::engine
