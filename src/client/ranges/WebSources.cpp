#include "client/ranges/WebSources.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "client/network/FileContent.h"
#include "client/ranges/RangeNames.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"

namespace vlclientui::client {
namespace {

// A file's name, which is no address yet: "?" and "#" are letters of it. Windows writes the other slash.
std::string encodedPath(std::string path) {
  std::ranges::replace(path, '\\', '/');
  std::string encoded;
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t slash = std::min(path.find('/', begin), path.size());
    encoded += percentEncoded(std::string_view(path).substr(begin, slash - begin));
    if (slash < path.size()) encoded += '/';
    begin = slash + 1;
  }
  return encoded;
}

// Absolute paths, names of this machine's drives, and all that formats take for names are none of these.
bool isRelativePath(const std::string& told) {
  return !told.empty() && told.front() != '/' && told.front() != '\\' &&
         told.find_first_of(":<>\"|") == std::string::npos;
}

}  // namespace

WebSources::WebSources(std::string address)
    : address_(std::move(address)), server_(parsedAddress(address_)->server) {}

std::variant<std::string, WebSources::Refusal> WebSources::addressOf(const std::string& told,
                                                                     Told how) const {
  std::optional<std::string> found;
  if (isWebAddress(told)) {
    found = resolvedAddress(address_, told);
  } else if (how == Told::FromDocument && isRelativePath(told)) {
    found = resolvedAddress(address_, encodedPath(told));
  }
  const auto parsed = found ? parsedAddress(*found) : std::nullopt;
  if (!parsed) return Refusal{"is no file beside it"};
  if (parsed->server != server_ || parsed->hasUser) return Refusal{"lies on another server"};
  // Nobody looked into these.
  if (isTextBesideImages(nameOfAddress(*found))) return Refusal{"is no image"};
  return *found;
}

}  // namespace vlclientui::client
