#include <string>

#include "contracts/RuntimeFailure.h"
#include "platform/XmlTestDocument.h"

namespace vlclientui::platform {
namespace {

using namespace std::string_literals;

std::string textOf(std::string_view xml) { return parsed(xml)->documentElement()->text(); }

TEST(XmlNode, TextIsTrimmedAtItsEndsOnly) {
  EXPECT_EQ(textOf("<a> \r\n x  y\t</a>"), "x  y");
  EXPECT_EQ(textOf("<a> x <b> y </b> z </a>"), "x  y  z");
  EXPECT_EQ(textOf("<a/>"), "");
  EXPECT_EQ(textOf("<a>&#32;x&#10;</a>"), "x");
}

TEST(XmlNode, TextLeavesCommentsAndInstructionsOut) {
  EXPECT_EQ(textOf("<a>x<!-- no -->y<?no no?>z</a>"), "xyz");
}

TEST(XmlNode, TextTakesCDataAsItIs) {
  EXPECT_EQ(textOf("<a> <![CDATA[ <x> &amp; ]]> </a>"), " <x> &amp; ");
  EXPECT_EQ(textOf("<a> x <![CDATA[]]> </a>"), "x");
}

TEST(XmlNode, LineEndsOfTextAreLineFeeds) {
  EXPECT_EQ(textOf("<a>x\r\ny\rz\nw</a>"), "x\ny\nz\nw");
  EXPECT_EQ(textOf("<a>x&#13;&#10;y</a>"), "x\ny");
  EXPECT_EQ(textOf("<a><![CDATA[x\r\ny]]></a>"), "x\ny");
}

TEST(XmlNode, WritesAsThisServiceWrites) {
  EXPECT_EQ(rewritten("<a></a>"), "<a/>");
  EXPECT_EQ(rewritten("<a b='1' c=\"2\"></a>"), "<a b=\"1\" c=\"2\"/>");
  EXPECT_EQ(rewritten("<a b='\"&gt;&lt;&amp;&apos;'>\"'&gt;&lt;&amp;</a>"),
            "<a b=\"&quot;&gt;&lt;&amp;'\">\"'&gt;&lt;&amp;</a>");
  EXPECT_EQ(rewritten("<a>x<![CDATA[<]]>y</a>"), "<a>x<![CDATA[<]]>y</a>");
  EXPECT_EQ(rewritten("<a b='&#9;&#10;&#13;'>x&#13;y</a>"), "<a b=\"&#9;&#10;&#13;\">x&#13;y</a>");
  EXPECT_EQ(rewritten("<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\x8D</a>"),
            "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\x8D</a>");
}

TEST(XmlNode, WhatIsWrittenIsReadTheSame) {
  for (const char* text :
       {"<a><b c='x y'>1 &lt; 2 &amp; 3 &gt; \"2\"</b><!-- c --><d><![CDATA[]] ]]></d></a>",
        "<p:a xmlns:p='u' xmlns='v'><b p:c='1'/><d xmlns=''/></p:a>",
        "<?p?><a>x<b/>y<c>&#13;</c></a><?q r?>"}) {
    const std::string once = rewritten(text);
    EXPECT_EQ(rewritten(once), once);
  }
}

TEST(XmlNode, SetTextReplacesAllChildren) {
  const auto document = parsed("<a>x<b><c/></b></a>");
  const XmlNodePtr kept = document->selectSingleNode("//c");
  document->documentElement()->setText("1 < \"2\" & ]]> 3");
  EXPECT_EQ(document->xml(), "<a>1 &lt; \"2\" &amp; ]]&gt; 3</a>");
  EXPECT_EQ(kept->xml(), "<c/>");
  EXPECT_EQ(kept->parentNode()->name(), "b");
  document->documentElement()->setText("");
  EXPECT_EQ(document->xml(), "<a/>");
}

TEST(XmlNode, SetTextKeepsBlanksAndMakesLineEndsPlain) {
  const auto document = parsed("<a/>");
  document->documentElement()->setText(" x\r\ny ");
  EXPECT_EQ(document->xml(), "<a> x\ny </a>");
  EXPECT_EQ(document->documentElement()->text(), "x\ny");
}

TEST(XmlNode, TextThatXmlCannotHoldIsRefused) {
  const auto document = parsed("<a b='1'>x</a>");
  const XmlNodePtr root = document->documentElement();
  for (const std::string& text : {"\0"s, "\x01"s, "\xFF"s, "\xEF\xBF\xBF"s}) {
    EXPECT_THROW(root->setText(text), RuntimeFailure);
    EXPECT_THROW(root->setAttribute("b", text), RuntimeFailure);
  }
  EXPECT_EQ(document->xml(), "<a b=\"1\">x</a>");
}

TEST(XmlNode, TellsKindsAndNames) {
  const auto document = parsed("<p:a xmlns:p='u' p:b='1'>x<![CDATA[y]]><!--z--><?w v?></p:a>");
  const XmlNodePtr root = document->documentElement();
  EXPECT_EQ(root->kind(), XmlNodeKind::Element);
  EXPECT_EQ(root->name(), "p:a");
  const auto children = root->childNodes();
  ASSERT_EQ(children.size(), 4U);
  EXPECT_EQ(root->childCount(), 4U);
  EXPECT_EQ(children[0]->kind(), XmlNodeKind::Text);
  EXPECT_EQ(children[0]->name(), "#text");
  EXPECT_EQ(children[1]->kind(), XmlNodeKind::CData);
  EXPECT_EQ(children[1]->name(), "#cdata-section");
  EXPECT_EQ(children[2]->kind(), XmlNodeKind::Comment);
  EXPECT_EQ(children[2]->name(), "#comment");
  EXPECT_EQ(children[2]->text(), "z");
  EXPECT_EQ(children[3]->kind(), XmlNodeKind::ProcessingInstruction);
  EXPECT_EQ(children[3]->name(), "w");
  EXPECT_EQ(root->parentNode()->kind(), XmlNodeKind::Document);
  EXPECT_EQ(root->parentNode()->name(), "#document");
  const XmlNodePtr attribute = root->selectSingleNode("@*");
  EXPECT_EQ(attribute->kind(), XmlNodeKind::Attribute);
  EXPECT_EQ(attribute->name(), "p:b");
  EXPECT_EQ(attribute->xml(), "p:b=\"1\"");
}

TEST(XmlNode, AttributesAreReadAddedAndReplaced) {
  const auto document = parsed("<a x='1' y=' 2 '/>");
  const XmlNodePtr root = document->documentElement();
  EXPECT_EQ(root->getNamedItem("x"), "1");
  EXPECT_EQ(root->getNamedItem("y"), " 2 ");
  EXPECT_EQ(root->getNamedItem("X"), std::nullopt);
  root->setAttribute("x", "<\"&>\n");
  root->setAttribute("z", "");
  EXPECT_EQ(root->xml(), "<a x=\"&lt;&quot;&amp;&gt;&#10;\" y=\" 2 \" z=\"\"/>");
  EXPECT_EQ(root->getNamedItem("x"), "<\"&>\n");
  EXPECT_EQ(root->getNamedItem("z"), "");
  EXPECT_EQ(root->attributes().size(), 3U);
  root->selectSingleNode("@x")->setText("new");
  EXPECT_EQ(root->getNamedItem("x"), "new");
  EXPECT_TRUE(document->childNodes().front()->attributes()[0].first == "x");
}

TEST(XmlNode, AttributesInNameSpacesNeedTheirDeclaration) {
  const auto document = parsed("<a/>");
  const XmlNodePtr root = document->documentElement();
  EXPECT_THROW(root->setAttribute("p:x", "1"), RuntimeFailure);
  root->setAttribute("xmlns:p", "u");
  root->setAttribute("p:x", "1");
  root->setAttribute("xml:lang", "en");
  EXPECT_EQ(root->xml(), "<a xmlns:p=\"u\" p:x=\"1\" xml:lang=\"en\"/>");
  EXPECT_THROW(root->setAttribute("xmlns:p", "v"), RuntimeFailure);
  EXPECT_THROW(root->setAttribute("xmlns", "v"), RuntimeFailure);
  EXPECT_EQ(rewritten(root->xml()), root->xml());
}

TEST(XmlNode, IllegalNamesAreRefused) {
  const auto document = parsed("<a/>");
  for (const char* name :
       {"", " ", "1", "a b", "-a", "<", "a/b", "a:", ":a", "a:b:c", "p:a", "a\x01", "\xFF", "xml:a"}) {
    EXPECT_THROW((void)document->createElement(name), RuntimeFailure) << name;
    EXPECT_THROW((void)document->createNode(XmlNodeKind::Element, name, ""), RuntimeFailure) << name;
  }
  for (const char* name : {"", "1", "a b", "a:b:c"}) {
    EXPECT_THROW(document->documentElement()->setAttribute(name, "x"), RuntimeFailure) << name;
  }
  EXPECT_THROW((void)document->createElement("a\0b"s), RuntimeFailure);
  EXPECT_THROW((void)document->createNode(XmlNodeKind::ProcessingInstruction, "XML", ""), RuntimeFailure);
  EXPECT_EQ(document->createElement("\xC3\x84pfel_1.x-y")->xml(), "<\xC3\x84pfel_1.x-y/>");
}

TEST(XmlNode, NamesAreThoseThatTheParserReads) {
  const auto document = parsed("<a/>");
  for (const std::string name : {"\u0219ir", "\U0001F5FA", "a\u0301", "\u5730\u56FE", "\u0661"}) {
    EXPECT_EQ(document->createElement(name)->xml(), "<" + name + "/>");
    EXPECT_EQ(parsed("<" + name + "/>")->documentElement()->name(), name);
  }
  for (const std::string name : {"a\u2013b", "\u0301a", "a\u00A0b", "\u00D7", "a\uFFFE"}) {
    EXPECT_THROW((void)document->createElement(name), RuntimeFailure) << name;
    EXPECT_FALSE(LibXmlService(PathTranslation("/")).createDocument()->loadXml("<" + name + "/>")) << name;
  }
}

TEST(XmlNode, NodesOfEveryKindAreCreated) {
  const auto document = parsed("<a/>");
  const XmlNodePtr root = document->documentElement();
  const auto add = [&](XmlNodeKind kind, const char* name, const char* nameSpace, const char* text) {
    root->appendChild(document->createNode(kind, name, nameSpace))->setText(text);
  };
  add(XmlNodeKind::Element, "b", "", "1");
  add(XmlNodeKind::Element, "p:c", "u", "2");
  add(XmlNodeKind::Element, "d", "v", "3");
  add(XmlNodeKind::Text, "", "", "<");
  add(XmlNodeKind::CData, "", "", "x]]>y");
  add(XmlNodeKind::Comment, "", "", "c");
  add(XmlNodeKind::ProcessingInstruction, "pi", "", "e");
  EXPECT_EQ(document->xml(),
            "<a><b>1</b><p:c xmlns:p=\"u\">2</p:c><d xmlns=\"v\">3</d>&lt;<![CDATA[x]]]]><![CDATA[>y]]>"
            "<!--c--><?pi e?></a>");
  EXPECT_THROW((void)document->createNode(XmlNodeKind::Document, "", ""), RuntimeFailure);
  EXPECT_THROW(root->appendChild(document->createNode(XmlNodeKind::Attribute, "x", "")), RuntimeFailure);
  EXPECT_THROW(document->createNode(XmlNodeKind::Comment, "", "")->setText("a--b"), RuntimeFailure);
}

TEST(XmlNode, AppendedTextsStayNodesOfTheirOwn) {
  const auto document = parsed("<a>x</a>");
  const XmlNodePtr text = document->createNode(XmlNodeKind::Text, "", "");
  text->setText("y");
  document->documentElement()->appendChild(text);
  EXPECT_EQ(document->documentElement()->childCount(), 2U);
  EXPECT_EQ(document->documentElement()->text(), "xy");
  text->setText("z");
  EXPECT_EQ(document->xml(), "<a>xz</a>");
}

TEST(XmlNode, AppendingMovesWithinTheDocument) {
  const auto document = parsed("<a><b/><c/></a>");
  const XmlNodePtr moved = document->selectSingleNode("//b");
  EXPECT_TRUE(document->selectSingleNode("//c")->appendChild(moved)->isSameNode(*moved));
  EXPECT_EQ(document->xml(), "<a><c><b/></c></a>");
  document->documentElement()->appendChild(moved);
  document->documentElement()->appendChild(moved);
  EXPECT_EQ(document->xml(), "<a><c/><b/></a>");
}

TEST(XmlNode, ANodeOfAnotherDocumentIsMoved) {
  const auto target = parsed("<t/>");
  const auto source = parsed("<s><x id='1'><y>text</y></x><z/></s>");
  const XmlNodePtr inner = source->selectSingleNode("//y");
  target->documentElement()->appendChild(source->selectSingleNode("//x"));
  EXPECT_EQ(source->xml(), "<s><z/></s>");
  EXPECT_EQ(target->xml(), "<t><x id=\"1\"><y>text</y></x></t>");
  EXPECT_TRUE(inner->isSameNode(*target->selectSingleNode("/t/x/y")));
  EXPECT_EQ(inner->parentNode()->parentNode()->name(), "t");
}

TEST(XmlNode, MovedNodesOutliveEitherDocument) {
  XmlNodePtr moved, inner, left;
  {
    auto target = parsed("<t/>");
    {
      auto source = parsed("<s xml:lang='en'><x xml:lang='de' y='1'><y>text</y></x><z/></s>");
      moved = source->selectSingleNode("//x");
      inner = source->selectSingleNode("//x/@y");
      left = source->selectSingleNode("//z");
      target->documentElement()->appendChild(moved);
    }
    EXPECT_EQ(target->xml(), "<t><x xml:lang=\"de\" y=\"1\"><y>text</y></x></t>");
  }
  EXPECT_EQ(moved->parentNode()->xml(), "<t><x xml:lang=\"de\" y=\"1\"><y>text</y></x></t>");
  EXPECT_EQ(left->parentNode()->xml(), "<s xml:lang=\"en\"><z/></s>");
  moved.reset();
  EXPECT_EQ(inner->text(), "1");
}

TEST(XmlNode, ATreeMovesAfterItsDocumentAndAllOtherHandlesAreGone) {
  const auto target = parsed("<t/>");
  XmlNodePtr lone = parsed("<s><x/></s>")->selectSingleNode("//x");
  target->documentElement()->appendChild(std::move(lone));
  EXPECT_EQ(target->xml(), "<t><x/></t>");
}

TEST(XmlNode, ADocumentElementMovesIntoAnEmptyDocument) {
  const auto source = parsed("<a><b/></a>");
  const auto target = emptyDocument();
  target->appendChild(source->documentElement());
  EXPECT_EQ(target->xml(), "<a><b/></a>");
  EXPECT_EQ(source->xml(), "");
  EXPECT_EQ(source->documentElement(), nullptr);
  EXPECT_THROW(target->appendChild(target->createElement("c")), RuntimeFailure);
  EXPECT_THROW(target->appendChild(target->createNode(XmlNodeKind::Text, "", "")), RuntimeFailure);
  EXPECT_NO_THROW(target->appendChild(target->createNode(XmlNodeKind::Comment, "", "")));
}

TEST(XmlNode, NameSpacesGoAlongWithWhatUsesThem) {
  const auto source = parsed("<p:s xmlns:p='u' xmlns='v'><x p:a='1'><p:y/></x></p:s>");
  const auto target = parsed("<t xmlns='w'/>");
  const XmlNodePtr moved = source->documentElement()->firstChild();
  target->documentElement()->appendChild(moved);
  EXPECT_EQ(target->xml(), "<t xmlns=\"w\"><x xmlns=\"v\" xmlns:p=\"u\" p:a=\"1\"><p:y/></x></t>");
  (void)source->loadXml("<other/>");
  EXPECT_EQ(moved->xml(), "<x xmlns=\"v\" xmlns:p=\"u\" p:a=\"1\"><p:y/></x>");
}

TEST(XmlNode, NamesInNoNameSpaceStayOutOfADefaultOne) {
  const auto document = parsed("<a xmlns='u'/>");
  document->documentElement()->appendChild(document->createElement("b"));
  EXPECT_EQ(document->xml(), "<a xmlns=\"u\"><b xmlns=\"\"/></a>");
  EXPECT_EQ(rewritten(document->xml()), document->xml());
}

TEST(XmlNode, XmlOfAnInnerNodeStandsAlone) {
  const auto document = parsed("<p:a xmlns:p='u' xmlns:q='unused' xmlns='v'><b><p:c/></b></p:a>");
  EXPECT_EQ(document->selectSingleNode("//*[local-name()='b']")->xml(),
            "<b xmlns=\"v\" xmlns:p=\"u\"><p:c/></b>");
}

TEST(XmlNode, ImpossiblePlacesAreRefused) {
  const auto document = parsed("<a b='1'>x<c/></a>");
  const XmlNodePtr root = document->documentElement();
  const XmlNodePtr inner = document->selectSingleNode("//c");
  EXPECT_THROW(root->appendChild(nullptr), RuntimeFailure);
  EXPECT_THROW(root->appendChild(root), RuntimeFailure);
  EXPECT_THROW(inner->appendChild(root), RuntimeFailure);
  EXPECT_THROW(root->firstChild()->appendChild(inner), RuntimeFailure);
  EXPECT_THROW(root->selectSingleNode("@b")->appendChild(inner), RuntimeFailure);
  EXPECT_THROW(inner->appendChild(root->parentNode()), RuntimeFailure);
  EXPECT_THROW(root->firstChild()->setAttribute("a", "b"), RuntimeFailure);
  EXPECT_THROW(root->parentNode()->setText("x"), RuntimeFailure);
  EXPECT_EQ(document->xml(), "<a b=\"1\">x<c/></a>");
}

TEST(XmlNode, RemovedChildrenLiveOnAndOthersAreNoChildren) {
  const auto document = parsed("<a b='1'><c>x<d/></c></a>");
  const XmlNodePtr root = document->documentElement();
  const XmlNodePtr child = root->firstChild();
  EXPECT_THROW(root->removeChild(document->selectSingleNode("//d")), RuntimeFailure);
  EXPECT_THROW(root->removeChild(root->selectSingleNode("@b")), RuntimeFailure);
  EXPECT_THROW(root->removeChild(nullptr), RuntimeFailure);
  EXPECT_TRUE(root->removeChild(child)->isSameNode(*child));
  EXPECT_THROW(root->removeChild(child), RuntimeFailure);
  EXPECT_EQ(document->xml(), "<a b=\"1\"/>");
  EXPECT_EQ(child->xml(), "<c>x<d/></c>");
  EXPECT_EQ(child->parentNode(), nullptr);
}

TEST(XmlNode, DeepTreesBuiltByHandAreWrittenReadAndFreed) {
  constexpr int depth = 100000;
  const auto other = parsed("<o/>");
  {
    const auto document = emptyDocument();
    XmlNodePtr top = document->createElement("a");
    top->setText("x");
    for (int level = 0; level < depth; ++level) {
      XmlNodePtr parent = document->createElement("a");
      parent->appendChild(top);
      top = parent;
    }
    other->documentElement()->appendChild(top);
  }
  EXPECT_EQ(other->documentElement()->text(), "x");
  EXPECT_EQ(other->selectNodes("//a").size(), static_cast<std::size_t>(depth) + 1);
  EXPECT_EQ(other->xml().substr(0, 6), "<o><a>");
}

TEST(XmlNode, HandlesOfOneNodeAreTheSameNode) {
  const auto document = parsed("<a><b/><b/></a>");
  const XmlNodePtr first = document->selectSingleNode("//b[0]");
  EXPECT_TRUE(first->isSameNode(*document->documentElement()->firstChild()));
  EXPECT_FALSE(first->isSameNode(*document->selectSingleNode("//b[1]")));
}

TEST(XmlNode, ANodeOutlivesItsDocument) {
  const XmlNodePtr node = parsed("<a><b>x</b></a>")->selectSingleNode("//b");
  EXPECT_EQ(node->text(), "x");
  EXPECT_EQ(node->parentNode()->xml(), "<a><b>x</b></a>");
}

}  // namespace
}  // namespace vlclientui::platform
