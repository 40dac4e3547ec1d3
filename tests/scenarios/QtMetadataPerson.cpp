#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

#include "scenarios/MetadataPerson.h"
#include "scenarios/QtPropertiesPerson.h"
#include "widgets/TreeView.h"

namespace vlclientui::test {

namespace {

class QtMetadataPerson : public QtPropertiesPerson, public MetadataPerson {
 public:
  void clickNode(const std::string& node) override {
    clickRow(hands().find<QTreeWidget>("uiTreeView"), node);
  }
  void pickRaster(const std::string& caption) override {
    hands().pick(hands().find<QComboBox>("RasterList"), caption);
    settle();
  }
  void clickAttribute(const std::string& name) override { clickRow(list(), name); }
  void pressInAttributes(ListKey key) override {
    list().setFocus(Qt::TabFocusReason);
    switch (key) {
      case ListKey::CtrlC:
        return QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
      case ListKey::CtrlF1:
        return QTest::keyClick(&list(), Qt::Key_F1, Qt::ControlModifier);
      case ListKey::X:
        return QTest::keyClick(&list(), Qt::Key_X);
    }
  }
  void copyElsewhere(const std::string& text) override {
    QApplication::clipboard()->setText(QString::fromStdString(text));
  }

  std::vector<std::string> nodes() const override {
    const auto& tree = hands().find<QTreeWidget>("uiTreeView");
    std::vector<std::string> texts;
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
      texts.push_back(tree.topLevelItem(row)->text(0).toStdString());
    }
    return texts;
  }
  std::string markedNode() const override {
    const auto marked = hands().find<QTreeWidget>("uiTreeView").selectedItems();
    return marked.isEmpty() ? std::string() : marked.front()->text(0).toStdString();
  }
  std::vector<std::string> tabs(const std::string& strip) const override {
    const auto& bar = hands().find<QTabBar>(strip);
    std::vector<std::string> captions;
    for (int tab = 0; bar.isVisible() && tab < bar.count(); ++tab) {
      captions.push_back(bar.tabText(tab).toStdString());
    }
    return captions;
  }
  std::string tabOnTop(const std::string& strip) const override {
    const auto& bar = hands().find<QTabBar>(strip);
    return bar.tabText(bar.currentIndex()).toStdString();
  }
  std::vector<std::string> rasters() const override {
    const auto& box = hands().find<QComboBox>("RasterList");
    std::vector<std::string> entries;
    for (int index = 0; box.isVisible() && index < box.count(); ++index) {
      entries.push_back(box.itemText(index).toStdString());
    }
    return entries;
  }
  std::string raster() const override {
    return hands().find<QComboBox>("RasterList").currentText().toStdString();
  }
  std::vector<std::string> treeRows() const override {
    std::vector<std::string> rows;
    for (const widgets::TreeView* const shown : hands().allShown<widgets::TreeView>()) {
      QTreeView& tree = shown->tree();
      tree.expandAll();
      for (QModelIndex at = tree.model()->index(0, 0); at.isValid(); at = tree.indexBelow(at)) {
        rows.push_back(indentOf(at) + at.data().toString().toStdString() + "|" +
                       at.siblingAtColumn(1).data().toString().toStdString());
      }
    }
    return rows;
  }
  std::vector<std::string> attributes() const override {
    std::vector<std::string> seen;
    for (int row = 0; list().isVisible() && row < list().topLevelItemCount(); ++row) {
      const QTreeWidgetItem& item = *list().topLevelItem(row);
      seen.push_back((item.text(0) + QLatin1Char('|') + item.text(1)).toStdString());
    }
    return seen;
  }
  std::string clipboard() const override { return QApplication::clipboard()->text().toStdString(); }

 private:
  [[nodiscard]] QTreeWidget& list() const { return hands().find<QTreeWidget>("ListView1"); }
  void clickRow(QTreeWidget& tree, const std::string& text) const {
    const auto found = tree.findItems(QString::fromStdString(text), Qt::MatchExactly);
    QtHands::need(!found.isEmpty(), "no row " + text);
    hands().waitForWindow();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(found.front()).center());
    settle();
  }
  static std::string indentOf(const QModelIndex& index) {
    return index.parent().isValid() ? "  " + indentOf(index.parent()) : std::string();
  }
};

}  // namespace

std::unique_ptr<MetadataPerson> makeMetadataPerson() { return std::make_unique<QtMetadataPerson>(); }

}  // namespace vlclientui::test
