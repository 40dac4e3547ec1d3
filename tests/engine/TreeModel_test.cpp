#include "engine/TreeModel.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "engine/Engine.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

using Direction = TreeModel::Direction;
using testing::ElementsAre;

std::shared_ptr<TreeModel> treeOf(const std::string& text) { return TreeModel::parse(*testXml(), text); }

/// All nodes in document order, as "name=value".
std::vector<std::string> allOf(TreeModel& tree, TreeModel::Node node = TreeModel::root) {
  std::vector<std::string> all{tree.name(node) + "=" + tree.value(node)};
  for (std::size_t index = 0; index < tree.childCount(node); ++index) {
    const auto below = allOf(tree, tree.child(node, index));
    all.insert(all.end(), below.begin(), below.end());
  }
  return all;
}

TEST(TreeModel, HoldsNamesValuesAndAttributesInDocumentOrder) {
  const auto tree = treeOf("<A x='1' y='2'><B>b</B><C z='3'/></A>");
  EXPECT_THAT(allOf(*tree), ElementsAre("A=", "x=1", "y=2", "B=b", "C=", "z=3"));
  const auto attribute = tree->child(TreeModel::root, 1);
  EXPECT_EQ(tree->kind(attribute), TreeModel::Kind::Attribute);
  EXPECT_EQ(tree->row(attribute), 1U);
  EXPECT_EQ(tree->parent(attribute), TreeModel::root);
  EXPECT_EQ(tree->parent(TreeModel::root), std::nullopt);
}

TEST(TreeModel, TextsAmongElementsAreNodesAndCommentsAreNone) {
  const auto tree = treeOf("<A>one<!-- no --><B/><![CDATA[<two>]]><?no no?></A>");
  EXPECT_THAT(allOf(*tree), ElementsAre("A=", "=one", "B=", "=<two>"));
  EXPECT_EQ(tree->kind(tree->child(TreeModel::root, 0)), TreeModel::Kind::Text);
}

TEST(TreeModel, AnElementWithTextOnlyHasAValueAndNoChildren) {
  const auto tree = treeOf("<A> one <!-- no -->two</A>");
  EXPECT_EQ(tree->value(TreeModel::root), "one two");
  EXPECT_EQ(tree->childCount(TreeModel::root), 0U);
}

TEST(TreeModel, OfATextThatIsNoXmlThereIsNone) {
  EXPECT_EQ(treeOf("<A>"), nullptr);
  EXPECT_EQ(treeOf(""), nullptr);
}

TEST(TreeModel, PathsCountWhereNamesStandSideBySide) {
  const auto tree = treeOf("<A><B/><C><B x='1'/>t<B/></C><B/></A>");
  const auto c = tree->child(TreeModel::root, 1);
  EXPECT_EQ(tree->path(TreeModel::root), "/A");
  EXPECT_EQ(tree->path(tree->child(TreeModel::root, 2)), "/A/B[2]");
  EXPECT_EQ(tree->path(tree->child(tree->child(c, 0), 0)), "/A/C/B[1]/@x");
  EXPECT_EQ(tree->path(tree->child(c, 1)), "/A/C/text()");
}

TEST(TreeModel, ASearchGoesRoundInBothDirectionsWhateverTheCase) {
  const auto tree = treeOf("<A><Band>x</Band><C n='BAND'/><D>a band</D></A>");
  const auto named = [&](std::optional<TreeModel::Node> node) {
    return node ? tree->name(*node) : std::string("none");
  };
  auto at = tree->find("band", TreeModel::root, Direction::Forward, true);
  EXPECT_EQ(named(at), "Band");
  at = tree->find("band", *at, Direction::Forward, false);
  EXPECT_EQ(named(at), "n");
  at = tree->find("BAND", *at, Direction::Forward, false);
  EXPECT_EQ(named(at), "D");
  at = tree->find("band", *at, Direction::Forward, false);
  EXPECT_EQ(named(at), "Band");
  at = tree->find("band", *at, Direction::Backward, false);
  EXPECT_EQ(named(at), "D");
  EXPECT_EQ(named(tree->find("band", *at, Direction::Forward, true)), "D");
  EXPECT_EQ(named(tree->find("", *at, Direction::Forward, true)), "none");
  EXPECT_EQ(named(tree->find("zz", *at, Direction::Backward, true)), "none");
}

TEST(TreeModel, ASearchWalksEveryNodeOnceInBothDirections) {
  const auto tree = treeOf("<n1 n2='x'><n3><n4/>n5</n3>n6<n7 n8='y'><n9>z</n9></n7><n10/></n1>");
  const auto walk = [&](Direction direction) {
    std::vector<TreeModel::Node> visited;
    auto at = tree->find("n", TreeModel::root, direction, true);
    do {
      visited.push_back(*at);
      at = tree->find("n", *at, direction, false);
    } while (*at != visited.front());
    return visited;
  };
  auto forward = walk(Direction::Forward);
  auto backward = walk(Direction::Backward);
  ASSERT_EQ(forward.size(), 10U);
  std::reverse(backward.begin() + 1, backward.end());
  EXPECT_EQ(forward, backward);
}

