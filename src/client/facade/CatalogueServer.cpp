#include "client/facade/CatalogueServer.h"

#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include "client/facade/ServerInfoAnswer.h"
#include "client/facade/ServerRequest.h"
#include "client/facade/ServiceReference.h"
#include "client/raster/ContainedRaster.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view serviceScheme = "ImageService://";
constexpr std::string_view definitionExtension = ".vldef";

}  // namespace

fs::path embeddedCatalogueFolder(const fs::path& otherwise) {
  const char* told = std::getenv("VLCLIENTUI_CATALOGUE");
  return told != nullptr && *told != '\0' ? fs::path(told) : otherwise;
}

CatalogueServer::CatalogueServer(const XmlService& xml, CatalogueSettings settings)
    : xml_(xml),
      settings_(std::move(settings)),
      folders_(
          settings_.embeddedFolder, [this](const std::string& path) { return nativePath(path); }, xml_,
          cache_) {}

void CatalogueServer::addKind(std::unique_ptr<ServerKind> kind) { otherKinds_.push_back(std::move(kind)); }

template <class Answer>
Answer CatalogueServer::firstOf(Answer (ServerKind::*ask)(const std::string&), const std::string& text) {
  Answer answer = (folders_.*ask)(text);
  for (auto kind = otherKinds_.begin(); !answer && kind != otherKinds_.end(); ++kind) {
    answer = ((**kind).*ask)(text);
  }
  return answer;
}

std::string CatalogueServer::serverInfo(const std::string& requestXml) {
  const auto found = content(serverOfRequest(requestXml, xml_));
  return found ? serverInfoAnswer(found->services) : std::string();
}

std::optional<CatalogueContent> CatalogueServer::content(const std::string& serverText) {
  auto found = firstOf(&ServerKind::list, serverText);
  const std::lock_guard lock(mutex_);
  problems_ = found ? found->problems : std::vector<LeftOut>();
  return found;
}

std::optional<fs::path> CatalogueServer::folderOf(const std::string& serverText) const {
  return folders_.folderOf(serverText);
}

std::vector<LeftOut> CatalogueServer::problems() const {
  const std::lock_guard lock(mutex_);
  return problems_;
}

std::optional<CatalogueEntry> CatalogueServer::locate(const std::string& reference) {
  if (startsIgnoringCase(reference, serviceScheme)) {
    return firstOf(&ServerKind::find, reference.substr(serviceScheme.size()));
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

// An illegal path is not a folder, but may be a host's name.
std::string CatalogueServer::nativePath(const std::string& path) const {
  if (!settings_.toNativePath) return path;
  try {
    return settings_.toNativePath(path);
  } catch (const RuntimeFailure&) {
    return {};
  }
}

std::optional<CatalogueEntry> CatalogueServer::locateFile(const std::string& path) const {
  const fs::path file = nativePath(path);
  std::error_code error;
  if (!fs::exists(file, error) && containerOf(file).empty()) return std::nullopt;
  if (!sameIgnoringCase(file.extension().string(), definitionExtension)) {
    return CatalogueEntry{EntryKind::Raster, {}, file, {}};
  }
  auto read = readMosaicDefinition(file, xml_);
  auto* definition = std::get_if<MosaicDefinition>(&read);
  if (definition == nullptr) return std::nullopt;
  return CatalogueEntry{EntryKind::Mosaic, {}, file, std::move(*definition)};
}

}  // namespace vlclientui::client
