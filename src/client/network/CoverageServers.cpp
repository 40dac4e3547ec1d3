#include "client/network/CoverageServers.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "client/connections/Refusal.h"
#include "client/network/AddressProbe.h"
#include "client/network/CoverageRaster.h"
#include "client/network/NetworkAccess.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "client/transport/Transport.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

using Freshness = CoverageClient::Freshness;

// So many are described for the list; of more, only what the list of the server tells is shown.
constexpr std::size_t mostDescribed = 200;
constexpr std::size_t placesAtATime = 3;
constexpr std::array<std::string_view, 6> usualPlaces = {
    "/wcs", "/cgi-bin/mapserv", "/cgi-bin/qgis_mapserv.fcgi", "/geoserver/wcs", "/ows", "/"};

// A server that does not answer is no failure; whoever wonders finds the reason in the trace.
void tellSilence(const std::string& server, const std::string& reason) {
  const bool isOfAnotherKind = reason.empty();
  if (isOfAnotherKind) return;
  endSilently(serverSilence("server", withoutSecrets(trimmed(server)), reason), "CoverageServers");
}

// What is so at every place of a host.
bool isOfTheHost(HttpFault fault) {
  return fault == HttpFault::NoSuchHost || fault == HttpFault::NoConnection || fault == HttpFault::TimedOut ||
         fault == HttpFault::Certificate || fault == HttpFault::Canceled;
}

HttpRequest capabilitiesProbe(const std::string& place) {
  HttpRequest request;
  request.address = capabilitiesRequest(place, std::nullopt);
  request.retrying = Retrying::Never;
  request.remember = true;
  return request;
}

bool isCoverageService(const HttpResult& result) {
  const auto* answer = std::get_if<HttpAnswer>(&result);
  if (answer == nullptr) return false;
  const auto read = readCapabilities(answer->body);
  const auto* problem = std::get_if<CoverageProblem>(&read);
  return problem == nullptr || !problem->code.empty();
}

}  // namespace

std::vector<std::string> coveragePlaces(const std::string& server) {
  const auto told = addressOfServer(server);
  if (!told) return {};
  if (told->place == ServerPlace::Address) return {told->address};
  return placesOnHost(server, usualPlaces);
}

CoverageServers::CoverageServers(NetworkAccess& access) : access_(access) { registerCoverageRasters(); }

// As somebody found out who asked before.
bool CoverageServers::isOfAnotherKind(const std::string& server) const {
  const auto kind = access_.probe().knownKind(addressOfServer(server)->address);
  return kind && *kind != AddressKind::Coverages && *kind != AddressKind::Nothing;
}

OrProblem<std::shared_ptr<CoverageClient>> CoverageServers::connect(const std::string& server) {
  const std::vector<std::string> places = coveragePlaces(server);
  if (places.empty()) return CoverageProblem{"", addressFlaw(server)};
  if (isOfAnotherKind(server)) return CoverageProblem{"", ""};
  const auto silence = access_.probe().silence(addressOfServer(server)->address);
  if (silence && isOfTheHost(silence->fault)) return silenceOf(*silence);
  if (places.size() == 1) return access_.coverages(places.front());
  CoverageProblem problem{"", "nobody at the usual places is a coverage service"};
  const auto host = hostOfServer(server);
  auto place = host ? rememberedPlace(*host) : std::nullopt;
  if (!place) place = answeringPlace(places, problem);
  if (!place) return problem;
  if (host) access_.hosts().remember(*host, *place);
  return access_.coverages(*place);
}

// A host that is away for a moment is looked for again then, which costs a few requests.
std::optional<std::string> CoverageServers::rememberedPlace(const std::string& host) {
  auto place = access_.hosts().placeOf(host);
  if (!place) return std::nullopt;
  const HttpResult result = access_.transport().fetch(capabilitiesProbe(*place));
  if (isCoverageService(result)) return place;
  const auto* failure = std::get_if<HttpFailure>(&result);
  const bool isGivenUp = failure != nullptr && failure->fault == HttpFault::Canceled;
  if (!isGivenUp) access_.hosts().forget(host);
  return std::nullopt;
}