TEST(TreeModel, ASearchFindsTheOnlyNodeFromItselfAgain) {
  const auto tree = treeOf("<A><B/></A>");
  const auto b = tree->child(TreeModel::root, 0);
  EXPECT_EQ(tree->find("b", b, Direction::Forward, false), b);
  EXPECT_EQ(tree->find("b", b, Direction::Backward, false), b);
}

TEST(TreeModel, ChildrenStandSideBySideInTheirOrder) {
  const auto tree = treeOf("<A x='1'><B/><C><D/></C><E/></A>");
  for (std::size_t index = 0; index < tree->childCount(TreeModel::root); ++index) {
    const auto child = tree->child(TreeModel::root, index);
    EXPECT_EQ(tree->row(child), index);
    EXPECT_EQ(tree->parent(child), TreeModel::root);
  }
  EXPECT_EQ(tree->childCount(TreeModel::root), 4U);
}

TEST(TreeModel, ATextHasNoNameAndNoChildren) {
  const auto tree = treeOf("<A>one<B/></A>");
  const auto text = tree->child(TreeModel::root, 0);
  EXPECT_EQ(tree->kind(text), TreeModel::Kind::Text);
  EXPECT_EQ(tree->name(text), "");
  EXPECT_EQ(tree->childCount(text), 0U);
}

TEST(TreeModel, SeveralTextsOfOneElementCountInTheirPaths) {
  const auto tree = treeOf("<A>one<B/>two</A>");
  EXPECT_EQ(tree->path(tree->child(TreeModel::root, 0)), "/A/text()[1]");
  EXPECT_EQ(tree->path(tree->child(TreeModel::root, 2)), "/A/text()[2]");
}

TEST(TreeModel, OpensADeepDocumentStepByStep) {
  std::string text;
  for (int i = 0; i < 200; ++i) text += "<d" + std::to_string(i) + ">";
  for (int i = 199; i >= 0; --i) text += "</d" + std::to_string(i) + ">";
  const auto tree = treeOf(text);
  const auto last = tree->find("d199", TreeModel::root, Direction::Forward, false);
  ASSERT_TRUE(last);
  EXPECT_EQ(tree->childCount(*last), 0U);
  EXPECT_TRUE(tree->path(*last).ends_with("/d198/d199"));
}

/// The engine in tree display.
class EngineTree : public EngineTest {
 protected:
  bool showTree(const std::string& data) {
    engine->Visible(false);
    engine->Width(300);
    engine->Height(200);
    EXPECT_TRUE(engine->SetOption("treeviewdisplay", "True"));
    engine->ParentWindow(hostWindow);
    engine->Left(4215);
    engine->Top(5);
    EXPECT_TRUE(engine->SetOption("ShowVScrollBar", "False"));
    engine->DataXml(data);
    engine->Visible(true);
    return engine->Show();
  }
};

TEST_F(EngineTree, NeedsNoDefinitions) {
  ASSERT_TRUE(showTree("<ServerProcess/>"));
  EXPECT_EQ(surface().tree()->name(TreeModel::root), "ServerProcess");
  EXPECT_EQ(surface().geometry(), (PixelRectangle{4215, 5, 300, 200}));
  EXPECT_TRUE(surface().visible());
  EXPECT_FALSE(surface().title().starts_with("CHS"));
}

TEST_F(EngineTree, GivesItsDataBack) {
  ASSERT_TRUE(showTree("<A>\r\n<B/></A>"));
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), "<A>\r\n<B/></A>");
  EXPECT_EQ(engine->FindControl("@B"), nullptr);
}

TEST_F(EngineTree, IsNotShownForDataThatAreNoXmlOrWithoutAWindow) {
  EXPECT_FALSE(showTree("<A>"));
  engine = factory.createPlexa();
  ASSERT_TRUE(engine->SetOption("treeviewdisplay", "true"));
  engine->DataXml("<A/>");
  EXPECT_FALSE(engine->Show());
}

TEST_F(EngineTree, NewDataReplaceTheTreeAndBadOnesDoNot) {
  ASSERT_TRUE(showTree("<A/>"));
  engine->DataXml("<B/>");
  EXPECT_EQ(surface().tree()->name(TreeModel::root), "B");
  engine->DataXml("<B>");
  EXPECT_FALSE(engine->Commit());
  EXPECT_EQ(surface().tree()->name(TreeModel::root), "B");
}

TEST_F(EngineTree, TheOptionIsTrueOrFalse) {
  EXPECT_FALSE(engine->SetOption("treeviewdisplay", "yes"));
  EXPECT_TRUE(engine->SetOption("treeviewdisplay", "False"));
}

TEST_F(EngineTree, TheReadOnlyOptionAndTheScrollBarChangeNothingOfATree) {
  EXPECT_TRUE(engine->SetOption("readonly", "true"));
  ASSERT_TRUE(showTree("<A><B>1</B></A>"));
  EXPECT_EQ(surface().tree()->value(surface().tree()->child(TreeModel::root, 0)), "1");
}

TEST_F(EngineTree, AfterARefusedTreeTheResultIsTheDataAsSet) {
  ASSERT_TRUE(showTree("<A/>"));
  engine->DataXml("<B>");
  EXPECT_EQ(engine->GetResultXml(), "<B>");
  engine->DataXml("<C/>");
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), "<C/>");
}

}  // namespace
}  // namespace vlclientui::engine
