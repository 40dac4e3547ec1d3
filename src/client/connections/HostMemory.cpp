#include "client/connections/HostMemory.h"

#include <algorithm>
#include <string_view>

#include <nlohmann/json.hpp>

#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

using Json = nlohmann::ordered_json;
using Places = std::vector<std::pair<std::string, std::string>>;

constexpr std::size_t mostHosts = 200;

// Older files hold pieces of references too.
bool isHostAlone(std::string_view key) {
  const std::size_t scheme = key.find("://");
  return key.find('/', scheme == std::string_view::npos ? 0 : scheme + 3) == std::string_view::npos;
}

// Only addresses of the web are asked, whatever a damaged file says.
Places readPlaces(const std::string& text) {
  const Json document = Json::parse(text, nullptr, false);
  Places places;
  if (!document.is_object()) return places;
  for (const auto& [host, place] : document.items()) {
    if (!place.is_string()) continue;
    auto address = place.get<std::string>();
    const bool isSound = isHostAlone(host) && parsedAddress(address) && withoutSecrets(address) == address;
    if (isSound) places.emplace_back(host, std::move(address));
  }
  return places;
}

std::string written(const Places& places) {
  Json document = Json::object();
  for (const auto& [host, place] : places) document[host] = place;
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string keyOf(const std::string& host) {
  std::string key;
  for (const char letter : host) {
    if (letter != ' ' && letter != '\t')
      key += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
  }
  return key;
}

}  // namespace

void HostMemory::refresh() {
  if (file_.path().empty()) return;
  const PrivateFile::Stamp now = file_.stamp();
  if (isRead_ && now == stamp_) return;
  isRead_ = true;
  stamp_ = now;
  try {
    places_ = readPlaces(file_.read().value_or("{}"));
  } catch (const RuntimeFailure& failure) {
    endSilently(failure.description());
  }
}

std::optional<std::string> HostMemory::placeOf(const std::string& host) {
  const std::lock_guard lock(mutex_);
  refresh();
  const auto found = std::ranges::find(places_, keyOf(host), &Places::value_type::first);
  return found == places_.end() ? std::nullopt : std::optional(found->second);
}

// The file may know hosts by now that another program found.
void HostMemory::change(const std::string& host, const std::string& place) {
  const auto edited = [&](Places places) {
    std::erase_if(places, [key = keyOf(host)](const auto& entry) { return entry.first == key; });
    if (!place.empty()) places.insert(places.begin(), {keyOf(host), place});
    if (places.size() > mostHosts) places.resize(mostHosts);
    return places;
  };
  const std::lock_guard lock(mutex_);
  places_ = edited(places_);
  if (file_.path().empty()) return;
  try {
    file_.change([&](const std::optional<std::string>& before) {
      places_ = edited(readPlaces(before.value_or("{}")));
      return written(places_);
    });
    stamp_ = file_.stamp();
    isRead_ = true;
  } catch (const RuntimeFailure& failure) {
    endSilently(failure.description());
  }
}

void HostMemory::remember(const std::string& host, const std::string& place) {
  if (placeOf(host) != place) change(host, place);
}

void HostMemory::forget(const std::string& host) {
  if (placeOf(host)) change(host, {});
}

std::filesystem::path hostMemoryFile() {
  const std::filesystem::path folder = connectionsFolder();
  return folder.empty() ? folder : folder / "hosts.json";
}

}  // namespace vlclientui::client
