#include "widgets/RowTableModel.h"

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPalette>
#include <QSize>
#include <cstddef>
#include <utility>

#include "widgets/QtVersions.h"
#include "widgets/ReadableColors.h"
#include "widgets/SymbolIcons.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

std::size_t rowOf(const QModelIndex& index) { return static_cast<std::size_t>(index.row()); }

QString textOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<QtSize>(text.size()));
}

/// Adds a little space above and below the text.
int rowHeight() { return QFontMetrics(QGuiApplication::font()).height() + 6; }

QFont messageFont() {
  QFont font = QGuiApplication::font();
  font.setItalic(true);
  return font;
}

}  // namespace

RowTableModel::RowTableModel(std::shared_ptr<const engine::ListModel> list, QObject* parent)
    : QAbstractTableModel(parent), list_(std::move(list)), folder_(folderIcon()), service_(serviceIcon()) {}

void RowTableModel::setList(std::shared_ptr<const engine::ListModel> list) {
  beginResetModel();
  list_ = std::move(list);
  endResetModel();
}

int RowTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(list_->rowCount());
}

int RowTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(list_->columnCount());
}

QVariant RowTableModel::data(const QModelIndex& index, int role) const {
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return textOf(list_->cell(rowOf(index), static_cast<std::size_t>(index.column())));
    case Qt::DecorationRole:
      return icon(index);
    case Qt::SizeHintRole:
      return QSize(0, rowHeight());
    case Qt::FontRole:
      return isMessage(index) ? QVariant(messageFont()) : QVariant();
    case Qt::ForegroundRole:
      return isMessage(index) ? QVariant(faintRowColor(QGuiApplication::palette())) : QVariant();
    default:
      return {};
  }
}

QVariant RowTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  // A narrow column cuts its title.
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  return toQt(list_->columns()[static_cast<std::size_t>(section)].title);
}

QVariant RowTableModel::icon(const QModelIndex& index) const {
  if (index.column() != 0 || isMessage(index)) return {};
  return list_->icon(rowOf(index)) == engine::RowIcon::Folder ? folder_ : service_;
}

bool RowTableModel::isMessage(const QModelIndex& index) const {
  return list_->icon(rowOf(index)) == engine::RowIcon::Message;
}

}  // namespace vlclientui::widgets
