#include "client/facade/CatalogueServer.h"

#include <cstdlib>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

#include "client/catalogue/Catalogue.h"
#include "client/catalogue/FolderServers.h"
#include "client/catalogue/ServerKind.h"
#include "client/facade/ServerInfoAnswer.h"
#include "client/facade/ServerRequest.h"
#include "client/facade/ServiceLoading.h"
#include "client/facade/ServiceReference.h"
#include "client/raster/ContainedRaster.h"
#include "client/raster/RasterCache.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view serviceScheme = "ImageService://";
constexpr std::string_view definitionExtension = ".vldef";

std::string asItIs(const std::string& text) { return text; }

}  // namespace

fs::path embeddedCatalogueFolder(const fs::path& otherwise) {
  const char* told = std::getenv("VLCLIENTUI_CATALOGUE");
  return told != nullptr && *told != '\0' ? fs::path(told) : otherwise;
}

struct CatalogueServer::Parts {
  Parts(const XmlService& xmlService, CatalogueSettings hostSettings)
      : xml(xmlService),
        settings(std::move(hostSettings)),
        folders(
            settings.embeddedFolder, [this](const std::string& path) { return nativePath(path); }, xml,
            cache) {}

  [[nodiscard]] std::string nativePath(const std::string& path) const;
  [[nodiscard]] std::optional<CatalogueEntry> locateFile(const std::string& path) const;
  /// The first answer that a kind of server gives.
  template <class Answer>
  [[nodiscard]] Answer firstOf(Answer (ServerKind::*ask)(const std::string&), const std::string& text);

  [[nodiscard]] std::optional<CatalogueEntry> find(const std::string& serverAndName);

  const XmlService& xml;
  CatalogueSettings settings;
  RasterCache cache;
  FolderServers folders;
  std::vector<std::unique_ptr<ServerKind>> otherKinds;
  ServerTexts texts{asItIs, asItIs, asItIs};
  std::mutex mutex;
  std::vector<LeftOut> problems;
};

CatalogueServer::CatalogueServer(const XmlService& xml, CatalogueSettings settings)
    : parts_(std::make_unique<Parts>(xml, std::move(settings))) {}

CatalogueServer::~CatalogueServer() = default;

void CatalogueServer::addKind(std::unique_ptr<ServerKind> kind) {
  parts_->otherKinds.push_back(std::move(kind));
}

void CatalogueServer::understand(ServerTexts texts) { parts_->texts = std::move(texts); }

std::string CatalogueServer::withoutSecrets(const std::string& text) const {
  return parts_->texts.withoutSecrets(text);
}

template <class Answer>
Answer CatalogueServer::Parts::firstOf(Answer (ServerKind::*ask)(const std::string&),
                                       const std::string& text) {
  Answer answer = (folders.*ask)(text);
  for (auto kind = otherKinds.begin(); !answer && kind != otherKinds.end(); ++kind) {
    answer = ((**kind).*ask)(text);
  }
  return answer;
}

// What a folder lacks is not looked for at a host of its name.
std::optional<CatalogueEntry> CatalogueServer::Parts::find(const std::string& serverAndName) {
  const bool isOfFolder = folders.folderOf(serverAndName.substr(0, serverAndName.find('/'))).has_value();
  return isOfFolder ? folders.find(serverAndName) : firstOf(&ServerKind::find, serverAndName);
}

std::string CatalogueServer::serverInfo(const std::string& requestXml) {
  const auto found = content(serverOfRequest(requestXml, parts_->xml));
  return found ? serverInfoAnswer(found->services) : std::string();
}

std::optional<CatalogueContent> CatalogueServer::content(const std::string& serverText) {
  auto found = parts_->firstOf(&ServerKind::list, parts_->texts.addressOf(withoutSecrets(serverText)));
  const std::lock_guard lock(parts_->mutex);
  parts_->problems = found ? found->problems : std::vector<LeftOut>();
  return found;
}

std::map<std::string, RasterFacts> CatalogueServer::factsByName(const std::string& serverText) {
  std::map<std::string, RasterFacts> facts;
  if (auto found = content(serverText)) {
    for (ServiceRecord& service : found->services) facts.emplace(service.name, std::move(service.facts));
  }
  return facts;
}

RasterFacts CatalogueServer::factsOf(const std::string& reference) {
  return loadImageService(*this, reference).facts;
}

std::optional<fs::path> CatalogueServer::folderOf(const std::string& serverText) const {
  return parts_->folders.folderOf(parts_->texts.addressOf(serverText));
}

std::vector<LeftOut> CatalogueServer::problems() const {
  const std::lock_guard lock(parts_->mutex);
  return parts_->problems;
}

std::optional<CatalogueEntry> CatalogueServer::locate(const std::string& reference) {
  if (startsIgnoringCase(reference, serviceScheme)) {
    const std::string shown = withoutSecrets(reference);
    return parts_->find(parts_->texts.addressOfReference(shown.substr(serviceScheme.size())));
  }
  return parts_->locateFile(definitionPath(reference).value_or(reference));
}

std::vector<RasterResult> CatalogueServer::readFacts(const std::vector<fs::path>& files) {
  return parts_->cache.read(files);
}

std::vector<std::shared_ptr<const FileMetadata>> CatalogueServer::readMetadata(
    const std::vector<fs::path>& files) {
  return parts_->cache.readMetadata(files, parts_->xml);
}

Thumbnail CatalogueServer::renderThumbnail(const std::string& reference, int width, int height) {
  const auto entry = locate(reference);
  return entry ? client::renderThumbnail(*entry, width, height) : Thumbnail();
}

std::string CatalogueServer::nativePath(const std::string& path) const { return parts_->nativePath(path); }

// An illegal path is not a folder, but may be a host's name.
std::string CatalogueServer::Parts::nativePath(const std::string& path) const {
  if (!settings.toNativePath) return path;
  try {
    return settings.toNativePath(path);
  } catch (const RuntimeFailure&) {
    return {};
  }
}

std::optional<CatalogueEntry> CatalogueServer::Parts::locateFile(const std::string& path) const {
  const fs::path file = nativePath(path);
  std::error_code error;
  if (!fs::exists(file, error) && containerOf(file).empty()) return std::nullopt;
  if (!sameIgnoringCase(file.extension().string(), definitionExtension)) {
    return CatalogueEntry{EntryKind::Raster, {}, file, {}};
  }
  auto read = readMosaicDefinition(file, xml);
  auto* definition = std::get_if<MosaicDefinition>(&read);
  if (definition == nullptr) return std::nullopt;
  return CatalogueEntry{EntryKind::Mosaic, {}, file, std::move(*definition)};
}

}  // namespace vlclientui::client
