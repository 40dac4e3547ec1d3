#include "platform/XmlText.h"

#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "contracts/Utf8.h"
#include "contracts/XmlCharacters.h"
#include "platform/XmlReader.h"

namespace vlclientui::platform {
namespace {

TEST(XmlText, IsWhatTheReaderTakesToo) {
  for (const std::uint32_t code : {0x1U, 0x9U, 0x1FU, 0x20U, 0x7FU, 0x80U, 0xD7FFU, 0xE000U, 0xFFFDU, 0xFFFEU,
                                   0xFFFFU, 0x10000U, 0x10FFFFU}) {
    std::string character;
    appendUtf8(character, code);
    const std::string text = "<a>x" + character + "</a>";
    EXPECT_EQ(readXmlText(text) != nullptr, isXmlCharacter(code)) << std::hex << code;
  }
}

TEST(XmlText, IsRequiredByAFailure) {
  EXPECT_NO_THROW(requireXmlText("\xE2\x82\xAC, \xF0\x9F\x98\x80"));
  EXPECT_THROW(requireXmlText("x\xC0\x80"), RuntimeFailure);
  EXPECT_THROW(requireXmlText("x\x01"), RuntimeFailure);
}

TEST(XmlText, KnowsFourKindsOfWhiteSpace) {
  for (const char character : {' ', '\t', '\r', '\n'}) EXPECT_TRUE(isWhiteSpace(character));
  for (const char character : {'\v', '\f', '\0', 'x', '\xA0'}) EXPECT_FALSE(isWhiteSpace(character));
  EXPECT_TRUE(isBlank(""));
  EXPECT_TRUE(isBlank(" \t\r\n"));
  EXPECT_FALSE(isBlank(" x "));
  EXPECT_FALSE(isBlank("\xC2\xA0"));
}

TEST(XmlText, MakesLineEndsPlain) {
  EXPECT_EQ(withPlainLineEnds("a\r\nb\rc\nd"), "a\nb\nc\nd");
  EXPECT_EQ(withPlainLineEnds("\r\r\n\r"), "\n\n\n");
  EXPECT_EQ(withPlainLineEnds("\n\r"), "\n\n");
  EXPECT_EQ(withPlainLineEnds("\r"), "\n");
  EXPECT_EQ(withPlainLineEnds("plain"), "plain");
  EXPECT_EQ(withPlainLineEnds(""), "");
}

class TextOfNodes : public testing::Test {
 protected:
  std::string text(const char* document) {
    document_ = readXmlText(document);
    if (document_ == nullptr) return "(no document)";
    return textOf(xmlDocGetRootElement(document_.get()));
  }

  XmlDocPtr document_;
};

TEST_F(TextOfNodes, IsJoinedOverAllDepths) {
  EXPECT_EQ(text("<a>1<b>2<c>3</c></b>4</a>"), "1234");
  EXPECT_EQ(text("<a> 1 <b> 2 </b> 3 </a>"), "1  2  3");
  EXPECT_EQ(text("<a><b> 1 </b></a>"), "1");
  EXPECT_EQ(text("<a/>"), "");
}

TEST_F(TextOfNodes, IsTrimmedUpToTheNextSectionOnly) {
  EXPECT_EQ(text("<a> <![CDATA[ x ]]> </a>"), " x ");
  EXPECT_EQ(text("<a>  1<![CDATA[ ]]>  </a>"), "1 ");
  EXPECT_EQ(text("<a><![CDATA[ ]]> 1 </a>"), "  1");
  EXPECT_EQ(text("<a> <![CDATA[]]> 1 </a>"), "1");
}

TEST_F(TextOfNodes, LeavesOutWhatIsSaidBeside) {
  EXPECT_EQ(text("<a>1<!-- no -->2<?no no?>3</a>"), "123");
  EXPECT_EQ(text("<a> <!-- no --> 1 <?no?> </a>"), "1");
}

TEST_F(TextOfNodes, OfCommentsInstructionsAndAttributesIsTheirContent) {
  ASSERT_NE(text("<a n='  1  '><!-- said --><?ask  more ?></a>"), "(no document)");
  const xmlNode* root = xmlDocGetRootElement(document_.get());
  EXPECT_EQ(textOf(root->children), " said ");
  EXPECT_EQ(textOf(root->children->next), "more ");
  EXPECT_EQ(textOf(reinterpret_cast<const xmlNode*>(root->properties)), "  1  ");
  EXPECT_EQ(attributeValue(root->properties), "  1  ");
}

}  // namespace
}  // namespace vlclientui::platform
