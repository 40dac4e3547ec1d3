#include "documents/GuardedRead.h"

#include <memory>

#include <gtest/gtest.h>

#include "platform/LibXmlService.h"

namespace vlclientui {
namespace {

std::unique_ptr<XmlDocument> documentOf(const std::string& text) {
  auto document = platform::LibXmlService{platform::PathTranslation("/")}.createDocument();
  static_cast<void>(document->loadXml(text));
  return document;
}

TEST(GuardedRead, GivesTheTextOfTheFirstNode) {
  const auto document = documentOf("<a><b>1</b><b>2</b></a>");
  EXPECT_EQ(readText(*document, "//b"), "1");
}

TEST(GuardedRead, TellsAnEmptyElementFromAMissingOne) {
  const auto document = documentOf("<a><empty/></a>");
  EXPECT_EQ(readText(*document, "//a/empty"), "");
  EXPECT_EQ(readText(*document, "//a/missing"), std::nullopt);
  EXPECT_EQ(readXml(*document, "//a/missing"), std::nullopt);
}

TEST(GuardedRead, GivesTheTextOfEverythingInsideAnElement) {
  const auto document = documentOf("<a>x<b>y</b>&amp;<![CDATA[<z>]]></a>");
  EXPECT_EQ(readText(*document, "/a"), "xy&<z>");
}

TEST(GuardedRead, GivesTheOuterXmlWithAttributesAndMarkup) {
  const auto document = documentOf("<a><b k=\"1 &lt; 2\"><c/>&amp;</b></a>");
  EXPECT_EQ(readXml(*document, "//b"), "<b k=\"1 &lt; 2\"><c/>&amp;</b>");
}

TEST(GuardedRead, ReadsFromANodeAsFromADocument) {
  const auto document = documentOf("<a><b><c>1</c></b><c>2</c></a>");
  const auto node = document->selectSingleNode("//b");
  ASSERT_TRUE(node);
  EXPECT_EQ(readText(*node, "c"), "1");
  EXPECT_EQ(readXml(*node, "c"), "<c>1</c>");
  EXPECT_EQ(readText(*node, "d"), std::nullopt);
}

TEST(GuardedRead, FindsNothingInADocumentThatDidNotParse) {
  for (const char* const text : {"", "   ", "no document", "<a>", "<a></b>"}) {
    const auto document = documentOf(text);
    EXPECT_EQ(readText(*document, "//a"), std::nullopt) << text;
    EXPECT_EQ(readXml(*document, "//a"), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace vlclientui
