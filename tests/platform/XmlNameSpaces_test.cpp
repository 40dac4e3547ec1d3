#include "platform/XmlNameSpaces.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/XmlReader.h"
#include "platform/XmlTestDocument.h"
#include "platform/XmlWalk.h"
#include "platform/XmlWriter.h"

namespace vlclientui::platform {
namespace {

class ForeignNameSpaces : public testing::Test {
 protected:
  /// The first element of that local name.
  xmlNode* element(const char* text, std::string_view name) {
    document_ = readXmlText(text);
    auto* root = reinterpret_cast<xmlNode*>(document_.get());
    for (xmlNode* node = root; node != nullptr; node = nextInOrder(node, root)) {
      if (isElement(node) && view(node->name) == name) return node;
    }
    ADD_FAILURE() << "no element " << name;
    return nullptr;
  }

  std::string foreign(const char* text, std::string_view name) {
    std::string result;
    for (const xmlNs* each : foreignNameSpaces(element(text, name))) {
      result += std::string(view(each->prefix)) + "=" + std::string(view(each->href)) + ";";
    }
    return result;
  }

  /// The element by itself, taken out of its document.
  std::string takenOut(const char* text, std::string_view name) {
    xmlNode* node = element(text, name);
    declareForeignNameSpaces(node);
    xmlUnlinkNode(node);
    std::string result = toXml(node);
    xmlFreeNode(node);
    return result;
  }

