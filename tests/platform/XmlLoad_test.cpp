#include <string>

#include "contracts/RuntimeFailure.h"
#include "platform/XmlTestDocument.h"
#include "support/TestFolders.h"

namespace vlclientui::platform {
namespace {

using namespace std::string_literals;

std::string nested(int depth) {
  std::string text;
  for (int level = 0; level < depth; ++level) text += "<a>";
  for (int level = 0; level < depth; ++level) text += "</a>";
  return text;
}

TEST(XmlLoad, EmptyAndBlankTextsDoNotLoad) {
  EXPECT_FALSE(loads(""));
  EXPECT_FALSE(loads(" \r\n\t"));
  EXPECT_FALSE(loads("\xEF\xBB\xBF"));
}

TEST(XmlLoad, MalformedTextsDoNotLoad) {
  for (const char* text : {"x",
                           "<a>",
                           "</a>",
                           "<a></b>",
                           "<a/><b/>",
                           "<a/>x",
                           "x<a/>",
                           "<a b/>",
                           "<a b=c/>",
                           "<a b='1' b='2'/>",
                           "<a>&</a>",
                           "<a>&b;</a>",
                           "<a b='&c;'/>",
                           "<a>&#0;</a>",
                           "<a>&#1;</a>",
                           "<a>&#xD800;</a>",
                           "<a b='<'/>",
                           "<a>]]></a>",
                           "<a><![CDATA[</a>",
                           "<a><!-- -- --></a>",
                           "<1/>",
                           "<a",
                           "<a><b></a></b>",
                           "<!-- only -->",
                           "<?pi only?>",
                           " <?xml version='1.0'?><a/>",
                           "<a><?xml version='1.0'?></a>",
                           "<!DOCTYPE a>",
                           "<a>\x01</a>",
                           "<A></a>"}) {
    EXPECT_FALSE(loads(text)) << text;
  }
}

TEST(XmlLoad, NameSpaceFaultsAreFaults) {
  for (const char* text :
       {"<p:a/>", "<a p:b='1'/>", "<a:b:c xmlns:a='u'/>", "<a xmlns:p=''/>", "<a:/>", "<:a/>",
        "<a xmlns:p='u' xmlns:q='u' p:x='1' q:x='2'/>", "<a><p:b/></a>", "<?a:b c?><d/>"}) {
    EXPECT_FALSE(loads(text)) << text;
  }
  EXPECT_TRUE(loads("<p:a xmlns:p='u' p:b='1'><p:c xml:lang='en'/></p:a>"));
}

TEST(XmlLoad, BytesThatAreNoUtf8DoNotLoad) {
  EXPECT_FALSE(loads("<a>\xFF</a>"));
  EXPECT_FALSE(loads("<a>\xC0\x80</a>"));
  EXPECT_FALSE(loads("<a>\xED\xA0\x80</a>"));
  EXPECT_FALSE(loads("<a>\xE2\x82</a>"));
  EXPECT_FALSE(loads("<a>\xF4\x90\x80\x80</a>"));
  EXPECT_FALSE(loads("<?xml version='1.0' encoding='iso-8859-1'?><a>\xE9</a>"));
}

TEST(XmlLoad, NulCharactersDoNotLoad) {
  EXPECT_FALSE(loads("<a>\0</a>"s));
  EXPECT_FALSE(loads("<a/>\0"s));
  EXPECT_FALSE(loads("\0"s));
  EXPECT_FALSE(loads("<\0a\0/\0>\0"s));
}

TEST(XmlLoad, AFailedLoadLeavesTheDocumentEmpty) {
  const auto document = parsed("<a/>");
  EXPECT_FALSE(document->loadXml("<a>"));
  EXPECT_EQ(document->documentElement(), nullptr);
  EXPECT_EQ(document->xml(), "");
  EXPECT_TRUE(document->childNodes().empty());
  EXPECT_EQ(document->selectSingleNode("//a"), nullptr);
}

TEST(XmlLoad, ADocumentLoadsAgain) {
  const auto document = parsed("<a/>");
  const XmlNodePtr old = document->documentElement();
  ASSERT_TRUE(document->loadXml("<b/>"));
  EXPECT_EQ(document->xml(), "<b/>");
  EXPECT_EQ(old->xml(), "<a/>");
}

TEST(XmlLoad, TextIsUtf8WhateverItDeclares) {
  EXPECT_EQ(rewritten("<?xml version='1.0' encoding='utf-16'?><a>\xC3\xA9</a>"), "<a>\xC3\xA9</a>");
  EXPECT_EQ(rewritten("<?xml version='1.0' encoding='no-such'?><a>\xE2\x82\xAC</a>"), "<a>\xE2\x82\xAC</a>");
  EXPECT_EQ(rewritten("<?xml version='1.0' encoding='iso-8859-1'?><a>\xC3\xA9</a>"), "<a>\xC3\xA9</a>");
}

TEST(XmlLoad, AByteOrderMarkIsNoText) { EXPECT_EQ(rewritten("\xEF\xBB\xBF<a>x</a>"), "<a>x</a>"); }

TEST(XmlLoad, WhiteSpaceBetweenElementsIsDropped) {
  EXPECT_EQ(rewritten("<a>\r\n  <b> x </b>\t<c>  </c>\n</a>\n"), "<a><b> x </b><c/></a>");
  EXPECT_EQ(rewritten("<a>x <b/> y</a>"), "<a>x <b/> y</a>");
  EXPECT_EQ(rewritten("<a><![CDATA[ ]]></a>"), "<a><![CDATA[ ]]></a>");
}

TEST(XmlLoad, CommentsAndInstructionsStayAndTheDeclarationGoes) {
  EXPECT_EQ(rewritten("<?xml version='1.0'?>\n<!-- c -->\n<?p d e?><a><!--x--></a><!--y-->"),
            "<!-- c --><?p d e?><a><!--x--></a><!--y-->");
}

TEST(XmlLoad, PlainEntitiesOfTheDocumentAreReplacedAndItsTypeGoes) {
  EXPECT_EQ(rewritten("<!DOCTYPE a [<!ENTITY e 'two words'>]><a b='&e;'>&e;, &e;</a>"),
            "<a b=\"two words\">two words, two words</a>");
  EXPECT_EQ(rewritten("<!DOCTYPE a [<!ENTITY e ' '>]><a>x&e;y&e;<b/></a>"), "<a>x y <b/></a>");
  EXPECT_EQ(rewritten("<!DOCTYPE a [<!ENTITY e SYSTEM 'x'><!ENTITY f '<'><!ENTITY % g 'h'>]><a/>"), "<a/>");
  EXPECT_EQ(rewritten("<!DOCTYPE a [<!ATTLIST a b CDATA 'c'>]><a/>"), "<a b=\"c\"/>");
}

TEST(XmlLoad, EntitiesWithinEntitiesDoNotLoad) {
  std::string laughs = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
  for (int level = 1; level < 30; ++level) {
    const std::string inner = "&e" + std::to_string(level - 1) + ";";
    laughs += "<!ENTITY e" + std::to_string(level) + " '";
    for (int repeat = 0; repeat < 10; ++repeat) laughs += inner;
    laughs += "'>";
  }
  EXPECT_FALSE(loads(laughs + "]><a>&e29;</a>"));
  EXPECT_FALSE(loads(laughs + "]><a b='&e29;'/>"));
  EXPECT_FALSE(loads("<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>"));
  EXPECT_FALSE(loads("<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>"));
  EXPECT_FALSE(loads("<!DOCTYPE a [<!ENTITY % p ''>%p;]><a/>"));
}

TEST(XmlLoad, AnEntityUsedOverAndOverDoesNotLoad) {
  const std::string head = "<!DOCTYPE a [<!ENTITY e '" + std::string(100000, 'x') + "'>]><a>";
  const auto uses = [](int count) {
    std::string text;
    while (count-- > 0) text += "&e;";
    return text;
  };
  EXPECT_TRUE(loads(head + uses(10) + "</a>"));
  EXPECT_FALSE(loads(head + uses(11) + "</a>"));
}

TEST(XmlLoad, DefaultAttributesAreBoundedToo) {
  const std::string head = "<!DOCTYPE a [<!ATTLIST b c CDATA '" + std::string(100000, 'x') + "'>]><a>";
  std::string few, many;
  for (int count = 0; count < 10; ++count) few += "<b/>";
  for (int count = 0; count < 11; ++count) many += "<b/>";
  EXPECT_TRUE(loads(head + few + "</a>"));
  EXPECT_FALSE(loads(head + many + "</a>"));
}

TEST(XmlLoad, DeclarationsAreBounded) {
  std::string declarations;
  for (int count = 0; count < 1001; ++count) {
    declarations += "<!ENTITY e" + std::to_string(count) + " 'x'>";
  }
  EXPECT_FALSE(loads("<!DOCTYPE a [" + declarations + "]><a/>"));
}

TEST(XmlLoad, NothingOutsideTheDocumentIsRead) {
  const std::string file = "file://" + sourceFolder() + "/LICENSE";
  EXPECT_FALSE(loads("<!DOCTYPE a [<!ENTITY e SYSTEM '" + file + "'>]><a>&e;</a>"));
  EXPECT_FALSE(loads("<!DOCTYPE a [<!ENTITY % p SYSTEM '" + file + "'>%p;]><a/>"));
  EXPECT_FALSE(loads("<!DOCTYPE a SYSTEM '" + file + "'><a>&e;</a>"));
  EXPECT_EQ(rewritten("<!DOCTYPE a SYSTEM '" + file + "'><a/>"), "<a/>");
}

TEST(XmlLoad, DepthIsBounded) {
  EXPECT_TRUE(loads(nested(1000)));
  EXPECT_FALSE(loads(nested(1001)));
  EXPECT_FALSE(loads(nested(100000)));
  std::string open;
  for (int level = 0; level < 1000000; ++level) open += "<a>";
  EXPECT_FALSE(loads(open));
}

TEST(XmlLoad, TextsAreNotLimitedInLength) {
  const std::string longText(20'000'000, 'x');
  EXPECT_EQ(parsed("<a>" + longText + "</a>")->documentElement()->text().size(), longText.size());
  EXPECT_EQ(*parsed("<a b='" + longText + "'/>")->documentElement()->getNamedItem("b"), longText);
}

TEST(XmlLoad, NothingIsWrittenToTheErrorOutput) {
  testing::internal::CaptureStderr();
  EXPECT_FALSE(loads("<a><p:b>&x;</a>"));
  EXPECT_THROW((void)parsed("<a/>")->selectNodes("//a["), RuntimeFailure);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace vlclientui::platform
