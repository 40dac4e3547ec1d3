#pragma once

#include <QPointer>

#include <qgsrasterlayer.h>

#include "viewer/colors/ColoredServices.h"

namespace vlclientui::viewer {
class ColorsWindow;
}

namespace vlclientui::qgis {

/// The colors of the picked layer, in the viewer's window of colors beside the map. Services are their layers
/// here. What is chosen is drawn at once, and kept by the project with the layer.
class LayerColors : public viewer::ColoredServices {
  Q_OBJECT

 public:
  explicit LayerColors(QWidget& window);
  ~LayerColors() override;

  /// Another layer is picked; null for none. One of values has no colors of its own.
  void follow(QgsRasterLayer* layer);
  /// Whether the picked layer has colors to choose.
  [[nodiscard]] bool isAny() const { return layer_ != nullptr; }
  void show();

  [[nodiscard]] std::optional<Service> find(const QString& layer) const override;
  void keep(const QString& layer, const std::string& stretch) override;

 signals:
  void complained(const QString& title, const QString& problem);

 private:
  [[nodiscard]] QString picked() const;

  QPointer<QgsRasterLayer> layer_;
  QPointer<viewer::ColorsWindow> window_;
};

}  // namespace vlclientui::qgis
