#include "client/facade/CatalogueImageService.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

#include "client/connections/SentSecret.h"
#include "client/drawing/Drawing.h"
#include "client/drawing/DrawingProperties.h"
#include "client/drawing/ImageSource.h"
#include "client/drawing/MosaicSpacing.h"
#include "client/drawing/SourceUse.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/ImageDocuments.h"
#include "client/facade/ServiceDefinition.h"
#include "client/facade/ServiceExport.h"
#include "client/facade/ServiceLoading.h"
#include "client/facade/ServiceReference.h"
#include "client/jobs/ExportJob.h"
#include "client/jobs/JobDocument.h"
#include "client/jobs/JobRequest.h"
#include "client/jobs/RelativeReference.h"
#include "client/output/ExportIdentity.h"
#include "client/output/GetImageRequest.h"
#include "client/output/KeptPixels.h"
#include "client/output/PartialFiles.h"
#include "client/output/ServiceFiles.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Text.h"
#include "client/transport/Secrets.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

ServiceReference resolved(const CatalogueServer& server, const std::string& reference,
                          const XmlService& xml) {
  const std::filesystem::path file = server.nativePath(reference);
  if (!isReferenceFile(reference, file, xml)) return {reference, {}};
  return readServiceReference(file, xml);
}

// What the service tells of itself; a person's words about it do not count.
std::vector<std::pair<std::string, std::string>> ownTexts(const ImageServiceRecord& service) {
  const Spacing spacing = averageSpacing(service.sources);
  return {{"AvgImageSpacingX", numberText(spacing.across)},
          {"AvgImageSpacingY", numberText(spacing.down)},
          {"Srs/Name", service.facts.srsName}};
}

std::vector<std::pair<std::string, std::string>> middleTexts(const Bounds& whole) {
  return {{"ViewPointX", numberText((whole.xMin + whole.xMax) / 2)},
          {"ViewPointY", numberText((whole.yMin + whole.yMax) / 2)}};
}

bool sameViewpoint(const DrawingProperties& one, const DrawingProperties& other) {
  return one.viewPointX == other.viewPointX && one.viewPointY == other.viewPointY;
}

}  // namespace

// Made on demand; none of them once the image changed.
struct MadeDocuments {
  std::string basic;
  std::vector<SourceUse> uses;
  std::vector<std::shared_ptr<const FileMetadata>> metadata;
  std::string withRasters;
};

struct CatalogueImageService::State {
  State(std::shared_ptr<CatalogueServer> catalogue, const XmlService& xmlService,
        ImageServiceSettings hostSettings)
      : server(std::move(catalogue)), xml(xmlService), settings(std::move(hostSettings)) {}

  void open(const std::string& reference);
  void setDrawing(Drawing next);
  void bringIn(const Bounds& area, MosaicReading::Opening opening);
  void runExport();
  [[nodiscard]] GetImageRequest request() const;
  [[nodiscard]] ExportJob jobOf(const GetImageRequest& wanted) const;
  void saveTo(const std::string& fileName) const;
  void showWhole();
  void follow(const std::string& document);
  [[nodiscard]] const std::string& documentWithRasters();
  [[nodiscard]] std::vector<std::shared_ptr<const FileMetadata>> sourceMetadata();
  /// Runs a step that tells of its failure in the status. @returns whether it succeeded.
  template <class Step>
  bool succeeds(const std::string& otherwise, Step step);

  std::shared_ptr<CatalogueServer> server;
  const XmlService& xml;
  ImageServiceSettings settings;
  std::shared_ptr<const ImageServiceRecord> record;  ///< in its own coordinate system; never null
  std::shared_ptr<MosaicReading> mosaic;             ///< null for one raster
  std::string properties;
  std::shared_ptr<const Drawing> drawing;
  DrawnImage image;
  bool isDrawn = false;
  MadeDocuments documents;
  std::string exportRequest;
  Keeping keeping = Keeping::Nothing;
  std::string failure;
};

CatalogueImageService::CatalogueImageService(std::shared_ptr<CatalogueServer> server, const XmlService& xml,
                                             const std::string& reference, ImageServiceSettings settings)
    : state_(std::make_unique<State>(std::move(server), xml, std::move(settings))) {
  state_->open(reference);
}

CatalogueImageService::~CatalogueImageService() = default;

void CatalogueImageService::State::open(const std::string& reference) {
  const ServiceReference target = resolved(*server, reference, xml);
  OpenedService opened = openImageService(server, target.reference);
  record = std::make_shared<const ImageServiceRecord>(std::move(opened.record));
  mosaic = std::move(opened.mosaic);
  properties = defaultPropertiesDocument(*record);
  setDrawing(drawingOf(*record, readDrawingProperties(properties, xml)));
  if (!target.properties.empty()) follow(target.properties);
  showWhole();
}

template <class Step>
bool CatalogueImageService::State::succeeds(const std::string& otherwise, Step step) {
  try {
    failure.clear();
    step();
  } catch (const RuntimeFailure& reason) {
    failure = reason.description();
  } catch (const std::exception& reason) {
    failure = otherwise + reason.what();
  }
  return failure.empty();
}

