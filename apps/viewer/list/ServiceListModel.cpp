#include "viewer/list/ServiceListModel.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

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
  if (!row.mapProblem.isEmpty() || !row.service.problem.isEmpty())
    return ServiceListModel::tr("not all of it can be drawn");
  const bool isSolid = row.shown.opacity >= 1;
  return isSolid ? row.service.details
                 : ServiceListModel::tr("%1; %2 % opaque")
                       .arg(row.service.details)
                       .arg(std::lround(100 * row.shown.opacity));
}

// What the map tells of is what a person looks at.
QString toolTipOf(const ServiceListModel::Row& row) {
  const QString& problem = row.mapProblem.isEmpty() ? row.service.problem : row.mapProblem;
  return problem.isEmpty() ? row.shownReference : row.shownReference + "\n" + problem;
}

}  // namespace

QString ServiceListModel::Row::name() const {
  if (!shown.name.empty()) return QString::fromStdString(shown.name);
  return service.title.isEmpty() ? shownReference.section('/', -1) : service.title;
}

ServiceListModel::ServiceListModel(const host::ComposedHost& host, QObject* parent)
    : QAbstractListModel(parent), host_(host), loader_(host) {
  connect(&loader_, &ServiceLoader::known, this, &ServiceListModel::takeKnown);
  connect(&loader_, &ServiceLoader::loaded, this, &ServiceListModel::takeLoaded);
}

ServiceListModel::Row ServiceListModel::newRow(const QString& reference, const ServiceState& state) {
  Row row;
  row.reference = reference;
  row.load = loader_.load(reference, state.properties);
  row.shownReference = QString::fromStdString(host::shownText(host_, reference.toStdString()));
  row.shown = state;
  row.icon = iconOf({});
  return row;
}

// What is kept and shown of it holds no secret.
QString ServiceListModel::known(const std::string& reference) const {
  return QString::fromStdString(host_.catalogue->withoutSecrets(reference));
}

int ServiceListModel::add(const std::vector<std::string>& references) {
  int added = 0;
  for (const std::string& text : references) {
    const QString reference = known(text);
    if (rowOf(reference) >= 0) continue;
    beginInsertRows({}, 0, 0);
    rows_.insert(rows_.begin(), newRow(reference, {}));
    endInsertRows();
    ++added;
  }
  if (added > 0) emit changed();
  return added;
}

void ServiceListModel::addBelow(const ProjectService& service) {
  const QString reference = known(service.reference);
  if (rowOf(reference) >= 0) return;
  beginInsertRows({}, rowCount(), rowCount());
  rows_.push_back(newRow(reference, service.state));
  endInsertRows();
  emit changed();
}

void ServiceListModel::remove(const std::vector<int>& rows) {
  std::vector<int> last = rows;
  std::ranges::sort(last, std::greater());
  for (const int row : last) {
    loader_.giveUp(at(row).load);
    beginRemoveRows({}, row, row);
    rows_.erase(rows_.begin() + row);
    endRemoveRows();
  }
  if (!rows.empty()) emit changed();
}

void ServiceListModel::clear() {
  std::vector<int> all(rows_.size());
  std::iota(all.begin(), all.end(), 0);
  remove(all);
}

// Each at a time, so that selections and editors follow.
int ServiceListModel::move(std::vector<int> rows, int before) {
  std::ranges::sort(rows);
  const auto above = static_cast<int>(std::ranges::count_if(rows, [&](int row) { return row < before; }));
  const int first = before - above;
  for (int i = 0; i < above; ++i) shift(rows[static_cast<std::size_t>(above - 1 - i)], before - i);
  for (int i = above; i < static_cast<int>(rows.size()); ++i)
    shift(rows[static_cast<std::size_t>(i)], before + i - above);
  return first;
}

void ServiceListModel::shift(int row, int before) {
  if (!beginMoveRows({}, row, row, {}, before)) return;
  const auto from = rows_.begin() + row;
  const auto to = rows_.begin() + before;
  before > row ? std::rotate(from, from + 1, to) : std::rotate(to, from, from + 1);
  endMoveRows();
  emit changed();
}

void ServiceListModel::setVisible(int row, bool isVisible) {
  if (std::exchange(at(row).shown.isVisible, isVisible) != isVisible) tellOf(row);
}

void ServiceListModel::setOpacity(int row, double opacity) {
  if (std::exchange(at(row).shown.opacity, opacity) != opacity) tellOf(row);
}

