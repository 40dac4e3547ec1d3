#include "widgets/TreeView.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

#include "widgets/QtVersions.h"
#include "widgets/Text.h"
#include "widgets/TreeItemModel.h"

namespace vlclientui::widgets {

namespace {

using engine::TreeModel;

constexpr int spacing = 6;
constexpr int nameWidth = 45;  ///< percent of the width at first

bool isEnter(const QKeyEvent& key) { return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter; }

/// Whether a key types a character to search for. Blank, "*", "+" and "-" are the tree's own keys.
bool isText(const QKeyEvent& key) {
  const bool plain = (key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
  const QString text = key.text();
  return plain && !text.isEmpty() && text[0].isPrint() && !QStringLiteral(" *+-").contains(text[0]);
}

}  // namespace

TreeView::TreeView(std::shared_ptr<TreeModel> tree, QWidget* parent)
    : QWidget(parent),
      model_(new TreeItemModel(std::move(tree), this)),
      search_(new QLineEdit(this)),
      tree_(new QTreeView(this)),
      nothing_(new QLabel(tr("Not found"), this)) {
  setUpTree();
  setUpSearch();
  addAction(tr("&Copy value"), QKeySequence::Copy, "copyValue", &TreeView::copyValue);
  addAction(tr("Copy &path"), keysOf(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_C), "copyPath",
            &TreeView::copyPath);
  addAction(tr("&Find"), QKeySequence::Find, "find", &TreeView::goToSearch);
  addAction(tr("Find &next"), QKeySequence(Qt::Key_F3), "findNext", &TreeView::findNext);
  addAction(tr("Find p&revious"), keysOf(Qt::ShiftModifier, Qt::Key_F3), "findPrevious",
            &TreeView::findPrevious);
  layOut();
  // Tab reaches the whole widget here; the search line comes before the tree.
  setFocusPolicy(Qt::TabFocus);
  setFocusProxy(search_);
}

void TreeView::setUpTree() {
  tree_->setObjectName(QStringLiteral("tree"));
  tree_->setAccessibleName(tr("Document"));
  tree_->setUniformRowHeights(true);
  tree_->setAllColumnsShowFocus(true);
  tree_->setAlternatingRowColors(true);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  tree_->setContextMenuPolicy(Qt::ActionsContextMenu);
  tree_->setModel(model_);
  tree_->header()->setSectionsMovable(false);
  tree_->header()->setHighlightSections(false);
  tree_->expand(model_->indexOf(TreeModel::root));
  tree_->setCurrentIndex(model_->indexOf(TreeModel::root));
  tree_->installEventFilter(this);
}

void TreeView::setUpSearch() {
  search_->setObjectName(QStringLiteral("search"));
  search_->setPlaceholderText(tr("Search names and values"));
  search_->setAccessibleName(tr("Search"));
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  nothing_->setObjectName(QStringLiteral("nothing"));
  nothing_->hide();
  connect(search_, &QLineEdit::textChanged, this,
          [this] { find(TreeModel::Direction::Forward, Start::Here); });
}

void TreeView::addAction(const QString& text, const QKeySequence& keys, const char* name,
                         void (TreeView::*act)()) {
  auto* action = new QAction(text, this);
  action->setObjectName(QLatin1String(name));
  action->setShortcut(keys);
  action->setShortcutContext(Qt::WidgetShortcut);
  connect(action, &QAction::triggered, this, act);
  tree_->addAction(action);
}

void TreeView::layOut() {
  auto* top = new QHBoxLayout;
  top->addWidget(search_);
  top->addWidget(nothing_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  layout->addLayout(top);
  layout->addWidget(tree_);
}

TreeModel::Node TreeView::current() const {
  const QModelIndex index = tree_->currentIndex();
  return index.isValid() ? TreeItemModel::nodeOf(index) : TreeModel::root;
}

void TreeView::copyValue() { QApplication::clipboard()->setText(toQt(model_->tree().value(current()))); }

void TreeView::copyPath() { QApplication::clipboard()->setText(toQt(model_->tree().path(current()))); }

void TreeView::goToSearch() {
  search_->setFocus(Qt::ShortcutFocusReason);
  search_->selectAll();
}

void TreeView::findNext() { find(TreeModel::Direction::Forward, Start::Behind); }

void TreeView::findPrevious() { find(TreeModel::Direction::Backward, Start::Behind); }

void TreeView::find(TreeModel::Direction direction, Start start) {
  const auto found = model_->tree().find(fromQt(search_->text()), current(), direction, start == Start::Here);
  nothing_->setVisible(!found && !search_->text().isEmpty());
  if (!found) return;
  tree_->setCurrentIndex(model_->indexOf(*found));
  tree_->scrollTo(model_->indexOf(*found));
}

bool TreeView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == tree_ && event->type() == QEvent::Resize && tree_->width() > 0 && !tree_->isVisible()) {
    tree_->setColumnWidth(0, tree_->width() * nameWidth / 100);
  }
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  auto& key = *static_cast<QKeyEvent*>(event);
  return watched == search_ ? searchKey(key) : treeKey(key);
}

bool TreeView::searchKey(const QKeyEvent& key) {
  const bool backward = key.modifiers().testFlag(Qt::ShiftModifier);
  if (isEnter(key) || key.key() == Qt::Key_F3) {
    backward ? findPrevious() : findNext();
    return true;
  }
  const bool ends = key.key() == Qt::Key_Escape && !search_->text().isEmpty();
  if (ends) search_->clear();
  if (ends || key.key() == Qt::Key_Down) tree_->setFocus(Qt::OtherFocusReason);
  return ends || key.key() == Qt::Key_Down;
}

bool TreeView::treeKey(QKeyEvent& key) {
  if (!isText(key)) return false;
  search_->setFocus(Qt::OtherFocusReason);
  search_->setText(key.text());
  return true;
}

}  // namespace vlclientui::widgets
