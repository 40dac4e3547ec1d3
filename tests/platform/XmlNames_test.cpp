#include "platform/XmlNames.h"

#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "platform/XmlReader.h"
#include "platform/XmlTree.h"
#include "platform/XmlWriter.h"

namespace vlclientui::platform {
namespace {

using namespace std::string_literals;

TEST(XmlNames, HaveAPrefixAndALocalPart) {
  EXPECT_EQ(parseQualifiedName("a").prefix, "");
  EXPECT_EQ(parseQualifiedName("a").local, "a");
  EXPECT_EQ(parseQualifiedName("p:a").prefix, "p");
  EXPECT_EQ(parseQualifiedName("p:a").local, "a");
  EXPECT_EQ(parseQualifiedName("_a-1.b").local, "_a-1.b");
  EXPECT_EQ(parseQualifiedName("\xC3\xA9t\xC3\xA9").local, "\xC3\xA9t\xC3\xA9");
}

TEST(XmlNames, ThatXmlDoesNotAllowAreRefused) {
  for (const std::string& name : {""s, ":"s, "a:"s, ":a"s, "a:b:c"s, "1a"s, "-a"s, ".a"s, "a b"s, " a"s,
                                  "a "s, "a/b"s, "a<b"s, "a&b"s, "a\0b"s, "\xFF"s, "a\n"s}) {
    EXPECT_THROW((void)parseQualifiedName(name), RuntimeFailure) << name;
    EXPECT_THROW(requireInstructionName(name), RuntimeFailure) << name;
  }
}

TEST(XmlNames, OfInstructionsHaveNoPrefixAndAreNotTheDeclarations) {
  EXPECT_NO_THROW(requireInstructionName("ask"));
  EXPECT_NO_THROW(requireInstructionName("xml-stylesheet"));
  for (const char* name : {"xml", "XML", "xMl", "p:ask"}) {
    EXPECT_THROW(requireInstructionName(name), RuntimeFailure) << name;
  }
}

/// An element to work on, by default one that stands alone in a document.
class XmlNamesOfElement : public testing::Test {
 protected:
  xmlNode* load(const char* text) {
    document_ = readXmlText(text);
    EXPECT_NE(document_, nullptr) << text;
    return xmlDocGetRootElement(document_.get());
  }

  /// The element after the attribute was set, or why it was refused.
  std::string after(const char* text, const char* name, const char* value) {
    xmlNode* element = load(text);
    try {
      setXmlAttribute(element, name, value);
    } catch (const RuntimeFailure& failure) {
      return "refused: " + failure.description();
    }
    return toXml(element);
  }

