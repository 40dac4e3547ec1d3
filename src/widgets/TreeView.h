#pragma once

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QWidget>
#include <memory>

#include "engine/TreeModel.h"

namespace vlclientui::widgets {

class TreeItemModel;

/// A document as a tree, with a search line. Ctrl+C copies a value, Ctrl+Shift+C a path, the context menu
/// either. Typing anywhere searches; Enter and F3 go to the next match, with Shift to the previous one;
/// Escape ends the search.
class TreeView : public QWidget {
 public:
  explicit TreeView(std::shared_ptr<engine::TreeModel> tree, QWidget* parent = nullptr);

  [[nodiscard]] QTreeView& tree() const { return *tree_; }
  [[nodiscard]] QLineEdit& searchLine() const { return *search_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Start : std::uint8_t { Here, Behind };

  void setUpTree();
  void setUpSearch();
  void addAction(const QString& text, const QKeySequence& keys, const char* name, void (TreeView::*act)());
  void layOut();
  void copyValue();
  void copyPath();
  void goToSearch();
  void find(engine::TreeModel::Direction direction, Start start);
  void findNext();
  void findPrevious();
  [[nodiscard]] bool searchKey(const QKeyEvent& key);
  [[nodiscard]] bool treeKey(QKeyEvent& key);
  [[nodiscard]] engine::TreeModel::Node current() const;

  TreeItemModel* model_;
  QLineEdit* search_;
  QTreeView* tree_;
  QLabel* nothing_;
};

}  // namespace vlclientui::widgets
