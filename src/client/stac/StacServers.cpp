#include "client/stac/StacServers.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "client/catalogue/CatalogueNames.h"
#include "client/network/AddressProbe.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RangeFiles.h"
#include "client/raster/Text.h"
#include "client/stac/SearchQuestion.h"
#include "client/stac/StacFacts.h"
#include "client/transport/Secrets.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

// Of a host that a person names alone, besides its first page.
constexpr std::array<std::string_view, 5> usualPlaces = {"/stac", "/api/stac/v1", "/stac/v1", "/api/stac",
                                                         "/catalog.json"};

// One folder: what stands in it, by the id; a mosaic and a folder may have the same one.
struct Folder {
  std::map<std::string, Folder> folders;
  std::vector<std::pair<std::string, std::size_t>> mosaics;  ///< id and index
};

void nameFolder(const Folder& folder, const std::string& path, std::vector<std::string>& names) {
  std::vector<Sibling> siblings;
  for (const auto& [id, below] : folder.folders) siblings.push_back({id, id});
  std::map<std::string, int> counts;
  for (const auto& [id, index] : folder.mosaics) {
    const int count = ++counts[id];
    siblings.push_back({id, id + ".collection" + (count > 1 ? std::to_string(count) : std::string())});
  }
  const auto named = nameSiblings(siblings);
  auto next = named.begin();
  for (const auto& [id, below] : folder.folders) nameFolder(below, path + (next++)->shown + '/', names);
  for (const auto& [id, index] : folder.mosaics) names[index] = path + (next++)->shown;
}

void tellSilence(const std::string& server, const std::string& reason) {
  endSilently(serverSilence("catalogue", withoutSecrets(trimmed(server)), reason), "StacServers");
}

CatalogueEntry entryOf(const std::string& name, const std::shared_ptr<StacMosaic>& mosaic) {
  CatalogueEntry entry;
  entry.kind = EntryKind::Mosaic;
  entry.folder = folderOfName(name);
  entry.name = name;
  entry.file = withoutSecrets(mosaic->service().address);
  entry.origin = mosaic;
  return entry;
}

}  // namespace

std::vector<std::string> mosaicNames(const std::vector<StacService>& services) {
  Folder root;
  for (std::size_t index = 0; index < services.size(); ++index) {
    Folder* folder = &root;
    for (const std::string& id : services[index].folders) folder = &folder->folders[id];
    folder->mosaics.emplace_back(services[index].about.id, index);
  }
  std::vector<std::string> names(services.size());
  nameFolder(root, "", names);
  return names;
}

StacServers::StacServers(NetworkAccess& access, StacLimits limits) : access_(access), limits_(limits) {
  registerRangeFiles();
}

// Where the catalogue is, if there is one. One fetch, which other kinds of servers share, tells what is at an
// address.
std::optional<std::string> StacServers::catalogueOf(const std::string& server) {
  const auto told = addressOfServer(server);
  if (!told) return std::nullopt;
  if (const auto host = hostOfServer(server)) {
    const auto place = access_.hosts().placeOf(*host);
    const AddressKind kind = place ? access_.probe().kindOf(*place) : AddressKind::Nothing;
    if (kind == AddressKind::Catalogue) return place;
    // What others found there is theirs, as long as it is there.
    if (kind != AddressKind::Nothing) return std::nullopt;
  }
  const AddressKind kind = access_.probe().kindOf(told->address);
  if (kind == AddressKind::Catalogue || known_.of(server) != nullptr) return told->address;
  if (kind == AddressKind::Nothing && isPostedSearch(told->address)) return told->address;
  const bool isOpen = kind == AddressKind::Nothing && told->place == ServerPlace::Host;
  return isOpen && !access_.probe().silence(told->address) ? catalogueOnHost(server) : std::nullopt;
}

bool StacServers::isPostedSearch(const std::string& address) {
  if (!isSearchAddress(address) || access_.probe().silence(address)) return false;
  HttpRequest request;
  request.address = address;
  const HttpResult result = access_.transport().fetch(request);
  const auto* const answer = std::get_if<HttpAnswer>(&result);
  return answer != nullptr && answer->status == notAllowed;
}

std::optional<std::string> StacServers::catalogueOnHost(const std::string& server) {
  const auto host = hostOfServer(server);
  if (!host) return std::nullopt;
  auto place = access_.probe().firstOf(placesOnHost(server, usualPlaces), AddressKind::Catalogue);
  if (place) access_.hosts().remember(*host, *place);
  return place;
}

StacServers::ListingPtr StacServers::read(const std::string& server) {
  const auto address = catalogueOf(server);
  if (!address) return nullptr;
  auto tree = readStacTree(access_.transport(), *address, limits_, access_.probe().takeAnswer(*address));
  if (const auto* problem = std::get_if<StacProblem>(&tree)) {
    tellSilence(server, problem->text);
    return nullptr;
  }
  auto& found = std::get<StacTree>(tree);
  const std::vector<std::string> names = mosaicNames(found.services);
  auto listing = std::make_shared<Listing>();
  for (std::size_t i = 0; i < names.size(); ++i) {
    listing->mosaics[names[i]] =
        std::make_shared<StacMosaic>(access_.transport(), std::move(found.services[i]), limits_);
  }
  listing->problems = std::move(found.problems);
  known_.keep(server, listing);
  return listing;
}

std::optional<CatalogueContent> StacServers::list(const std::string& server) {
  const ListingPtr listing = read(server);
  if (!listing) return std::nullopt;
  CatalogueContent content;
  content.problems = listing->problems;
  for (const auto& [name, mosaic] : listing->mosaics) {
    ServiceRecord service;
    service.name = name;
    service.entry = entryOf(name, mosaic);
    service.facts = collectionFacts(mosaic->service().about);
    service.place = service.entry.file;
    content.services.push_back(std::move(service));
  }
  return content;
}

std::shared_ptr<StacMosaic> StacServers::mosaicIn(const ListingPtr& listing, const std::string& name) {
  if (!listing) return nullptr;
  const auto found = listing->mosaics.find(name);
  return found == listing->mosaics.end() ? nullptr : found->second;
}

// What is a file holds the service, and no catalogue on the way to it does.
bool StacServers::isFile(const std::string& server) const {
  const auto told = addressOfServer(server);
  const auto kind = told ? access_.probe().knownKind(told->address) : std::nullopt;
  return kind == AddressKind::RasterFile || kind == AddressKind::Mosaic || kind == AddressKind::Definition;
}

// Of several servers whose texts the reference begins with, the longest that has a mosaic of that name.
std::optional<CatalogueEntry> StacServers::find(const std::string& serverAndName) {
  const auto isKnown = [this](const std::string& server) { return known_.of(server) != nullptr; };
  for (const std::string& server : serversToAsk(serverAndName, isKnown)) {
    const std::string name = serverAndName.substr(server.size() + 1);
    auto mosaic = mosaicIn(known_.of(server), name);
    // It may have come since, or its part of the catalogue could not be had then.
    if (!mosaic) mosaic = mosaicIn(read(server), name);
    if (!mosaic && (access_.probe().isHostAway(server) || isFile(server))) break;
    if (!mosaic) continue;
    CatalogueEntry entry = entryOf(name, mosaic);
    auto definition = mosaic->definition({});
    if (const auto* problem = std::get_if<std::string>(&definition)) {
      tellSilence(server, *problem);
      return std::nullopt;
    }
    entry.definition = std::get<MosaicDefinition>(std::move(definition));
    return entry;
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
