#include "engine/SourceText.h"

#include <algorithm>
#include <optional>
#include <random>
#include <regex>

#include <gmock/gmock.h>

#include "engine/EngineFixture.h"

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

TEST(ElementSpans, TellTheBytesOfEachElement) {
  const std::string text = "<a> <b x='1'>t</b ><c/></a>";
  const ElementSpans spans(text);
  const auto& b = spans.elements()[1];
  EXPECT_EQ(text.substr(b.tagBegin, b.tagEnd - b.tagBegin), "<b x='1'>");
  EXPECT_EQ(text.substr(b.tagEnd, b.contentEnd - b.tagEnd), "t");
  EXPECT_EQ(text.substr(b.tagBegin, b.end - b.tagBegin), "<b x='1'>t</b >");
  EXPECT_TRUE(b.hasEndTag());
  EXPECT_FALSE(spans.elements()[2].hasEndTag());
  EXPECT_EQ(spans.elements()[0].parent, ElementSpans::none);
}

TEST(ElementSpans, NamesKeepTheirPrefixAndEndAtAnyWhiteSpace) {
  EXPECT_THAT(namesIn("<p:a xmlns:p='u'><p:b\n/><c\t></c></p:a>"), ElementsAre("p:a", "p:b", "c"));
}

TEST(ElementSpans, FindChildrenByNameAmongTheirOwnOnly) {
  const ElementSpans spans("<a><b><c/></b><c/></a>");
  EXPECT_EQ(spans.childNamed(0, "c"), 3U);
  EXPECT_EQ(spans.childNamed(1, "c"), 2U);
  EXPECT_EQ(spans.childNamed(0, "d"), ElementSpans::none);
  EXPECT_EQ(spans.childNamed(ElementSpans::none, "a"), 0U);
  EXPECT_EQ(spans.at({}), 0U);
}

TEST(ElementText, TakesTheIndentOfItsLineEnds) {
  EXPECT_EQ(edited("<a>\r\n\t<b/>\r\n</a>", "a/c", "1"), "<a>\r\n\t<b/>\r\n\t<c>1</c>\r\n</a>");
  EXPECT_EQ(edited("<a>\n\n  <b>x</b> tail</a>", "a/c", "1"), "<a>\n\n  <b>x</b>\n  <c>1</c> tail</a>");
}

TEST(ElementText, ReplacesElementsInsideAndKeepsCommentsOutside) {
  EXPECT_EQ(edited("<a><!-- b --><b>1<!-- in --><x/></b><!-- behind --></a>", "a/b", "2"),
            "<a><!-- b --><b>2</b><!-- behind --></a>");
}

TEST(ElementText, OfTheRootItselfIsReplacedToo) {
  EXPECT_EQ(edited("<?xml version='1.0'?>\n<a>1</a>\n", "a", "2"), "<?xml version='1.0'?>\n<a>2</a>\n");
  EXPECT_EQ(edited("<a/>", "a", ""), "<a></a>");
}

TEST(ElementText, OfADocumentWithoutElementsIsTheDocument) {
  for (const char* const text : {"", "text", "<!-- only -->", "<?xml version='1.0'?>"}) {
    EXPECT_EQ(edited(text, "a/b", "1"), text);
  }
}

/// Documents of all that may stand between tags, with a number in each element "v".
class RandomDocument {
 public:
  explicit RandomDocument(unsigned seed) : random_(seed) {
    text_ = filler() + "<!DOCTYPE r [<!ENTITY e \"]>\"> <!-- ]> -->]>" + filler() + "<r a='>'>";
    for (int i = below(4) + 1; i > 0; --i) addBranch(2);
    text_ += filler() + "</r>" + filler();
  }

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  std::string filler() {
    static const char* const pieces[] = {"", "\n", "  ", "<!-- <v>0</v> -->", "<?p <v> ?>", "\r\n\t"};
    return pieces[below(6)];
  }
  void addBranch(int depth) {
    const std::string name = below(2) == 0 ? "b" : "c";
    text_ += filler() + "<" + name + (below(2) == 0 ? " q=\"/>\"" : "") + ">" + filler();
    if (below(4) > 0) text_ += below(3) == 0 ? "<v/>" : "<v >" + std::to_string(below(100)) + "</v\n>";
    if (depth > 0 && below(2) == 0) addBranch(depth - 1);
    text_ += filler() + (below(3) == 0 ? "<![CDATA[<v>]]>" : "") + "</" + name + ">";
  }

  std::mt19937 random_;
  std::string text_;
};

/// What a document holds at a path of names; nothing for what it lacks.
std::optional<std::string> textAt(const std::string& document, const std::string& path) {
  const auto parsed = testXml()->createDocument();
  EXPECT_TRUE(parsed->loadXml(document)) << document;
  const auto node = parsed->selectSingleNode("/" + path);
  return node ? std::optional(node->text()) : std::nullopt;
}

TEST(ElementText, ReadsBackFromAnyDocumentWithEveryOtherByteKept) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    const std::string before = RandomDocument(seed).text();
    for (const char* const path : {"r/b[0]/v", "r/c[0]/v", "r/b[0]/b[0]/v", "r/new[0]/v"}) {
      const std::string names = std::regex_replace(path, std::regex(R"(\[0\])"), "");
      const std::string after = withElementText(before, {}, names, "a<b&c");
      ASSERT_EQ(textAt(after, path), "a<b&c") << before;
      const auto [kept, changed] = std::ranges::mismatch(before, after);
      const auto headLength = static_cast<std::size_t>(kept - before.begin());
      ASSERT_GE(headLength, before.find("<r")) << "nothing before the root changes";
      ASSERT_TRUE(after.ends_with(before.substr(before.rfind("</r>")))) << before;
      ASSERT_EQ(withElementText(after, {}, names, "a<b&c"), after) << "a second edit with the same text";
    }
  }
}

}  // namespace
}  // namespace vlclientui::engine
