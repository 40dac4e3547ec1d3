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

const auto inputName = QStringLiteral("INPUT");
const auto contentName = QStringLiteral("CONTENT");
const auto extentName = QStringLiteral("EXTENT");
const auto pixelName = QStringLiteral("PIXEL");
const auto outputName = QStringLiteral("OUTPUT");

QString algorithmWords(const char* text) { return QCoreApplication::translate("ServiceAlgorithms", text); }

/// The values of a service's layer, or its colors, in a file.
class SaveAsRaster : public QgsProcessingAlgorithm {
 public:
  [[nodiscard]] QString name() const override { return QStringLiteral("saveasraster"); }
  [[nodiscard]] QString displayName() const override { return algorithmWords("Save a service as a raster"); }
  [[nodiscard]] QString shortHelpString() const override {
    return algorithmWords(
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
  addParameter(new QgsProcessingParameterRasterLayer(inputName, algorithmWords("Layer of a service")));
  addParameter(new QgsProcessingParameterEnum(
      contentName, algorithmWords("What is written"),
      {algorithmWords("Values, as they are stored"), algorithmWords("Colors, as drawn")}, false, 0));
  addParameter(new QgsProcessingParameterExtent(extentName, algorithmWords("Extent"), {}, true));
  addParameter(new QgsProcessingParameterNumber(pixelName, algorithmWords("Size of a pixel"),
                                                QgsProcessingParameterNumber::Double, {}, true, 0));
  addParameter(new QgsProcessingParameterRasterDestination(outputName, algorithmWords("Raster")));
}

// On the thread of the interface: the service is open already, nobody waits.
bool SaveAsRaster::prepareAlgorithm(const QVariantMap& parameters, QgsProcessingContext& context,
                                    QgsProcessingFeedback* /*feedback*/) {
  QgsRasterLayer* const layer = serviceLayer(parameterAsRasterLayer(parameters, inputName, context));
  const auto service = layer == nullptr ? nullptr : shownService(*layer);
  if (!service)
    throw QgsProcessingException(algorithmWords("This is no layer of a service that can be read."));
  LayerSource source = sourceOf(*layer);
  const bool isOfValues = parameterAsEnum(parameters, contentName, context) == 0;
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
  const QString file = parameterAsOutputLayer(parameters, outputName, context);
  QgsRasterFileWriter writer(file);
  writer.setOutputProviderKey(QStringLiteral("gdal"));
  writer.setOutputFormat(QgsRasterFileWriter::driverForExtension(QFileInfo(file).suffix()));
  QgsRasterPipe pipe;
  if (!pipe.set(pixels_->clone()))
    throw QgsProcessingException(algorithmWords("The layer cannot be copied."));
  QgsRasterBlockFeedback pieces;
  QObject::connect(feedback, &QgsFeedback::canceled, &pieces, &QgsFeedback::cancel, Qt::DirectConnection);
  QObject::connect(&pieces, &QgsFeedback::progressChanged, feedback, &QgsFeedback::setProgress,
                   Qt::DirectConnection);
  const auto outcome =
      writer.writeRaster(&pipe, columns, rows, extent, pixels_->crs(), context.transformContext(), &pieces);
  for (const QString& problem : pieces.errors()) feedback->reportError(problem);
  if (outcome != QgsRasterFileWriter::NoError && !feedback->isCanceled())
    throw QgsProcessingException(algorithmWords("The raster cannot be written to %1.").arg(file));
  return {{outputName, file}};
}

}  // namespace

QString ServiceAlgorithms::id() const { return QString::fromLatin1(providerKey); }

QString ServiceAlgorithms::name() const { return algorithmWords("Image services"); }

QIcon ServiceAlgorithms::icon() const { return viewer::worldIcon(); }

void ServiceAlgorithms::loadAlgorithms() { addAlgorithm(new SaveAsRaster); }

}  // namespace vlclientui::qgis
