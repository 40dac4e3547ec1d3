#include "client/facade/CatalogueServer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include "client/facade/ServerInfoAnswer.h"
#include "client/facade/ServerRequest.h"
#include "client/facade/ServiceReference.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kServiceScheme = "ImageService://";
constexpr std::string_view kDefinitionExtension = ".vldef";
constexpr std::array<std::string_view, 2> kEmbeddedNames = {"127.0.0.1", "localhost"};

bool isEmbedded(std::string_view server) {
  return std::any_of(kEmbeddedNames.begin(), kEmbeddedNames.end(),
                     [&](std::string_view name) { return sameIgnoringCase(server, name); });
}

bool isFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

std::string withSlashes(std::string text) {
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

}  // namespace

fs::path embeddedCatalogueFolder(const fs::path& otherwise) {
  const char* told = std::getenv("VLCLIENTUI_CATALOGUE");
  return told != nullptr && *told != '\0' ? fs::path(told) : otherwise;
}

CatalogueServer::CatalogueServer(const XmlService& xml, CatalogueSettings settings)
    : xml_(xml), settings_(std::move(settings)) {}

std::string CatalogueServer::serverInfo(const std::string& requestXml) {
  const auto found = content(serverOfRequest(requestXml, xml_));
  return found ? serverInfoAnswer(found->services) : std::string();
}

std::optional<CatalogueContent> CatalogueServer::content(const std::string& serverText) {
  const auto folder = folderOf(serverText);
  std::optional<CatalogueContent> found;
  if (folder) found = readCatalogue(*folder, xml_, cache_);
  const std::lock_guard lock(mutex_);
  problems_ = found ? found->problems : std::vector<LeftOut>();
  return found;
}

// A relative path is taken for a host name: what a server text means must not depend on where the
// program was started.
std::optional<fs::path> CatalogueServer::folderOf(const std::string& serverText) const {
  const std::string server = trimmed(serverText);
  const fs::path folder = isEmbedded(server) ? settings_.embeddedFolder : fs::path(nativePath(server));
  if (!folder.is_absolute() && !isEmbedded(server)) return std::nullopt;
  if (!isFolder(folder)) return std::nullopt;
  return folder;
}

std::vector<LeftOut> CatalogueServer::problems() const {
  const std::lock_guard lock(mutex_);
  return problems_;
}

std::optional<CatalogueEntry> CatalogueServer::locate(const std::string& reference) {
  if (startsIgnoringCase(reference, kServiceScheme)) {
    return locateService(reference.substr(kServiceScheme.size()));
  }
  return locateFile(definitionPath(reference).value_or(reference));
}

std::vector<RasterResult> CatalogueServer::readFacts(const std::vector<fs::path>& files) {
  return cache_.read(files);
}

std::vector<std::shared_ptr<const FileMetadata>> CatalogueServer::readMetadata(
    const std::vector<fs::path>& files) {
  return cache_.readMetadata(files, xml_);
}

Thumbnail CatalogueServer::renderThumbnail(const std::string& reference, int width, int height) {
  const auto entry = locate(reference);
  return entry ? client::renderThumbnail(*entry, width, height) : Thumbnail();
}

// A text that is no legal path names no folder; it may still name a host.
std::string CatalogueServer::nativePath(const std::string& path) const {
  if (!settings_.toNativePath) return path;
  try {
    return settings_.toNativePath(path);
  } catch (const RuntimeFailure&) {
    return {};
  }
}

// Of a folder as server nobody can tell where the server ends and the name begins, and nobody needs to:
// together they are a path.
std::optional<CatalogueEntry> CatalogueServer::locateService(const std::string& serverAndName) {
  const std::string text = withSlashes(serverAndName);
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos) return std::nullopt;
  if (isEmbedded(text.substr(0, slash))) {
    return findService(settings_.embeddedFolder, text.substr(slash + 1), xml_, cache_);
  }
  const fs::path path = nativePath(serverAndName);
  if (!path.is_absolute()) return std::nullopt;
  return findService(path.parent_path(), path.filename().string(), xml_, cache_);
}

std::optional<CatalogueEntry> CatalogueServer::locateFile(const std::string& path) const {
  const fs::path file = nativePath(path);
  std::error_code error;
  if (!fs::exists(file, error)) return std::nullopt;
  if (!sameIgnoringCase(file.extension().string(), kDefinitionExtension)) {
    return CatalogueEntry{EntryKind::Raster, {}, file, {}};
  }
  auto read = readMosaicDefinition(file, xml_);
  auto* definition = std::get_if<MosaicDefinition>(&read);
  if (definition == nullptr) return std::nullopt;
  return CatalogueEntry{EntryKind::Mosaic, {}, file, std::move(*definition)};
}

}  // namespace vlclientui::client
