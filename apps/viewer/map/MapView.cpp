#include "viewer/map/MapView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vlclientui::viewer {
namespace {

constexpr double marginShare = 1.15;
constexpr double finest = 1e-6;  // degrees per pixel
constexpr double coarsest = 2.0;
constexpr double zoomStep = 1.5;
constexpr double moveStep = 60;  // pixels
constexpr double leastDrag = 4;  // pixels; what is shorter is a click

const QColor water(0xdf, 0xe9, 0xee);
const QColor lineColor(0xb9, 0xca, 0xd3);
const QColor ink(0x4a, 0x5f, 0x6b);
const QColor frameColor(0x17, 0x60, 0x7a);
const QColor rectangleColor(0xc2, 0x41, 0x0c);
const QColor footprintColor(0xff, 0xd5, 0x4a);
const QColor viewPointColor(0xd8, 0x1b, 0x60);
const QColor halo(255, 255, 255, 220);

double nearestScale(double degreesPerPixel) { return std::clamp(degreesPerPixel, finest, coarsest); }

// The smallest round step that leaves about 90 pixels between lines.
double graticuleStep(double degreesPerPixel) {
  const double least = degreesPerPixel * 90;
  for (const double step :
       {0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 15.0, 30.0}) {
    if (step >= least) return step;
  }
  return 60;
}

// Readable on any picture.
void drawWithHalo(QPainter& painter, QPointF at, const QString& text) {
  QPainterPath path;
  path.addText(at, painter.font(), text);
  painter.strokePath(path, QPen(QColor(255, 255, 255, 200), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(path, ink);
}

QString degreesText(double value, char positive, char negative, double step) {
  const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
  const QString number = QString::number(std::abs(value), 'f', decimals) + QChar(0x00B0);
  if (std::abs(value) < step / 2) return number;
  return number + QChar(value > 0 ? positive : negative);
}

}  // namespace

MapView::MapView(const ServiceListModel& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName("MapView");
  setAccessibleName(tr("Map"));
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(240, 180);
  showPointer();
  connect(&services_, &QAbstractItemModel::dataChanged, this, qOverload<>(&QWidget::update));
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, qOverload<>(&QWidget::update));
}

host::GeographicEnvelope MapView::view() const {
  const double halfWidth = width() * degreesPerPixel_ / 2;
  const double halfHeight = height() * degreesPerPixel_ / 2;
  return {std::max(-180.0, center_.x() - halfWidth), std::max(-90.0, center_.y() - halfHeight),
          std::min(180.0, center_.x() + halfWidth), std::min(90.0, center_.y() + halfHeight)};
}

void MapView::showWorld() { showExtent({}); }

void MapView::showExtent(const host::GeographicEnvelope& extent) {
  wanted_ = extent;
  const bool world = extent == host::GeographicEnvelope{};
  const double margin = world ? 1.0 : marginShare;
  const double across = (extent.xMax - extent.xMin) * margin / std::max(1, width());
  const double down = (extent.yMax - extent.yMin) * margin / std::max(1, height());
  setPlace({(extent.xMin + extent.xMax) / 2, (extent.yMin + extent.yMax) / 2}, std::max(across, down));
  keepsWanted_ = true;
}

void MapView::zoom(double factor) { setPlace(center_, degreesPerPixel_ / factor); }

void MapView::showImage(const ShownImage& image) {
  image_ = image;
  update();
}

void MapView::setDrawing(bool on) {
  if (drawing_ == on) return;
  drawing_ = on;
  stretched_.reset();
  showPointer();
  update();
}

void MapView::clearRectangle() {
  rectangle_.reset();
  update();
  emit rectangleChanged();
}

void MapView::stretchRectangle(QPointF to) {
  const QPointF one = toDegrees(dragFrom_);
  const QPointF other = toDegrees(to);
  stretched_ = {std::min(one.x(), other.x()), std::min(one.y(), other.y()), std::max(one.x(), other.x()),
                std::max(one.y(), other.y())};
  update();
}

void MapView::endDrawing() {
  setDrawing(false);
  emit drawingEnded();
}

void MapView::showPointer() { setCursor(drawing_ ? Qt::CrossCursor : Qt::OpenHandCursor); }

void MapView::setPlace(QPointF center, double degreesPerPixel) {
  center_ = {std::clamp(center.x(), -180.0, 180.0), std::clamp(center.y(), -90.0, 90.0)};
  degreesPerPixel_ = nearestScale(degreesPerPixel);
  keepsWanted_ = false;
  update();
  emit viewChanged();
}

void MapView::moveBy(QPointF pixels) {
  setPlace(center_ + QPointF(pixels.x(), -pixels.y()) * degreesPerPixel_, degreesPerPixel_);
}

QPointF MapView::toPixel(double x, double y) const {
  return {width() / 2.0 + (x - center_.x()) / degreesPerPixel_,
          height() / 2.0 - (y - center_.y()) / degreesPerPixel_};
}

QPointF MapView::toDegrees(QPointF pixel) const {
  const double x = center_.x() + (pixel.x() - width() / 2.0) * degreesPerPixel_;
  const double y = center_.y() - (pixel.y() - height() / 2.0) * degreesPerPixel_;
  return {std::clamp(x, -180.0, 180.0), std::clamp(y, -90.0, 90.0)};
}

QRectF MapView::toPixels(const host::GeographicEnvelope& extent) const {
  return {toPixel(extent.xMin, extent.yMax), toPixel(extent.xMax, extent.yMin)};
}

void MapView::paintEvent(QPaintEvent*) {
  // The window may have come to a screen of another density.
  if (std::exchange(density_, devicePixelRatioF()) != devicePixelRatioF()) {
    QMetaObject::invokeMethod(this, &MapView::viewChanged, Qt::QueuedConnection);
  }
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Mid).lighter(115));
  painter.fillRect(toPixels({}), water);
  painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
  drawServices(painter);
  drawMarks(painter);
  drawGraticule(painter);
  drawRectangle(painter);
  if (services_.rowCount() == 0) drawHint(painter);
}

