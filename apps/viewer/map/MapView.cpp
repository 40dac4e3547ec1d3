#include "viewer/map/MapView.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <utility>

#include "viewer/map/MapColors.h"
#include "viewer/map/ScaleBar.h"

namespace vlclientui::viewer {
namespace {

constexpr double marginShare = 1.15;

const QColor frameColor(0x17, 0x60, 0x7a);
const QColor rectangleColor(0xc2, 0x41, 0x0c);
const QColor viewPointColor(0xd8, 0x1b, 0x60);
const QColor halo(255, 255, 255, 220);

}  // namespace

MapView::MapView(const ServiceListModel& services, QWidget* parent)
    : QWidget(parent), services_(services), layers_(services) {
  setObjectName("MapView");
  setAccessibleName(tr("Map"));
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(200, 180);
  setMouseTracking(true);
  showPointer();
  followLayers();
}

void MapView::followLayers() {
  connect(&layers_, &MapLayers::changed, this, qOverload<>(&QWidget::update));
  connect(&layers_, &MapLayers::changed, this, &MapView::layersChanged);
  connect(&layers_, &MapLayers::problemChanged, this, &MapView::problemChanged);
  connect(&layers_.copies(), &MapCopies::made, this, &MapView::showLayers);
  connect(&services_, &QAbstractItemModel::dataChanged, this, &MapView::showLayers);
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &MapView::showLayers);
  connect(&services_, &QAbstractItemModel::rowsMoved, this, &MapView::showLayers);
  connect(&services_, &QAbstractItemModel::modelReset, this, &MapView::showLayers);
}

void MapView::showLayers() {
  layers_.show(frame_, devicePixelRatioF());
  update();
}

void MapView::showWorld() { showExtent({}); }

void MapView::showExtent(const host::GeographicEnvelope& extent) {
  fit(extent, extent == host::GeographicEnvelope{} ? 1.0 : marginShare);
}

void MapView::showView(const host::GeographicEnvelope& view) { fit(view, 1.0); }

void MapView::showArea(const client::Bounds& area) {
  wantedArea_ = area;
  frame_.resize(size());
  frame_.showArea(area, 1.0);
  setPlace(frame_.middle(), frame_.pixel());
  keepsWanted_ = true;
}

void MapView::fit(const host::GeographicEnvelope& extent, double margin) {
  wanted_ = extent;
  wantedMargin_ = margin;
  wantedArea_.reset();
  frame_.resize(size());
  frame_.show(extent, margin);
  setPlace(frame_.middle(), frame_.pixel());
  keepsWanted_ = true;
}

void MapView::zoom(double factor) { setPlace(frame_.middle(), frame_.pixel() / factor); }

void MapView::showFrame(const MapFrame& frame) {
  MapFrame wanted = frame;
  if (wanted.system() != frame_.system()) wanted.setSystem(frame_.system());
  setPlace(wanted.middle(), wanted.pixel());
}

bool MapView::setSystem(const client::MapSystem& system) {
  if (!frame_.setSystem(system)) return false;
  markedPlace_.reset();
  if (keepsWanted_ && !wantedArea_)
    fit(host::GeographicEnvelope(wanted_), wantedMargin_);
  else
    setPlace(frame_.middle(), frame_.pixel());
  return true;
}

QImage MapView::picture(const QString& reference) {
  return layers_.picture(reference, frame_, devicePixelRatioF(), pixels());
}

void MapView::showImage(const ShownImage& image) {
  image_ = image;
  footprints_.show(image_.marks.footprints);
  update();
}

void MapView::mark(const QString& reference) {
  marked_ = reference;
  update();
}

void MapView::markPlace(const std::optional<client::MapPoint>& place) {
  markedPlace_ = place;
  update();
}

void MapView::setDrawing(bool on) {
  if (drawing_ == on) return;
  drawing_ = on;
  if (on) setZoomBox(false);
  stretched_.reset();
  showPointer();
  update();
}

void MapView::setZoomBox(bool on) {
  if (zoomBox_ == on) return;
  zoomBox_ = on;
  box_.reset();
  if (on && drawing_) endDrawing();
  showPointer();
  update();
  if (!on) emit zoomBoxEnded();
}

void MapView::clearRectangle() {
  rectangle_.reset();
  update();
  emit rectangleChanged();
}

void MapView::endDrawing() {
  setDrawing(false);
  emit drawingEnded();
}

void MapView::showPointer() { setCursor(drawing_ || zoomBox_ ? Qt::CrossCursor : Qt::OpenHandCursor); }

void MapView::setPlace(client::MapPoint middle, double pixel) {
  frame_.resize(size());
  frame_.place(middle, pixel);
  keepsWanted_ = false;
  showLayers();
  emit viewChanged();
  if (!isResizing_) emit moved();
}

void MapView::moveBy(QPointF pixels) {
  const client::MapPoint middle = frame_.middle();
  setPlace({middle.x + pixels.x() * frame_.pixel(), middle.y - pixels.y() * frame_.pixel()}, frame_.pixel());
}

