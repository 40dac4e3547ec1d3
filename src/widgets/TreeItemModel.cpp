#include "widgets/TreeItemModel.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPalette>
#include <QSize>
#include <utility>

#include "widgets/ReadableColors.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

using engine::TreeModel;

constexpr int longestTip = 2000;  ///< characters

/// Adds a little space above and below the text.
int rowHeight() { return QFontMetrics(QGuiApplication::font()).height() + 6; }

}  // namespace

TreeItemModel::TreeItemModel(std::shared_ptr<TreeModel> tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(std::move(tree)) {}

QModelIndex TreeItemModel::indexOf(Node node, int column) const {
  return createIndex(static_cast<int>(tree_->row(node)), column, static_cast<quintptr>(node));
}

QModelIndex TreeItemModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || row >= rowCount(parent) || column < 0 || column >= columnCount(parent)) return {};
  return parent.isValid() ? indexOf(tree_->child(nodeOf(parent), static_cast<std::size_t>(row)), column)
                          : indexOf(TreeModel::root, column);
}

QModelIndex TreeItemModel::parent(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const auto above = tree_->parent(nodeOf(index));
  return above ? indexOf(*above) : QModelIndex();
}

int TreeItemModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return 1;
  return parent.column() == 0 ? static_cast<int>(tree_->childCount(nodeOf(parent))) : 0;
}

int TreeItemModel::columnCount(const QModelIndex& /*parent*/) const { return 2; }

QString TreeItemModel::textOf(const QModelIndex& index) const {
  const Node node = nodeOf(index);
  if (index.column() == 1) return toQt(tree_->value(node));
  switch (tree_->kind(node)) {
    case TreeModel::Kind::Attribute:
      return QLatin1Char('@') + toQt(tree_->name(node));
    case TreeModel::Kind::Text:
      return tr("(text)");
    default:
      return toQt(tree_->name(node));
  }
}

QVariant TreeItemModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return textOf(index).simplified();
    case Qt::ToolTipRole:
      return textOf(index).left(longestTip);
    case Qt::SizeHintRole:
      return QSize(0, rowHeight());
    case Qt::ForegroundRole:
      if (index.column() == 1 || tree_->kind(nodeOf(index)) == TreeModel::Kind::Element) return {};
      return faintRowColor(QGuiApplication::palette());
    default:
      return {};
  }
}

QVariant TreeItemModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  if (role != Qt::DisplayRole) return {};
  return section == 0 ? tr("Name") : tr("Value");
}

}  // namespace vlclientui::widgets
