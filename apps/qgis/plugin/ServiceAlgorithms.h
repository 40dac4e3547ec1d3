#pragma once

#include <qgsprocessingprovider.h>

namespace vlclientui::qgis {

/// Algorithms of Processing for layers of services. So far one, which saves a layer as a raster: the step
/// before algorithms that want the name of a file, as those of GDAL do.
class ServiceAlgorithms : public QgsProcessingProvider {
 public:
  [[nodiscard]] QString id() const override;
  [[nodiscard]] QString name() const override;
  [[nodiscard]] QIcon icon() const override;

 protected:
  void loadAlgorithms() override;
};

}  // namespace vlclientui::qgis
