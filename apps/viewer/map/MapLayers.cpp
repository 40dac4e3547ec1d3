#include "viewer/map/MapLayers.h"

#include <QPainter>
#include <cmath>
#include <memory>
#include <ranges>
#include <utility>

#include "client/facade/ServiceDrawing.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {
namespace {

std::string idOf(const ServiceListModel::Row& row) {
  return row.reference.toStdString() + "#" + std::to_string(row.edition);
}

// A person's own choice; null where the service decides.
std::shared_ptr<const client::Stretch> stretchOf(const ServiceListModel::Row& row) {
  const auto told = row.shown.stretch.empty() ? std::nullopt : client::stretchOf(row.shown.stretch);
  return told ? std::make_shared<const client::Stretch>(*told) : nullptr;
}

client::MapDrawer::Settings drawingBy(const MapCopies& copies) {
  client::MapDrawer::Settings settings;
  settings.copies = copies.copies();
  return settings;
}

// A place of the map in whole pixels of the screen. Neighbors that lie at halves up to their last bit must
// not be rounded apart.
QRectF pixelsOf(const client::Bounds& place, const MapFrame& frame, double density) {
  constexpr double least = 1e-6;
  const auto rounded = [](double pixel) { return std::round(pixel - least); };
  const QPointF upper = frame.toPixel({place.xMin, place.yMax}) * density;
  const QPointF lower = frame.toPixel({place.xMax, place.yMin}) * density;
  return {QPointF(rounded(upper.x()), rounded(upper.y())), QPointF(rounded(lower.x()), rounded(lower.y()))};
}

// In pixels of the screen; whole ones where the picture has the same.
QRectF placeOf(const client::TileKey& key, const MapFrame& frame, double density) {
  const client::Bounds extent = key.extent();
  const bool isExact = std::abs(key.pixel * density - frame.pixel()) < frame.pixel() * 1e-9;
  if (isExact)
    return {pixelsOf(extent, frame, density).topLeft(), QSizeF(client::TileKey::side, client::TileKey::side)};
  return {frame.toPixel({extent.xMin, extent.yMax}) * density,
          frame.toPixel({extent.xMax, extent.yMin}) * density};
}

}  // namespace

MapLayers::MapLayers(const ServiceListModel& services, QObject* parent)
    : QObject(parent), services_(services), drawer_([this] { tell(); }, drawingBy(copies_)) {
  connect(&services_, &QAbstractItemModel::rowsAboutToBeRemoved, this,
          [this](const QModelIndex&, int first, int last) { forgetRows(first, last); });
}

MapLayers::~MapLayers() = default;

void MapLayers::tell() {
  told_.tell(*this, [this] {
    emit changed();
    tellProblems();
    for (const std::string& file : drawer_.takeSlowFiles()) wantCopy(file);
  });
}

// One that is added again may have changed.
void MapLayers::forgetRows(int first, int last) {
  for (int i = first; i <= last; ++i) {
    const QString& reference = services_.rows()[static_cast<std::size_t>(i)].reference;
    drawer_.forget(reference.toStdString());
    problems_.remove(reference);
  }
}

void MapLayers::reload() {
  for (const auto& row : services_.rows()) drawer_.forget(row.reference.toStdString());
}

void MapLayers::wantCopy(const std::string& file) {
  copies_.want(file);
  emit copies_.changed();
}

void MapLayers::tellProblems() {
  for (const auto& row : services_.rows()) {
    const QString problem = QString::fromStdString(drawer_.problem(idOf(row)));
    const QString reference = row.reference;
    if (problem == problems_.value(reference)) continue;
    if (problem.isEmpty())
      problems_.remove(reference);
    else
      problems_.insert(reference, problem);
    emit problemChanged(reference, problem);
  }
}

void MapLayers::show(const MapFrame& frame, double density) {
  client::MapScene scene{frame.system().wkt, frame.pixel() / density, frame.area(), {}};
  for (const auto& row : services_.rows() | std::views::reverse) {
    const auto drawing = row.service.drawing;
    if (!drawing || !row.service.envelope || !row.shown.isVisible) continue;
    scene.layers.push_back({idOf(row), [drawing](const auto& area) { return drawing->within(area); },
                            stretchOf(row), row.reference.toStdString()});
  }
  drawer_.show(std::move(scene));
  tell();
}

void MapLayers::paint(QPainter& painter, const MapFrame& frame, double density) {
  images_.begin();
  for (const auto& row : services_.rows() | std::views::reverse) {
    if (!row.shown.isVisible) continue;
    if (row.shown.opacity < 1)
      paintThrough(painter, row, frame, density);
    else
      paintLayer(painter, idOf(row), frame, density);
  }
}

// Put together first: tiles that lie over each other while some are missing would let less through.
void MapLayers::paintThrough(QPainter& painter, const ServiceListModel::Row& row, const MapFrame& frame,
                             double density) {
  QImage whole = picture(row.reference, frame, density, (QSizeF(frame.size()) * density).toSize());
  whole.setDevicePixelRatio(density);
  painter.setOpacity(row.shown.opacity);
  painter.drawImage(0, 0, whole);
  painter.setOpacity(1);
}

void MapLayers::paintLayer(QPainter& painter, const std::string& id, const MapFrame& frame, double density) {
  painter.save();
  painter.scale(1 / density, 1 / density);
  for (const client::StoredTile& tile : drawer_.tiles(id)) {
    if (tile.part) painter.setClipRect(pixelsOf(*tile.part, frame, density));
    painter.drawImage(placeOf(tile.key, frame, density), images_.of(tile.picture));
    if (tile.part) painter.setClipping(false);
  }
  painter.restore();
}

QImage MapLayers::picture(const QString& reference, const MapFrame& frame, double density, QSize size) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(density);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  for (const auto& row : services_.rows()) {
    if (row.reference == reference) paintLayer(painter, idOf(row), frame, density);
  }
  painter.end();
  image.setDevicePixelRatio(1);
  return image;
}

std::shared_ptr<const client::Stretch> MapLayers::stretch(const QString& reference) const {
  const int row = services_.rowOf(reference);
  return row < 0 ? nullptr : drawer_.stretch(idOf(services_.rows()[static_cast<std::size_t>(row)]));
}

}  // namespace vlclientui::viewer
