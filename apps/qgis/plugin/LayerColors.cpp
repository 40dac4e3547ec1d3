#include "qgis/plugin/LayerColors.h"

#include <exception>

#include <qgsproject.h>

#include "qgis/plugin/ServiceLayers.h"
#include "viewer/colors/ColorsWindow.h"

namespace vlclientui::qgis {
namespace {

QgsRasterLayer* coloredLayer(QgsMapLayer* layer) {
  QgsRasterLayer* const ofService = serviceLayer(layer);
  const bool isColored = ofService != nullptr && sourceOf(*ofService).content == LayerContent::Colors;
  return isColored ? ofService : nullptr;
}

QgsRasterLayer* layerCalled(const QString& name) {
  return coloredLayer(QgsProject::instance()->mapLayer(name));
}

}  // namespace

LayerColors::LayerColors(QWidget& window) : window_(new viewer::ColorsWindow(*this, &window)) {}

LayerColors::~LayerColors() { delete window_; }

QString LayerColors::picked() const { return layer_ ? layer_->id() : QString(); }

void LayerColors::follow(QgsRasterLayer* layer) {
  QgsRasterLayer* const colored = coloredLayer(layer);
  if (colored == layer_ && colored != nullptr) return;
  if (layer_) disconnect(layer_, nullptr, this, nullptr);
  layer_ = colored;
  if (layer_) connect(layer_, &QgsMapLayer::dataSourceChanged, this, &ColoredServices::changed);
  if (window_->isVisible()) window_->showService(picked());
}

void LayerColors::show() {
  window_->showService(picked());
  window_->show();
  window_->raise();
  window_->activateWindow();
}

std::optional<viewer::ColoredServices::Service> LayerColors::find(const QString& layer) const {
  QgsRasterLayer* const found = layerCalled(layer);
  if (found == nullptr) return std::nullopt;
  const auto service = shownService(*found);
  return Service{found->name(), service ? service->drawing() : nullptr, !service, sourceOf(*found).stretch};
}

void LayerColors::keep(const QString& layer, const std::string& stretch) {
  QgsRasterLayer* const found = layerCalled(layer);
  if (found == nullptr) return;
  try {
    colorLayer(*found, stretch);
  } catch (const std::exception& failure) {
    emit complained(tr("Colors"), QString::fromUtf8(failure.what()));
  }
}

}  // namespace vlclientui::qgis
