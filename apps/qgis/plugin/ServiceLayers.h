#pragma once

#include <QString>
#include <memory>
#include <string>

#include "qgis/provider/LayerService.h"
#include "qgis/provider/LayerSource.h"

class QgsMapLayer;
class QgsRasterLayer;

/// Layers of QGIS that show services.
namespace vlclientui::qgis {

/// Null for a layer of another kind.
[[nodiscard]] QgsRasterLayer* serviceLayer(QgsMapLayer* layer);
[[nodiscard]] LayerSource sourceOf(const QgsRasterLayer& layer);

/// Adds a layer to the project, above the others. @param name empty: the service's title.
/// @throws RuntimeFailure when the service cannot be read.
QgsRasterLayer* addServiceLayer(const LayerSource& source, const QString& name = {});

/// The layer shows the service by these properties from now on, and the project keeps them.
/// @throws RuntimeFailure when the service cannot be read by them; the layer is as before then.
void drawLayerBy(QgsRasterLayer& layer, const std::string& properties);

/// The service as the layer draws it; null for one that cannot be read.
[[nodiscard]] std::shared_ptr<const LayerService> shownService(QgsRasterLayer& layer);
/// The layer has these colors from now on, and the project keeps them. @param stretch as LayerSource has it.
/// @throws RuntimeFailure for a layer that cannot be read.
void colorLayer(QgsRasterLayer& layer, const std::string& stretch);

}  // namespace vlclientui::qgis