  XmlDocPtr document_;
};

TEST_F(XmlNamesOfElement, AttributesAreAddedAndReplaced) {
  EXPECT_EQ(after("<a/>", "b", "1"), "<a b=\"1\"/>");
  EXPECT_EQ(after("<a b='0' c='2'/>", "b", "1"), "<a b=\"1\" c=\"2\"/>");
  EXPECT_EQ(after("<a b='0'/>", "b", ""), "<a b=\"\"/>");
  EXPECT_EQ(after("<a/>", "b", "<&\""), "<a b=\"&lt;&amp;&quot;\"/>");
  EXPECT_EQ(after("<a/>", "xml:lang", "en"), "<a xml:lang=\"en\"/>");
}

TEST_F(XmlNamesOfElement, AttributesOfOneNameInTwoNameSpacesAreTwo) {
  EXPECT_EQ(after("<a xmlns:p='u' p:b='0' b='2'/>", "p:b", "1"), "<a xmlns:p=\"u\" p:b=\"1\" b=\"2\"/>");
  EXPECT_EQ(after("<a xmlns:p='u' p:b='0'/>", "b", "1"), "<a xmlns:p=\"u\" p:b=\"0\" b=\"1\"/>");
  EXPECT_EQ(after("<a xmlns:p='u' xmlns:q='u' p:b='0'/>", "q:b", "1"),
            "<a xmlns:p=\"u\" xmlns:q=\"u\" p:b=\"1\"/>");
}

TEST_F(XmlNamesOfElement, APrefixNeedsADeclaration) {
  EXPECT_EQ(after("<a/>", "p:b", "1"), "refused: 'p' is a prefix without a name space");
  EXPECT_EQ(after("<a/>", "b c", "1"), "refused: 'b c' is no name that XML allows");
  EXPECT_EQ(after("<a/>", "b", "\x01"), "refused: The text has characters that XML does not allow");
}

TEST_F(XmlNamesOfElement, NameSpacesAreDeclaredWhereNoNameChanges) {
  EXPECT_EQ(after("<a/>", "xmlns:p", "u"), "<a xmlns:p=\"u\"/>");
  EXPECT_EQ(after("<p:a xmlns:p='u'/>", "xmlns:q", "v"), "<p:a xmlns:p=\"u\" xmlns:q=\"v\"/>");
  EXPECT_EQ(after("<p:a xmlns:p='u'/>", "xmlns:p", "u"), "<p:a xmlns:p=\"u\"/>");
  EXPECT_EQ(after("<p:a xmlns:p='u'/>", "xmlns", "v"), "<p:a xmlns:p=\"u\" xmlns=\"v\"/>");
  EXPECT_EQ(after("<a xmlns='u'/>", "xmlns", "u"), "<a xmlns=\"u\"/>");
}

TEST_F(XmlNamesOfElement, DeclarationsThatWouldRenameAreRefused) {
  const std::string reason = " cannot be declared as prefix here: names would change";
  EXPECT_EQ(after("<a/>", "xmlns", "u"), "refused: ''" + reason);
  EXPECT_EQ(after("<a xmlns='u'/>", "xmlns", "v"), "refused: ''" + reason);
  EXPECT_EQ(after("<p:a xmlns:p='u'/>", "xmlns:p", "v"), "refused: 'p'" + reason);
  EXPECT_EQ(after("<a><b/></a>", "xmlns:p", "u"), "refused: 'p'" + reason);
  EXPECT_EQ(after("<a b='1'/>", "xmlns:p", "u"), "refused: 'p'" + reason);
  EXPECT_EQ(after("<a/>", "xmlns:p", ""), "refused: 'p' is no prefix to declare");
  EXPECT_EQ(after("<a/>", "xmlns:xml", "u"), "refused: 'xml' is no prefix to declare");
  EXPECT_EQ(after("<a/>", "xmlns:xmlns", "u"), "refused: 'xmlns' is no prefix to declare");
}

TEST_F(XmlNamesOfElement, ANewElementDeclaresItsNameSpace) {
  const auto written = [this](const char* name, const char* nameSpace) {
    document_.reset(xmlNewDoc(nullptr));
    xmlNode* element = newElement(document_.get(), name, nameSpace);
    std::string text = toXml(element);
    xmlFreeNode(element);
    return text;
  };
  EXPECT_EQ(written("a", ""), "<a/>");
  EXPECT_EQ(written("a", "u"), "<a xmlns=\"u\"/>");
  EXPECT_EQ(written("p:a", "u"), "<p:a xmlns:p=\"u\"/>");
  for (const char* name : {"p:a", "xml:a", "xmlns:a", "1"}) {
    EXPECT_THROW(written(name, ""), RuntimeFailure) << name;
  }
  EXPECT_THROW(written("xml:a", "u"), RuntimeFailure);
  EXPECT_THROW(written("p:a", "\x02"), RuntimeFailure);
}

TEST_F(XmlNamesOfElement, NamesAreToldWithTheirPrefix) {
  const xmlNode* element = load("<p:a xmlns:p='u' xmlns='v' p:b='1' c='2'><d/></p:a>");
  EXPECT_EQ(qualifiedName(element->ns, element->name), "p:a");
  EXPECT_EQ(qualifiedName(element->properties->ns, element->properties->name), "p:b");
  EXPECT_EQ(qualifiedName(element->properties->next->ns, element->properties->next->name), "c");
  EXPECT_EQ(qualifiedName(element->children->ns, element->children->name), "d");
  EXPECT_EQ(declarationName(*element->nsDef), "xmlns:p");
  EXPECT_EQ(declarationName(*element->nsDef->next), "xmlns");
}

TEST_F(XmlNamesOfElement, AValueOfSeveralPiecesIsReplacedWhole) {
  xmlNode* element = load("<!DOCTYPE a [<!ENTITY e 'two'><!ATTLIST a id ID #IMPLIED>]><a b='1&e;3' id='x'/>");
  setAttributeValue(element->properties, "4");
  setAttributeValue(element->properties->next, "y");
  EXPECT_EQ(toXml(element), "<a b=\"4\" id=\"y\"/>");
  EXPECT_EQ(xmlGetID(document_.get(), reinterpret_cast<const xmlChar*>("x")), nullptr);
}

}  // namespace
}  // namespace vlclientui::platform
