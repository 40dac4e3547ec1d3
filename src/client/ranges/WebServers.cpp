#include "client/ranges/WebServers.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "client/catalogue/CatalogueNames.h"
#include "client/catalogue/MosaicFacts.h"
#include "client/network/FileContent.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RangeFiles.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "client/waiting/Wait.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

void tellSilence(const std::string& server, const std::string& reason) {
  endSilently(serverSilence("server", withoutSecrets(trimmed(server)), reason), "WebServers");
}

std::string tooDeep() {
  return "it lies more than " + std::to_string(WebServers::deepest) + " folders deep, and is not listed";
}

std::string tooMany() {
  return std::to_string(WebServers::mostFolders) + " folders were listed before it, and no more are";
}

bool isFile(AddressKind kind) {
  return kind == AddressKind::RasterFile || kind == AddressKind::Mosaic || kind == AddressKind::Definition;
}

// A file at an address with a query is called as the page that gives it.
CatalogueName nameOfFile(const std::string& address) {
  const std::string name = fileNameOf(*parsedAddress(address));
  return nameSiblings({{fs::path(name).stem().string(), name}}).front();
}

CatalogueEntry entryOf(const std::string& name, const std::string& address) {
  CatalogueEntry entry;
  entry.folder = folderOfName(name);
  entry.name = name;
  entry.file = rangeRasterName(address);
  return entry;
}

ServiceRecord serviceOf(const std::string& name, const CatalogueName& own, const std::string& address) {
  ServiceRecord service;
  service.name = name;
  service.entry = entryOf(name, address);
  service.place = service.entry.file;
  service.facts.title = own.real;
  return service;
}

CatalogueEntry mosaicEntryOf(const std::string& name, const std::string& address,
                             const WebDefinition& definition) {
  CatalogueEntry entry = entryOf(name, address);
  entry.kind = EntryKind::Mosaic;
  entry.file = withoutSecrets(address);
  entry.definition = definition.definition;
  return entry;
}

ServiceRecord mosaicServiceOf(const std::string& name, const CatalogueName& own, const std::string& address,
                              const WebDefinition& read) {
  ServiceRecord service = serviceOf(name, own, address);
  service.entry = mosaicEntryOf(name, address, read);
  service.place = service.entry.file;
  const MosaicDefinition& definition = read.definition;
  if (!definition.name.empty()) service.facts.title = definition.name;
  if (!definition.title.empty()) service.facts.title = definition.title;
  service.facts.region = definition.region;
  service.facts.pixelSource = definition.pixelSource;
  return service;
}

// Whose headers tell of a service.
std::vector<std::string> imagesOf(const ServiceRecord& service) {
  const bool isMosaic = service.entry.kind == EntryKind::Mosaic;
  if (!isMosaic) return {*addressOfRangeRaster(service.entry.file.string())};
  std::vector<std::string> addresses;
  for (const MosaicSource& source : service.entry.definition.sources)
    addresses.push_back(*addressOfRangeRaster(source.file.string()));
  return addresses;
}

// Those of all services, as far as they are few; mosaics of too many sources tell only their words.
std::vector<std::vector<std::string>> imagesToRead(const std::vector<ServiceRecord>& services) {
  const auto isRaster = [](const ServiceRecord& service) { return service.entry.kind == EntryKind::Raster; };
  auto total = static_cast<std::size_t>(std::ranges::count_if(services, isRaster));
  const bool areFew = total <= WebServers::mostRead;
  std::vector<std::vector<std::string>> images(services.size());
  for (std::size_t i = 0; i < services.size() && areFew; ++i) {
    const std::size_t sources = services[i].entry.definition.sources.size();
    if (total + sources > WebServers::mostRead) continue;
    total += sources;
    images[i] = imagesOf(services[i]);
  }
  return images;
}

