// The metadata page in its dock, on the picked service.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QTabBar>
#include <QTreeWidget>

#include "apps/viewer/ViewerDocksFixture.h"

namespace vlclientui::test {
namespace {

using viewer::person::choose;
using viewer::person::find;

/// A person who leafs through the metadata page of the overlaps.
class ViewerMetadata : public ViewerDocksFixture {
 protected:
  void openMetadata() {
    pickOverlaps();
    open("MetadataDock");
    seeDrawn();
    ASSERT_EQ(nodes().topLevelItemCount(), 4);
  }
  [[nodiscard]] QTreeWidget& nodes() const { return find<QTreeWidget>(dock("MetadataDock"), "uiTreeView"); }
  void clickNode(int node) {
    window_->activateWindow();
    clickNodeOf(nodes(), node);
  }
  void clickTab(const char* strip, const QString& caption) {
    clickTabOf(find<QTabBar>(dock("MetadataDock"), strip), caption);
  }
  static void clickNodeOf(QTreeWidget& tree, int node) {
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree.visualItemRect(tree.topLevelItem(node)).center());
  }
  static void clickTabOf(QTabBar& tabs, const QString& caption) {
    int tab = 0;
    while (tab < tabs.count() && tabs.tabText(tab) != caption) ++tab;
    ASSERT_LT(tab, tabs.count()) << caption.toStdString();
    QTest::mouseClick(&tabs, Qt::LeftButton, Qt::NoModifier, tabs.tabRect(tab).center());
  }
  /// The fields of a page and the rows of a list or a tree, below its root, that a person can read.
  [[nodiscard]] int shownTexts() const {
    int count = 0;
    for (const auto* const label : dock("MetadataDock").findChildren<QLabel*>())
      count += label->isVisible() && !label->text().isEmpty();
    for (const auto* const view : dock("MetadataDock").findChildren<QAbstractItemView*>()) {
      if (!view->isVisible() || view == &nodes()) continue;
      const QModelIndex root =
          view->objectName() == QLatin1String("tree") ? view->model()->index(0, 0) : QModelIndex();
      count += view->model()->rowCount(root);
    }
    return count;
  }
  /// @param least as many texts as a page of a real service has at the least
  void look(const QString& page, int least) {
    QCoreApplication::processEvents();
    EXPECT_GE(shownTexts(), least) << page.toStdString();
    keepPicture(dock("MetadataDock"), "metadata-" + page);
  }
};

TEST_F(ViewerMetadata, EveryNodeAndTabShowsWhatIsKnownOfARealService) {
  openMetadata();
  clickNode(0);
  look("service-information", 8);
  clickTab("TabStrip2", "Properties");
  look("service-properties", 20);
  clickTab("TabStrip2", "Metadata");
  look("service-metadata", 16);
  clickNode(1);
  look("image", 20);
  clickNode(2);
  look("process", 4);
  clickNode(3);
  look("source-information", 20);
  clickTab("TabStrip1", "Metadata");
  look("source-metadata", 8);
  clickTab("TabStrip1", "Attributes");
  look("source-attributes", 3);
  clickTab("TabStrip1", "Process");
  look("source-process", 3);
}

TEST_F(ViewerMetadata, TheOneWindowDialogShowsBothSidesOfARealService) {
  pickOverlaps();
  openPropertiesWindow();
  act([] {
    EXPECT_EQ(modalWindow().windowTitle(), "Service Properties -- Imagery/Overlap_Study");
    keepPicture(modalWindow(), "properties-window-properties");
    clickTabOf(find<QTabBar>(modalWindow(), "myTab"), "Metadata");
  });
  see("the metadata", [] { return find<QTreeWidget>(modalWindow(), "uiTreeView").topLevelItemCount() == 4; });
  act([] { clickNodeOf(find<QTreeWidget>(modalWindow(), "uiTreeView"), 3); });
  see("the sources", [] { return find<QComboBox>(modalWindow(), "RasterList").count() == 3; });
  act([] { clickTabOf(find<QTabBar>(modalWindow(), "TabStrip1"), "Metadata"); });
  see("the document of a source", [] { return find<QAbstractItemView>(modalWindow(), "tree").isVisible(); });
  act([] { keepPicture(modalWindow(), "properties-window-metadata"); });
  act([] { click(modalWindow(), "uibtncancel"); });
  seeNoWindow();
  run();
}

TEST_F(ViewerMetadata, ThePageFollowsTheImageWhileEditsWaitToBeApplied) {
  openMetadata();
  open("PropertiesDock");
  chooseMethod("By Attribute");
  dock("MetadataDock").raise();
  clickNode(1);
  const auto columns = [this] { return find<QLabel>(dock("MetadataDock"), "NCols").text(); };
  const QString before = columns();
  map().zoom(1.0 / 1.5);
  seeDrawn();
  EXPECT_NE(columns(), before);
  EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "By Attribute");
}

