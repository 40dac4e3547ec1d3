#include "qgis/plugin/ServiceLayers.h"

#include <QPointer>
#include <memory>

#include <qgsproject.h>
#include <qgsrasterlayer.h>

#include "contracts/RuntimeFailure.h"
#include "qgis/provider/ServiceProvider.h"

namespace vlclientui::qgis {
namespace {

QString titleOf(QgsRasterLayer& layer) {
  const auto service = shownService(layer);
  return service ? QString::fromStdString(service->facts().title) : QString();
}

void readFrom(QgsRasterLayer& layer, const QString& source) {
  const QgsDataProvider::ProviderOptions options{QgsProject::instance()->transformContext()};
  layer.setDataSource(source, layer.name(), QString::fromLatin1(providerKey), options);
}

}  // namespace

QgsRasterLayer* serviceLayer(QgsMapLayer* layer) {
  auto* const raster = qobject_cast<QgsRasterLayer*>(layer);
  return raster != nullptr && raster->providerType() == QLatin1String(providerKey) ? raster : nullptr;
}

std::shared_ptr<const LayerService> shownService(QgsRasterLayer& layer) {
  const auto* const provider = dynamic_cast<ServiceProvider*>(layer.dataProvider());
  return provider == nullptr ? nullptr : provider->service();
}

LayerSource sourceOf(const QgsRasterLayer& layer) { return layerSourceOf(layer.source()); }

QgsRasterLayer* addServiceLayer(const LayerSource& source, const QString& name) {
  const OpenedAhead service(source);
  auto layer = std::make_unique<QgsRasterLayer>(sourceText(source), name, QString::fromLatin1(providerKey));
  if (!layer->isValid()) {
    throw RuntimeFailure(layer->error().message(QgsErrorMessage::Text).toStdString());
  }
  if (name.isEmpty()) layer->setName(titleOf(*layer));
  QgsRasterLayer* const added = layer.release();
  QgsProject::instance()->addMapLayer(added);
  return added;
}

void drawLayerBy(QgsRasterLayer& layer, const std::string& properties) {
  LayerSource source = sourceOf(layer);
  source.properties = properties;
  const QPointer<QgsRasterLayer> drawn = &layer;
  // Events run meanwhile, and one may take the layer out of the project.
  const OpenedAhead service(source);
  if (!drawn) throw RuntimeFailure("The layer was removed meanwhile.");
  const QString former = layer.source();
  const OpenedAhead wayBack(layerSourceOf(former), shownService(layer));
  readFrom(layer, sourceText(source));
  if (!layer.isValid()) {
    const std::string problem = layer.error().message(QgsErrorMessage::Text).toStdString();
    readFrom(layer, former);
    throw RuntimeFailure(problem);
  }
  layer.triggerRepaint();
  QgsProject::instance()->setDirty(true);
}

void colorLayer(QgsRasterLayer& layer, const std::string& stretch) {
  const auto service = shownService(layer);
  if (!service) throw RuntimeFailure(layer.error().message(QgsErrorMessage::Text).toStdString());
  LayerSource source = sourceOf(layer);
  if (source.stretch == stretch) return;
  source.stretch = stretch;
  const OpenedAhead colored(source, service->coloredBy(stretch));
  readFrom(layer, sourceText(source));
  layer.triggerRepaint();
  QgsProject::instance()->setDirty(true);
}

}  // namespace vlclientui::qgis
