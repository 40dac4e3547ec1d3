#include "qgis/plugin/DrawnExtent.h"

#include <QColor>

#include <qgsgeometry.h>

#include "qgis/plugin/CanvasPlaces.h"
#include "viewer/window/ToolIcons.h"

namespace vlclientui::qgis {

DrawnExtent::DrawnExtent(QgsMapCanvas& canvas, QObject* parent)
    : QObject(parent),
      canvas_(&canvas),
      draw_(new QAction(viewer::rectangleIcon(), tr("&Draw an extent"), this)),
      clear_(new QAction(tr("C&lear the extent"), this)),
      tool_(new QgsMapToolExtent(&canvas)),
      band_(new QgsRubberBand(&canvas, QgsWkbTypes::PolygonGeometry)) {
  draw_->setCheckable(true);
  draw_->setToolTip(tr("Draw a rectangle to filter services by, and to export"));
  clear_->setEnabled(false);
  tool_->setAction(draw_);
  band_->setStrokeColor(QColor(220, 60, 0));
  band_->setFillColor(Qt::transparent);
  band_->setWidth(2);
  connect(draw_, &QAction::triggered, this, [this] {
    if (!canvas_) return;
    if (canvas_->mapTool() != tool_) former_ = canvas_->mapTool();
    canvas_->setMapTool(tool_);
  });
  connect(clear_, &QAction::triggered, this, &DrawnExtent::forget);
  connect(tool_.data(), &QgsMapToolExtent::extentChanged, this, &DrawnExtent::take);
}

DrawnExtent::~DrawnExtent() {
  if (!canvas_) return;
  canvas_->unsetMapTool(tool_);
  delete tool_.data();
  delete band_;
}

// The tool that was there before comes back: one rectangle is what was wanted.
void DrawnExtent::take(const QgsRectangle& extent) {
  if (extent.isEmpty()) return;
  const QgsCoordinateReferenceSystem system = canvas_->mapSettings().destinationCrs();
  place_ = inDegrees(extent, system);
  tool_->clearRubberBand();
  band_->setToGeometry(QgsGeometry::fromRect(extent), system);
  clear_->setEnabled(true);
  if (former_) canvas_->setMapTool(former_);
}

void DrawnExtent::forget() {
  place_.reset();
  clear_->setEnabled(false);
  if (canvas_) band_->reset(QgsWkbTypes::PolygonGeometry);
}

}  // namespace vlclientui::qgis