std::optional<std::string> CoverageServers::answeringPlace(const std::vector<std::string>& places,
                                                           CoverageProblem& problem) {
  std::vector<HttpRequest> requests;
  for (const std::string& place : places) requests.push_back(capabilitiesProbe(place));
  std::optional<std::string> answering;
  access_.transport().fetchEach(requests, placesAtATime, [&](std::size_t index, HttpResult&& result) {
    if (!answering && isCoverageService(result)) answering = places[index];
    const auto* answer = std::get_if<HttpAnswer>(&result);
    if (answer != nullptr && asksWhoIsThere(*answer)) problem = {"", refusalText(*answer)};
    const auto* failure = std::get_if<HttpFailure>(&result);
    const bool nobodyIsThere = failure != nullptr && isOfTheHost(failure->fault);
    if (nobodyIsThere) problem = silenceOf(*failure);
    return !answering && !nobodyIsThere;
  });
  return answering;
}

OrProblem<CoverageServers::ListingPtr> CoverageServers::listing(const std::string& server,
                                                                Freshness freshness) {
  const auto before = known_.of(server);
  if (before && freshness == Freshness::Remembered) return before;
  std::shared_ptr<CoverageClient> client = before ? before->client : nullptr;
  if (!client) {
    auto connected = connect(server);
    if (auto* problem = std::get_if<CoverageProblem>(&connected)) return std::move(*problem);
    client = std::get<std::shared_ptr<CoverageClient>>(std::move(connected));
  }
  auto asked = client->capabilities(freshness);
  if (auto* problem = std::get_if<CoverageProblem>(&asked)) return std::move(*problem);
  const auto* capabilities = std::get_if<std::shared_ptr<const CoverageCapabilities>>(&asked);
  auto listing = std::make_shared<Listing>();
  listing->idsByName = coverageNames(**capabilities);
  listing->client = std::move(client);
  known_.keep(server, listing);
  return ListingPtr(listing);
}

std::optional<CatalogueContent> CoverageServers::list(const std::string& server) {
  const auto answer = listing(server, Freshness::AskAgain);
  if (const auto* problem = std::get_if<CoverageProblem>(&answer)) {
    tellSilence(server, problem->text);
    return std::nullopt;
  }
  const auto& listed = std::get<ListingPtr>(answer);
  const auto asked = listed->client->capabilities(Freshness::Remembered);
  const auto* capabilities = std::get_if<std::shared_ptr<const CoverageCapabilities>>(&asked);
  if (capabilities == nullptr) return std::nullopt;
  std::vector<std::shared_ptr<const CoverageDescription>> descriptions(listed->idsByName.size());
  if (descriptions.size() <= mostDescribed) {
    std::vector<std::string> ids;
    for (const auto& [name, id] : listed->idsByName) ids.push_back(id);
    descriptions = listed->client->describe(ids);
  }
  return coverageContent(listed->client->address(), **capabilities, listed->idsByName, descriptions);
}

// Of several servers whose texts the reference begins with, the longest that has a service of that name.
std::optional<CatalogueEntry> CoverageServers::find(const std::string& serverAndName) {
  const auto isKnown = [this](const std::string& server) { return known_.of(server) != nullptr; };
  for (const std::string& server : serversToAsk(serverAndName, isKnown)) {
    const auto answer = listing(server, Freshness::Remembered);
    if (const auto* problem = std::get_if<CoverageProblem>(&answer)) {
      const bool isSilent = problem->source == CoverageProblem::Source::Silence;
      const bool isAway = access_.probe().isHostAway(server);
      if (isSilent || tellsOfConnection(problem->text)) {
        tellSilence(isAway ? parsedAddress(addressOfServer(server)->address)->server.shown() : server,
                    problem->text);
      }
      if (isAway) break;
      continue;
    }
    const auto& listed = std::get<ListingPtr>(answer);
    const std::string name = serverAndName.substr(server.size() + 1);
    const auto found = listed->idsByName.find(name);
    if (found != listed->idsByName.end())
      return coverageEntry(listed->client->address(), name, found->second);
    const auto isNamed = [&](const auto& entry) { return entry.second == name; };
    const auto byId = std::ranges::find_if(listed->idsByName, isNamed);
    if (byId != listed->idsByName.end())
      return coverageEntry(listed->client->address(), byId->first, byId->second);
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
