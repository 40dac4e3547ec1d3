#include "client/CatalogueImageService.h"

#include <exception>
#include <utility>

#include "client/CatalogueServer.h"
#include "client/ExportRequest.h"
#include "client/GdalScope.h"
#include "client/ImageDocuments.h"
#include "client/ImageExport.h"
#include "client/PartialFiles.h"
#include "client/RasterPicture.h"
#include "client/RequestRaster.h"
#include "client/ServiceDefinition.h"
#include "client/ServiceProperties.h"
#include "client/ServiceReference.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

ServiceReference resolved(const CatalogueServer& server, const std::string& reference,
                          const XmlService& xml) {
  if (!isReferenceFile(reference)) return {reference, {}};
  return readServiceReference(server.nativePath(reference), xml);
}

}  // namespace

CatalogueImageService::CatalogueImageService(std::shared_ptr<CatalogueServer> server, const XmlService& xml,
                                             const std::string& reference, ImageServiceSettings settings)
    : server_(std::move(server)), xml_(xml), settings_(std::move(settings)) {
  const ServiceReference target = resolved(*server_, reference, xml);
  record_ = loadImageService(*server_, target.reference);
  properties_ = target.properties.empty() ? defaultPropertiesDocument(record_) : target.properties;
  lastImage_ = wholeGrid(record_);
}

std::string CatalogueImageService::getProperty(const std::string& key) {
  throw RuntimeFailure("An image service of this generation has no property " + key);
}

std::string CatalogueImageService::GetDefinition(std::int32_t kind) {
  return serviceDefinition(kind, settings_.definitionFolder, xml_);
}

std::string CatalogueImageService::ServiceProperties() { return properties_; }

std::string CatalogueImageService::ServiceInfo() { return serviceInfoDocument(record_); }

std::string CatalogueImageService::GetImageMetadata(const std::string& level) {
  const auto detail = level == "Basic" ? MetadataDetail::Basic : MetadataDetail::WithRasters;
  return imageMetadataDocument(record_, lastImage_, detail);
}

std::string CatalogueImageService::GetMetaData(const std::string& /*key*/) {
  return serviceMetadataDocument(record_);
}

bool CatalogueImageService::SaveProperties(const std::string& fileName) {
  try {
    writeWholeFile(server_->nativePath(fileName),
                   serviceReferenceDocument({record_.reference, properties_}, xml_));
    failure_.clear();
    return true;
  } catch (const RuntimeFailure& failure) {
    failure_ = failure.description();
    return false;
  }
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
  if (!xml_.createDocument()->loadXml(document)) {
    throw RuntimeFailure("The service properties are no XML document");
  }
  properties_ = document;
}

Thumbnail CatalogueImageService::drawImage(const Bounds& extent, int columns, int rows) {
  if (columns < 1 || rows < 1 || !(extent.xMax > extent.xMin) || !(extent.yMax > extent.yMin)) {
    throw RuntimeFailure("An image needs an extent and at least one pixel");
  }
  const OutputGrid grid{extent, columns, rows};
  const GdalScope scope;
  const DatasetPtr request = openRequest(record_, order(), grid);
  Thumbnail picture{columns, rows, drawRaster(*request, columns, rows)};
  if (picture.isEmpty())
    throw RuntimeFailure("The image cannot be drawn: " + scope.firstFailure("no reason known"));
  lastImage_ = grid;
  return picture;
}

void CatalogueImageService::setProgress(ExportProgress progress) { settings_.progress = std::move(progress); }

void CatalogueImageService::runExport() {
  ExportRequest request = readExportRequest(exportRequest_, xml_);
  request.file = server_->nativePath(request.fileName);
  if (request.file.empty()) throw RuntimeFailure("\"" + request.fileName + "\" is no path of a file");
  exportImage(record_, order(), request, settings_.progress);
}

std::vector<std::size_t> CatalogueImageService::order() const {
  return orderedSources(record_.sources, readServiceProperties(properties_, xml_));
}

std::string OVLCatalogueImageService::getProperty(const std::string& key) {
  return GetDefinition(definitionKind(key));
}

}  // namespace vlclientui::client