  XmlDocPtr document_;
};

TEST_F(ForeignNameSpaces, AreThoseDeclaredAboveAndUsedBelow) {
  EXPECT_EQ(foreign("<a xmlns:p='u'><b><p:c/></b></a>", "b"), "p=u;");
  EXPECT_EQ(foreign("<a xmlns:p='u'><b p:c='1'/></a>", "b"), "p=u;");
  EXPECT_EQ(foreign("<a xmlns='u'><b/></a>", "b"), "=u;");
  EXPECT_EQ(foreign("<a xmlns:p='u'><p:b/></a>", "b"), "p=u;");
}

TEST_F(ForeignNameSpaces, AreToldOnceEachInTheOrderOfTheirUse) {
  EXPECT_EQ(foreign("<a xmlns:p='u' xmlns:q='v'><b><q:c/><p:d q:e=''/><q:f/></b></a>", "b"), "q=v;p=u;");
}

TEST_F(ForeignNameSpaces, AreNoneThatTheSubtreeDeclaresItself) {
  EXPECT_EQ(foreign("<a><b xmlns:p='u'><p:c/></b></a>", "b"), "");
  EXPECT_EQ(foreign("<a xmlns:p='u'><b><p:c xmlns:p='v'/></b></a>", "b"), "");
  EXPECT_EQ(foreign("<a xmlns:p='u'><b/></a>", "b"), "");
  EXPECT_EQ(foreign("<a><b xml:lang='en'/></a>", "b"), "");
}

TEST_F(ForeignNameSpaces, AreDeclaredOnTheRootOfWhatLeaves) {
  EXPECT_EQ(takenOut("<a xmlns:p='u'><b><p:c/></b></a>", "b"), "<b xmlns:p=\"u\"><p:c/></b>");
  EXPECT_EQ(takenOut("<a xmlns='u'><b><c/></b></a>", "b"), "<b xmlns=\"u\"><c/></b>");
  EXPECT_EQ(takenOut("<a xmlns:p='u' xmlns:q='v'><p:b q:c='1'/></a>", "b"),
            "<p:b xmlns:p=\"u\" xmlns:q=\"v\" q:c=\"1\"/>");
}

TEST_F(ForeignNameSpaces, OfAnInnerDeclarationStayWithIt) {
  EXPECT_EQ(takenOut("<a xmlns:p='u'><p:b><c xmlns:p='v'><p:d/></c></p:b></a>", "b"),
            "<p:b xmlns:p=\"u\"><c xmlns:p=\"v\"><p:d/></c></p:b>");
}

TEST_F(ForeignNameSpaces, AreMetAgainInADeclarationOfTheSameKind) {
  EXPECT_EQ(takenOut("<a xmlns:p='u'><b><p:c/><p:d/></b></a>", "b"), "<b xmlns:p=\"u\"><p:c/><p:d/></b>");
}

TEST_F(ForeignNameSpaces, LeaveNothingOfThePlaceThatIsGone) {
  xmlNode* node = element("<a xmlns:p='u'><p:b p:c='1'><p:d/></p:b></a>", "b");
  declareForeignNameSpaces(node);
  xmlUnlinkNode(node);
  document_.reset(xmlNewDoc(nullptr));
  xmlSetTreeDoc(node, document_.get());
  xmlDocSetRootElement(document_.get(), node);
  EXPECT_TRUE(foreignNameSpaces(node).empty());
  EXPECT_EQ(toXml(node), "<p:b xmlns:p=\"u\" p:c=\"1\"><p:d/></p:b>");
}

class DefaultNameSpace : public ForeignNameSpaces {
 protected:
  /// The parent with a new element "n" appended.
  std::string withNew(const char* text, std::string_view parent, const char* nameSpace = nullptr) {
    xmlNode* place = element(text, parent);
    xmlNode* fresh = xmlNewDocNode(document_.get(), nullptr, xmlText("n"), nullptr);
    if (nameSpace != nullptr) xmlSetNs(fresh, xmlNewNs(fresh, xmlText(nameSpace), nullptr));
    shieldFromDefaultNameSpace(place, fresh);
    xmlAddChild(place, fresh);
    return toXml(place);
  }
};

TEST_F(DefaultNameSpace, IsSwitchedOffForWhatIsInNone) {
  EXPECT_EQ(withNew("<a xmlns='u'/>", "a"), "<a xmlns=\"u\"><n xmlns=\"\"/></a>");
  const auto again = parsed(withNew("<a xmlns='u'><b/></a>", "a"));
  EXPECT_NE(again->selectSingleNode("//n"), nullptr);
  EXPECT_EQ(again->selectSingleNode("//b"), nullptr);
}

TEST_F(DefaultNameSpace, IsLeftAloneWhereThereIsNone) {
  EXPECT_EQ(withNew("<a/>", "a"), "<a><n/></a>");
  EXPECT_EQ(withNew("<p:a xmlns:p='u'/>", "a"), "<p:a xmlns:p=\"u\"><n/></p:a>");
}

TEST_F(DefaultNameSpace, OfAnElementOfItsOwnStays) {
  EXPECT_EQ(withNew("<a xmlns='u'/>", "a", "v"), "<a xmlns=\"u\"><n xmlns=\"v\"/></a>");
}

TEST_F(DefaultNameSpace, ThatIsSwitchedOffNearbyIsNotSwitchedOffAgain) {
  EXPECT_EQ(withNew("<a xmlns='u'><b xmlns=''/></a>", "b"), "<b xmlns=\"\"><n/></b>");
}

TEST(NameSpacesOfMovedNodes, StayTheSameOverManyMoves) {
  const auto one = parsed("<a xmlns:p='u' xmlns='d'><p:b p:n='1'><c/></p:b></a>");
  const auto other = parsed("<x xmlns:p='other' xmlns='e'/>");
  XmlNodePtr node = one->documentElement()->firstChild();
  const std::string alone = node->xml();
  for (int move = 0; move < 5; ++move) {
    other->documentElement()->appendChild(node);
    EXPECT_EQ(node->selectNodes("self::*[namespace-uri()='u']").size(), 1U);
    EXPECT_EQ(node->selectNodes("*[namespace-uri()='d']").size(), 1U);
    EXPECT_EQ(node->selectNodes("@*[namespace-uri()='u']").size(), 1U);
    one->documentElement()->appendChild(node);
  }
  EXPECT_EQ(parsed(node->xml())->selectNodes("//*[namespace-uri()='u' or namespace-uri()='d']").size(), 2U);
  EXPECT_EQ(node->xml().size(), alone.size());
}

}  // namespace
}  // namespace vlclientui::platform
