#include "qgis/plugin/CanvasPlaces.h"

#include <algorithm>

#include <qgscoordinatetransform.h>
#include <qgsexception.h>
#include <qgsproject.h>

namespace vlclientui::qgis {

host::GeographicEnvelope inDegrees(const QgsRectangle& place, const QgsCoordinateReferenceSystem& system) {
  if (!system.isValid() || place.isEmpty() || !place.isFinite()) return {};
  const QgsCoordinateReferenceSystem degrees(QStringLiteral("EPSG:4326"));
  const QgsCoordinateTransform way(system, degrees, QgsProject::instance());
  try {
    const QgsRectangle told = way.transformBoundingBox(place);
    const host::GeographicEnvelope cut{std::max(-180.0, told.xMinimum()), std::max(-90.0, told.yMinimum()),
                                       std::min(180.0, told.xMaximum()), std::min(90.0, told.yMaximum())};
    return cut.xMin < cut.xMax && cut.yMin < cut.yMax ? cut : host::GeographicEnvelope();
  } catch (const QgsCsException&) {
    return {};
  }
}

}  // namespace vlclientui::qgis
