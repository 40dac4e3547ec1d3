#include "viewer/list/ServiceListModel.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>

#include "host/ShownText.h"

namespace vlclientui::viewer {
namespace {

constexpr int iconSize = 72;

// Every icon has the same square, so that the texts of a list stand in one line.
QPixmap squareOf(const QImage& picture) {
  const int side = static_cast<int>(std::lround(iconSize * qApp->devicePixelRatio()));
  QPixmap icon(side, side);
  icon.fill(Qt::transparent);
  if (!picture.isNull()) {
    const QImage small = picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter(&icon).drawImage((side - small.width()) / 2, (side - small.height()) / 2, small);
  }
  icon.setDevicePixelRatio(static_cast<double>(side) / iconSize);
  return icon;
}

// A selected picture keeps its colors.
QIcon iconOf(const QImage& picture) {
  const QPixmap square = squareOf(picture);
  QIcon icon(square);
  icon.addPixmap(square, QIcon::Selected);
  return icon;
}

QString detailsOf(const ServiceListModel::Row& row) {
  switch (row.state) {
    case ServiceListModel::State::Loading:
      return ServiceListModel::tr("reading...");
    case ServiceListModel::State::Unreadable:
      return ServiceListModel::tr("cannot be read");
    case ServiceListModel::State::Ready:
      break;
  }
  return row.service.details;
}

}  // namespace

QString ServiceListModel::Row::name() const {
  return service.title.isEmpty() ? shownReference.section('/', -1) : service.title;
}

ServiceListModel::ServiceListModel(const host::ComposedHost& host, QObject* parent)
    : QAbstractListModel(parent), host_(host), loader_(host) {
  connect(&loader_, &ServiceLoader::loaded, this, &ServiceListModel::takeLoaded);
}

int ServiceListModel::add(const std::vector<std::string>& references) {
  int added = 0;
  for (const std::string& text : references) {
    const QString reference = QString::fromStdString(text);
    const bool known =
        std::any_of(rows_.begin(), rows_.end(), [&](const Row& row) { return row.reference == reference; });
    if (known) continue;
    beginInsertRows({}, rowCount(), rowCount());
    rows_.push_back({reference,
                     State::Loading,
                     {},
                     loader_.load(reference),
                     QString::fromStdString(host::shownText(host_, text))});
    endInsertRows();
    ++added;
  }
  return added;
}

void ServiceListModel::remove(int row) {
  loader_.giveUp(rows_[static_cast<std::size_t>(row)].load);
  beginRemoveRows({}, row, row);
  rows_.erase(rows_.begin() + row);
  endRemoveRows();
}

void ServiceListModel::draw(const QString& reference, const client::ServiceDrawing& drawing) {
  for (int i = 0; i < rowCount(); ++i) {
    if (rows_[static_cast<std::size_t>(i)].reference == reference) setDrawing(i, drawing, true);
  }
}

void ServiceListModel::drawAsOpened(const QString& reference, const client::ServiceDrawing& drawing) {
  for (int i = 0; i < rowCount(); ++i) {
    const Row& row = rows_[static_cast<std::size_t>(i)];
    if (row.reference == reference && row.isChanged) setDrawing(i, drawing, false);
  }
}

void ServiceListModel::setDrawing(int number, const client::ServiceDrawing& drawing, bool isChanged) {
  Row& row = rows_[static_cast<std::size_t>(number)];
  row.service.drawing = std::make_shared<const client::ServiceDrawing>(drawing);
  row.isChanged = isChanged;
  row.edition = ++editions_;
  emit dataChanged(index(number), index(number));
}

bool ServiceListModel::isLoading() const {
  return std::any_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.state == State::Loading; });
}

int ServiceListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ServiceListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return row.name() + "\n" + detailsOf(row);
    case Qt::DecorationRole:
      return iconOf(row.service.picture);
    case Qt::ToolTipRole:
      return row.shownReference;
    default:
      return {};
  }
}

void ServiceListModel::takeLoaded(int load, const LoadedService& service) {
  for (int i = 0; i < rowCount(); ++i) {
    Row& row = rows_[static_cast<std::size_t>(i)];
    if (row.load != load) continue;
    row.service = service;
    row.edition = ++editions_;
    row.state = service.picture.isNull() ? State::Unreadable : State::Ready;
    emit dataChanged(index(i), index(i));
  }
}

}  // namespace vlclientui::viewer
