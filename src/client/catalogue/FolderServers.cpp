#include "client/catalogue/FolderServers.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include "client/raster/Text.h"
#include "client/reach/Places.h"
#include "client/waiting/Wait.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 2> embeddedNames = {"127.0.0.1", "localhost"};

bool isEmbedded(std::string_view server) {
  return std::any_of(embeddedNames.begin(), embeddedNames.end(),
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

FolderServers::FolderServers(fs::path embedded, NativePath nativePath, const XmlService& xml,
                             RasterCache& cache)
    : embedded_(std::move(embedded)), nativePath_(std::move(nativePath)), xml_(xml), cache_(cache) {
  // Whoever chose it pointed there.
  Places::shared().pointAt(embedded_);
}

std::optional<CatalogueContent> FolderServers::list(const std::string& server) {
  const auto folder = folderOf(server);
  if (!folder) return std::nullopt;
  Places::shared().pointAt(*folder);
  auto content = readCatalogue(*folder, xml_, cache_);
  if (!WaitScope::isGivenUp()) return content;
  // What had been read until then would look like all that there is.
  endSilently(serverSilence("folder", trimmed(server), "the wait for it was given up"));
  return std::nullopt;
}

// A relative path is taken for a host name: what a server text means must not depend on where the
// program was started.
std::optional<fs::path> FolderServers::folderOf(const std::string& text) const {
  const std::string server = trimmed(text);
  const fs::path folder = isEmbedded(server) ? embedded_ : fs::path(nativePath_(server));
  if (!folder.is_absolute() && !isEmbedded(server)) return std::nullopt;
  if (!isFolder(folder)) return std::nullopt;
  return folder;
}

// Of a folder as server nobody can tell where the server ends and the name begins, and nobody needs to:
// together they are a path, as far as there are folders of its names.
std::optional<CatalogueEntry> FolderServers::find(const std::string& serverAndName) {
  const std::string text = withSlashes(serverAndName);
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos) return std::nullopt;
  if (isEmbedded(text.substr(0, slash))) {
    return findService(embedded_, text.substr(slash + 1), xml_, cache_);
  }
  const fs::path path = nativePath_(serverAndName);
  if (!path.is_absolute() || !path.has_filename()) return std::nullopt;
  fs::path folder = path.parent_path();
  while (folder.has_relative_path() && !isFolder(folder)) folder = folder.parent_path();
  std::string name;
  const auto below = std::next(path.begin(), std::distance(folder.begin(), folder.end()));
  std::for_each(below, path.end(),
                [&](const fs::path& step) { name += (name.empty() ? "" : "/") + step.string(); });
  return findService(folder, name, xml_, cache_);
}

}  // namespace vlclientui::client