// A thumbnail keeps the grid of its raster, so stretched over the extent it is only approximately right.
void MapView::drawServices(QPainter& painter) const {
  for (const auto& row : services_.rows()) {
    if (!row.service.envelope) continue;
    const QRectF place = toPixels(*row.service.envelope);
    if (image_.reference == row.reference) {
      drawPlaced(painter);
    } else if (!row.service.picture.isNull()) {
      painter.drawImage(place, row.service.picture);
    }
    painter.setPen(QPen(frameColor, 1));
    painter.drawRect(place);
  }
}

QPolygonF MapView::outlineOf(const host::GeographicCorners& corners) const {
  QPolygonF pixels;
  for (const auto& corner : corners) pixels << toPixel(corner.x, corner.y);
  return pixels;
}

void MapView::drawPlaced(QPainter& painter) const {
  if (image_.picture.isNull()) return;
  const QPolygonF whole(QList<QPointF>{{0, 0},
                                       {1.0 * image_.picture.width(), 0},
                                       {1.0 * image_.picture.width(), 1.0 * image_.picture.height()},
                                       {0, 1.0 * image_.picture.height()}});
  QTransform way;
  if (!QTransform::quadToQuad(whole, outlineOf(image_.corners), way)) return;
  painter.save();
  painter.setTransform(way, true);
  painter.drawImage(0, 0, image_.picture);
  painter.restore();
}

bool MapView::shows(const QString& reference) const {
  const auto& rows = services_.rows();
  return std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.reference == reference; });
}