void MapView::paintEvent(QPaintEvent*) {
  // The window may have come to a screen of another density.
  if (std::exchange(density_, devicePixelRatioF()) != devicePixelRatioF()) {
    QMetaObject::invokeMethod(this, &MapView::showLayers, Qt::QueuedConnection);
    QMetaObject::invokeMethod(this, &MapView::viewChanged, Qt::QueuedConnection);
  }
  QPainter painter(this);
  const MapColors colors = mapColorsBy(palette());
  painter.fillRect(rect(), palette().color(QPalette::Mid).lighter(115));
  if (frame_.isInDegrees()) {
    painter.fillRect(outlines_.of(frame_, host::GeographicEnvelope{}).boundingRect(), colors.water);
  } else {
    painter.fillRect(rect(), colors.water);
  }
  painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
  drawServices(painter);
  drawMarks(painter);
  graticule_.draw(painter, frame_, colors);
  drawRectangle(painter);
  drawMarkedPlace(painter);
  drawScaleBar(painter, frame_, colors);
  drawBox(painter);
  if (services_.rowCount() == 0) drawHint(painter);
  if (layers_.isBusy()) drawBusySign(painter);
}

void MapView::drawServices(QPainter& painter) {
  layers_.paint(painter, frame_, devicePixelRatioF());
  painter.setPen(QPen(frameColor, 1));
  painter.setBrush(Qt::NoBrush);
  for (const auto& row : services_.rows())
    if (row.service.envelope && row.shown.isVisible)
      painter.drawPolygon(outlines_.of(frame_, *row.service.envelope));
  drawMarked(painter);
}

// Also of one that is hidden, or lies below others.
void MapView::drawMarked(QPainter& painter) {
  const int row = services_.rowOf(marked_);
  if (row < 0) return;
  const auto& envelope = services_.rows()[static_cast<std::size_t>(row)].service.envelope;
  if (!envelope) return;
  const QPolygonF outline = outlines_.of(frame_, *envelope);
  for (const QPen& pen : {QPen(halo, 5), QPen(frameColor, 2.5)}) {
    painter.setPen(pen);
    painter.drawPolygon(outline);
  }
}

void MapView::drawBusySign(QPainter& painter) const {
  const QString text = tr("drawing\u2026");
  const QRectF box(width() - 90, 6, 84, 20);
  painter.setPen(Qt::NoPen);
  painter.setBrush(mapColorsBy(palette()).sheet);
  painter.drawRoundedRect(box, 4, 4);
  painter.setPen(mapColorsBy(palette()).ink);
  painter.drawText(box, Qt::AlignCenter, text);
}

void MapView::drawMarkedPlace(QPainter& painter) const {
  if (!markedPlace_) return;
  constexpr double arm = 7;
  const QPointF at = frame_.toPixel(*markedPlace_);
  for (const QPen& pen : {QPen(halo, 5), QPen(rectangleColor, 2)}) {
    painter.setPen(pen);
    painter.drawLine(at - QPointF(arm, 0), at + QPointF(arm, 0));
    painter.drawLine(at - QPointF(0, arm), at + QPointF(0, arm));
  }
}

bool MapView::shows(const QString& reference) const {
  const auto& rows = services_.rows();
  return std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.reference == reference; });
}

// Light and dark together, to be visible on any picture.
void MapView::drawMarks(QPainter& painter) {
  if (!shows(image_.reference)) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  footprints_.draw(painter, frame_);
  painter.setRenderHint(QPainter::Antialiasing);
  if (const auto& viewPoint = image_.marks.viewPoint) {
    const QPointF at = toPixel(viewPoint->x, viewPoint->y);
    constexpr double radius = 6;
    constexpr double arm = 12;
    for (const QPen& pen : {QPen(halo, 5), QPen(viewPointColor, 2)}) {
      painter.setPen(pen);
      painter.drawEllipse(at, radius, radius);
      painter.drawLine(at - QPointF(arm, 0), at + QPointF(arm, 0));
      painter.drawLine(at - QPointF(0, arm), at + QPointF(0, arm));
    }
  }
  painter.restore();
}

void MapView::drawRectangle(QPainter& painter) {
  const auto& shown = stretched_ ? stretched_ : rectangle_;
  if (!shown) return;
  const QPolygonF place = outlines_.of(frame_, *shown);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(rectangleColor.red(), rectangleColor.green(), rectangleColor.blue(), 40));
  painter.drawPolygon(place);
  painter.setBrush(Qt::NoBrush);
  // Dark over light, to be visible on any picture.
  painter.setPen(QPen(halo, 3));
  painter.drawPolygon(place);
  painter.setPen(QPen(rectangleColor, 1.5, Qt::DashLine));
  painter.drawPolygon(place);
}

void MapView::drawBox(QPainter& painter) const {
  if (!box_) return;
  painter.setBrush(QColor(frameColor.red(), frameColor.green(), frameColor.blue(), 40));
  for (const QPen& pen : {QPen(halo, 3), QPen(frameColor, 1.5)}) {
    painter.setPen(pen);
    painter.drawRect(*box_);
  }
}

void MapView::drawHint(QPainter& painter) const {
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.3);
  painter.setFont(large);
  const MapColors colors = mapColorsBy(palette());
  painter.setPen(colors.ink);
  const QString text = tr("No services yet.\nChoose Services > Add services... to pick some.");
  QRectF box = painter.boundingRect(rect(), Qt::AlignCenter, text);
  painter.fillRect(box.adjusted(-16, -12, 16, 12), colors.sheet);
  painter.drawText(box, Qt::AlignCenter, text);
}

void MapView::resizeEvent(QResizeEvent*) {
  isResizing_ = true;
  fitAgain();
  isResizing_ = false;
}

void MapView::fitAgain() {
  if (keepsWanted_ && wantedArea_) {
    showArea(client::Bounds(*wantedArea_));
  } else if (keepsWanted_) {
    fit(host::GeographicEnvelope(wanted_), wantedMargin_);
  } else {
    setPlace(frame_.middle(), frame_.pixel());
  }
}

}  // namespace vlclientui::viewer
