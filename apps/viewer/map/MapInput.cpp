// Pointer and keys on the map.
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "viewer/map/MapView.h"

namespace vlclientui::viewer {
namespace {

constexpr double zoomStep = 1.5;
constexpr double moveStep = 60;  // pixels
constexpr double leastDrag = 4;  // pixels; what is shorter is a click

}  // namespace

void MapView::zoomIn() { zoom(zoomStep); }

void MapView::zoomOut() { zoom(1 / zoomStep); }

// What lies beyond the earth is cut off; in bent systems it is what lies around the rectangle.
void MapView::stretchRectangle(QPointF to) {
  const client::MapPoint one = frame_.toMap(dragFrom_);
  const client::MapPoint other = frame_.toMap(to);
  const auto kept = frame_.degreesOf({std::min(one.x, other.x), std::min(one.y, other.y),
                                      std::max(one.x, other.x), std::max(one.y, other.y)});
  const bool isArea = kept.xMin < kept.xMax && kept.yMin < kept.yMax;
  stretched_ = isArea ? std::optional(kept) : std::nullopt;
  update();
}

void MapView::wheelEvent(QWheelEvent* event) {
  const double factor = std::pow(zoomStep, event->angleDelta().y() / 120.0);
  const double scale = frame_.nearestPixel(frame_.pixel() / factor);
  // The place under the pointer stays where it is.
  const QPointF fromMiddle = event->position() - QPointF(width() / 2.0, height() / 2.0);
  const QPointF shift = fromMiddle * (frame_.pixel() - scale);
  setPlace({frame_.middle().x + shift.x(), frame_.middle().y - shift.y()}, scale);
}

// Other buttons may be pressed while a person drags with the left one.
void MapView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  dragFrom_ = pressedAt_ = event->position();
  const bool isBox = zoomBox_ || (event->modifiers() & Qt::ShiftModifier);
  drag_ = drawing_ ? Drag::Rectangle : isBox ? Drag::Box : Drag::Move;
  if (drag_ == Drag::Move) setCursor(Qt::ClosedHandCursor);
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
  emit pointerMoved(frame_.toMap(event->position()));
  if (event->buttons() & Qt::LeftButton) dragTo(event->position());
}

void MapView::dragTo(QPointF to) {
  if (drag_ == Drag::Rectangle) return stretchRectangle(to);
  if (drag_ == Drag::Box) {
    box_ = QRectF(dragFrom_, to).normalized();
    return update();
  }
  // A hand that trembles at a click moves nothing.
  const bool isClick = dragFrom_ == pressedAt_ && (to - pressedAt_).manhattanLength() < leastDrag;
  if (drag_ != Drag::Move || isClick) return;
  moveBy(dragFrom_ - to);
  dragFrom_ = to;
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) endDrag(event->position());
}

void MapView::endDrag(QPointF at) {
  const Drag ended = std::exchange(drag_, Drag::None);
  if (ended == Drag::Rectangle) return endRectangle(at);
  if (ended == Drag::Box) return endBox(at);
  showPointer();
  if (ended == Drag::Move && dragFrom_ == pressedAt_) emit clicked(frame_.toMap(at));
}

void MapView::endRectangle(QPointF at) {
  const QPointF way = at - dragFrom_;
  stretchRectangle(at);
  if (!stretched_ || std::abs(way.x()) < leastDrag || std::abs(way.y()) < leastDrag) {
    stretched_.reset();
    return update();
  }
  rectangle_ = stretched_;
  endDrawing();
  emit rectangleChanged();
}

// The tool stays, as a person often zooms several times.
void MapView::endBox(QPointF at) {
  box_.reset();
  showPointer();
  const QRectF box = QRectF(dragFrom_, at).normalized();
  if (box.width() < leastDrag || box.height() < leastDrag) return update();
  const double share = std::max(box.width() / std::max(1, width()), box.height() / std::max(1, height()));
  setPlace(frame_.toMap(box.center()), frame_.pixel() * share);
}

void MapView::leaveEvent(QEvent*) { emit pointerLeft(); }

void MapView::contextMenuEvent(QContextMenuEvent* event) {
  const bool isAtPointer = event->reason() == QContextMenuEvent::Mouse;
  const QPoint at = isAtPointer ? event->pos() : rect().center();
  emit menuWanted(frame_.toMap(at), mapToGlobal(at));
}

// Nothing where no tool is on.
void MapView::endTool() {
  drag_ = Drag::None;
  if (drawing_) return endDrawing();
  box_.reset();
  setZoomBox(false);
  update();
}

void MapView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      return drawing_ || zoomBox_ || box_ ? endTool() : QWidget::keyPressEvent(event);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return emit clicked(frame_.middle());
    case Qt::Key_Plus:
      return zoomIn();
    case Qt::Key_Minus:
      return zoomOut();
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

}  // namespace vlclientui::viewer
