#include "client/ranges/WebServers.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <utility>

#include "client/catalogue/CatalogueNames.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RangeFiles.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "client/waiting/Wait.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

void tellSilence(const std::string& server, const std::string& reason) {
  endSilently("the server '" + withoutSecrets(trimmed(server)) + "' does not answer: " + reason,
              "WebServers");
}

std::string tooDeep() {
  return "it lies more than " + std::to_string(WebServers::deepest) + " folders deep, and is not listed";
}

std::string tooMany() {
  return std::to_string(WebServers::mostFolders) + " folders were listed before it, and no more are";
}

bool isFile(AddressKind kind) { return kind == AddressKind::RasterFile || kind == AddressKind::Mosaic; }

std::string joined(const std::string& folder, const std::string& leaf) {
  return folder.empty() ? leaf : folder + '/' + leaf;
}

// A file at an address with a query is called as the page that gives it.
CatalogueName nameOfFile(const std::string& address) {
  const auto parsed = parsedAddress(address);
  std::string name = percentDecoded(parsed->path.substr(parsed->path.rfind('/') + 1));
  if (name.empty()) name = parsed->server.host;
  return nameSiblings({{fs::path(name).stem().string(), name}}).front();
}

CatalogueEntry entryOf(const std::string& name, const std::string& address) {
  CatalogueEntry entry;
  const std::size_t slash = name.rfind('/');
  entry.folder = slash == std::string::npos ? std::string() : name.substr(0, slash);
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
    : access_(access), folders_(access.transport(), files), facts_(files) {}

std::optional<CatalogueContent> WebServers::list(const std::string& server) {
  const auto told = addressOfServer(server);
  if (!told) return std::nullopt;
  const Retrying retrying = told->place == ServerPlace::Host ? Retrying::Never : Retrying::AsSet;
  const AddressKind kind = access_.probe().kindOf(told->address, retrying);
  auto listed = isFile(kind)                     ? listFile(server, told->address)
                : kind == AddressKind::WebFolder ? listFolder(server, told->address)
                                                 : std::nullopt;
  if (!listed || !WaitScope::isGivenUp()) return listed;
  // What had come until then would look like all that there is.
  tellSilence(server, "the wait for it was given up");
  return std::nullopt;
}

std::optional<CatalogueContent> WebServers::listFile(const std::string& server, const std::string& address) {
  const CatalogueName name = nameOfFile(address);
  CatalogueContent content;
  content.services.push_back(serviceOf(name.shown, name, address));
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
    for (const WebNode& node : folder.images)
      content.services.push_back(
          serviceOf(joined(level[i].name, node.name.shown), node.name, node.entry.address));
    for (const WebNode& node : folder.folders)
      below.push_back({node.entry.address, joined(level[i].name, node.name.shown)});
    content.problems.insert(content.problems.end(), folder.problems.begin(), folder.problems.end());
  }
  return below;
}

std::string WebServers::readFacts(CatalogueContent& content) {
  if (content.services.size() > mostRead) return {};
  std::string firstReason;
  std::vector<std::string> addresses;
  for (const ServiceRecord& service : content.services)
    addresses.push_back(*addressOfRangeRaster(service.entry.file.string()));
  const std::vector<WebFacts::Read> results = facts_.read(addresses);
  std::vector<ServiceRecord> services;
  for (std::size_t i = 0; i < results.size(); ++i) {
    if (const auto* problem = std::get_if<RasterProblem>(&results[i])) {
      content.problems.push_back({withoutSecrets(addresses[i]), problem->reason});
      continue;
    }
    services.push_back(std::move(content.services[i]));
    if (const auto* facts = std::get_if<RasterFacts>(&results[i])) services.back().facts = *facts;
    const auto* unread = std::get_if<WebFacts::Unread>(&results[i]);
    if (unread != nullptr && firstReason.empty()) firstReason = unread->reason;
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
  const Retrying retrying = told->place == ServerPlace::Host ? Retrying::Never : Retrying::AsSet;
  const AddressKind kind = access_.probe().kindOf(told->address, retrying);
  if (kind == AddressKind::WebFolder) return findBelow(told->address, stepsOf(name));
  if (!isFile(kind)) return std::nullopt;
  const CatalogueName own = nameOfFile(told->address);
  const bool isNamed = name == own.shown || name == own.real || name == own.plain;
  return isNamed ? std::optional(entryOf(own.shown, told->address)) : std::nullopt;
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
    name = joined(name, node->name.shown);
    address = node->entry.address;
    if (isLast) return entryOf(name, address);
    steps.erase(steps.begin());
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
