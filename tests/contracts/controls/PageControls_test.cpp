// Frames, tab strips, trees and report lists.

#include "contracts/controls/PageControls.h"

#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Page controls on a loaded form, each of whose clicks is counted.
class PageControls : public SampleFormTest {
 protected:
  PageControls() {
    tabs.click.connect([this] { ++tabClicks; });
    tree.nodeClick.connect([this] { ++nodeClicks; });
    report.click.connect([this] { ++rowClicks; });
    tree.addNode("", "service", "Service");
    tree.addNode("service", "image", "Image");
    tree.addNode("", "server", "Server");
    report.addRow({"Name", "value"});
    report.addRow({"Other", "value"});
  }

  int tabClicks = 0;
  int nodeClicks = 0;
  int rowClicks = 0;
  Frame frame{form, "frame", "Frame"};
  TabStrip tabs{form, "tabs", {"one", "two", "three"}};
  TreeView tree{form, "tree"};
  ReportList report{form, "report", {"Name", "Value"}};
};

class TabStrips : public PageControls {};
class TreeViews : public PageControls {};
class ReportLists : public PageControls {};

TEST_F(PageControls, OfAFrameTakeNoFocus) {
  frame.userFocuses();
  EXPECT_FALSE(frame.hasFocus());
  EXPECT_EQ(frame.caption(), "Frame");
  tabs.userFocuses();
  EXPECT_TRUE(tabs.hasFocus());
}

TEST_F(TabStrips, HaveTheirFirstTabSelectedToBeginWith) {
  EXPECT_EQ(tabs.selected(), 0U);
  EXPECT_EQ(tabs.selectedCaption(), "one");
}

TEST_F(TabStrips, RaiseNothingForAWrittenCaption) {
  tabs.setCaption(0, "first");
  tabs.setCaption(2, "last");
  EXPECT_THAT(tabs.captions(), ElementsAre("first", "two", "last"));
  EXPECT_EQ(tabClicks, 0);
}

TEST_F(PageControls, TellTheirViewsOfCaptionsAndMarksWrittenFromCode) {
  std::vector<Aspect> told;
  tabs.changed.connect([&](Aspect aspect) { told.push_back(aspect); });
  tree.changed.connect([&](Aspect aspect) { told.push_back(aspect); });
  tabs.setCaption(0, "first");
  tree.markSelected("image");
  EXPECT_THAT(told, ElementsAre(Aspect::Entries, Aspect::Selection));
}

TEST_F(TabStrips, RaiseNothingForARemovedTab) {
  tabs.userSelects(1);
  tabs.removeTab(1);
  tabs.removeTab(0);
  EXPECT_THAT(tabs.captions(), ElementsAre("three"));
  EXPECT_EQ(tabClicks, 1);
}

TEST_F(TabStrips, SelectTheirFirstTabWhenTheSelectedOneIsRemoved) {
  tabs.userSelects(2);
  tabs.removeTab(2);
  EXPECT_EQ(tabs.selectedCaption(), "one");
  tabs.removeTab(0);
  EXPECT_EQ(tabs.selectedCaption(), "two");
}

TEST_F(TabStrips, KeepTheSelectedTabSelectedWhenAnotherIsRemoved) {
  tabs.userSelects(1);
  tabs.removeTab(2);
  EXPECT_EQ(tabs.selectedCaption(), "two");
  tabs.removeTab(0);
  EXPECT_EQ(tabs.selectedCaption(), "two");
  EXPECT_EQ(tabs.selected(), 0U);
}

TEST_F(TabStrips, SelectNothingWhenNoTabIsLeft) {
  for (int i = 0; i < 3; ++i) tabs.removeTab(0);
  EXPECT_FALSE(tabs.selected().has_value());
  EXPECT_THROW(static_cast<void>(tabs.selectedCaption()), RuntimeFailure);
}

TEST_F(TabStrips, FailAtTabsThatDoNotExist) {
  EXPECT_THROW(tabs.setCaption(3, "x"), RuntimeFailure);
  EXPECT_THROW(tabs.removeTab(3), RuntimeFailure);
  EXPECT_EQ(tabs.count(), 3U);
}

TEST_F(TabStrips, RaiseTheClickAgainForTheTabAlreadySelected) {
  tabs.userSelects(1);
  tabs.userSelects(1);
  EXPECT_EQ(tabClicks, 2);
  EXPECT_EQ(tabs.selectedCaption(), "two");
}

TEST_F(TabStrips, IgnoreAPersonWhileDisabled) {
  tabs.setEnabled(false);
  tabs.userSelects(1);
  EXPECT_EQ(tabs.selected(), 0U);
  EXPECT_EQ(tabClicks, 0);
}

TEST_F(TreeViews, RaiseNothingForAMarkedNode) {
  tree.markSelected("image");
  tree.markSelected("image");
  EXPECT_EQ(tree.selectedKey(), "image");
  EXPECT_EQ(nodeClicks, 0);
}

TEST_F(TreeViews, RaiseTheNodeClickAtEachClickOfAPerson) {
  tree.userSelects("server");
  tree.userSelects("server");
  EXPECT_EQ(tree.selectedKey(), "server");
  EXPECT_EQ(nodeClicks, 2);
}

TEST_F(TreeViews, KeepTheirNodesInTheOrderOfTheirMaking) {
  std::vector<std::string> keys;
  for (const auto& node : tree.nodes()) keys.push_back(node.parentKey + ">" + node.key + ":" + node.text);
  EXPECT_THAT(keys, ElementsAre(">service:Service", "service>image:Image", ">server:Server"));
}

TEST_F(TreeViews, RefuseATakenKeyAndAParentThatIsNone) {
  EXPECT_THROW(tree.addNode("", "image", "again"), RuntimeFailure);
  EXPECT_THROW(tree.addNode("nowhere", "new", "text"), RuntimeFailure);
  EXPECT_THROW(tree.addNode("", "", "text"), RuntimeFailure);
  EXPECT_THROW(tree.markSelected("nowhere"), RuntimeFailure);
  EXPECT_EQ(tree.nodes().size(), 3U);
}

TEST_F(TreeViews, SelectNothingAfterClearing) {
  tree.userSelects("image");
  tree.clear();
  EXPECT_THAT(tree.nodes(), IsEmpty());
  EXPECT_EQ(tree.selectedKey(), "");
  EXPECT_EQ(nodeClicks, 1);
}

TEST_F(ReportLists, RaiseNothingForRowsAddedAndCleared) {
  report.addRow({"Third"});
  report.userSelects(2);
  report.clear();
  EXPECT_THAT(report.rows(), IsEmpty());
  EXPECT_FALSE(report.selected().has_value());
  EXPECT_EQ(rowClicks, 1);
}

TEST_F(ReportLists, RaiseTheClickAgainForTheRowAlreadySelected) {
  report.userSelects(1);
  report.userSelects(1);
  EXPECT_EQ(report.selected(), 1U);
  EXPECT_EQ(rowClicks, 2);
}

TEST_F(ReportLists, KeepTheirColumns) { EXPECT_THAT(report.columns(), ElementsAre("Name", "Value")); }

}  // namespace
}  // namespace vlclientui::test
