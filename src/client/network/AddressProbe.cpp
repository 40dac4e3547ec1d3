#include "client/network/AddressProbe.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "client/connections/Refusal.h"
#include "client/network/FileContent.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/HttpText.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

// Pages of large folders know no parts.
constexpr std::uint64_t mostBytes = std::uint64_t{8} << 20U;
constexpr std::size_t mostRemembered = 10000;
constexpr std::size_t longestPortShown = 20;
constexpr auto kindLasts = std::chrono::minutes(10);
constexpr auto nothingLasts = std::chrono::seconds(30);
constexpr auto silenceLasts = std::chrono::seconds(5);
// Until whoever asked for the kind reads the document.
constexpr auto wholeLasts = std::chrono::seconds(10);
constexpr std::size_t mostWhole = 8;
constexpr std::size_t placesAtATime = 3;

// A name of a computer, maybe with a port and a path; not what a person types by mistake.
bool isHost(std::string_view text) {
  const std::string_view host = text.substr(0, text.find('/'));
  const bool isDrive = host.size() == 2 && host.back() == ':';
  if (isDrive) return false;
  return !host.empty() &&
         host.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-:[]") ==
             std::string_view::npos;
}

bool holdsAny(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::ranges::any_of(
      words, [text](std::string_view word) { return text.find(word) != std::string_view::npos; });
}

// Titles that servers give to lists of their own, and links to files of kinds that are read.
bool isListing(const std::string& page) {
  return holdsAny(page, {"index of ", "directory listing", "<title>index", ".tif\"", ".tiff\"", ".vrt\"",
                         ".jp2\"", ".tif'", ".tiff'", ".vrt'", ".jp2'", ".vldef\"", ".vldef'"});
}

AddressKind kindOfJson(std::string_view text) {
  if (text.starts_with('[')) {
    return text.find("\"name\"") != std::string_view::npos ? AddressKind::WebFolder : AddressKind::Nothing;
  }
  const bool isCatalogue =
      holdsAny(text, {"\"stac_version\"", "\"collections\"", "\"conformsTo\"", "\"FeatureCollection\""});
  return isCatalogue ? AddressKind::Catalogue : AddressKind::Nothing;
}

// Where a declaration, a comment or a kind of document ends, which begin with "<?" or "<!".
std::size_t endOfPrologue(std::string_view text) {
  if (text.starts_with("<!--")) return text.find("-->");
  const std::size_t end = text.find('>');
  const std::size_t subset = text.find('[');
  return subset < end ? text.find('>', text.find(']', subset)) : end;
}

// Without its prefix; what stands further in is the text of any page.
std::string_view rootElement(std::string_view text) {
  while (text.starts_with("<?") || text.starts_with("<!")) {
    const std::size_t begin = text.find('<', endOfPrologue(text));
    if (begin == std::string_view::npos) return {};
    text.remove_prefix(begin);
  }
  text.remove_prefix(1);
  const std::string_view name = text.substr(0, text.find_first_of(" \t\r\n/>"));
  return name.substr(name.find(':') + 1);
}

bool isOfService(std::string_view root) {
  return root.ends_with("Capabilities") || root.ends_with("ExceptionReport") || root == "ServiceException";
}

AddressKind kindOfMarkup(std::string_view text) {
  const std::string_view root = rootElement(text);
  if (isOfService(root)) return AddressKind::Coverages;
  const bool isDefinition = root == "Vorlane" && text.find("<MosaicDefinition") != std::string_view::npos;
  if (isDefinition) return AddressKind::Definition;
  const std::string small = smallLetters(text);
  const bool isPage = holdsAny(small, {"<html", "<!doctype html", "<a "});
  return isPage && isListing(small) ? AddressKind::WebFolder : AddressKind::Nothing;
}

HttpRequest probeRequest(const std::string& address, Retrying retrying) {
  HttpRequest request;
  request.address = address;
  request.range = ByteRange{0, AddressProbe::bytesAsked - 1};
  request.mostBytes = mostBytes;
  request.retrying = retrying;
  return request;
}

// Of a part, what it tells of itself: "bytes 0-99/100".
bool isWhole(const HttpAnswer& answer) {
  if (answer.status != 206) return true;
  const std::string told = answer.header("Content-Range");
  return told.substr(told.find('/') + 1) == std::to_string(answer.body.size());
}

// Whoever reads the document of a catalogue, or opens an image, need not ask for it again.
bool isOfUse(AddressKind kind, const HttpAnswer& answer) {
  return kind == AddressKind::RasterFile || (kind == AddressKind::Catalogue && isWhole(answer));
}

}  // namespace