std::string CatalogueImageService::getProperty(const std::string& key) {
  throw RuntimeFailure("An image service of this generation has no property " + key);
}

std::string CatalogueImageService::GetDefinition(std::int32_t kind) {
  return serviceDefinition(
      kind, state_->settings.definitionFolder,
      {state_->record->kind == ServiceKind::Mosaic, attributeNames(*state_->record), state_->record->choices},
      state_->xml);
}

std::string CatalogueImageService::ServiceProperties() { return state_->properties; }

std::string CatalogueImageService::ServiceInfo() { return serviceInfoDocument(*state_->drawing->service); }

std::string CatalogueImageService::GetImageMetadata(const std::string& level) {
  if (level != "Basic") return state_->documentWithRasters();
  if (state_->documents.basic.empty()) state_->documents.basic = basicMetadataDocument(state_->image);
  return state_->documents.basic;
}

std::string CatalogueImageService::GetMetaData(const std::string& /*key*/) {
  return serviceMetadataDocument(*state_->drawing->service);
}

bool CatalogueImageService::SaveProperties(const std::string& fileName) {
  return state_->succeeds("The properties could not be saved: ", [&] { state_->saveTo(fileName); });
}

void CatalogueImageService::ExportProperties(const std::string& request) { state_->exportRequest = request; }

bool CatalogueImageService::ExportImage() {
  return state_->succeeds("The export failed: ", [&] { state_->runExport(); });
}

std::string CatalogueImageService::status() { return statusDocument(state_->failure); }

void CatalogueImageService::setServiceProperties(const std::string& document) {
  state_->follow(document);
  if (!state_->isDrawn) state_->showWhole();
}

Thumbnail CatalogueImageService::drawImage(const Bounds& extent, int columns, int rows) {
  const ServiceDrawing present = drawing();
  Thumbnail picture = present.draw(extent, columns, rows);
  showDrawn(present, extent, columns, rows);
  return picture;
}

ServiceDrawing CatalogueImageService::drawing() const {
  return ServiceDrawing(state_->drawing, state_->record, state_->mosaic);
}

void CatalogueImageService::showDrawn(const ServiceDrawing& drawing, const Bounds& extent, int columns,
                                      int rows) {
  const bool isPresent = drawing.drawing_ == state_->drawing;
  if (isPresent) state_->bringIn(extent, MosaicReading::Opening::Done);
  const auto shown = withoutUnopened(isPresent ? state_->drawing : drawing.drawing_, extent);
  state_->image = {*shown, {extent, columns, rows}};
  state_->isDrawn = true;
  state_->documents = {};
}

const ImageServiceRecord& CatalogueImageService::record() const { return *state_->drawing->service; }

const RasterFacts& CatalogueImageService::facts() const { return record().facts; }

std::vector<Bounds> CatalogueImageService::sourcePlaces() const {
  std::vector<Bounds> places;
  if (record().kind != ServiceKind::Mosaic) return places;
  for (const ImageSource& source : record().sources) places.push_back(source.place);
  return places;
}

void CatalogueImageService::refuseOwnFiles(const std::vector<std::filesystem::path>& files) const {
  refuseFilesOf(record(), files);
}

Point CatalogueImageService::viewPoint() const {
  const DrawingProperties& properties = state_->drawing->properties;
  if (properties.viewPointX && properties.viewPointY) return {*properties.viewPointX, *properties.viewPointY};
  const Bounds& whole = facts().envelope;
  return {(whole.xMin + whole.xMax) / 2, (whole.yMin + whole.yMax) / 2};
}

void CatalogueImageService::setProgress(ExportProgress progress) {
  state_->settings.progress = std::move(progress);
}

GetImageRequest CatalogueImageService::State::request() const {
  GetImageRequest request = readGetImageRequest(exportRequest, xml);
  request.file = server->nativePath(request.fileName);
  if (request.file.empty()) throw RuntimeFailure("\"" + request.fileName + "\" is no path of a file");
  return request;
}

void CatalogueImageService::State::runExport() {
  const GetImageRequest wanted = request();
  bringIn(wanted.grid.extent, MosaicReading::Opening::All);
  const std::string job = wanted.exportsMetadata ? jobDocument(jobOf(wanted), xml) : std::string();
  exportService(*drawing, wanted, job, keeping, settings.progress);
}

// The reference of a file may have been told from where the process stood, which may be gone.
ExportJob CatalogueImageService::State::jobOf(const GetImageRequest& wanted) const {
  ExportJob job;
  std::error_code isGone;
  const auto here = std::filesystem::current_path(isGone);
  job.reference = withoutTypedSecrets(referenceFrom(here, record->reference)).text;
  job.properties = properties;
  const RasterFacts& facts = drawing->service->facts;
  job.system = facts.srsId.empty() ? facts.srsWkt : facts.srsId;
  takeRequest(job, wanted);
  return job;
}

