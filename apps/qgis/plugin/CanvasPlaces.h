#pragma once

#include <qgscoordinatereferencesystem.h>
#include <qgsrectangle.h>

#include "host/Services.h"

namespace vlclientui::qgis {

/// A rectangle of a map in degrees; the whole world where nothing tells where it lies.
[[nodiscard]] host::GeographicEnvelope inDegrees(const QgsRectangle& place,
                                                 const QgsCoordinateReferenceSystem& system);

}  // namespace vlclientui::qgis
