#include "widgets/RowListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "engine/Surface.h"
#include "widgets/QtVersions.h"
#include "widgets/RowTableModel.h"

namespace vlclientui::widgets {

namespace {

constexpr int iconSide = 16;
constexpr int leastNameLength = 22;   ///< characters
constexpr int leastColumnLength = 6;  ///< of all others, where there is no more room

bool movesInRows(int key) {
  switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      return true;
    default:
      return false;
  }
}

bool sameNames(const engine::ListModel& one, const engine::ListModel& other) {
  return std::ranges::equal(one.columns(), other.columns(), {}, &engine::ListColumn::name,
                            &engine::ListColumn::name);
}

}  // namespace

std::vector<int> shareWidth(int width, const std::vector<double>& proportions,
                            const std::vector<int>& leastWidths) {
  std::vector<int> shares(proportions.size(), 0);
  std::vector<bool> fixed(proportions.size(), false);
  bool settled = false;
  while (!settled) {
    settled = true;
    int left = width;
    double sum = 0;
    for (std::size_t i = 0; i < shares.size(); ++i) {
      if (fixed[i]) left -= shares[i];
      if (!fixed[i]) sum += proportions[i];
    }
    for (std::size_t i = 0; i < shares.size(); ++i) {
      if (fixed[i]) continue;
      const int share = sum > 0 ? static_cast<int>(std::max(0, left) * proportions[i] / sum) : 0;
      sum -= proportions[i];
      left -= share;
      shares[i] = share;
      if (share >= leastWidths[i]) continue;
      // The other columns share what this one leaves.
      shares[i] = leastWidths[i];
      fixed[i] = true;
      settled = false;
      break;
    }
  }
  return shares;
}

RowListView::RowListView(std::shared_ptr<const engine::ListModel> list, Listener listener, QWidget* parent)
    : QTreeView(parent), model_(new RowTableModel(std::move(list), this)), listener_(std::move(listener)) {
  setUp();
  tellPlace();
  setModel(model_);
  spanMessages();
  connect(header(), &QHeaderView::sectionResized, this, [this] {
    if (!arranging_) hasPersonsWidths_ = true;
  });
  connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) { activate(index); });
  arrangeColumns();
}

void RowListView::setUp() {
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setAlternatingRowColors(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setIconSize(QSize(iconSide, iconSide));
  setAccessibleName(QStringLiteral("Services"));
  header()->setSectionsMovable(false);
  header()->setStretchLastSection(false);
  header()->setHighlightSections(false);
}

void RowListView::setList(std::shared_ptr<const engine::ListModel> list) {
  if (!sameNames(model_->list(), *list)) hasPersonsWidths_ = false;
  arranging_ = true;
  model_->setList(std::move(list));
  arranging_ = false;
  tellPlace();
  reported_.reset();
  spanMessages();
  markFirstRow();
  scrollToTop();
  if (!hasPersonsWidths_) arrangeColumns();
}

// For hosts that show it beside the window's own controls.
void RowListView::tellPlace() { setProperty(placeProperty, QString::fromStdString(model_->list().place())); }

std::optional<std::size_t> RowListView::selectedRow() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  if (rows.isEmpty()) return std::nullopt;
  return static_cast<std::size_t>(rows.first().row());
}

/// A message has no cells, so it gets the whole width. Only leading rows can be messages.
void RowListView::spanMessages() {
  const engine::ListModel& list = model_->list();
  if (list.rowCount() != 1) return;
  setFirstColumnSpanned(0, QModelIndex(), list.icon(0) == engine::RowIcon::Message);
}

std::vector<int> cutToFit(int width, std::vector<int> leastWidths, int narrowest) {
  const int all = std::accumulate(leastWidths.begin(), leastWidths.end(), 0);
  if (leastWidths.empty() || all <= width) return leastWidths;
  const int others = all - leastWidths.front();
  const int room = std::max(0, width - leastWidths.front());
  for (std::size_t i = 1; i < leastWidths.size(); ++i) {
    const int share = static_cast<int>(std::int64_t{leastWidths[i]} * room / others);
    leastWidths[i] = std::min(leastWidths[i], std::max(share, narrowest));
  }
  return leastWidths;
}

void RowListView::arrangeColumns() {
  std::vector<double> proportions;
  std::vector<int> leastWidths;
  for (int column = 0; column < model_->columnCount(); ++column) {
    proportions.push_back(model_->list().columns()[static_cast<std::size_t>(column)].width);
    leastWidths.push_back(header()->sectionSizeHint(column));
  }
  // People look for the names in the first column.
  if (!leastWidths.empty()) leastWidths[0] = iconSide + leastNameLength * fontMetrics().averageCharWidth();
  const int narrowest = leastColumnLength * fontMetrics().averageCharWidth();
  const std::vector<int> widths =
      shareWidth(viewport()->width(), proportions, cutToFit(viewport()->width(), leastWidths, narrowest));
  arranging_ = true;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    header()->resizeSection(static_cast<int>(column), widths[column]);
  }
  arranging_ = false;
}

void RowListView::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  if (!hasPersonsWidths_) arrangeColumns();
}

void RowListView::keyPressEvent(QKeyEvent* event) {
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (plain && event->key() == Qt::Key_Backspace) {
    event->accept();
    listener_.backspace();
  } else if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    event->accept();
    activateByKey();
  } else {
    moveByKey(event);
  }
}

/// The rows of another folder begin with the first one marked and none selected: a key that moves selects the
/// row where the mark stands then.
void RowListView::moveByKey(QKeyEvent* event) {
  const auto before = selectedRow();
  markFirstRow();
  const bool step = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
  if (!step || before) QTreeView::keyPressEvent(event);
  if (movesInRows(event->key()) && !selectedRow() && currentIndex().isValid()) selectMarked();
  const auto after = selectedRow();
  if (after && after != before) report(*after);
}

/// As a pointer does it: the row is clicked before it is activated.
void RowListView::activateByKey() {
  markFirstRow();
  if (!selectedRow() && currentIndex().isValid()) {
    selectMarked();
    const QPointer<RowListView> self(this);
    report(*selectedRow());
    if (!self) return;
  }
  if (const auto row = selectedRow()) listener_.activated(*row);
}

void RowListView::markFirstRow() {
  if (currentIndex().isValid()) return;
  selectionModel()->setCurrentIndex(model_->index(0, 0), QItemSelectionModel::NoUpdate);
}

void RowListView::selectMarked() {
  selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void RowListView::mousePressEvent(QMouseEvent* event) {
  doubleClicked_ = false;
  QTreeView::mousePressEvent(event);
}

void RowListView::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  if (event->button() != Qt::LeftButton || std::exchange(doubleClicked_, false)) return;
  const auto row = selectedRow();
  const bool onRow = indexAt(pointOf(*event)).isValid();
  if (row && (onRow || row != reported_)) report(*row);
}

void RowListView::report(std::size_t row) {
  reported_ = row;
  listener_.clicked(row);
}

void RowListView::activate(const QModelIndex& index) {
  doubleClicked_ = true;
  listener_.activated(static_cast<std::size_t>(index.row()));
}

}  // namespace vlclientui::widgets