TEST_F(ViewerMetadata, TabsOfASourceShowItsDocumentsAfterTheMapHasMoved) {
  openMetadata();
  clickNode(3);
  clickTab("TabStrip1", "Attributes");
  for (int time = 0; time < 2; ++time) {
    map().zoom(1.5);
    seeDrawn();
  }
  clickTab("TabStrip1", "Process");
  look("source-process-after-a-move", 3);
}

TEST_F(ViewerMetadata, TheDockKeepsItsWidthWhileAPersonLeafsThroughThePages) {
  openMetadata();
  const int width = dock("MetadataDock").width();
  for (int node = 0; node < nodes().topLevelItemCount(); ++node) {
    clickNode(node);
    QTest::qWait(20);
    EXPECT_EQ(dock("MetadataDock").width(), width) << node;
  }
  clickNode(0);
  for (const char* tab : {"Properties", "Metadata", "Information"}) {
    clickTab("TabStrip2", tab);
    QTest::qWait(20);
    EXPECT_EQ(dock("MetadataDock").width(), width) << tab;
  }
}

TEST_F(ViewerMetadata, ALockOnTheMetadataPageReachesTheMap) {
  pickOverlaps();
  open("MetadataDock");
  auto& tree = find<QTreeWidget>(dock("MetadataDock"), "uiTreeView");
  QTreeWidgetItem* sources = nullptr;
  for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) sources = *at;
  ASSERT_NE(sources, nullptr);
  tree.setFocus();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(sources).center());
  auto& rasters = find<QComboBox>(dock("MetadataDock"), "RasterList");
  ASSERT_EQ(rasters.count(), 3);
  choose(rasters, rasters.itemText(1));
  window_->activateWindow();
  viewer::person::click(find<QAbstractButton>(dock("MetadataDock"), "Command7"));
  seeDrawn();
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "LockRaster");
  EXPECT_EQ(imageColor(), green);
}

TEST_F(ViewerMetadata, ALockThatNobodyAppliedReachesNoOtherService) {
  openMetadata();
  open("PropertiesDock");
  clickNode(3);
  viewer::person::click(find<QAbstractButton>(dock("MetadataDock"), "Command7"));
  seeDrawn();
  ASSERT_EQ(servicePropertiesAt("MosaicMethod"), "LockRaster");
  pickSample("Imagery/Valley/Ortho_Mosaic");
  seeDrawn();
  dock("PropertiesDock").raise();
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "None");
}

TEST_F(ViewerMetadata, ATextTypedWhileALockIsDrawnIsKept) {
  pickOverlaps();
  open("PropertiesDock");
  open("MetadataDock");
  clickNode(3);
  viewer::person::click(find<QAbstractButton>(dock("MetadataDock"), "Command7"));
  ASSERT_TRUE(window_->isDrawing());
  QCoreApplication::processEvents();
  dock("PropertiesDock").raise();
  auto& noData = *dock("PropertiesDock").findChild<QLineEdit*>("NoData");
  viewer::person::typeInto(noData, "75");
  seeDrawn();
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "LockRaster");
  EXPECT_EQ(noData.text(), "75");
}

TEST_F(ViewerMetadata, TheMetadataPageFollowsTheImageLastDrawn) {
  pickOverlaps();
  open("MetadataDock");
  seeDrawn();
  auto& tree = find<QTreeWidget>(dock("MetadataDock"), "uiTreeView");
  tree.setFocus();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree.visualItemRect(tree.topLevelItem(0)).center());
  QTreeWidgetItem* sources = nullptr;
  for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) sources = *at;
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(sources).center());
  auto& rasters = find<QComboBox>(dock("MetadataDock"), "RasterList");
  ASSERT_EQ(rasters.count(), 3);
  EXPECT_FALSE(rasters.itemText(0).startsWith("*"));
  window_->drawWith(
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>3</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  seeDrawn();
  EXPECT_TRUE(rasters.itemText(0).startsWith("*"));
  EXPECT_FALSE(rasters.itemText(2).startsWith("*"));
}

}  // namespace
}  // namespace vlclientui::test
