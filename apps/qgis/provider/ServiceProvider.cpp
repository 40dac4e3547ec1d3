#include "qgis/provider/ServiceProvider.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <mutex>
#include <set>

#include <qgsmaplayer.h>
#include <qgsmessagelog.h>

#include "contracts/RuntimeFailure.h"
#include "qgis/provider/GivenUpWaits.h"
#include "qgis/provider/GivingUp.h"
#include "qgis/provider/IdentifiedValues.h"
#include "qgis/provider/LayerBlocks.h"
#include "qgis/provider/LayerHost.h"

namespace vlclientui::qgis {
namespace {

int countOf(std::int64_t pixels) {
  return static_cast<int>(std::clamp<std::int64_t>(pixels, 1, std::numeric_limits<int>::max()));
}

/// What a failure says to a person; empty for work that ended well.
template <class Work>
QString problemIn(Work work) {
  try {
    work();
    return {};
  } catch (const RuntimeFailure& failure) {
    return QString::fromStdString(failure.description());
  } catch (const std::exception& failure) {
    return QString::fromUtf8(failure.what());
  }
}

/// A map tells the errors of its layers; who draws otherwise finds them in the log, each once.
void tellOnce(const QString& missing, QgsRasterBlockFeedback* feedback) {
  if (missing.isEmpty()) return;
  if (feedback != nullptr && !feedback->errors().contains(missing)) feedback->appendError(missing);
  static std::mutex mutex;
  static std::set<QString> told;
  {
    const std::lock_guard lock(mutex);
    if (!told.insert(missing).second) return;
  }
  QgsMessageLog::logMessage(missing, QStringLiteral("Image services"), Qgis::MessageLevel::Warning);
}

/// What is drawn, which may go on when nobody waits for it any more.
struct Drawing {
  Drawing(int width, int height)
      : block(std::make_unique<QgsRasterBlock>(Qgis::DataType::ARGB32_Premultiplied, width, height)) {
    block->setIsNoData();
  }
  void draw(const LayerService& service, const QgsRectangle& extent) {
    outcome = drawInto(*block, service, extent);
    if (!outcome.isWhole) block->setIsNoData();
  }