// Without a title of its own it keeps the name of its file.
void takeFacts(ServiceRecord& service, const RasterFacts& facts) {
  std::string title = std::move(service.facts.title);
  service.facts = facts;
  if (service.facts.title.empty()) service.facts.title = std::move(title);
}

// A mosaic one of whose sources cannot be read just now is not told by the others.
WebFacts::Read factsOfMosaic(const MosaicDefinition& definition, std::span<const WebFacts::Read> read,
                             std::vector<LeftOut>& problems) {
  std::vector<RasterResult> sources;
  for (const WebFacts::Read& one : read) {
    if (const auto* unread = std::get_if<WebFacts::Unread>(&one)) return *unread;
    if (const auto* facts = std::get_if<RasterFacts>(&one)) {
      sources.emplace_back(*facts);
    } else {
      sources.emplace_back(std::get<RasterProblem>(one));
    }
  }
  RasterResult whole = mosaicFacts(definition, sources, problems);
  if (auto* facts = std::get_if<RasterFacts>(&whole)) return std::move(*facts);
  return std::get<RasterProblem>(std::move(whole));
}

// A name that is shown wins; others count where they are of one node alone.
const WebNode* nodeOf(const std::vector<WebNode>& nodes, const std::string& name) {
  const auto shown =
      std::ranges::find_if(nodes, [&](const WebNode& node) { return node.name.shown == name; });
  if (shown != nodes.end()) return &*shown;
  for (const auto member : {&CatalogueName::real, &CatalogueName::plain}) {
    const auto isNamed = [&](const WebNode& node) { return node.name.*member == name; };
    if (std::ranges::count_if(nodes, isNamed) == 1) return &*std::ranges::find_if(nodes, isNamed);
  }
  return nullptr;
}

std::vector<std::string> stepsOf(const std::string& name) {
  std::vector<std::string> steps;
  for (std::size_t begin = 0; begin < name.size();) {
    const std::size_t slash = std::min(name.find('/', begin), name.size());
    if (slash > begin) steps.push_back(name.substr(begin, slash - begin));
    begin = slash + 1;
  }
  return steps;
}

}  // namespace

WebServers::WebServers(NetworkAccess& access, RemoteFiles& files)
    : access_(access), folders_(access.transport(), files), definitions_(access.transport()), facts_(files) {}

std::optional<CatalogueContent> WebServers::list(const std::string& server) {
  const auto told = addressOfServer(server);
  if (!told) return std::nullopt;
  const AddressKind kind = access_.probe().kindOf(*told);
  auto listed = isFile(kind)                     ? listFile(server, told->address, kind)
                : kind == AddressKind::WebFolder ? listFolder(server, told->address)
                                                 : std::nullopt;
  if (!listed || !WaitScope::isGivenUp()) return listed;
  // What had come until then would look like all that there is.
  tellSilence(server, "the wait for it was given up");
  return std::nullopt;
}

std::optional<CatalogueContent> WebServers::listFile(const std::string& server, const std::string& address,
                                                     AddressKind kind) {
  const CatalogueName name = nameOfFile(address);
  CatalogueContent content;
  if (kind == AddressKind::Definition) {
    const auto read = definitions_.read({address}, WebDefinitions::Freshness::AskAgain).front();
    if (const auto* reason = std::get_if<std::string>(&read)) {
      tellSilence(server, *reason);
      return std::nullopt;
    }
    const WebDefinition& definition = *std::get<WebDefinitions::DefinitionPtr>(read);
    content.services.push_back(mosaicServiceOf(name.shown, name, address, definition));
  } else {
    content.services.push_back(serviceOf(name.shown, name, address));
  }
  std::string reason = readFacts(content);
  if (content.services.empty())
    reason = content.problems.empty() ? "it is no image" : content.problems.front().reason;
  if (!reason.empty()) {
    tellSilence(server, reason);
    return std::nullopt;
  }
  const std::lock_guard lock(mutex_);
  listed_.insert(trimmed(server));
  return content;
}

