#include "platform/XmlReader.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/XmlWriter.h"

namespace vlclientui::platform {
namespace {

using namespace std::string_literals;

std::string written(const XmlDocPtr& document) {
  return document ? toXml(reinterpret_cast<const xmlNode*>(document.get())) : "(not read)";
}

std::string fromText(std::string_view text) { return written(readXmlText(text)); }
std::string fromBytes(std::string_view bytes) { return written(readXmlBytes(bytes)); }

constexpr const char* notRead = "(not read)";

/// As a file of 16-bit units, with a byte order mark.
std::string wide(const std::string& ascii, bool isBigEndian) {
  std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char character : ascii)
    bytes += isBigEndian ? std::string{'\0', character} : std::string{character, '\0'};
  return bytes;
}

TEST(XmlReader, OfBytesFollowsTheDeclaredEncoding) {
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='iso-8859-1'?><a>\xE4</a>"), "<a>\xC3\xA4</a>");
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='ISO-8859-15'?><a>\xA4</a>"), "<a>\xE2\x82\xAC</a>");
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='us-ascii'?><a>x</a>"), "<a>x</a>");
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='utf-8'?><a>\xC3\xA4</a>"), "<a>\xC3\xA4</a>");
  EXPECT_EQ(fromBytes("<a>\xC3\xA4</a>"), "<a>\xC3\xA4</a>");
}

TEST(XmlReader, OfBytesFollowsTheByteOrderMark) {
  EXPECT_EQ(fromBytes(wide("<a b='1'>x</a>", false)), "<a b=\"1\">x</a>");
  EXPECT_EQ(fromBytes(wide("<a b='1'>x</a>", true)), "<a b=\"1\">x</a>");
  EXPECT_EQ(fromBytes(wide("<?xml version='1.0' encoding='utf-16'?><a/>", true)), "<a/>");
  EXPECT_EQ(fromBytes("\xEF\xBB\xBF<a>\xC3\xA4</a>"), "<a>\xC3\xA4</a>");
}

TEST(XmlReader, OfBytesRefusesWhatItsEncodingDoesNotHave) {
  EXPECT_EQ(fromBytes("<a>\xE4</a>"), notRead);
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='utf-8'?><a>\xE4</a>"), notRead);
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='us-ascii'?><a>\xE4</a>"), notRead);
  EXPECT_EQ(fromBytes("<?xml version='1.0' encoding='nobody-knows'?><a/>"), notRead);
  EXPECT_EQ(fromBytes(wide("<a>x</b>", false)), notRead);
}

TEST(XmlReader, OfTextTakesUtf8AloneWhateverIsDeclared) {
  for (const char* encoding : {"iso-8859-1", "utf-16", "nobody-knows", "utf-8"}) {
    const std::string head = "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>";
    EXPECT_EQ(fromText(head + "<a>\xC3\xA4</a>"), "<a>\xC3\xA4</a>") << encoding;
    EXPECT_EQ(fromText(head + "<a>\xE4</a>"), notRead) << encoding;
  }
  EXPECT_EQ(fromText(wide("<a/>", false)), notRead);
  EXPECT_EQ(fromText("\xEF\xBB\xBF\xEF\xBB\xBF<a/>"), notRead);
}

TEST(XmlReader, TakesNothingForNoDocument) {
  for (const char* text : {"", " ", "\n", "<!-- said -->", "<?xml version='1.0'?>", "<?ask?>", "text"}) {
    EXPECT_EQ(fromText(text), notRead) << text;
    EXPECT_EQ(fromBytes(text), notRead) << text;
  }
}

TEST(XmlReader, RefusesWhatStandsBehindANul) {
  for (const std::string& text : {"<a/>\0"s, "<a/>\0<b/>"s, "<a>\0</a>"s, "\0<a/>"s}) {
    EXPECT_EQ(fromText(text), notRead);
    EXPECT_EQ(fromBytes(text), notRead);
  }
}

TEST(XmlReader, DropsBlankTextsButNoneThatEntitiesMakeUp) {
  EXPECT_EQ(fromText("<a> <b/> \n <c> x </c>\t</a>"), "<a><b/><c> x </c></a>");
  const std::string type = "<!DOCTYPE a [<!ENTITY blank ' '><!ENTITY word 'w'>]>";
  EXPECT_EQ(fromText(type + "<a>&blank;<b/>&blank;&blank;</a>"), "<a><b/></a>");
  EXPECT_EQ(fromText(type + "<a>&blank;&word; <b/></a>"), "<a> w <b/></a>");
  EXPECT_EQ(fromText("<a>&#32;<b/>&#10;</a>"), "<a><b/></a>");
  EXPECT_EQ(fromText("<a><![CDATA[ ]]> <b/></a>"), "<a><![CDATA[ ]]><b/></a>");
}

TEST(XmlReader, KeepsNoSpaceThatADocumentAsksToPreserve) {
  EXPECT_EQ(fromText("<a xml:space='preserve'> <b/> </a>"), "<a xml:space=\"preserve\"><b/></a>");
}

TEST(XmlReader, KnowsThePredefinedEntitiesAndNumbers) {
  EXPECT_EQ(fromText("<a>&lt;&gt;&amp;&quot;&apos;</a>"), "<a>&lt;&gt;&amp;\"'</a>");
  EXPECT_EQ(fromText("<a b='&lt;&gt;&amp;&quot;&apos;'/>"), "<a b=\"&lt;&gt;&amp;&quot;'\"/>");
  EXPECT_EQ(fromText("<a>&#x20AC;&#8364;</a>"), "<a>\xE2\x82\xAC\xE2\x82\xAC</a>");
  for (const char* number : {"&#0;", "&#xFFFE;", "&#xD800;", "&#x110000;", "&#;", "&#x;", "&#-1;"}) {
    EXPECT_EQ(fromText("<a>" + std::string(number) + "</a>"), notRead) << number;
  }
}

TEST(XmlReader, ReplacesPlainEntitiesInTextsAndValues) {
  const std::string type = "<!DOCTYPE a [<!ENTITY e \"it's\"><!ENTITY e 'second'>]>";
  EXPECT_EQ(fromText(type + "<a b='&e;'>&e;</a>"), "<a b=\"it's\">it's</a>");
  EXPECT_EQ(fromText(type + "<a>&f;</a>"), notRead);
  EXPECT_EQ(fromText("<!DOCTYPE a [<!ENTITY e '&#60;b/>'>]><a>&e;</a>"), notRead);
  EXPECT_EQ(fromText("<!DOCTYPE a [<!ENTITY e '&#38;f;'><!ENTITY f 'x'>]><a>&e;</a>"), notRead);
}

TEST(XmlReader, CountsWhatEntitiesAndDefaultsAddTogether) {
  const std::string half(maxXmlExpansion / 2, 'x');
  const std::string type = "<!DOCTYPE a [<!ENTITY e '" + half + "'><!ATTLIST b c CDATA '" + half + "'>]>";
  EXPECT_NE(fromText(type + "<a>&e;</a>"), notRead);
  EXPECT_NE(fromText(type + "<a><b/></a>"), notRead);
  EXPECT_EQ(fromText(type + "<a>&e;<b/></a>"), notRead);
}

TEST(XmlReader, TakesAsManyDeclarationsAsItSays) {
  const auto document = [](int count) {
    std::string text = "<!DOCTYPE a [";
    for (int i = 0; i < count; ++i) text += "<!ENTITY e" + std::to_string(i) + " ''>";
    return text + "]><a/>";
  };
  EXPECT_EQ(fromText(document(maxXmlDeclarations)), "<a/>");
  EXPECT_EQ(fromText(document(maxXmlDeclarations + 1)), notRead);
}

TEST(XmlReader, TakesElementsAsDeepAsItSays) {
  const auto document = [](int depth) {
    std::string open, close;
    for (int i = 0; i < depth; ++i) {
      open += "<a>";
      close += "</a>";
    }
    return open + close;
  };
  EXPECT_NE(fromText(document(maxXmlDepth)), notRead);
  EXPECT_EQ(fromText(document(maxXmlDepth + 1)), notRead);
}

TEST(XmlReader, RefusesFaultsOfNameSpacesAndOfAttributes) {
  for (const char* text :
       {"<p:a/>", "<a p:b='1'/>", "<a b='1' b='2'/>", "<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>",
        "<a xmlns:xml='u'/>", "<a xmlns:xmlns='u'/>", "<a xmlns:p=''/>"}) {
    EXPECT_EQ(fromText(text), notRead) << text;
    EXPECT_EQ(fromBytes(text), notRead) << text;
  }
}

TEST(XmlReader, LeavesNoDocumentTypeBehind) {
  const XmlDocPtr document = readXmlText("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>");
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(xmlGetIntSubset(document.get()), nullptr);
  EXPECT_EQ(document->children, xmlDocGetRootElement(document.get()));
}

}  // namespace
}  // namespace vlclientui::platform
