#include "viewer/map/MapLayers.h"

#include <QMetaObject>
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

// Shares the pixels; they are never changed.
QImage imageOf(const client::PicturePtr& picture) {
  auto* const keeper = new client::PicturePtr(picture);
  const auto release = [](void* kept) { delete static_cast<client::PicturePtr*>(kept); };
  return QImage(picture->rgba.data(), picture->columns, picture->rows, picture->columns * 4,
                QImage::Format_RGBA8888, release, keeper);
}

// In pixels of the screen; whole ones where the picture has the same.
QRectF placeOf(const client::TileKey& key, const MapFrame& frame, double density) {
  const client::Bounds extent = key.extent();
  const QPointF upper = frame.toPixel({extent.xMin, extent.yMax}) * density;
  const QPointF lower = frame.toPixel({extent.xMax, extent.yMin}) * density;
  const bool isExact = std::abs(key.pixel * density - frame.pixel()) < frame.pixel() * 1e-9;
  if (!isExact) return {upper, lower};
  return {std::round(upper.x()), std::round(upper.y()), client::TileKey::side, client::TileKey::side};
}

}  // namespace

MapLayers::MapLayers(const ServiceListModel& services, QObject* parent)
    : QObject(parent), services_(services), drawer_([this] { tell(); }) {}

MapLayers::~MapLayers() = default;

void MapLayers::tell() {
  if (isTold_.exchange(true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        isTold_ = false;
        emit changed();
      },
      Qt::QueuedConnection);
}

void MapLayers::show(const MapFrame& frame, double density) {
  client::MapScene scene{frame.system().wkt, frame.pixel() / density, frame.area(), {}};
  for (const auto& row : services_.rows() | std::views::reverse) {
    const auto drawing = row.service.drawing;
    if (!drawing || !row.service.envelope || !row.shown.isVisible) continue;
    scene.layers.push_back(
        {idOf(row), [drawing](const auto& area) { return drawing->within(area); }, stretchOf(row)});
  }
  drawer_.show(std::move(scene));
}

void MapLayers::paint(QPainter& painter, const MapFrame& frame, double density) {
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
    painter.drawImage(placeOf(tile.key, frame, density), imageOf(tile.picture));
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
