#include "viewer/list/ServiceList.h"

#include <QAction>
#include <QDropEvent>
#include <QInputDialog>
#include <QItemSelection>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QStyledItemDelegate>
#include <algorithm>
#include <cmath>

namespace vlclientui::viewer {
namespace {

constexpr int iconSide = 72;
constexpr int smallIconSide = 40;  // in a narrow list
constexpr int narrow = 220;
constexpr int leastWidth = 162;

/// Rows are as wide as the list, however narrow it is. The line for a new name stands over the text, not over
/// picture and details.
class NameDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const auto* const list = qobject_cast<const QListView*>(option.widget);
    if (list == nullptr) return QStyledItemDelegate::sizeHint(option, index);
    QStyleOptionViewItem inList = option;
    inList.rect.setWidth(list->viewport()->width());
    return {list->viewport()->width(), QStyledItemDelegate::sizeHint(inList, index).height()};
  }

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                        const QModelIndex& /*index*/) const override {
    auto* const line = new QLineEdit(parent);
    line->setObjectName("ServiceName");
    line->setAccessibleName(ServiceList::tr("Name"));
    return line;
  }
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& /*index*/) const override {
    QRect place = option.rect;
    const auto* const list = qobject_cast<const QListView*>(option.widget);
    const int icon = list == nullptr ? iconSide : list->iconSize().width();
    place.setLeft(place.left() + icon + 30);
    editor->setGeometry(place.adjusted(0, 4, 0, -4));
  }
};

}  // namespace

ServiceList::ServiceList(ServiceListModel& services, QWidget* parent)
    : QListView(parent), services_(services) {
  setObjectName("ServiceList");
  setAccessibleName(tr("Services"));
  setModel(&services_);
  setItemDelegate(new NameDelegate(this));
  setIconSize({iconSide, iconSide});
  setWordWrap(true);
  setResizeMode(Adjust);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMinimumWidth(leastWidth);
  setAlternatingRowColors(true);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(EditKeyPressed);
  setDragEnabled(true);
  setAcceptDrops(true);
  setDropIndicatorShown(true);
  setDefaultDropAction(Qt::MoveAction);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  makeActions();
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &ServiceList::enableActions);
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &ServiceList::enableActions);
  enableActions();
}

void ServiceList::makeActions() {
  const auto add = [this](const char* name, const QString& text, const QKeySequence& key,
                          void (ServiceList::*slot)()) {
    auto* const action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(key);
    // In other panes the keys have their own meaning.
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, slot);
    changing_ += action;
  };
  add("ToggleVisible", tr("S&how or hide"), Qt::CTRL | Qt::Key_H, &ServiceList::toggleVisible);
  changing_ += opacityAction();
  add("RenameService", tr("Re&name"), Qt::Key_F2, &ServiceList::rename);
  add("MoveServiceUp", tr("Move &up"), Qt::CTRL | Qt::Key_Up, &ServiceList::moveUp);
  add("MoveServiceDown", tr("Move &down"), Qt::CTRL | Qt::Key_Down, &ServiceList::moveDown);
  add("MoveServiceToTop", tr("Move to &top"), Qt::CTRL | Qt::Key_Home, &ServiceList::moveToTop);
  add("MoveServiceToBottom", tr("Move to &bottom"), Qt::CTRL | Qt::Key_End, &ServiceList::moveToBottom);
  addActions(changing_);
}

QAction* ServiceList::opacityAction() {
  auto* const menu = new QMenu(tr("&Opacity"), this);
  for (const int percent : {100, 75, 50, 25}) {
    QAction* const step = menu->addAction(tr("&%1 %").arg(percent));
    step->setObjectName("Opacity" + QString::number(percent));
    connect(step, &QAction::triggered, this, [this, percent] { setOpacity(percent / 100.0); });
  }
  menu->addAction(tr("&Other\u2026"), this, &ServiceList::askOpacity)->setObjectName("OtherOpacity");
  menu->menuAction()->setObjectName("Opacity");
  return menu->menuAction();
}

