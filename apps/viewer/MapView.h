#pragma once

#include <QWidget>

#include "ServiceListModel.h"

namespace vlclientui::viewer {

/// A plain map in degrees: a graticule with the pictures of the services laid at their extents, the first
/// of the list lowest. Wheel and plus and minus keys zoom, dragging and arrow keys move.
class MapView : public QWidget {
  Q_OBJECT

 public:
  explicit MapView(const ServiceListModel& services, QWidget* parent = nullptr);

  /// What the map shows, WGS 84 degrees, in the proportions of the widget.
  [[nodiscard]] host::GeographicEnvelope view() const;
  void showWorld();
  /// The extent in the middle, whole, with a margin.
  void showExtent(const host::GeographicEnvelope& extent);
  void zoom(double factor);

  [[nodiscard]] QSize sizeHint() const override { return {640, 420}; }

 signals:
  void viewChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void setPlace(QPointF centre, double degreesPerPixel);
  void moveBy(QPointF pixels);
  [[nodiscard]] QPointF toPixel(double x, double y) const;
  [[nodiscard]] QRectF toPixels(const host::GeographicEnvelope& extent) const;
  void drawGraticule(QPainter& painter) const;
  void drawServices(QPainter& painter) const;
  void drawHint(QPainter& painter) const;

  const ServiceListModel& services_;
  host::GeographicEnvelope wanted_;  // shown whole, also after a resize, until somebody moves the map
  bool keepsWanted_ = true;
  QPointF centre_;
  double degreesPerPixel_ = 0.5;
  QPointF dragFrom_;
};

}  // namespace vlclientui::viewer
