#pragma once

#include <qgspointxy.h>
#include <qgsraster.h>
#include <qgsrasteridentifyresult.h>

#include "qgis/provider/LayerService.h"

namespace vlclientui::qgis {

/// What stands in the rasters of a service under a place of the layer: as values the bands of the raster that
/// the map shows there, as features one for each raster, the topmost first, with its name, id, attributes and
/// bands. Waits for the rasters.
/// @throws RuntimeFailure when the service cannot be read.
[[nodiscard]] QgsRasterIdentifyResult identifiedValues(const LayerService& service, const QgsPointXY& point,
                                                       QgsRaster::IdentifyFormat format);

}  // namespace vlclientui::qgis