// Light and dark together, to be visible on any picture.
void MapView::drawMarks(QPainter& painter) const {
  if (!shows(image_.reference)) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  for (const auto& footprint : image_.marks.footprints) {
    const QPolygonF outline = outlineOf(footprint);
    painter.setPen(QPen(QColor(0, 0, 0, 130), 2.5));
    painter.drawPolygon(outline);
    painter.setPen(QPen(footprintColor, 1.2, Qt::DashLine));
    painter.drawPolygon(outline);
  }
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

void MapView::drawRectangle(QPainter& painter) const {
  const auto& shown = stretched_ ? stretched_ : rectangle_;
  if (!shown) return;
  const QRectF place = toPixels(*shown);
  painter.fillRect(place, QColor(rectangleColor.red(), rectangleColor.green(), rectangleColor.blue(), 40));
  // Dark over light, to be visible on any picture.
  painter.setPen(QPen(halo, 3));
  painter.drawRect(place);
  painter.setPen(QPen(rectangleColor, 1.5, Qt::DashLine));
  painter.drawRect(place);
}

void MapView::drawGraticule(QPainter& painter) const {
  const double step = graticuleStep(degreesPerPixel_);
  const auto shown = view();
  const QRectF world = toPixels({});
  const auto line = [&](QPointF from, QPointF to, QPointF label, const QString& text) {
    painter.setPen(QPen(QColor(lineColor.red(), lineColor.green(), lineColor.blue(), 150), 1));
    painter.drawLine(from, to);
    drawWithHalo(painter, label, text);
  };
  const double bottom = std::min<double>(height(), world.bottom()) - 5;
  const double left = std::max(0.0, world.left()) + 5;
  for (double x = std::ceil(shown.xMin / step) * step; x <= shown.xMax; x += step) {
    const double pixel = toPixel(x, 0).x();
    line({pixel, world.top()}, {pixel, world.bottom()}, {pixel + 3, bottom}, degreesText(x, 'E', 'W', step));
  }
  for (double y = std::ceil(shown.yMin / step) * step; y <= shown.yMax; y += step) {
    const double pixel = toPixel(0, y).y();
    line({world.left(), pixel}, {world.right(), pixel}, {left, pixel - 3}, degreesText(y, 'N', 'S', step));
  }
}

void MapView::drawHint(QPainter& painter) const {
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.3);
  painter.setFont(large);
  painter.setPen(ink);
  const QString text = tr("No services yet.\nChoose Services > Add services... to pick some.");
  QRectF box = painter.boundingRect(rect(), Qt::AlignCenter, text);
  painter.fillRect(box.adjusted(-16, -12, 16, 12), QColor(255, 255, 255, 225));
  painter.drawText(box, Qt::AlignCenter, text);
}

void MapView::wheelEvent(QWheelEvent* event) {
  const double factor = std::pow(zoomStep, event->angleDelta().y() / 120.0);
  const double scale = nearestScale(degreesPerPixel_ / factor);
  // The place under the pointer stays where it is.
  const QPointF fromMiddle = event->position() - QPointF(width() / 2.0, height() / 2.0);
  const QPointF shift = fromMiddle * (degreesPerPixel_ - scale);
  setPlace(center_ + QPointF(shift.x(), -shift.y()), scale);
}

// Other buttons may be pressed while a person drags with the left one.
void MapView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  dragFrom_ = event->position();
  if (!drawing_) setCursor(Qt::ClosedHandCursor);
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) return;
  if (drawing_) return stretchRectangle(event->position());
  moveBy(dragFrom_ - event->position());
  dragFrom_ = event->position();
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (!drawing_) return showPointer();
  const QPointF way = event->position() - dragFrom_;
  stretchRectangle(event->position());
  // Cut to the world, it may be empty.
  const bool isArea = stretched_->xMin < stretched_->xMax && stretched_->yMin < stretched_->yMax;
  if (!isArea || std::abs(way.x()) < leastDrag || std::abs(way.y()) < leastDrag) {
    stretched_.reset();
    return update();
  }
  rectangle_ = stretched_;
  endDrawing();
  emit rectangleChanged();
}

void MapView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      return drawing_ ? endDrawing() : QWidget::keyPressEvent(event);
    case Qt::Key_Plus:
      return zoom(zoomStep);
    case Qt::Key_Minus:
      return zoom(1 / zoomStep);
    case Qt::Key_Left:
      return moveBy({-moveStep, 0});
    case Qt::Key_Right:
      return moveBy({moveStep, 0});
    case Qt::Key_Up:
      return moveBy({0, -moveStep});
    case Qt::Key_Down:
      return moveBy({0, moveStep});
    default:
      QWidget::keyPressEvent(event);
  }
}

void MapView::resizeEvent(QResizeEvent*) {
  if (keepsWanted_) {
    showExtent(wanted_);
  } else {
    emit viewChanged();
  }
}

}  // namespace vlclientui::viewer