void ServiceListModel::rename(int row, const QString& name) {
  const QString wanted = name.simplified();
  at(row).shown.name = wanted == at(row).service.title ? std::string() : wanted.toStdString();
  tellOf(row);
}

void ServiceListModel::keepProperties(int row, const std::string& properties) {
  if (std::exchange(at(row).shown.properties, properties) != properties) tellOf(row);
}

void ServiceListModel::keepStretch(int row, const std::string& stretch) {
  if (std::exchange(at(row).shown.stretch, stretch) == stretch) return;
  at(row).edition = ++editions_;
  tellOf(row);
}

void ServiceListModel::tellOf(int row) {
  emit dataChanged(index(row), index(row));
  emit changed();
}

int ServiceListModel::rowOf(const QString& reference) const {
  const auto found = std::ranges::find(rows_, reference, &Row::reference);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

std::vector<ProjectService> ServiceListModel::services() const {
  std::vector<ProjectService> services;
  for (const Row& row : rows_) services.push_back({row.reference.toStdString(), row.shown});
  return services;
}

void ServiceListModel::draw(const QString& reference, const client::ServiceDrawing& drawing) {
  for (int i = 0; i < rowCount(); ++i) {
    if (rows_[static_cast<std::size_t>(i)].reference == reference) setDrawing(i, drawing, true);
  }
}

// Those of servers are fetched only where there is none yet.
void ServiceListModel::readAgain() {
  for (int i = 0; i < rowCount(); ++i) {
    Row& row = at(i);
    if (row.state == State::Loading) continue;
    if (!row.service.drawing) {
      row.state = State::Loading;
      row.load = loader_.load(row.reference, row.shown.properties);
      emit dataChanged(index(i), index(i));
    } else if (!row.service.isOfServer || row.service.picture.isNull()) {
      loadPicture(row);
    }
  }
}

// The former picture stays until this one is there.
void ServiceListModel::loadPicture(Row& row) {
  loader_.giveUp(row.load);
  row.load = loader_.loadPicture(row.reference, row.service);
}

// The map shows nothing else than before.
void ServiceListModel::noteProblem(const QString& reference, const QString& problem) {
  const int row = rowOf(reference);
  if (row < 0) return;
  at(row).mapProblem = problem;
  emit dataChanged(index(row), index(row));
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
  // What is being read brings one of the former look, and another one follows.
  if (row.state != State::Loading && !row.service.isOfServer) loadPicture(row);
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
    case Qt::EditRole:
      return row.name();
    case Qt::CheckStateRole:
      return row.shown.isVisible ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
      return row.icon;
    case Qt::ToolTipRole:
      return toolTipOf(row);
    default:
      return {};
  }
}

bool ServiceListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid()) return false;
  if (role == Qt::CheckStateRole) {
    setVisible(index.row(), value.toInt() == Qt::Checked);
  } else if (role == Qt::EditRole) {
    rename(index.row(), value.toString());
  } else {
    return false;
  }
  return true;
}

Qt::ItemFlags ServiceListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;
  return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable | Qt::ItemIsEditable |
         Qt::ItemIsDragEnabled;
}

int ServiceListModel::rowWaitingFor(int load) const {
  const auto found = std::ranges::find(rows_, load, &Row::load);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

// The map need not wait for the picture.
void ServiceListModel::takeKnown(int load, const LoadedService& service) {
  const int i = rowWaitingFor(load);
  if (i < 0) return;
  Row& row = at(i);
  // What was applied meanwhile counts more than what the load began with.
  const auto applied = row.isChanged ? row.service.drawing : nullptr;
  row.service = service;
  if (applied) row.service.drawing = applied;
  row.edition = ++editions_;
  emit dataChanged(index(i), index(i));
}

void ServiceListModel::takeLoaded(int load, const LoadedService& service) {
  const int i = rowWaitingFor(load);
  if (i < 0) return;
  Row& row = at(i);
  row.service.picture = service.picture;
  row.icon = iconOf(service.picture);
  row.service.problem = service.problem;
  row.state = row.service.drawing ? State::Ready : State::Unreadable;
  const bool isOfFormerLook = row.service.drawing != service.drawing && !row.service.isOfServer;
  if (row.service.drawing && isOfFormerLook) loadPicture(row);
  emit dataChanged(index(i), index(i));
}

}  // namespace vlclientui::viewer