// Level by level, so that the folders of each come side by side.
std::optional<CatalogueContent> WebServers::listFolder(const std::string& server,
                                                       const std::string& address) {
  CatalogueContent content;
  std::vector<Place> level = listLevel({{address, ""}}, content);
  const bool isSilent = level.empty() && content.services.empty() && content.problems.size() == 1 &&
                        content.problems.front().path == withoutSecrets(address);
  if (isSilent) {
    tellSilence(server, content.problems.front().reason);
    return std::nullopt;
  }
  std::size_t folders = 1;
  for (int depth = 1; !level.empty(); ++depth) {
    const bool isTooDeep = depth > deepest;
    const std::size_t room = isTooDeep ? 0 : mostFolders - std::min(folders, mostFolders);
    for (std::size_t i = room; i < level.size(); ++i)
      content.problems.push_back({withoutSecrets(level[i].address), isTooDeep ? tooDeep() : tooMany()});
    if (level.size() > room) level.resize(room);
    folders += level.size();
    level = listLevel(level, content);
  }
  std::ranges::sort(content.services, {}, &ServiceRecord::name);
  static_cast<void>(readFacts(content));
  const std::lock_guard lock(mutex_);
  listed_.insert(trimmed(server));
  return content;
}

std::vector<WebServers::Place> WebServers::listLevel(const std::vector<Place>& level,
                                                     CatalogueContent& content) {
  std::vector<std::string> addresses;
  std::ranges::transform(level, std::back_inserter(addresses), &Place::address);
  const auto read = folders_.read(addresses, WebFolders::Freshness::AskAgain);
  std::vector<Place> below;
  for (std::size_t i = 0; i < level.size(); ++i) {
    if (const auto* reason = std::get_if<std::string>(&read[i])) {
      content.problems.push_back(
          {withoutSecrets(level[i].address), "the folder cannot be listed: " + *reason});
      continue;
    }
    const WebFolder& folder = *std::get<WebFolders::FolderPtr>(read[i]);
    std::set<std::string> homes;
    addDefinitions(folder, level[i].name, content, homes);
    for (const WebNode& node : folder.images) {
      if (isNamedAsDefinition(node.entry.name)) continue;
      content.services.push_back(
          serviceOf(nameInFolder(level[i].name, node.name.shown), node.name, node.entry.address));
    }
    for (const WebNode& node : folder.folders) {
      const bool isHome = homes.contains(node.entry.address);
      if (!isHome) below.push_back({node.entry.address, nameInFolder(level[i].name, node.name.shown)});
    }
    content.problems.insert(content.problems.end(), folder.problems.begin(), folder.problems.end());
  }
  return below;
}

void WebServers::addDefinitions(const WebFolder& folder, const std::string& name, CatalogueContent& content,
                                std::set<std::string>& homes) {
  std::vector<const WebNode*> nodes;
  std::vector<std::string> addresses;
  for (const WebNode& node : folder.images) {
    if (!isNamedAsDefinition(node.entry.name)) continue;
    nodes.push_back(&node);
    addresses.push_back(node.entry.address);
  }
  const auto read = definitions_.read(addresses, WebDefinitions::Freshness::AskAgain);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (const auto* reason = std::get_if<std::string>(&read[i])) {
      content.problems.push_back({withoutSecrets(addresses[i]), *reason});
      continue;
    }
    const WebDefinition& definition = *std::get<WebDefinitions::DefinitionPtr>(read[i]);
    content.services.push_back(
        mosaicServiceOf(nameInFolder(name, nodes[i]->name.shown), nodes[i]->name, addresses[i], definition));
    homes.insert(definition.sourceFolder);
  }
}

