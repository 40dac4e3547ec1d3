#pragma once

#include <memory>

#include <qgsrasterdataprovider.h>

#include "qgis/provider/LayerService.h"
#include "qgis/provider/OpeningBeside.h"

namespace vlclientui::qgis {

/// A service as a raster of QGIS, by a LayerSource. QGIS copies it for each drawing and uses the copies on
/// threads of its own; all of them share one LayerService.
class ServiceProvider final : public QgsRasterDataProvider {
 public:
  ServiceProvider(const QString& uri, const ProviderOptions& options, QgsDataProvider::ReadFlags flags);
  ServiceProvider(const ServiceProvider& other);
  ServiceProvider& operator=(const ServiceProvider&) = delete;

  ServiceProvider* clone() const override { return new ServiceProvider(*this); }

  QString name() const override { return QString::fromLatin1(providerKey); }
  QString description() const override;
  QgsCoordinateReferenceSystem crs() const override { return system_; }
  bool isValid() const override { return service_ != nullptr; }
  QgsRectangle extent() const override;
  int bandCount() const override;
  int xSize() const override;
  int ySize() const override;
  int capabilities() const override;
  ProviderCapabilities providerCapabilities() const override;
  Qgis::DataType dataType(int band) const override;
  Qgis::DataType sourceDataType(int band) const override { return dataType(band); }
  int colorInterpretation(int band) const override;
  QString htmlMetadata() override;
  QString lastErrorTitle() override;
  QString lastError() override { return problem_; }

  QgsRasterBlock* block(int band, const QgsRectangle& extent, int width, int height,
                        QgsRasterBlockFeedback* feedback = nullptr) override;
  QgsRasterIdentifyResult identify(const QgsPointXY& point, QgsRaster::IdentifyFormat format,
                                   const QgsRectangle& extent = QgsRectangle(), int width = 0, int height = 0,
                                   int dpi = 96) override;

  [[nodiscard]] const LayerSource& layerSource() const { return source_; }
  /// Null for a service that cannot be read.
  [[nodiscard]] const std::shared_ptr<const LayerService>& service() const { return service_; }

 protected:
  bool readBlock(int band, const QgsRectangle& extent, int width, int height, void* values,
                 QgsRasterBlockFeedback* feedback = nullptr) override;
  /// What may wait for a server is opened beside the windows, and shown once it is there.
  void reloadProviderData() override;

 private:
  void take(const std::shared_ptr<const LayerService>& service);
  void tellUnread(const QString& problem);
  void openBeside();

  LayerSource source_;
  std::shared_ptr<const LayerService> service_;
  QgsCoordinateReferenceSystem system_;
  QString problem_;
  std::unique_ptr<OpeningBeside> reload_;  ///< null while nothing is being opened anew
};

}  // namespace vlclientui::qgis
