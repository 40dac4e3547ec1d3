#include "client/facade/CatalogueImageService.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

#include "client/drawing/DrawingProperties.h"
#include "client/drawing/MosaicSpacing.h"
#include "client/drawing/RasterPicture.h"
#include "client/drawing/RequestRaster.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/ImageDocuments.h"
#include "client/facade/ServiceDefinition.h"
#include "client/facade/ServiceLoading.h"
#include "client/facade/ServiceReference.h"
#include "client/output/GetImageRequest.h"
#include "client/output/ImageExport.h"
#include "client/output/PartialFiles.h"
#include "client/output/ServiceFiles.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
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

CatalogueImageService::CatalogueImageService(std::shared_ptr<CatalogueServer> server, const XmlService& xml,
                                             const std::string& reference, ImageServiceSettings settings)
    : server_(std::move(server)), xml_(xml), settings_(std::move(settings)) {
  const ServiceReference target = resolved(*server_, reference, xml);
  record_ = loadImageService(*server_, target.reference);
  properties_ = defaultPropertiesDocument(record_);
  drawing_ = drawingOf(record_, readDrawingProperties(properties_, xml_));
  if (!target.properties.empty()) follow(target.properties);
  showWhole();
}

std::string CatalogueImageService::getProperty(const std::string& key) {
  throw RuntimeFailure("An image service of this generation has no property " + key);
}

std::string CatalogueImageService::GetDefinition(std::int32_t kind) {
  return serviceDefinition(kind, settings_.definitionFolder,
                           {record_.kind == ServiceKind::Mosaic, attributeNames(record_)}, xml_);
}

std::string CatalogueImageService::ServiceProperties() { return properties_; }

std::string CatalogueImageService::ServiceInfo() { return serviceInfoDocument(*drawing_.service); }

std::string CatalogueImageService::GetImageMetadata(const std::string& level) {
  if (level != "Basic") return documentWithRasters();
  if (documents_.basic.empty()) documents_.basic = basicMetadataDocument(image_);
  return documents_.basic;
}

std::string CatalogueImageService::GetMetaData(const std::string& /*key*/) {
  return serviceMetadataDocument(*drawing_.service);
}

bool CatalogueImageService::SaveProperties(const std::string& fileName) {
  try {
    failure_.clear();
    saveTo(fileName);
  } catch (const RuntimeFailure& failure) {
    failure_ = failure.description();
  } catch (const std::exception& failure) {
    failure_ = std::string("The properties could not be saved: ") + failure.what();
  }
  return failure_.empty();
}

void CatalogueImageService::ExportProperties(const std::string& request) { exportRequest_ = request; }

bool CatalogueImageService::ExportImage() {
  try {
    failure_.clear();
    runExport();
  } catch (const RuntimeFailure& failure) {
    failure_ = failure.description();
  } catch (const std::exception& failure) {
    failure_ = std::string("The export failed: ") + failure.what();
  }
  return failure_.empty();
}

std::string CatalogueImageService::status() { return statusDocument(failure_); }

void CatalogueImageService::setServiceProperties(const std::string& document) {
  follow(document);
  if (!isDrawn_) showWhole();
}

Thumbnail CatalogueImageService::drawImage(const Bounds& extent, int columns, int rows) {
  if (columns < 1 || rows < 1 || !(extent.xMax > extent.xMin) || !(extent.yMax > extent.yMin)) {
    throw RuntimeFailure("An image needs an extent and at least one pixel");
  }
  const OutputGrid grid{extent, columns, rows};
  const GdalScope scope;
  const DatasetPtr request = openRequest(*drawing_.service, drawing_.order, grid);
  Thumbnail picture{columns, rows, drawRaster(*request, columns, rows)};
  if (picture.isEmpty()) throw RuntimeFailure("The image cannot be drawn. " + scope.readFailure());
  image_ = {drawing_, grid};
  isDrawn_ = true;
  documents_ = {};
  return picture;
}

Point CatalogueImageService::viewPoint() const {
  const DrawingProperties& properties = drawing_.properties;
  if (properties.viewPointX && properties.viewPointY) return {*properties.viewPointX, *properties.viewPointY};
  const Bounds& whole = record().facts.envelope;
  return {(whole.xMin + whole.xMax) / 2, (whole.yMin + whole.yMax) / 2};
}

void CatalogueImageService::setProgress(ExportProgress progress) { settings_.progress = std::move(progress); }

void CatalogueImageService::runExport() {
  GetImageRequest request = readGetImageRequest(exportRequest_, xml_);
  request.file = server_->nativePath(request.fileName);
  if (request.file.empty()) throw RuntimeFailure("\"" + request.fileName + "\" is no path of a file");
  if (request.exportsMetadata) request.metadata = serviceMetadataDocument(*drawing_.service);
  exportImage(*drawing_.service, drawing_.order, request, settings_.progress);
}

void CatalogueImageService::saveTo(const std::string& fileName) const {
  const std::filesystem::path target = server_->nativePath(fileName);
  if (target.empty()) throw RuntimeFailure("\"" + fileName + "\" is no path of a file");
  refuseFilesOf(record_, {target});
  const std::string reference = referenceSeenFrom(target.parent_path(), record_.reference, record_.file);
  writeWholeFile(target, serviceReferenceDocument({reference, properties_}, xml_));
}

void CatalogueImageService::showWhole() {
  image_ = {drawing_, wholeGrid(*drawing_.service)};
  documents_ = {};
}

// In another coordinate system a viewpoint that nobody moved would lie nowhere near the service.
void CatalogueImageService::follow(const std::string& properties) {
  std::string document = completedProperties(properties, properties_, xml_);
  const auto wanted = readDrawingProperties(document, xml_);
  Drawing drawing = drawingOf(record_, wanted);
  if (drawing.service->facts.srsWkt != drawing_.service->facts.srsWkt) {
    document = replacedProperties(document, ownTexts(*drawing.service), xml_);
    if (sameViewpoint(wanted, readDrawingProperties(properties_, xml_))) {
      document = replacedProperties(document, middleTexts(drawing.service->facts.envelope), xml_);
    }
    drawing = drawingOf(record_, readDrawingProperties(document, xml_));
  }
  properties_ = document;
  drawing_ = std::move(drawing);
}

// The server gives the same objects for files that did not change.
const std::string& CatalogueImageService::documentWithRasters() {
  const ImageServiceRecord& service = *image_.drawing.service;
  if (documents_.uses.empty()) documents_.uses = sourceUses(service, image_.drawing.order, image_.grid);
  std::vector<std::filesystem::path> files;
  for (std::size_t i = 0; i < documents_.uses.size(); ++i) {
    if (documents_.uses[i].isInWindow) files.push_back(service.sources[i].file);
  }
  auto metadata = server_->readMetadata(files);
  if (documents_.withRasters.empty() || metadata != documents_.metadata) {
    documents_.withRasters = imageMetadataDocument(image_, documents_.uses, metadata);
    documents_.metadata = std::move(metadata);
  }
  return documents_.withRasters;
}

std::string OVLCatalogueImageService::getProperty(const std::string& key) {
  return GetDefinition(definitionKind(key));
}

}  // namespace vlclientui::client
