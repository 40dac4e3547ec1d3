#include <string>

#include "contracts/RuntimeFailure.h"
#include "platform/XmlTestDocument.h"

namespace vlclientui::platform {
namespace {

constexpr const char* providers =
    "<r><ServiceProvider "
    "n='0'><Services><Service>a</Service><Service>b</Service></Services></ServiceProvider>"
    "<Other/><ServiceProvider n='1'><Services><Service>c</Service></Services></ServiceProvider></r>";

std::string joined(const std::vector<XmlNodePtr>& nodes) {
  std::string result;
  for (const XmlNodePtr& node : nodes) result += node->text() + ";";
  return result;
}

std::string selected(const char* path) { return joined(parsed(providers)->selectNodes(path)); }

TEST(XmlPath, FindsByPathFromRootAndFromAnywhere) {
  EXPECT_EQ(selected("/r/ServiceProvider/Services/Service"), "a;b;c;");
  EXPECT_EQ(selected("//Service"), "a;b;c;");
  EXPECT_EQ(selected("//Services/Service"), "a;b;c;");
  EXPECT_EQ(selected("//r/*/Services"), "ab;c;");
  EXPECT_EQ(selected("r/ServiceProvider/@n"), "0;1;");
  EXPECT_EQ(selected("//ServiceProvider/@n"), "0;1;");
}

TEST(XmlPath, IndexesCountFromZeroPerParent) {
  EXPECT_EQ(selected("//ServiceProvider[0]/Services"), "ab;");
  EXPECT_EQ(selected("//ServiceProvider[1]/Services"), "c;");
  EXPECT_EQ(selected("//ServiceProvider[2]/Services"), "");
  EXPECT_EQ(selected("//Service[0]"), "a;c;");
  EXPECT_EQ(selected("/r/ServiceProvider[0]/Services[0]/Service[1]"), "b;");
  EXPECT_EQ(selected("//*[1]"), "b;;");
  EXPECT_EQ(selected("/r/*[2]"), "c;");
}

TEST(XmlPath, IndexesCountFromZeroInPathsOfAnyShape) {
  EXPECT_EQ(selected("//Service[ 0 ][text()='c']"), "c;");
  EXPECT_EQ(selected("(//Service)[2]"), "c;");
  EXPECT_EQ(selected("descendant::Service[1]"), "b;");
  EXPECT_EQ(selected("//Service[position()=1]"), "a;c;");
  EXPECT_EQ(selected("//ServiceProvider[Services/Service[1]]/@n"), "0;");
  EXPECT_EQ(selected("//Service[last()]"), "b;c;");
}

TEST(XmlPath, NumbersInQuotesAreNoIndexes) {
  const auto document = parsed("<r><a>[0]</a><b>x'[1]</b></r>");
  EXPECT_EQ(joined(document->selectNodes("//a[.='[0]'][0]")), "[0];");
  EXPECT_EQ(joined(document->selectNodes("//*[.=\"x'[1]\"]")), "x'[1];");
}

TEST(XmlPath, FirstOfSeveralIsTheFirstInTheDocument) {
  const auto document = parsed("<a><a><b>1</b></a><b>2</b><c/><b>3</b></a>");
  EXPECT_EQ(joined(document->selectNodes("//a/b")), "1;2;3;");
  EXPECT_EQ(document->selectSingleNode("//a/b")->text(), "1");
  EXPECT_EQ(joined(document->selectNodes("//a/b[0]")), "1;2;");
  EXPECT_EQ(joined(document->selectNodes("//a/b[1]")), "3;");
  EXPECT_EQ(joined(document->selectNodes("//b[1] | //a/a/b")), "1;3;");
}

TEST(XmlPath, NamesAreCaseSensitive) {
  EXPECT_EQ(selected("//service"), "");
  EXPECT_EQ(parsed(providers)->selectSingleNode("//SERVICE"), nullptr);
}

TEST(XmlPath, AMissingNodeIsNothing) {
  EXPECT_EQ(emptyDocument()->selectSingleNode("//a"), nullptr);
  EXPECT_TRUE(emptyDocument()->selectNodes("//a | //b").empty());
  EXPECT_EQ(parsed(providers)->selectSingleNode("/Service"), nullptr);
  EXPECT_EQ(parsed(providers)->selectSingleNode("r/ServiceProvider/@missing"), nullptr);
}

TEST(XmlPath, APathWithoutSlashesStartsAtTheNode) {
  const auto document = parsed(providers);
  const XmlNodePtr second = document->selectSingleNode("//ServiceProvider[1]");
  EXPECT_EQ(joined(second->selectNodes("Services/Service")), "c;");
  EXPECT_EQ(joined(second->selectNodes("./Services")), "c;");
  EXPECT_EQ(joined(second->selectNodes(".//Service")), "c;");
  EXPECT_EQ(joined(second->selectNodes(".//ServiceProvider")), "");
  EXPECT_EQ(joined(second->selectNodes("@n")), "1;");
  EXPECT_EQ(joined(second->selectNodes("//Service")), "a;b;c;");
  EXPECT_EQ(joined(second->selectNodes("../Other")), ";");
  EXPECT_TRUE(second->selectSingleNode(".")->isSameNode(*second));
}

TEST(XmlPath, NamesInADefaultNameSpaceAreNotFoundWithoutOne) {
  const auto document = parsed("<a xmlns='u'><b/></a>");
  EXPECT_EQ(document->selectSingleNode("//b"), nullptr);
  EXPECT_EQ(document->selectSingleNode("/a/b"), nullptr);
  EXPECT_NE(document->selectSingleNode("//*[local-name()='b']"), nullptr);
  EXPECT_NE(document->selectSingleNode("/*/*"), nullptr);
}

TEST(XmlPath, WhatIsNoPathToNodesFails) {
  const auto document = parsed("<a/>");
  for (const char* path :
       {"", "/a/", "//", "a[", "a b", "p:a", "count(//a)", "'x'", "1+", "a//", "//@", "[0]"}) {
    EXPECT_THROW((void)document->selectNodes(path), RuntimeFailure) << path;
    EXPECT_THROW((void)document->selectSingleNode(path), RuntimeFailure) << path;
  }
  EXPECT_THROW((void)document->selectNodes(std::string_view("a\0b", 3)), RuntimeFailure);
  EXPECT_NE(document->selectSingleNode("//a"), nullptr);
}

TEST(XmlPath, ATreeTakenOutIsItsOwnRoot) {
  const auto document = parsed("<r><a><b>1</b></a><b>2</b></r>");
  const XmlNodePtr taken = document->documentElement()->removeChild(document->selectSingleNode("/r/a"));
  for (const char* path : {"//b", "/a/b", "//b[text()]", "/descendant::b", "//a/b"}) {
    EXPECT_EQ(joined(taken->selectNodes(path)), "1;") << path;
  }
  EXPECT_TRUE(taken->selectNodes("/r").empty());
  EXPECT_EQ(taken->parentNode(), nullptr);
  EXPECT_EQ(joined(document->selectNodes("//b")), "2;");
}

TEST(XmlPath, ManyDifferentPathsAreAnsweredAlike) {
  const auto document = parsed(providers);
  for (int round = 0; round < 2; ++round) {
    for (int index = 0; index < 600; ++index) {
      const std::string path = "(//Service)[" + std::to_string(index) + "]";
      EXPECT_EQ(document->selectNodes(path).size(), index < 3 ? 1U : 0U);
    }
  }
}

}  // namespace
}  // namespace vlclientui::platform