void ServiceList::enableActions() {
  const bool isAny = !selectedRows().empty();
  for (QAction* const action : changing_) action->setEnabled(isAny);
}

std::vector<int> ServiceList::selectedRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedIndexes()) rows.push_back(index.row());
  // After a removal the next one is current, but not selected.
  if (rows.empty() && currentIndex().isValid()) rows.push_back(currentIndex().row());
  std::ranges::sort(rows);
  return rows;
}

// Whatever keys are held down meanwhile.
void ServiceList::pick(int row) {
  selectionModel()->setCurrentIndex(services_.index(row), QItemSelectionModel::ClearAndSelect);
}

void ServiceList::moveSelected(int before) {
  const std::vector<int> rows = selectedRows();
  if (rows.empty()) return;
  services_.move(rows, before);
  scrollTo(currentIndex());
}

void ServiceList::moveUp() {
  const std::vector<int> rows = selectedRows();
  if (!rows.empty()) moveSelected(std::max(0, rows.front() - 1));
}

void ServiceList::moveDown() {
  const std::vector<int> rows = selectedRows();
  if (!rows.empty()) moveSelected(std::min(services_.rowCount(), rows.back() + 2));
}

void ServiceList::moveToTop() { moveSelected(0); }

void ServiceList::moveToBottom() { moveSelected(services_.rowCount()); }

void ServiceList::toggleVisible() {
  const std::vector<int> rows = selectedRows();
  const auto isVisible = [this](int row) {
    return services_.rows()[static_cast<std::size_t>(row)].shown.isVisible;
  };
  const bool areVisible = std::ranges::all_of(rows, isVisible);
  for (const int row : rows) services_.setVisible(row, !areVisible);
}

void ServiceList::rename() { edit(currentIndex()); }

void ServiceList::setOpacity(double opacity) {
  for (const int row : selectedRows()) services_.setOpacity(row, opacity);
}

void ServiceList::askOpacity() {
  if (!currentIndex().isValid()) return;
  const double present = services_.rows()[static_cast<std::size_t>(currentIndex().row())].shown.opacity;
  bool isChosen = false;
  const int percent =
      QInputDialog::getInt(this, tr("Opacity"), tr("&Percent, 0 to 100:"),
                           static_cast<int>(std::lround(100 * present)), 0, 100, 5, &isChosen);
  if (isChosen) setOpacity(percent / 100.0);
}

// Texts need the room more than pictures do.
void ServiceList::resizeEvent(QResizeEvent* event) {
  const int side = width() < narrow ? smallIconSide : iconSide;
  setIconSize({side, side});
  QListView::resizeEvent(event);
}

// Ctrl+Up and its like would move the current row alone where nothing is selected.
void ServiceList::keyPressEvent(QKeyEvent* event) {
  const bool isSpace = event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier;
  if (isSpace && state() != EditingState) return toggleVisible();
  QListView::keyPressEvent(event);
}

void ServiceList::dragEnterEvent(QDragEnterEvent* event) {
  if (event->source() != this) return event->ignore();
  QListView::dragEnterEvent(event);
}

void ServiceList::dragMoveEvent(QDragMoveEvent* event) {
  if (event->source() != this) return event->ignore();
  QListView::dragMoveEvent(event);
  event->acceptProposedAction();
}

// The view would take the rows away once they are dropped; they are moved here instead.
void ServiceList::dropEvent(QDropEvent* event) {
  if (event->source() != this) return event->ignore();
  moveSelected(rowBefore(event->position().toPoint()));
  event->setDropAction(Qt::CopyAction);
  event->accept();
  stopAutoScroll();
  setState(NoState);
  viewport()->update();
}

int ServiceList::rowBefore(QPoint place) const {
  const QModelIndex under = indexAt(place);
  if (!under.isValid()) return services_.rowCount();
  return place.y() < visualRect(under).center().y() ? under.row() : under.row() + 1;
}

}  // namespace vlclientui::viewer