std::string CatalogueImageService::inputMark() {
  const GetImageRequest wanted = state_->request();
  state_->bringIn(wanted.grid.extent, MosaicReading::Opening::All);
  const Drawing& drawing = *state_->drawing;
  const ExportIdentity identity =
      exportIdentity(*drawing.service, drawing.order, wanted, state_->settings.progress);
  return identity.request + "-" + identity.source;
}

ExportJob CatalogueImageService::job() const { return state_->jobOf(state_->request()); }

void CatalogueImageService::setKeeping(Keeping keeping) { state_->keeping = keeping; }

Keeping CatalogueImageService::keeping() const { return state_->keeping; }

bool CatalogueImageService::readsServers() const { return client::readsServers(record()); }

ExportForecast CatalogueImageService::forecastExport() {
  const GetImageRequest wanted = state_->request();
  state_->bringIn(wanted.grid.extent, MosaicReading::Opening::All);
  return client::forecastExport(*state_->drawing, wanted);
}

std::optional<KeptPart> CatalogueImageService::keptPart() const {
  try {
    return client::keptPart(state_->request());
  } catch (const RuntimeFailure&) {
    return std::nullopt;
  }
}

bool CatalogueImageService::discardKept() { return client::discardKept(state_->request().file); }

void CatalogueImageService::State::saveTo(const std::string& fileName) const {
  const std::filesystem::path target = server->nativePath(fileName);
  if (target.empty()) throw RuntimeFailure("\"" + fileName + "\" is no path of a file");
  refuseFilesOf(*record, {target});
  const std::string reference = referenceSeenFrom(target.parent_path(), record->reference, record->file);
  writeWholeFile(target, serviceReferenceDocument({reference, properties}, xml));
}

void CatalogueImageService::State::showWhole() {
  image = {*drawing, wholeGrid(*drawing->service)};
  documents = {};
}

void CatalogueImageService::State::setDrawing(Drawing next) {
  drawing = std::make_shared<const Drawing>(std::move(next));
}

// Sources that only a catalogue told of so far.
void CatalogueImageService::State::bringIn(const Bounds& area, MosaicReading::Opening opening) {
  auto opened = mosaic ? mosaic->openedWithin(record, *drawing, area, opening) : record;
  if (opened == record) return;
  record = std::move(opened);
  setDrawing(drawingOf(*record, readDrawingProperties(properties, xml)));
}

// In another coordinate system a viewpoint that nobody moved would lie nowhere near the service.
void CatalogueImageService::State::follow(const std::string& document) {
  std::string completed = completedProperties(document, properties, xml);
  const auto wanted = readDrawingProperties(completed, xml);
  const std::string& asset = drawing->properties.asset;
  auto own = record;
  if (wanted.asset != asset && !record->choices.empty()) {
    own = std::make_shared<const ImageServiceRecord>(mosaic->read(*record, wanted.asset));
  }
  Drawing next = drawingOf(*own, wanted);
  if (next.service->facts.srsWkt != drawing->service->facts.srsWkt) {
    completed = replacedProperties(completed, ownTexts(*next.service), xml);
    if (sameViewpoint(wanted, readDrawingProperties(properties, xml))) {
      completed = replacedProperties(completed, middleTexts(next.service->facts.envelope), xml);
    }
    next = drawingOf(*own, readDrawingProperties(completed, xml));
  }
  properties = completed;
  record = std::move(own);
  setDrawing(std::move(next));
}

// In order, of the sources in the window. What only a catalogue told of so far is not opened for this.
std::vector<std::shared_ptr<const FileMetadata>> CatalogueImageService::State::sourceMetadata() {
  static const auto none = std::make_shared<const FileMetadata>();
  const std::vector<ImageSource>& sources = image.drawing.service->sources;
  std::vector<std::filesystem::path> files;
  for (std::size_t i = 0; i < documents.uses.size(); ++i) {
    const bool isRead = documents.uses[i].isInWindow && sources[i].factsFrom == FactsFrom::File;
    if (isRead) files.push_back(sources[i].file);
  }
  const auto read = server->readMetadata(files);
  auto next = read.begin();
  std::vector<std::shared_ptr<const FileMetadata>> metadata;
  for (std::size_t i = 0; i < documents.uses.size(); ++i) {
    if (!documents.uses[i].isInWindow) continue;
    metadata.push_back(sources[i].factsFrom == FactsFrom::File ? *next++ : none);
  }
  return metadata;
}

// The server gives the same objects for files that did not change.
const std::string& CatalogueImageService::State::documentWithRasters() {
  const ImageServiceRecord& service = *image.drawing.service;
  if (documents.uses.empty()) documents.uses = sourceUses(service, image.drawing.order, image.grid);
  auto metadata = sourceMetadata();
  if (documents.withRasters.empty() || metadata != documents.metadata) {
    documents.withRasters = imageMetadataDocument(image, documents.uses, metadata);
    documents.metadata = std::move(metadata);
  }
  return documents.withRasters;
}

std::string OVLCatalogueImageService::getProperty(const std::string& key) {
  return GetDefinition(definitionKind(key));
}

}  // namespace vlclientui::client