std::optional<AddressKind> kindOfAddress(const std::string& address) {
  const auto parsed = parsedAddress(address);
  if (!parsed) return AddressKind::Nothing;
  const std::string path = smallLetters(parsed->path);
  const std::string query = smallLetters(parsed->query);
  constexpr std::array<std::string_view, 4> endings = {"/wcs", "/mapserv", "/mapserv.exe",
                                                       "/qgis_mapserv.fcgi"};
  const bool isToldByPath =
      std::ranges::any_of(endings, [&](std::string_view ending) { return path.ends_with(ending); });
  if (isToldByPath || query.find("service=wcs") != std::string::npos) return AddressKind::Coverages;
  return std::nullopt;
}

AddressKind kindOfAnswer(const HttpAnswer& answer) {
  const bool isGiven = answer.status == 200 || answer.status == 206;
  if (!isGiven) return AddressKind::Nothing;
  const std::string_view body = answer.body;
  switch (contentOf(body.substr(0, contentBytes))) {
    case FileContent::Image:
      return AddressKind::RasterFile;
    case FileContent::Mosaic:
      return AddressKind::Mosaic;
    case FileContent::Other:
      break;
  }
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  const std::string_view text = withoutBlanks(body.starts_with(mark) ? body.substr(mark.size()) : body);
  if (text.starts_with('<')) return kindOfMarkup(text);
  if (text.starts_with('{') || text.starts_with('[')) return kindOfJson(text);
  return AddressKind::Nothing;
}

std::optional<AddressProbe::Known> AddressProbe::known(const std::string& address) const {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(address);
  const bool holds = found != known_.end() && Clock::now() < found->second.until;
  return holds ? std::optional(found->second) : std::nullopt;
}

std::optional<AddressKind> AddressProbe::knownKind(const std::string& address) const {
  if (const auto told = kindOfAddress(address)) return told;
  const auto remembered = known(address);
  return remembered ? std::optional(remembered->kind) : std::nullopt;
}

std::optional<HttpFailure> AddressProbe::silence(const std::string& address) const {
  const auto remembered = known(address);
  return remembered ? remembered->failure : std::nullopt;
}

AddressKind AddressProbe::kindOf(const std::string& address, Retrying retrying) {
  if (const auto told = knownKind(address)) return *told;
  return take(address, transport_.fetch(probeRequest(address, retrying)));
}

AddressKind AddressProbe::take(const std::string& address, HttpResult&& result) {
  Known asked = judged(address, result);
  const AddressKind kind = asked.kind;
  const bool isGivenUp = asked.failure && asked.failure->fault == HttpFault::Canceled;
  if (isGivenUp) return kind;
  const std::lock_guard lock(mutex_);
  if (known_.size() >= mostRemembered) known_.clear();
  known_[address] = std::move(asked);
  auto* const answer = std::get_if<HttpAnswer>(&result);
  if (answer == nullptr || !isOfUse(kind, *answer)) return kind;
  if (whole_.size() >= mostWhole) whole_.clear();
  whole_[address] = {std::move(*answer), Clock::now() + wholeLasts};
  return kind;
}

std::optional<std::string> AddressProbe::firstOf(const std::vector<std::string>& addresses,
                                                 AddressKind kind) {
  std::vector<std::string> asked;
  std::vector<HttpRequest> requests;
  for (const std::string& address : addresses) {
    const auto told = knownKind(address);
    if (told == kind) return address;
    if (told) continue;
    asked.push_back(address);
    requests.push_back(probeRequest(address, Retrying::Never));
  }
  std::optional<std::string> found;
  transport_.fetchEach(requests, placesAtATime, [&](std::size_t index, HttpResult&& result) {
    if (take(asked[index], std::move(result)) == kind) found = asked[index];
    return !found;
  });
  return found;
}

std::optional<HttpAnswer> AddressProbe::takeAnswer(const std::string& address) {
  const std::lock_guard lock(mutex_);
  const auto node = whole_.extract(address);
  if (node.empty() || Clock::now() >= node.mapped().until) return std::nullopt;
  return node.mapped().answer;
}

AddressProbe::Known AddressProbe::judged(const std::string& address, const HttpResult& result) {
  if (const auto* answer = std::get_if<HttpAnswer>(&result)) {
    const AddressKind kind = kindOfAnswer(*answer);
    const auto lasts =
        kind == AddressKind::Nothing ? Clock::duration(nothingLasts) : Clock::duration(kindLasts);
    // Whoever is told of a connection makes one and asks again.
    const auto until = asksWhoIsThere(*answer) ? Clock::now() : Clock::now() + lasts;
    return {kind, std::nullopt, until};
  }
  const auto& failure = std::get<HttpFailure>(result);
  // Sent whole, by a server that knows no parts; its name has to do.
  const bool isLarge = failure.fault == HttpFault::TooLarge && isNamedAsImage(parsedAddress(address)->path);
  if (isLarge) return {AddressKind::RasterFile, std::nullopt, Clock::now() + kindLasts};
  return {AddressKind::Nothing, failure, Clock::now() + silenceLasts};
}