std::string WebServers::readFacts(CatalogueContent& content) {
  const auto images = imagesToRead(content.services);
  std::vector<std::string> addresses;
  for (const auto& own : images) addresses.insert(addresses.end(), own.begin(), own.end());
  const std::vector<WebFacts::Read> results = facts_.read(addresses);
  std::string firstReason;
  std::vector<ServiceRecord> services;
  std::size_t next = 0;
  for (std::size_t i = 0; i < images.size(); ++i) {
    ServiceRecord& service = content.services[i];
    const std::span<const WebFacts::Read> own(results.data() + next, images[i].size());
    next += own.size();
    const bool isMosaic = service.entry.kind == EntryKind::Mosaic;
    const WebFacts::Read read = own.empty() ? WebFacts::Unread()
                                : isMosaic  ? factsOfMosaic(service.entry.definition, own, content.problems)
                                            : own.front();
    if (const auto* problem = std::get_if<RasterProblem>(&read)) {
      content.problems.push_back({shownPlace(service.entry.file.string()), problem->reason});
      continue;
    }
    if (const auto* facts = std::get_if<RasterFacts>(&read)) takeFacts(service, *facts);
    const auto* unread = std::get_if<WebFacts::Unread>(&read);
    if (unread != nullptr && firstReason.empty()) firstReason = unread->reason;
    services.push_back(std::move(service));
  }
  content.services = std::move(services);
  return firstReason;
}

// Servers that were listed before are not asked in vain.
std::vector<std::string> WebServers::likeliestFirst(const std::string& serverAndName) {
  const std::lock_guard lock(mutex_);
  return serversToAsk(serverAndName, [&](const std::string& server) { return listed_.contains(server); });
}

std::optional<CatalogueEntry> WebServers::find(const std::string& serverAndName) {
  for (const std::string& server : likeliestFirst(serverAndName)) {
    const auto entry = findOn(server, serverAndName.substr(server.size() + 1));
    if (entry) return entry;
    if (access_.probe().isHostAway(server)) break;
  }
  return std::nullopt;
}

std::optional<CatalogueEntry> WebServers::findOn(const std::string& server, const std::string& name) {
  const auto told = addressOfServer(server);
  if (!told) return std::nullopt;
  const AddressKind kind = access_.probe().kindOf(*told);
  if (kind == AddressKind::WebFolder) return findBelow(told->address, stepsOf(name));
  if (!isFile(kind)) return std::nullopt;
  const CatalogueName own = nameOfFile(told->address);
  const bool isNamed = name == own.shown || name == own.real || name == own.plain;
  if (!isNamed) return std::nullopt;
  if (kind == AddressKind::Definition) return mosaicEntry(own.shown, told->address);
  return entryOf(own.shown, told->address);
}

std::optional<CatalogueEntry> WebServers::mosaicEntry(const std::string& name, const std::string& address) {
  const auto read = definitions_.read({address}, WebDefinitions::Freshness::Remembered).front();
  if (const auto* definition = std::get_if<WebDefinitions::DefinitionPtr>(&read))
    return mosaicEntryOf(name, address, **definition);
  tellSilence(address, std::get<std::string>(read));
  return std::nullopt;
}

std::optional<CatalogueEntry> WebServers::findBelow(std::string address, std::vector<std::string> steps) {
  std::string name;
  while (!steps.empty()) {
    const auto read = folders_.read({address}, WebFolders::Freshness::Remembered).front();
    const auto* folder = std::get_if<WebFolders::FolderPtr>(&read);
    if (folder == nullptr) {
      tellSilence(address, std::get<std::string>(read));
      return std::nullopt;
    }
    const bool isLast = steps.size() == 1;
    const WebNode* const node = nodeOf(isLast ? (*folder)->images : (*folder)->folders, steps.front());
    if (node == nullptr) return std::nullopt;
    name = nameInFolder(name, node->name.shown);
    address = node->entry.address;
    if (isLast && isNamedAsDefinition(node->entry.name)) return mosaicEntry(name, address);
    if (isLast) return entryOf(name, address);
    steps.erase(steps.begin());
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
