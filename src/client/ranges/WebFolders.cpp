#include "client/ranges/WebFolders.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <utility>

#include "client/catalogue/CatalogueScan.h"
#include "client/network/AddressProbe.h"
#include "client/network/FileContent.h"
#include "client/ranges/FileAnswers.h"
#include "client/ranges/RangeNames.h"
#include "client/ranges/RemoteFiles.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t foldersAtATime = 8;
constexpr std::uint64_t mostPageBytes = std::uint64_t{8} << 20U;
constexpr std::size_t mostKnown = 2000;
constexpr auto remembered = std::chrono::seconds(60);

// Rasters, but such as are read from folders of this machine alone.
bool isRasterOfThisMachine(std::string_view name) {
  constexpr auto endings =
      std::to_array<std::string_view>({".img", ".nc", ".hdf", ".h5", ".grd", ".asc", ".zip", ".gpkg", ".ecw",
                                       ".sid", ".dem", ".ntf", ".bil"});
  const std::string small = lowered(name);
  return std::ranges::any_of(endings, [&](std::string_view ending) { return small.ends_with(ending); });
}

Sibling siblingOf(const WebEntry& entry) {
  if (entry.kind == WebEntryKind::Folder) return {entry.name, entry.name};
  return {fs::path(entry.name).stem().string(), entry.name};
}

// Nothing for what is passed over in silence, and for what is shown.
std::optional<std::string> reasonToLeaveOut(const WebEntry& entry) {
  if (!isTextName(entry.name))
    return "the name is no text: it holds control characters or bytes that are no UTF-8";
  if (entry.kind == WebEntryKind::File && isRasterOfThisMachine(entry.name))
    return "files of this kind are not read from the web";
  return std::nullopt;
}

bool isShown(const WebEntry& entry) {
  return entry.kind == WebEntryKind::Folder || isNamedAsImage(entry.name) || isNamedAsDefinition(entry.name);
}

std::vector<std::string> namesForTheLibrary(const std::vector<WebEntry>& entries) {
  std::vector<std::string> names;
  for (const WebEntry& entry : entries) {
    if (entry.kind != WebEntryKind::File) continue;
    const std::string name = nameOfAddress(entry.address);
    names.push_back(name.substr(name.rfind('/') + 1));
  }
  return names;
}

// Most servers lead to the address with "/" at its end; some give the list at once.
std::string baseOf(const std::string& address) {
  auto parsed = parsedAddress(address);
  if (!parsed) return address;
  const std::string last = parsed->path.substr(parsed->path.rfind('/') + 1);
  const bool isFolder = !last.empty() && last.find('.') == std::string::npos && parsed->query.empty();
  if (isFolder) parsed->path += '/';
  return parsed->text();
}

}  // namespace

WebFolder folderOfEntries(const std::vector<WebEntry>& entries) {
  WebFolder folder;
  std::vector<WebEntry> shown;
  std::vector<Sibling> siblings;
  for (const WebEntry& entry : entries) {
    if (isHidden(entry.name)) continue;
    const auto reason = reasonToLeaveOut(entry);
    if (reason) folder.problems.push_back({entry.address, *reason});
    if (reason || !isShown(entry)) continue;
    shown.push_back(entry);
    siblings.push_back(siblingOf(entry));
  }
  std::vector<CatalogueName> names = nameSiblings(siblings);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    auto& list = shown[i].kind == WebEntryKind::Folder ? folder.folders : folder.images;
    list.push_back({std::move(shown[i]), std::move(names[i])});
  }
  return folder;
}

WebFolders::FolderPtr WebFolders::known(const std::string& address) {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(address);
  const bool holds = found != known_.end() && Clock::now() < found->second.until;
  return holds ? found->second.folder : nullptr;
}

std::vector<WebFolders::Read> WebFolders::read(const std::vector<std::string>& addresses,
                                               Freshness freshness) {
  std::vector<Read> folders(addresses.size());
  std::vector<HttpRequest> requests;
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    FolderPtr before = freshness == Freshness::Remembered ? known(addresses[i]) : nullptr;
    folders[i] = before;
    if (before) continue;
    HttpRequest request;
    request.address = addresses[i];
    request.mostBytes = mostPageBytes;
    request.remember = true;
    requests.push_back(std::move(request));
    places.push_back(i);
  }
  if (requests.empty()) return folders;
  transport_.fetchEach(requests, foldersAtATime, [&](std::size_t index, HttpResult&& result) {
    const std::size_t place = places[index];
    const auto* answer = std::get_if<HttpAnswer>(&result);
    folders[place] =
        answer != nullptr ? fetched(addresses[place], *answer) : Read(std::get<HttpFailure>(result).text);
    return true;
  });
  return folders;
}

WebFolders::Read WebFolders::fetched(const std::string& address, const HttpAnswer& answer) {
  constexpr int found = 200;
  if (answer.status != found) return refusalText(answer, address);
  if (kindOfAnswer(answer) != AddressKind::WebFolder)
    return "\"" + withoutSecrets(address) + "\" lists no files.";
  const std::vector<WebEntry> entries = readWebListing(answer.body, baseOf(answer.address));
  if (!entries.empty()) {
    const std::string& first = entries.front().address;
    files_.tellFolder(first.substr(0, first.rfind('/', first.size() - 2) + 1), namesForTheLibrary(entries));
  }
  auto folder = std::make_shared<const WebFolder>(folderOfEntries(entries));
  const std::lock_guard lock(mutex_);
  if (known_.size() >= mostKnown) known_.clear();
  known_[address] = {folder, Clock::now() + remembered};
  return FolderPtr(std::move(folder));
}

}  // namespace vlclientui::client
