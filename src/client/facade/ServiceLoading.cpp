#include "client/facade/ServiceLoading.h"

#include <algorithm>

#include "client/catalogue/Catalogue.h"
#include "client/catalogue/MosaicFacts.h"
#include "client/facade/CatalogueServer.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

void addSource(ImageServiceRecord& service, const MosaicSource& source, const RasterResult& result) {
  const auto* facts = std::get_if<RasterFacts>(&result);
  if (facts == nullptr) return;
  const auto found = placeInMosaic(service.facts, *facts);
  const auto* place = std::get_if<Bounds>(&found);
  if (place == nullptr) return;
  service.sources.push_back({source.file, source.rasterId, source.attributes, *facts, *place});
}

RasterFacts factsOrFailure(const RasterResult& result, const std::string& reference) {
  if (const auto* facts = std::get_if<RasterFacts>(&result)) return *facts;
  throw RuntimeFailure("The service " + reference +
                       " cannot be read: " + std::get<RasterProblem>(result).reason);
}

void readMosaic(ImageServiceRecord& service, const CatalogueEntry& entry, CatalogueServer& server) {
  std::vector<std::filesystem::path> files;
  for (const MosaicSource& source : entry.definition.sources) files.push_back(source.file);
  const std::vector<RasterResult> results = server.readFacts(files);
  service.facts = factsOrFailure(mosaicFacts(entry.definition, results, service.problems), service.reference);
  if (service.facts.title.empty()) service.facts.title = entry.file.stem().string();
  const GdalScope scope;
  for (std::size_t i = 0; i < results.size(); ++i)
    addSource(service, entry.definition.sources[i], results[i]);
}

void readRaster(ImageServiceRecord& service, const CatalogueEntry& entry, CatalogueServer& server) {
  service.facts = factsOrFailure(server.readFacts({entry.file}).front(), service.reference);
  service.sources.push_back({entry.file, "1", {}, service.facts, service.facts.envelope});
  service.metadata = server.readMetadata({entry.file}).front();
}

// The name without the server. When a folder is the server the name cannot be separated, so the leaf is used.
std::string nameOf(const std::string& reference, const CatalogueEntry& entry) {
  if (!entry.name.empty()) return entry.name;
  constexpr std::string_view scheme = "://";
  const std::size_t server = reference.find(scheme);
  const bool isService = server != std::string::npos && (reference[0] == 'I' || reference[0] == 'i');
  std::string rest = isService ? reference.substr(server + scheme.size()) : std::string();
  std::replace(rest.begin(), rest.end(), '\\', '/');
  const std::size_t slash = rest.find('/');
  const bool isHost = slash != std::string::npos && slash > 0 && rest[slash - 1] != ':';
  return isHost ? rest.substr(slash + 1) : utf8FromAny(entry.file.stem().string());
}

}  // namespace

ImageServiceRecord loadImageService(CatalogueServer& server, const std::string& reference) {
  const auto entry = server.locate(reference);
  if (!entry) throw RuntimeFailure("There is no image service " + reference);
  ImageServiceRecord service;
  service.reference = reference;
  service.name = nameOf(reference, *entry);
  service.file = entry->file;
  if (entry->kind == EntryKind::Mosaic) {
    service.kind = ServiceKind::Mosaic;
    readMosaic(service, *entry, server);
  } else {
    readRaster(service, *entry, server);
  }
  return service;
}

}  // namespace vlclientui::client
