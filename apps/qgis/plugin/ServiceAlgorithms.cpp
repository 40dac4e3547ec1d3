#include "qgis/plugin/ServiceAlgorithms.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <memory>

#include <qgsprocessingalgorithm.h>
#include <qgsprocessingfeedback.h>
#include <qgsprocessingparameters.h>
#include <qgsrasterblock.h>
#include <qgsrasterfilewriter.h>
#include <qgsrasterpipe.h>

#include "qgis/plugin/ServiceLayers.h"
#include "qgis/provider/LayerBlocks.h"
#include "qgis/provider/ServiceProvider.h"
#include "viewer/window/ToolIcons.h"

namespace vlclientui::qgis {
namespace {

const auto input = QStringLiteral("INPUT");
const auto content = QStringLiteral("CONTENT");
const auto extentName = QStringLiteral("EXTENT");
const auto pixelName = QStringLiteral("PIXEL");
const auto output = QStringLiteral("OUTPUT");

QString told(const char* text) { return QCoreApplication::translate("ServiceAlgorithms", text); }

/// The values of a service's layer, or its colors, in a file.
class SaveAsRaster : public QgsProcessingAlgorithm {
 public:
  [[nodiscard]] QString name() const override { return QStringLiteral("saveasraster"); }
  [[nodiscard]] QString displayName() const override { return told("Save a service as a raster"); }
  [[nodiscard]] QString shortHelpString() const override {
    return told(
        "Writes the layer of a service, as its properties make it, to a file. Algorithms that read files "
        "themselves, such as those of GDAL, take that file; native ones take the layer as it is.\n\n"
        "Without an extent it is the whole service, without a pixel size that of its own pixels.");
  }
  void initAlgorithm(const QVariantMap& configuration) override;

 protected:
  [[nodiscard]] QgsProcessingAlgorithm* createInstance() const override { return new SaveAsRaster; }
  bool prepareAlgorithm(const QVariantMap& parameters, QgsProcessingContext& context,
                        QgsProcessingFeedback* feedback) override;
  QVariantMap processAlgorithm(const QVariantMap& parameters, QgsProcessingContext& context,
                               QgsProcessingFeedback* feedback) override;

 private:
  std::unique_ptr<QgsRasterDataProvider> pixels_;
};

void SaveAsRaster::initAlgorithm(const QVariantMap& /*configuration*/) {
  addParameter(new QgsProcessingParameterRasterLayer(input, told("Layer of a service")));
  addParameter(new QgsProcessingParameterEnum(content, told("What is written"),
                                              {told("Values, as they are stored"), told("Colors, as drawn")},
                                              false, 0));
  addParameter(new QgsProcessingParameterExtent(extentName, told("Extent"), {}, true));
  addParameter(new QgsProcessingParameterNumber(pixelName, told("Size of a pixel"),
                                                QgsProcessingParameterNumber::Double, {}, true, 0));
  addParameter(new QgsProcessingParameterRasterDestination(output, told("Raster")));
}

// On the thread of the interface: the service is open already, nobody waits.
bool SaveAsRaster::prepareAlgorithm(const QVariantMap& parameters, QgsProcessingContext& context,
                                    QgsProcessingFeedback* /*feedback*/) {
  QgsRasterLayer* const layer = serviceLayer(parameterAsRasterLayer(parameters, input, context));
  const auto service = layer == nullptr ? nullptr : shownService(*layer);
  if (!service) throw QgsProcessingException(told("This is no layer of a service that can be read."));
  LayerSource source = sourceOf(*layer);
  const bool isOfValues = parameterAsEnum(parameters, content, context) == 0;
  source.content = isOfValues ? LayerContent::Values : LayerContent::Colors;
  const OpenedAhead opened(source, service);
  pixels_ = std::make_unique<ServiceProvider>(sourceText(source), QgsDataProvider::ProviderOptions(),
                                              QgsDataProvider::ReadFlags());
  return true;
}

QVariantMap SaveAsRaster::processAlgorithm(const QVariantMap& parameters, QgsProcessingContext& context,
                                           QgsProcessingFeedback* feedback) {
  QgsRectangle extent = parameterAsExtent(parameters, extentName, context, pixels_->crs());
  if (extent.isNull() || extent.isEmpty()) extent = pixels_->extent();
  double pixel = parameterAsDouble(parameters, pixelName, context);
  if (!(pixel > 0)) pixel = pixels_->extent().width() / pixels_->xSize();
  const int columns = std::max(1, static_cast<int>(std::lround(extent.width() / pixel)));
  const int rows = std::max(1, static_cast<int>(std::lround(extent.height() / pixel)));
  const QString file = parameterAsOutputLayer(parameters, output, context);
  QgsRasterFileWriter writer(file);
  writer.setOutputProviderKey(QStringLiteral("gdal"));
  writer.setOutputFormat(QgsRasterFileWriter::driverForExtension(QFileInfo(file).suffix()));
  QgsRasterPipe pipe;
  if (!pipe.set(pixels_->clone())) throw QgsProcessingException(told("The layer cannot be copied."));
  QgsRasterBlockFeedback pieces;
  QObject::connect(feedback, &QgsFeedback::canceled, &pieces, &QgsFeedback::cancel, Qt::DirectConnection);
  QObject::connect(&pieces, &QgsFeedback::progressChanged, feedback, &QgsFeedback::setProgress,
                   Qt::DirectConnection);
  const auto outcome =
      writer.writeRaster(&pipe, columns, rows, extent, pixels_->crs(), context.transformContext(), &pieces);
  for (const QString& problem : pieces.errors()) feedback->reportError(problem);
  if (outcome != QgsRasterFileWriter::NoError && !feedback->isCanceled())
    throw QgsProcessingException(told("The raster cannot be written to %1.").arg(file));
  return {{output, file}};
}

}  // namespace

QString ServiceAlgorithms::id() const { return QString::fromLatin1(providerKey); }

QString ServiceAlgorithms::name() const { return told("Image services"); }

QIcon ServiceAlgorithms::icon() const { return viewer::worldIcon(); }

void ServiceAlgorithms::loadAlgorithms() { addAlgorithm(new SaveAsRaster); }

}  // namespace vlclientui::qgis
