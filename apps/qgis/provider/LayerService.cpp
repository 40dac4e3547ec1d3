#include "qgis/provider/LayerService.h"

#include "client/facade/CatalogueImageService.h"
#include "qgis/provider/LayerHost.h"

namespace vlclientui::qgis {
namespace {

client::ServiceDrawing drawingOf(const LayerSource& source) {
  const host::ComposedHost host = layerHost();
  client::CatalogueImageService service(host.catalogue, *host.platform->xml, source.reference,
                                        {host.installation.definitions, {}});
  if (!source.properties.empty()) service.setServiceProperties(source.properties);
  return service.drawing();
}

}  // namespace

LayerService::LayerService(const LayerSource& source) : drawing_(drawingOf(source)) {
  layer_.id = source.reference + "#" + source.properties;
  layer_.service = source.reference;
  layer_.source = [drawing = drawing_](const std::optional<client::Bounds>& area) {
    return drawing.within(area);
  };
}

}  // namespace vlclientui::qgis
