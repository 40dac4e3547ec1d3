#pragma once

#include <QWidget>
#include <optional>

#include "viewer/list/ServiceListModel.h"
#include "viewer/map/Footprints.h"
#include "viewer/map/Graticule.h"
#include "viewer/map/MapFrame.h"
#include "viewer/map/MapLayers.h"
#include "viewer/map/Outlines.h"
#include "viewer/map/ShownImage.h"

namespace vlclientui::viewer {

/// A map of the services in any coordinate system, degrees at first: each that is visible drawn from its own
/// pixels, the first of the list on top, under a graticule. Of the picked service it shows the outlines of
/// its sources and its viewpoint. Drawing never keeps it waiting; a quiet sign tells that something is
/// missing still. Wheel and plus and minus keys zoom, dragging and arrow keys move. A person can draw a
/// rectangle on it, which stays until it is cleared or another one is drawn.
class MapView : public QWidget {
  Q_OBJECT

 public:
  explicit MapView(const ServiceListModel& services, QWidget* parent = nullptr);

  /// What the map shows, WGS 84 degrees; in degrees in the proportions of the widget, otherwise the rectangle
  /// around it.
  [[nodiscard]] host::GeographicEnvelope view() const { return frame_.view(); }
  /// Its system, middle and scale.
  [[nodiscard]] const MapFrame& frame() const { return frame_; }
  /// Shows the same place of the earth in another system, at the same scale; what is shown whole stays so.
  /// @returns false, and stays, where no way leads there.
  bool setSystem(const client::MapSystem& system);
  /// Whether a person has chosen its system, which then stays whatever comes onto the map.
  [[nodiscard]] bool isSystemChosen() const { return isSystemChosen_; }
  void noteSystemChosen(bool isChosen) { isSystemChosen_ = isChosen; }
  /// How a listed service is colored; null until that is known.
  [[nodiscard]] std::shared_ptr<const client::Stretch> stretch(const QString& reference) const {
    return layers_.stretch(reference);
  }
  /// Whether anything that it shows is being drawn.
  [[nodiscard]] bool isDrawingServices() const { return layers_.isBusy(); }
  /// For a person: why a service, or something of it, is not drawn; empty when all is well.
  [[nodiscard]] QString problem(const QString& reference) const { return layers_.problem(reference); }
  /// Draws all services anew, from files that may have changed, and what failed.
  void reload() { layers_.reload(); }
  /// Small copies of large images that it draws.
  [[nodiscard]] MapCopies& copies() { return layers_.copies(); }
  /// What it shows of a service, without marks, in pixels of the screen; transparent where it has none.
  [[nodiscard]] QImage picture(const QString& reference);
  /// The pixels of the screen that it covers: on a dense screen more than the widget's own.
  [[nodiscard]] QSize pixels() const { return (QSizeF(size()) * devicePixelRatioF()).toSize(); }
  void showWorld();
  /// The extent in the middle, whole, with a margin.
  void showExtent(const host::GeographicEnvelope& extent);
  /// As view() told it, whole.
  void showView(const host::GeographicEnvelope& view);
  /// As frame().area() told it, in coordinates of its system, whole.
  void showArea(const client::Bounds& area);
  void zoom(double factor);
  void zoomIn();
  void zoomOut();
  /// What it showed before: the same middle and scale, in the system of now.
  void showFrame(const MapFrame& frame);
  /// A place of the map in the middle. @param pixel of the widget, in units of the map.
  void showPlace(client::MapPoint middle, double pixel) { setPlace(middle, pixel); }