bool AddressProbe::isHostAway(const std::string& server) const {
  const auto told = addressOfServer(server);
  const auto failure = told ? silence(told->address) : std::nullopt;
  return failure && (failure->fault == HttpFault::NoSuchHost || failure->fault == HttpFault::NoConnection);
}

void AddressProbe::forget() {
  const std::lock_guard lock(mutex_);
  known_.clear();
  whole_.clear();
}

std::optional<ServerAddress> addressOfServer(const std::string& server) {
  const std::string text = trimmed(server);
  const bool isWhole = isWebAddress(text);
  if (!isWhole && (!isHost(text) || text.find("://") != std::string::npos)) return std::nullopt;
  const auto address = parsedAddress(isWhole ? text : "http://" + text);
  if (!address || address->hasUser) return std::nullopt;
  const bool isHostAlone = address->path == "/" && address->query.empty();
  return ServerAddress{address->text(), isHostAlone ? ServerPlace::Host : ServerPlace::Address};
}

std::optional<std::string> hostOfServer(const std::string& server) {
  const auto told = addressOfServer(server);
  if (!told || told->place != ServerPlace::Host) return std::nullopt;
  std::string text = trimmed(server);
  const std::size_t scheme = text.find("://");
  if (scheme != std::string::npos) text.erase(0, scheme + 3);
  if (text.ends_with('/')) text.pop_back();
  if (text.find_first_of("/\\?#") != std::string::npos) return std::nullopt;
  const Server host = parsedAddress(told->address)->server;
  return (host.scheme == "http" ? "" : host.scheme + "://") + host.shown();
}

std::vector<std::string> placesOnHost(const std::string& server, std::span<const std::string_view> paths) {
  const auto told = addressOfServer(server);
  if (!told) return {};
  std::vector<std::string> places;
  for (const std::string_view path : paths) {
    Address at = *parsedAddress(told->address);
    at.path = path;
    places.push_back(at.text());
  }
  return places;
}

std::string addressFlaw(const std::string& server) {
  const std::string text = trimmed(server);
  if (addressOfServer(text)) return {};
  const bool isWhole = isWebAddress(text);
  const std::size_t begin = isWhole ? text.find("://") + 3 : 0;
  const std::string host = text.substr(begin, text.find_first_of("/?#", begin) - begin);
  if (isWhole && host.empty()) return "the address names no host";
  const std::size_t colon = host.rfind(':');
  const std::string port = colon == std::string::npos ? std::string() : host.substr(colon + 1);
  const bool isNumber = !port.empty() && port.find_first_not_of("0123456789") == std::string::npos;
  if (isNumber && colon > 0 && isHost(host.substr(0, colon)) &&
      parsedAddress("http://" + host.substr(0, colon))) {
    return "there is no port " + port.substr(0, longestPortShown);
  }
  return isWhole ? "the address cannot be read" : "";
}

std::vector<std::string> possibleServers(const std::string& serverAndName) {
  const std::size_t scheme = serverAndName.find("://");
  const std::size_t begin = scheme == std::string::npos ? 0 : scheme + 3;
  std::vector<std::string> servers;
  for (std::size_t slash = serverAndName.rfind('/'); slash != std::string::npos && slash > begin;
       slash = serverAndName.rfind('/', slash - 1)) {
    servers.push_back(serverAndName.substr(0, slash));
  }
  return servers;
}

// A service lies a few folders below its server, or the server's own address is long.
std::vector<std::string> serversToAsk(const std::string& serverAndName,
                                      const std::function<bool(const std::string&)>& isKnown) {
  std::vector<std::string> servers = possibleServers(serverAndName);
  const auto unknown = std::ranges::stable_partition(servers, isKnown).begin();
  const auto known = static_cast<std::size_t>(unknown - servers.begin());
  if (servers.size() <= mostServersAsked) return servers;
  const std::size_t kept = mostServersAsked - std::min(known, mostServersAsked);
  const std::size_t longest = kept - kept / 2;
  const auto first = unknown + static_cast<std::ptrdiff_t>(longest);
  servers.erase(first, servers.end() - static_cast<std::ptrdiff_t>(kept / 2));
  servers.resize(std::min(servers.size(), mostServersAsked));
  return servers;
}

}  // namespace vlclientui::client
