#include <string>

#include "platform/RandomXml.h"
#include "platform/SimpleXmlPath.h"
#include "platform/XmlPath.h"
#include "platform/XmlReader.h"
#include "platform/XmlTestDocument.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

// Two engines answer paths: one walks by hand, the other knows all of XPath. A path in parentheses means the
// same and goes to the second one.

std::string bothAnswers(const XmlNode& from, const std::string& path) {
  const auto byHand = from.selectNodes(path);
  const auto byEngine = from.selectNodes("(" + path + ")");
  if (byHand.size() != byEngine.size()) {
    return path + " gives " + std::to_string(byHand.size()) + " by hand, " + std::to_string(byEngine.size());
  }
  for (std::size_t i = 0; i < byHand.size(); ++i) {
    if (!byHand[i]->isSameNode(*byEngine[i])) return path + " differs at " + std::to_string(i);
  }
  const XmlNodePtr first = from.selectSingleNode(path);
  if (byHand.empty() != (first == nullptr)) return path + " alone and all do not agree";
  return byHand.empty() || first->isSameNode(*byHand.front()) ? "" : path + " has another first";
}

TEST(XmlPathEngines, AgreeOnPathsByChanceFromTheRoot) {
  RandomXml chance(7);
  std::size_t found = 0;
  for (int round = 0; round < 40; ++round) {
    const auto document = parsed(chance.document());
    const XmlNodePtr root = document->documentElement();
    for (int count = 0; count < 50; ++count) {
      const std::string path = chance.path();
      ASSERT_TRUE(SimpleXmlPath::parse(path).has_value()) << path;
      EXPECT_EQ(bothAnswers(*root, path), "") << document->xml();
      found += root->selectNodes(path).size();
    }
  }
  EXPECT_GT(found, 1000U);
}

TEST(XmlPathEngines, AgreeFromEveryNodeOfATree) {
  RandomXml chance(11);
  const auto document = parsed("<r>" + chance.document() + chance.document() + chance.document() + "</r>");
  for (const XmlNodePtr& node : document->selectNodes("//*")) {
    for (int count = 0; count < 20; ++count) EXPECT_EQ(bothAnswers(*node, chance.path()), "");
  }
}

TEST(XmlPathEngines, AgreeInATreeThatWasTakenOut) {
  RandomXml chance(13);
  const auto document = parsed("<r>" + chance.document() + chance.document() + "</r>");
  const XmlNodePtr root = document->documentElement();
  const XmlNodePtr taken = root->removeChild(root->firstChild());
  for (int count = 0; count < 100; ++count) EXPECT_EQ(bothAnswers(*taken, chance.path()), "");
}

TEST(XmlPathEngines, ThePlainOneTakesTheShapesThatCallersWrite) {
  for (const char* path :
       {"a", "/a", "//a", "./a", ".//a", "a/b", "*", "//*[3]", "a[0]/b[12]/@c", "/A_b-c.d/e", "_a"}) {
    EXPECT_TRUE(SimpleXmlPath::parse(path).has_value()) << path;
  }
}

TEST(XmlPathEngines, ThePlainOneLeavesAllElseToTheOther) {
  for (const char* path : {"",
                           "/",
                           "//",
                           ".",
                           "..",
                           "a/",
                           "/a//b",
                           "a[",
                           "a[]",
                           "a[1",
                           "a[x]",
                           "a[-1]",
                           "a[1][2]",
                           "a[1]b",
                           "@a",
                           "a/@b/c",
                           "a/@",
                           "a/@1",
                           "1a",
                           "-a",
                           ".a",
                           "p:a",
                           "a b",
                           "text()",
                           "a|b",
                           "(a)",
                           "a[@b]",
                           "\xC3\xA9",
                           "a[99999999999999999999999]"}) {
    EXPECT_FALSE(SimpleXmlPath::parse(path).has_value()) << path;
  }
}

TEST(XmlPathEngines, ThePlainOneTakesNoMoreThan32Steps) {
  std::string path = "a";
  for (int step = 1; step < 32; ++step) path += "/a";
  EXPECT_TRUE(SimpleXmlPath::parse(path).has_value());
  EXPECT_FALSE(SimpleXmlPath::parse(path + "/a").has_value());
  std::string open, close;
  for (int level = 0; level < 40; ++level) {
    open += "<a>";
    close += "</a>";
  }
  const auto document = parsed(open + "x" + close);
  EXPECT_EQ(document->selectNodes("/" + path).size(), 1U);
  EXPECT_EQ(document->selectNodes("/" + path + "/a").size(), 1U);
}

class XmlPathLimit : public testing::Test {
 protected:
  std::size_t found(const char* path, std::size_t limit) {
    return selectXmlNodes(reinterpret_cast<xmlNode*>(document_.get()), path, limit).size();
  }

  XmlDocPtr document_ = readXmlText("<r><a n='1'/><a n='2'><a n='3'/></a><a/></r>");
};

TEST_F(XmlPathLimit, StopsBothEngines) {
  for (const char* path : {"//a", "(//a)"}) {
    EXPECT_EQ(found(path, 1), 1U) << path;
    EXPECT_EQ(found(path, 3), 3U) << path;
    EXPECT_EQ(found(path, 4), 4U) << path;
    EXPECT_EQ(found(path, allXmlNodes), 4U) << path;
  }
  for (const char* path : {"/r/a", "(/r/a)", "//a/@n", "(//a/@n)"}) {
    EXPECT_EQ(found(path, 2), 2U) << path;
    EXPECT_EQ(found(path, 9), 3U) << path;
  }
}

TEST_F(XmlPathLimit, TheFirstOnesComeInTheOrderOfTheDocument) {
  for (const char* path : {"//a[@n]", "//a"}) {
    const auto nodes = selectXmlNodes(reinterpret_cast<xmlNode*>(document_.get()), path, 3);
    ASSERT_EQ(nodes.size(), 3U);
    EXPECT_EQ(nodes[2]->parent, nodes[1]) << path;
  }
}

TEST(XmlPathIndexes, AreCountedFromOneOnTheWayToTheEngine) {
  EXPECT_EQ(withIndexesFromOne("a[0]"), "a[1]");
  EXPECT_EQ(withIndexesFromOne("a[0]/b['[0]']"), "a[1]/b['[0]']");
  EXPECT_EQ(withIndexesFromOne("a[ 12 ]"), "a[13]");
  EXPECT_EQ(withIndexesFromOne("(//a)[3][0]"), "(//a)[4][1]");
  EXPECT_EQ(withIndexesFromOne("a[b[2]/@c=\"]\"][1]"), "a[b[3]/@c=\"]\"][2]");
}

TEST(XmlPathIndexes, OfOtherShapesStayAsTheyAre) {
  for (const char* path : {"a[1.0]", "a[-1]", "a[1+1]", "a[position()=1]", "a[last()]", "a[]", "a[1", "a", "",
                           "a['1']", "a[99999999999999999999999]", "a[0x1]"}) {
    EXPECT_EQ(withIndexesFromOne(path), path);
  }
}

}  // namespace
}  // namespace vlclientui::platform
