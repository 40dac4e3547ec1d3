#pragma once

#include <QWidget>
#include <optional>

#include "viewer/list/ServiceListModel.h"
#include "viewer/map/ShownImage.h"

namespace vlclientui::viewer {

/// A plain map in degrees: a graticule with the pictures of the services laid at their extents, the first
/// of the list lowest. Of the picked service it shows the image that was drawn for it in place of the
/// picture, the outlines of its sources and its viewpoint. Wheel and plus and minus keys zoom, dragging and
/// arrow keys move. A person can draw a rectangle on it, which stays until it is cleared or another one is
/// drawn.
class MapView : public QWidget {
  Q_OBJECT

 public:
  explicit MapView(const ServiceListModel& services, QWidget* parent = nullptr);

  /// What the map shows, WGS 84 degrees, in the proportions of the widget.
  [[nodiscard]] host::GeographicEnvelope view() const;
  /// The pixels of the screen that it covers: on a dense screen more than the widget's own.
  [[nodiscard]] QSize pixels() const { return (QSizeF(size()) * devicePixelRatioF()).toSize(); }
  void showWorld();
  /// The extent in the middle, whole, with a margin.
  void showExtent(const host::GeographicEnvelope& extent);
  void zoom(double factor);

  /// Shows the image of a listed service until another one is shown; one without a reference
  /// removes it.
  void showImage(const ShownImage& image);
  [[nodiscard]] const ShownImage& image() const { return image_; }
  /// Where a place in degrees is shown, in pixels of the widget.
  [[nodiscard]] QPointF toPixel(double x, double y) const;

  /// While on, dragging draws a rectangle instead of moving the map; Escape cancels.
  void setDrawing(bool on);
  /// The one that was drawn last, WGS 84 degrees, cut to the world.
  [[nodiscard]] const std::optional<host::GeographicEnvelope>& rectangle() const { return rectangle_; }
  void clearRectangle();

  [[nodiscard]] QSize sizeHint() const override { return {640, 420}; }

 signals:
  void viewChanged();
  void rectangleChanged();
  /// A rectangle was drawn or canceled.
  void drawingEnded();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void stretchRectangle(QPointF to);
  void endDrawing();
  void showPointer();
  void setPlace(QPointF center, double degreesPerPixel);
  void moveBy(QPointF pixels);
  [[nodiscard]] QRectF toPixels(const host::GeographicEnvelope& extent) const;
  [[nodiscard]] QPointF toDegrees(QPointF pixel) const;
  void drawRectangle(QPainter& painter) const;
  void drawGraticule(QPainter& painter) const;
  void drawServices(QPainter& painter) const;
  [[nodiscard]] QPolygonF outlineOf(const host::GeographicCorners& corners) const;
  void drawPlaced(QPainter& painter) const;
  void drawMarks(QPainter& painter) const;
  [[nodiscard]] bool shows(const QString& reference) const;
  void drawHint(QPainter& painter) const;

  const ServiceListModel& services_;
  host::GeographicEnvelope wanted_;  // shown whole, also after a resize, until somebody moves the map
  bool keepsWanted_ = true;
  QPointF center_;
  double degreesPerPixel_ = 0.5;
  double density_ = 1;  // pixels of the screen for one of the widget, when it was last painted
  QPointF dragFrom_;
  ShownImage image_;
  bool drawing_ = false;
  std::optional<host::GeographicEnvelope> rectangle_;
  std::optional<host::GeographicEnvelope> stretched_;  // while the button is down
};

}  // namespace vlclientui::viewer
