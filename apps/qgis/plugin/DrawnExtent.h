#pragma once

#include <QAction>
#include <QObject>
#include <QPointer>
#include <optional>

#include <qgsmapcanvas.h>
#include <qgsmaptoolextent.h>
#include <qgsrubberband.h>

#include "host/Services.h"

namespace vlclientui::qgis {

/// A rectangle that a person draws on QGIS's map; it stays there until the next one, or until it is cleared.
class DrawnExtent : public QObject {
  Q_OBJECT

 public:
  explicit DrawnExtent(QgsMapCanvas& canvas, QObject* parent = nullptr);
  ~DrawnExtent() override;

  /// Nothing until one is drawn. In degrees.
  [[nodiscard]] const std::optional<host::GeographicEnvelope>& place() const { return place_; }
  /// That begins the drawing.
  [[nodiscard]] QAction* draw() const { return draw_; }
  [[nodiscard]] QAction* clear() const { return clear_; }

 private:
  void take(const QgsRectangle& extent);
  void forget();

  QPointer<QgsMapCanvas> canvas_;
  QAction* draw_;
  QAction* clear_;
  QPointer<QgsMapToolExtent> tool_;  ///< the canvas takes it along
  QPointer<QgsMapTool> former_;
  QgsRubberBand* band_;  ///< of the canvas, which takes it along
  std::optional<host::GeographicEnvelope> place_;
};

}  // namespace vlclientui::qgis
