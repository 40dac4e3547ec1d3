#include "widgets/PageControlBindings.h"

#include <QGroupBox>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include "widgets/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PageControlBindings : public WidgetTest {
 protected:
  void fill() {
    form.afterLoad = [this] {
      controls().tree.addNode("", "service", "Service");
      controls().tree.addNode("service", "image", "Image");
      controls().report.addRow({"Width", "100"});
      controls().report.addRow({"Height", "50"});
    };
  }
  static void clickItem(QTreeWidget& tree, QTreeWidgetItem* item) {
    tree.scrollToItem(item);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(item).center());
  }
  void focus(const char* name) {
    widget(name).setFocus(Qt::TabFocusReason);
    takeLog();
  }
};

TEST_F(PageControlBindings, FrameShowsItsCaptionOnAGroupBox) {
  show([this] { EXPECT_EQ(widget<QGroupBox>("frame").title(), "Extents"); });
}

TEST_F(PageControlBindings, TabsMirrorCaptionsAndRemovalWithoutEvents) {
  show([this] {
    auto& tabs = widget<QTabBar>("tabs");
    controls().tabs.setCaption(1, "Other");
    controls().tabs.removeTab(0);
    ASSERT_EQ(tabs.count(), 2);
    EXPECT_EQ(tabs.tabText(0), "Other");
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(PageControlBindings, TabIsClickedOnceAlsoWhenItIsSelected) {
  show([this] {
    auto& tabs = widget<QTabBar>("tabs");
    focus("tabs");
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    EXPECT_THAT(takeLog(), ElementsAre("tab Second", "tab Second"));
    EXPECT_EQ(tabs.currentIndex(), 1);
  });
}

TEST_F(PageControlBindings, ArrowKeysChangeTheTab) {
  show([this] {
    focus("tabs");
    QTest::keyClick(&widget("tabs"), Qt::Key_Right);
    EXPECT_THAT(takeLog(), ElementsAre("tabs key 39/0", "tab Second"));
  });
}

TEST_F(PageControlBindings, TreeMirrorsNodesAndMarksWithoutEvents) {
  fill();
  show([this] {
    auto& tree = widget<QTreeWidget>("tree");
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_EQ(tree.topLevelItem(0)->child(0)->text(0), "Image");
    controls().tree.markSelected("image");
    EXPECT_EQ(tree.currentItem(), tree.topLevelItem(0)->child(0));
    controls().tree.clear();
    EXPECT_EQ(tree.topLevelItemCount(), 0);
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(PageControlBindings, NodeIsClickedOnceAlsoWhenItIsSelected) {
  fill();
  show([this] {
    auto& tree = widget<QTreeWidget>("tree");
    focus("tree");
    clickItem(tree, tree.topLevelItem(0)->child(0));
    clickItem(tree, tree.topLevelItem(0)->child(0));
    EXPECT_THAT(takeLog(), ElementsAre("node image", "node image"));
  });
}

TEST_F(PageControlBindings, ArrowKeysMoveToANode) {
  fill();
  show([this] {
    auto& tree = widget<QTreeWidget>("tree");
    clickItem(tree, tree.topLevelItem(0));
    takeLog();
    QTest::keyClick(&tree, Qt::Key_Down);
    EXPECT_THAT(takeLog(), ElementsAre("tree key 40/0", "node image"));
  });
}

TEST_F(PageControlBindings, ReportListShowsItsColumnsAndRows) {
  fill();
  show([this] {
    auto& report = widget<QTreeWidget>("report");
    EXPECT_EQ(report.headerItem()->text(1), "Value");
    ASSERT_EQ(report.topLevelItemCount(), 2);
    EXPECT_EQ(report.topLevelItem(1)->text(1), "50");
    controls().report.clear();
    EXPECT_EQ(report.topLevelItemCount(), 0);
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(PageControlBindings, RowOfAReportIsClickedOnceAlsoWhenItIsSelected) {
  fill();
  show([this] {
    auto& report = widget<QTreeWidget>("report");
    focus("report");
    clickItem(report, report.topLevelItem(1));
    clickItem(report, report.topLevelItem(1));
    EXPECT_THAT(takeLog(), ElementsAre("row 1", "row 1"));
  });
}

TEST_F(PageControlBindings, KindsAcceptTheirOwnWidgetsOnly) {
  const QTabBar bar;
  const QTreeWidget tree;
  EXPECT_TRUE(widgets::pageWidgetSuits(ControlKind::TabStrip, bar));
  EXPECT_FALSE(widgets::pageWidgetSuits(ControlKind::TabStrip, tree));
  EXPECT_TRUE(widgets::pageWidgetSuits(ControlKind::TreeView, tree));
  EXPECT_FALSE(widgets::pageWidgetSuits(ControlKind::ReportList, bar));
}

}  // namespace
}  // namespace vlclientui::test
