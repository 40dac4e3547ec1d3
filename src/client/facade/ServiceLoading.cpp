#include "client/facade/ServiceLoading.h"

#include <algorithm>

#include "client/catalogue/Catalogue.h"
#include "client/facade/CatalogueServer.h"
#include "client/network/CoverageRaster.h"
#include "client/ranges/RangeFiles.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

// A server that is silent or asks who is there has the service, maybe.
CatalogueEntry locatedOrFailure(CatalogueServer& server, const std::string& reference) {
  std::string reason;
  const SilenceListener listener([&](const SilentEnd& end) {
    if (reasonOfServerSilence(end.reason)) reason = end.reason;
  });
  auto entry = server.locate(reference);
  if (entry) return *std::move(entry);
  if (reason.empty()) throw RuntimeFailure("There is no image service " + reference);
  throw RuntimeFailure("The image service " + reference + " cannot be reached: " + reason);
}

RasterFacts factsOrFailure(const RasterResult& result, const std::string& reference) {
  if (const auto* facts = std::get_if<RasterFacts>(&result)) return *facts;
  throw RuntimeFailure("The service " + reference +
                       " cannot be read: " + std::get<RasterProblem>(result).reason);
}

// The name of a raster of the network is for the raster library; people know the service's.
std::string sourceName(const ImageServiceRecord& service, const std::string& file) {
  if (!coverageOfRasterName(file) && !addressOfRangeRaster(file)) return {};
  return service.name.substr(service.name.rfind('/') + 1);
}

void readRaster(ImageServiceRecord& service, const CatalogueEntry& entry, CatalogueServer& server) {
  service.facts = factsOrFailure(server.readFacts({entry.file}).front(), service.reference);
  service.sources.push_back({entry.file, "1", {}, service.facts, service.facts.envelope});
  service.sources.back().name = sourceName(service, entry.file.string());
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

OpenedService opened(CatalogueServer& server, const std::string& told, MosaicReading::FactsReader readFacts) {
  const std::string reference = server.withoutSecrets(told);
  CatalogueEntry entry = locatedOrFailure(server, reference);
  OpenedService opened;
  ImageServiceRecord& service = opened.record;
  service.reference = reference;
  service.name = nameOf(reference, entry);
  service.file = entry.file;
  if (entry.kind == EntryKind::Mosaic) {
    service.kind = ServiceKind::Mosaic;
    opened.mosaic = std::make_shared<MosaicReading>(std::move(entry), std::move(readFacts));
    service = opened.mosaic->read(std::move(service), {});
  } else {
    readRaster(service, entry, server);
  }
  return opened;
}

}  // namespace

OpenedService openImageService(const std::shared_ptr<CatalogueServer>& server, const std::string& reference) {
  return opened(*server, reference, [server](const auto& files) { return server->readFacts(files); });
}

ImageServiceRecord loadImageService(CatalogueServer& server, const std::string& reference) {
  return opened(server, reference, [&](const auto& files) { return server.readFacts(files); }).record;
}

}  // namespace vlclientui::client