  /// Shows the marks of a listed service until another one is shown; one without a reference
  /// removes them.
  void showImage(const ShownImage& image);
  [[nodiscard]] const ShownImage& image() const { return image_; }
  /// Marks the outline of a listed service, above all others; empty for none.
  void mark(const QString& reference);
  /// Marks a place by a small cross, as one that was asked for its values. @param place in coordinates of the
  /// map; nothing for none.
  void markPlace(const std::optional<client::MapPoint>& place);
  /// Where a place in degrees is shown, in pixels of the widget.
  [[nodiscard]] QPointF toPixel(double x, double y) const {
    return frame_.pixelOf(x, y).value_or(QPointF(-1e6, -1e6));
  }

  /// While on, dragging draws a rectangle instead of moving the map; Escape cancels.
  void setDrawing(bool on);
  /// While on, dragging zooms to a box instead of moving the map; Escape ends it. With the shift key a drag
  /// does so at any time.
  void setZoomBox(bool on);
  /// The one that was drawn last, WGS 84 degrees, cut to the world.
  [[nodiscard]] const std::optional<host::GeographicEnvelope>& rectangle() const { return rectangle_; }
  void clearRectangle();

  [[nodiscard]] QSize sizeHint() const override { return {640, 420}; }

 signals:
  void viewChanged();
  /// More of the services was drawn, or how they are colored is known.
  void layersChanged();
  /// It shows another part than before, and not for a change of its size alone.
  void moved();
  /// @param problem as problem() tells it.
  void problemChanged(const QString& reference, const QString& problem);
  /// The pointer has moved. @param place in coordinates of the map.
  void pointerMoved(vlclientui::client::MapPoint place);
  void pointerLeft();
  /// A click that moved nothing, or the middle by Enter. @param place in coordinates of the map.
  void clicked(vlclientui::client::MapPoint place);
  /// Its context menu is wanted. @param place in coordinates of the map.
  void menuWanted(vlclientui::client::MapPoint place, QPoint onScreen);
  void rectangleChanged();
  /// A rectangle was drawn or canceled.
  void drawingEnded();
  void zoomBoxEnded();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// What dragging with the left button does.
  enum class Drag { None, Move, Rectangle, Box };

  void dragTo(QPointF to);
  void endDrag(QPointF at);
  void endRectangle(QPointF at);
  void endBox(QPointF at);
  void endTool();
  void fitAgain();
  void stretchRectangle(QPointF to);
  void endDrawing();
  void drawBox(QPainter& painter) const;
  void showPointer();
  void fit(const host::GeographicEnvelope& extent, double margin);
  void setPlace(client::MapPoint middle, double pixel);
  void followLayers();
  void showLayers();
  void moveBy(QPointF pixels);
  void drawRectangle(QPainter& painter);
  void drawServices(QPainter& painter);
  void drawMarked(QPainter& painter);
  void drawMarkedPlace(QPainter& painter) const;
  void drawMarks(QPainter& painter);
  [[nodiscard]] bool shows(const QString& reference) const;
  void drawHint(QPainter& painter) const;
  void drawBusySign(QPainter& painter) const;

  const ServiceListModel& services_;
  host::GeographicEnvelope wanted_;  // shown whole, also after a resize, until somebody moves the map
  double wantedMargin_ = 1;
  std::optional<client::Bounds> wantedArea_;  // instead, in coordinates of the map
  bool keepsWanted_ = true;
  MapFrame frame_;
  Outlines outlines_;
  Graticule graticule_;
  Footprints footprints_;
  MapLayers layers_;
  double density_ = 1;  // pixels of the screen for one of the widget, when it was last painted
  bool isSystemChosen_ = false;
  bool isResizing_ = false;
  Drag drag_ = Drag::None;
  QPointF pressedAt_;
  QPointF dragFrom_;
  bool zoomBox_ = false;
  std::optional<QRectF> box_;  // while the button is down
  ShownImage image_;
  QString marked_;
  std::optional<client::MapPoint> markedPlace_;
  bool drawing_ = false;
  std::optional<host::GeographicEnvelope> rectangle_;
  std::optional<host::GeographicEnvelope> stretched_;  // while the button is down
};

}  // namespace vlclientui::viewer
