#include "viewer/values/ValuesPane.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <functional>
#include <memory>

#include "viewer/map/PlaceText.h"

namespace vlclientui::viewer {
namespace {

constexpr int swatch = 12;
constexpr int nameWidth = 140;

std::unique_ptr<QTreeWidgetItem> itemOf(const ValueLine& line) {
  auto item = std::make_unique<QTreeWidgetItem>(QStringList{line.name, line.value});
  if (line.color.isValid()) {
    QPixmap pixels(swatch, swatch);
    pixels.fill(line.color);
    item->setIcon(1, QIcon(pixels));
  }
  QFont font = item->font(0);
  font.setBold(line.isStrong);
  if (line.isStrong) item->setFont(0, font);
  item->setToolTip(0, line.name);
  item->setToolTip(1, line.value);
  for (const ValueLine& one : line.lines) item->addChild(itemOf(one).release());
  return item;
}

QString pathOf(const QTreeWidgetItem* item) {
  QString path;
  for (; item != nullptr; item = item->parent()) path = item->text(0) + "\n" + path;
  return path;
}

// Of all items, from the top.
void visit(QTreeWidgetItem& item, const std::function<void(QTreeWidgetItem&)>& look) {
  look(item);
  for (int i = 0; i < item.childCount(); ++i) visit(*item.child(i), look);
}

QTreeWidget* makeTree() {
  auto* const tree = new QTreeWidget;
  tree->setObjectName("Values");
  tree->setAccessibleName(ValuesPane::tr("Values under the click"));
  tree->setHeaderLabels({ValuesPane::tr("Name"), ValuesPane::tr("Value")});
  tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
  tree->setAlternatingRowColors(true);
  tree->header()->resizeSection(0, nameWidth);
  return tree;
}

}  // namespace

ValuesPane::ValuesPane(const ServiceListModel& services, MapView& map, QWidget* parent)
    : QWidget(parent),
      services_(services),
      map_(map),
      reader_(new ValuesReader(this)),
      place_(new QLabel(tr("Click on the map, or press Enter on it for its middle."))),
      tree_(makeTree()),
      copy_(new QPushButton(tr("Cop&y"))),
      cancel_(new QPushButton(tr("Ca&ncel"))) {
  place_->setObjectName("ValuesPlace");
  place_->setWordWrap(true);
  place_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  copy_->setObjectName("CopyValues");
  copy_->setToolTip(tr("Copy what is selected, or all of it"));
  cancel_->setObjectName("CancelValues");
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cancel_);
  buttons->addWidget(copy_);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(place_);
  layout->addWidget(tree_);
  layout->addLayout(buttons);
  // The tree's own copies one cell.
  auto* const key = new QShortcut(QKeySequence::Copy, tree_, nullptr, nullptr, Qt::WidgetShortcut);
  connect(key, &QShortcut::activated, this, &ValuesPane::copy);
  connect(copy_, &QPushButton::clicked, this, &ValuesPane::copy);
  connect(cancel_, &QPushButton::clicked, reader_, &ValuesReader::giveUp);
  connect(reader_, &ValuesReader::changed, this, &ValuesPane::showValues);
  connect(&map_, &MapView::clicked, this, [this](client::MapPoint place) {
    if (isVisible()) ask(place);
  });
  showValues();
}

void ValuesPane::ask(client::MapPoint place) {
  std::vector<AskedService> asked;
  for (const auto& row : services_.rows()) {
    if (row.shown.isVisible && row.service.drawing && row.service.envelope)
      asked.push_back({row.name(), row.service.drawing});
  }
  const QString where = placeText(map_.frame(), place);
  place_->setText(where.isEmpty() ? tr("No place of the earth") : where);
  map_.markPlace(place);
  reader_->ask(asked, {map_.frame().system().wkt, place});
}

// One that has answered is shown anew, all others stay as a person reads them.
void ValuesPane::showValues() {
  const auto& values = reader_->values();
  if (shown_.size() != values.size()) {
    tree_->clear();
    shown_.clear();
    open_.assign(values.size(), {});
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i < shown_.size() && shown_[i] == values[i].state) continue;
    showAnswer(static_cast<int>(i));
  }
  shown_.clear();
  for (const ReadValues& read : values) shown_.push_back(read.state);
  copy_->setEnabled(!values.empty());
  cancel_->setEnabled(reader_->isReading());
}

// What was open at one place is open at the next one.
void ValuesPane::showAnswer(int number) {
  const auto at = static_cast<std::size_t>(number);
  QTreeWidgetItem* const former = tree_->topLevelItem(number);
  if (former != nullptr && former->childCount() > 0) {
    open_[at].clear();
    visit(*former, [&](QTreeWidgetItem& one) {
      if (one.isExpanded()) open_[at] << pathOf(&one);
    });
  }
  delete former;
  QTreeWidgetItem* const item = itemOf(valueLineOf(reader_->values()[at])).release();
  tree_->insertTopLevelItem(number, item);
  visit(*item, [&](QTreeWidgetItem& one) { one.setExpanded(open_[at].contains(pathOf(&one))); });
  item->setExpanded(true);
  item->setFirstColumnSpanned(item->text(1).isEmpty());
}

void ValuesPane::copy() {
  QString text;
  const auto chosen = tree_->selectedItems();
  for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
    visit(*tree_->topLevelItem(i), [&](QTreeWidgetItem& item) {
      if (!chosen.isEmpty() && !chosen.contains(&item)) return;
      const auto steps = chosen.isEmpty() ? pathOf(&item).count('\n') - 1 : 0;
      text += QString(2 * steps, ' ') + item.text(0);
      text += item.text(1).isEmpty() ? "\n" : "\t" + item.text(1) + "\n";
    });
  }
  if (chosen.isEmpty()) text = place_->text() + "\n" + text;
  QGuiApplication::clipboard()->setText(text);
}

void ValuesPane::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && reader_->isReading()) return reader_->giveUp();
  QWidget::keyPressEvent(event);
}

// A window that is made small comes back as it was.
void ValuesPane::hideEvent(QHideEvent* event) {
  if (event->spontaneous()) return QWidget::hideEvent(event);
  reader_->giveUp();
  map_.markPlace(std::nullopt);
  QWidget::hideEvent(event);
}

}  // namespace vlclientui::viewer