  std::unique_ptr<QgsRasterBlock> block;
  DrawnBlock outcome;
};

// Print layouts are drawn on the thread of the interface, piece by piece.
void drawPatiently(const std::shared_ptr<Drawing>& drawing,
                   const std::shared_ptr<const LayerService>& service, const std::string& reference,
                   const QgsRectangle& extent) {
  static GivenUpWaits givenUp;
  if (!service->readsServers() || !isPatient()) return drawing->draw(*service, extent);
  const auto draw = [drawing, service, extent] { drawing->draw(*service, extent); };
  const bool isGivenUp =
      givenUp.has(reference) || doPatiently(QString::fromStdString(reference), draw) == Patiently::GivenUp;
  if (!isGivenUp) return;
  givenUp.note(reference);
  throw RuntimeFailure("Waiting for " + reference + " was given up.");
}

QString row(const QString& name, const QString& value) {
  return QStringLiteral("<tr><td class=\"highlight\">%1</td><td>%2</td></tr>\n")
      .arg(name, value.toHtmlEscaped());
}

}  // namespace

ServiceProvider::ServiceProvider(const QString& uri, const ProviderOptions& options,
                                 QgsDataProvider::ReadFlags flags)
    : QgsRasterDataProvider(uri, options, flags), source_(layerSourceOf(uri)) {
  std::shared_ptr<const LayerService> opened;
  const QString problem = problemIn([&] { opened = serviceForProvider(source_); });
  opened ? take(opened) : tellUnread(problem);
}

ServiceProvider::ServiceProvider(const ServiceProvider& other)
    : QgsRasterDataProvider(other.dataSourceUri(), QgsDataProvider::ProviderOptions()),
      source_(other.source_),
      service_(other.service_),
      system_(other.system_),
      problem_(other.problem_) {
  copyBaseSettings(other);
}

void ServiceProvider::tellUnread(const QString& problem) {
  problem_ = problem;
  QgsMessageLog::logMessage(problem_, QStringLiteral("Image services"));
  appendError(QgsErrorMessage(problem_, QStringLiteral("Image service")));
}

void ServiceProvider::take(const std::shared_ptr<const LayerService>& service) {
  problem_.clear();
  service_ = service;
  const client::RasterFacts& facts = service_->facts();
  system_ = QgsCoordinateReferenceSystem();
  if (!facts.srsId.empty()) system_.createFromOgcWmsCrs(QString::fromStdString(facts.srsId));
  if (!system_.isValid())
    system_ = QgsCoordinateReferenceSystem::fromWkt(QString::fromStdString(facts.srsWkt));
  const bool marks = source_.content == LayerContent::Values && marksHoles(facts);
  mSrcNoDataValue.clear();
  mSrcHasNoDataValue.clear();
  mUseSrcNoDataValue.clear();
  for (int band = 1; band <= bandCount(); ++band) {
    mSrcNoDataValue.append(std::numeric_limits<double>::quiet_NaN());
    mSrcHasNoDataValue.append(marks);
    mUseSrcNoDataValue.append(marks);
  }
}

// Files may have changed since.
void ServiceProvider::reloadProviderData() {
  layerDrawer()->forget(source_.reference);
  const bool mayWait = !service_ || service_->readsServers();
  if (mayWait && isPatient()) return openBeside();
  std::shared_ptr<const LayerService> opened;
  const QString problem = problemIn([&] { opened = std::make_shared<const LayerService>(source_); });
  opened ? take(opened) : tellUnread(problem);
}

// A wait of QGIS's window lets events run, one of which may take the layer and its provider away.
void ServiceProvider::openBeside() {
  reload_ = std::make_unique<OpeningBeside>(source_);
  connect(reload_.get(), &OpeningBeside::done, this, [this](const auto& service, const QString& problem) {
    reload_.release()->deleteLater();
    service ? take(service) : tellUnread(problem);
    emit dataChanged();
    if (auto* const layer = qobject_cast<QgsMapLayer*>(parent())) layer->triggerRepaint();
  });
}

QString ServiceProvider::description() const { return QStringLiteral("Image services of VLClientUI"); }

QgsRectangle ServiceProvider::extent() const {
  return service_ ? rectangleOf(service_->facts().envelope) : QgsRectangle();
}

int ServiceProvider::bandCount() const {
  if (!service_) return 0;
  return source_.content == LayerContent::Colors ? 1 : std::max(1, service_->facts().bandCount);
}

int ServiceProvider::xSize() const { return service_ ? countOf(service_->facts().columns) : 0; }
int ServiceProvider::ySize() const { return service_ ? countOf(service_->facts().rows) : 0; }

int ServiceProvider::capabilities() const {
  return Capability::Size | Capability::Identify | Capability::IdentifyValue | Capability::IdentifyFeature;
}

QgsRasterDataProvider::ProviderCapabilities ServiceProvider::providerCapabilities() const {
  return ProviderCapability::ReloadData;
}

Qgis::DataType ServiceProvider::dataType(int /*band*/) const {
  if (!service_) return Qgis::DataType::UnknownDataType;
  if (source_.content == LayerContent::Colors) return Qgis::DataType::ARGB32_Premultiplied;
  return valuesType(service_->facts());
}

int ServiceProvider::colorInterpretation(int band) const {
  const bool isColored = service_ && source_.content == LayerContent::Values &&
                         service_->facts().colorSpace == client::ColorSpace::Rgb && bandCount() >= 3;
  if (!isColored || band > 4) return QgsRaster::UndefinedColorInterpretation;
  constexpr int colors[] = {QgsRaster::RedBand, QgsRaster::GreenBand, QgsRaster::BlueBand,
                            QgsRaster::AlphaBand};
  return colors[band - 1];
}

QString ServiceProvider::lastErrorTitle() { return tr("Image service"); }

QString ServiceProvider::htmlMetadata() {
  if (!service_) return {};
  const client::RasterFacts& facts = service_->facts();
  const auto text = [](const std::string& told) { return QString::fromStdString(told); };
  return row(tr("Service"), text(source_.reference)) + row(tr("Title"), text(facts.title)) +
         row(tr("Region"), text(facts.region)) + row(tr("Pixel source"), text(facts.pixelSource)) +
         row(tr("Pixels"), tr("%1 bands of %2").arg(facts.bandCount).arg(text(facts.pixelType))) +
         row(tr("Unit"), text(facts.pixelUnit)) +
         row(tr("Shown as"), source_.content == LayerContent::Colors ? tr("colors") : tr("values"));
}

// Colors are drawn beyond the service too, where there are none; QGIS cuts values to the service by itself.
QgsRasterBlock* ServiceProvider::block(int band, const QgsRectangle& extent, int width, int height,
                                       QgsRasterBlockFeedback* feedback) {
  if (source_.content == LayerContent::Values)
    return QgsRasterDataProvider::block(band, extent, width, height, feedback);
  const GivingUp scope(feedback);
  auto drawing = std::make_shared<Drawing>(width, height);
  if (!service_ || drawing->block->isEmpty()) return drawing->block.release();
  const QString problem = problemIn([&] { drawPatiently(drawing, service_, source_.reference, extent); });
  if (!problem.isEmpty()) drawing = std::make_shared<Drawing>(width, height);
  tellOnce(drawing->outcome.missing, feedback);
  if (!problem.isEmpty() && (feedback == nullptr || !feedback->isCanceled())) {
    problem_ = problem;
    if (feedback != nullptr) feedback->appendError(problem);
    drawing->block->setError(QgsError(problem, QStringLiteral("Image service")));
  }
  return drawing->block.release();
}

bool ServiceProvider::readBlock(int band, const QgsRectangle& extent, int width, int height, void* values,
                                QgsRasterBlockFeedback* feedback) {
  if (!service_) return false;
  bool isWhole = false;
  const GivingUp scope(feedback);
  const QString problem = problemIn([&] {
    isWhole = readValuesInto(values, *service_, {boundsOf(extent), width, height}, band);
  });
  if (!problem.isEmpty()) {
    problem_ = problem;
    if (feedback != nullptr && !feedback->isCanceled()) feedback->appendError(problem);
  }
  return isWhole;
}

QgsRasterIdentifyResult ServiceProvider::identify(const QgsPointXY& point, QgsRaster::IdentifyFormat format,
                                                  const QgsRectangle& /*extent*/, int /*width*/,
                                                  int /*height*/, int /*dpi*/) {
  const bool isKnown = format == QgsRaster::IdentifyFormatValue || format == QgsRaster::IdentifyFormatFeature;
  if (!service_ || !isKnown) return QgsRasterIdentifyResult(QgsError(tr("Unknown format"), providerKey));
  const auto result = std::make_shared<QgsRasterIdentifyResult>();
  const QString problem = problemIn([&] {
    const auto read = [result, service = service_, point, format] {
      *result = identifiedValues(*service, point, format);
    };
    if (doPatiently(QString::fromStdString(source_.reference), read) == Patiently::GivenUp)
      throw RuntimeFailure(tr("It was given up.").toStdString());
  });
  if (!problem.isEmpty()) return QgsRasterIdentifyResult(QgsError(problem, QString::fromLatin1(providerKey)));
  return *result;
}

}  // namespace vlclientui::qgis
