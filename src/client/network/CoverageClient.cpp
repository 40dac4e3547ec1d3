#include "client/network/CoverageClient.h"

#include <algorithm>
#include <utility>

#include "client/connections/Refusal.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t idsAtATime = 100;
constexpr std::size_t requestsAtATime = 4;
constexpr std::uint64_t mostDocumentBytes = std::uint64_t{256} << 20U;
// Listing more takes longer for titles than people wait for names.
constexpr std::size_t mostTitled = 2000;
constexpr int tooManyRequests = 429;

HttpRequest documentAt(std::string address) {
  HttpRequest request;
  request.address = std::move(address);
  request.mostBytes = mostDocumentBytes;
  request.remember = true;
  return request;
}

// A server that refuses says why in a document; one that has none is told by its status.
CoverageProblem problemOf(const HttpAnswer& answer) {
  if (asksWhoIsThere(answer)) return {"", refusalText(answer)};
  if (auto problem = readException(answer.body)) return *std::move(problem);
  const bool isOfTheMoment = answer.status >= 500 || answer.status == tooManyRequests;
  return {"", refusalText(answer),
          isOfTheMoment ? CoverageProblem::Source::Silence : CoverageProblem::Source::Answer};
}

OrProblem<std::string> bodyOf(HttpResult&& result) {
  if (const auto* failure = std::get_if<HttpFailure>(&result)) return silenceOf(*failure);
  auto& answer = std::get<HttpAnswer>(result);
  if (answer.status != 200) return problemOf(answer);
  return std::move(answer.body);
}

// Descriptions of the newest version tell no titles; the list of the server may.
void addSummary(CoverageDescription& description, const CoverageCapabilities& capabilities) {
  const auto found = std::ranges::find(capabilities.coverages, description.id, &CoverageSummary::id);
  if (found == capabilities.coverages.end()) return;
  if (description.title.empty() || description.title == description.id) description.title = found->title;
  if (description.abstract.empty()) description.abstract = found->abstract;
  if (description.keywords.empty()) description.keywords = found->keywords;
  if (!description.dates) description.dates = found->dates;
}

bool lacksTitles(const CoverageCapabilities& capabilities) {
  return std::ranges::any_of(capabilities.coverages, [](const CoverageSummary& summary) {
    return summary.title.empty() || !summary.geographic;
  });
}

// The first version tells dates, too.
CoverageVersion titledVersion(const CoverageCapabilities& capabilities) {
  const auto isOffered = [&](std::string_view start) {
    return std::ranges::any_of(capabilities.versions,
                               [start](const std::string& version) { return version.starts_with(start); });
  };
  return isOffered("1.1") && !isOffered("1.0") ? CoverageVersion::V111 : CoverageVersion::V100;
}

}  // namespace

CoverageProblem silenceOf(const HttpFailure& failure) {
  return {"", failure.text, CoverageProblem::Source::Silence};
}

CoverageClient::CoverageClient(Transport& transport, std::string address)
    : transport_(transport), address_(std::move(address)) {}

OrProblem<std::shared_ptr<const CoverageCapabilities>> CoverageClient::capabilities(Freshness freshness) {
  {
    const std::lock_guard lock(mutex_);
    if (capabilities_ && freshness == Freshness::Remembered) return capabilities_;
  }
  auto asked = askVersions();
  if (auto* problem = std::get_if<CoverageProblem>(&asked)) return std::move(*problem);
  auto& found = std::get<CoverageCapabilities>(asked);
  if (found.version == CoverageVersion::V201 && found.coverages.size() <= mostTitled && lacksTitles(found)) {
    addTitles(found);
  }
  auto shared = std::make_shared<const CoverageCapabilities>(std::move(found));
  const std::lock_guard lock(mutex_);
  const bool isOther = capabilities_ && capabilities_->version != shared->version;
  if (freshness == Freshness::AskAgain || isOther) {
    descriptions_.clear();
    formats_.clear();
  }
  capabilities_ = shared;
  return shared;
}

// One coverage with a name that a version forbids makes some servers refuse that whole version.
OrProblem<CoverageCapabilities> CoverageClient::askVersions() {
  auto best = askCapabilities(std::nullopt);
  const auto* problem = std::get_if<CoverageProblem>(&best);
  if (problem == nullptr || problem->code.empty()) return best;
  for (const CoverageVersion version : {CoverageVersion::V111, CoverageVersion::V100}) {
    auto older = askCapabilities(version);
    if (std::holds_alternative<CoverageCapabilities>(older)) return older;
  }
  return best;
}

OrProblem<CoverageCapabilities> CoverageClient::askCapabilities(std::optional<CoverageVersion> version) {
  HttpRequest request = documentAt(capabilitiesRequest(address_, version));
  // Whether anybody is there at all is answered at once; a server that was there before gets its time.
  if (told()->coverages.empty()) request.retrying = Retrying::Never;
  auto body = bodyOf(transport_.fetch(request));
  if (auto* problem = std::get_if<CoverageProblem>(&body)) return std::move(*problem);
  return readCapabilities(std::get<std::string>(body));
}

void CoverageClient::addTitles(CoverageCapabilities& capabilities) {
  auto asked = askCapabilities(titledVersion(capabilities));
  const auto* titled = std::get_if<CoverageCapabilities>(&asked);
  if (titled == nullptr) return;
  std::map<std::string_view, const CoverageSummary*> byId;
  for (const CoverageSummary& summary : titled->coverages) byId.emplace(summary.id, &summary);
  for (CoverageSummary& summary : capabilities.coverages) {
    const auto found = byId.find(summary.id);
    if (found == byId.end()) continue;
    if (summary.title.empty()) summary.title = found->second->title;
    if (summary.abstract.empty()) summary.abstract = found->second->abstract;
    if (summary.keywords.empty()) summary.keywords = found->second->keywords;
    if (!summary.geographic) summary.geographic = found->second->geographic;
    if (!summary.dates) summary.dates = found->second->dates;
  }
}

// Addresses that servers tell of themselves are often those of a machine inside; the one that answered is
// right.
std::string CoverageClient::addressFor(const std::string& told) const {
  const auto own = parsedAddress(address_);
  const auto other = parsedAddress(told);
  return own && other && own->server == other->server && !other->query.empty() ? told : address_;
}

// Whoever has a description has asked for the capabilities before.
std::shared_ptr<const CoverageCapabilities> CoverageClient::told() {
  const std::lock_guard lock(mutex_);
  static const auto nothing = std::make_shared<const CoverageCapabilities>();
  return capabilities_ ? capabilities_ : nothing;
}

CoverageVersion CoverageClient::version() { return told()->version; }

CoverageClient::Description CoverageClient::known(const std::string& id) {
  const std::lock_guard lock(mutex_);
  const auto found = descriptions_.find(id);
  return found == descriptions_.end() ? nullptr : found->second;
}

std::vector<CoverageClient::Description> CoverageClient::describe(const std::vector<std::string>& ids) {
  if (std::holds_alternative<CoverageProblem>(capabilities(Freshness::Remembered))) {
    return std::vector<Description>(ids.size());
  }
  std::vector<std::string> unknown;
  for (const std::string& id : ids) {
    if (!known(id)) unknown.push_back(id);
  }
  for (std::size_t begin = 0; begin < unknown.size(); begin += idsAtATime) {
    const auto end =
        unknown.begin() + static_cast<std::ptrdiff_t>(std::min(begin + idsAtATime, unknown.size()));
    describeBatch(version(), {unknown.begin() + static_cast<std::ptrdiff_t>(begin), end});
  }
  std::vector<Description> descriptions;
  std::ranges::transform(ids, std::back_inserter(descriptions),
                         [this](const std::string& id) { return known(id); });
  return descriptions;
}

// A batch with one coverage that cannot be described fails as a whole; then each is asked for by itself.
void CoverageClient::describeBatch(CoverageVersion version, const std::vector<std::string>& ids) {
  const std::string server = addressFor(told()->describeAddress);
  const auto keep = [this](std::vector<CoverageDescription>&& descriptions) {
    const auto capabilities = told();
    for (CoverageDescription& description : descriptions) addSummary(description, *capabilities);
    const std::lock_guard lock(mutex_);
    for (CoverageDescription& description : descriptions) {
      std::string id = description.id;
      descriptions_[std::move(id)] = std::make_shared<const CoverageDescription>(std::move(description));
    }
  };
  const auto read = [&](HttpResult&& result) {
    auto body = bodyOf(std::move(result));
    const auto* text = std::get_if<std::string>(&body);
    if (text == nullptr) return false;
    auto descriptions = readDescriptions(*text, version);
    auto* found = std::get_if<std::vector<CoverageDescription>>(&descriptions);
    if (found == nullptr) return false;
    keep(std::move(*found));
    return true;
  };
  if (read(transport_.fetch(documentAt(descriptionRequest(server, version, ids)))) || ids.size() == 1) return;
  std::vector<HttpRequest> single;
  for (const std::string& id : ids) single.push_back(documentAt(descriptionRequest(server, version, {id})));
  transport_.fetchEach(single, requestsAtATime, [&](std::size_t, HttpResult&& result) {
    read(std::move(result));
    return true;
  });
}

OrProblem<CoverageClient::Description> CoverageClient::describe(const std::string& id) {
  if (auto description = known(id)) return description;
  auto told = describeAnew(id);
  if (const auto* description = std::get_if<Description>(&told)) {
    const std::lock_guard lock(mutex_);
    descriptions_[id] = *description;
  }
  return told;
}

OrProblem<CoverageClient::Description> CoverageClient::describeAnew(const std::string& id) {
  auto asked = capabilities(Freshness::Remembered);
  if (auto* problem = std::get_if<CoverageProblem>(&asked)) return std::move(*problem);
  auto body = bodyOf(
      transport_.fetch(documentAt(descriptionRequest(addressFor(told()->describeAddress), version(), {id}))));
  if (auto* problem = std::get_if<CoverageProblem>(&body)) return std::move(*problem);
  auto read = readDescriptions(std::get<std::string>(body), version());
  if (auto* problem = std::get_if<CoverageProblem>(&read)) return std::move(*problem);
  for (CoverageDescription& description : std::get<std::vector<CoverageDescription>>(read)) {
    if (description.id != id) continue;
    addSummary(description, *told());
    return std::make_shared<const CoverageDescription>(std::move(description));
  }
  return CoverageProblem{"", "the server describes no plain grid of the name " + id +
                                 ": it is turned or not whole, or its numbers fit no raster"};
}

OrProblem<std::shared_ptr<const CoverageFormat>> CoverageClient::format(const CoverageDescription& coverage) {
  {
    const std::lock_guard lock(mutex_);
    const auto found = formats_.find(coverage.id);
    if (found != formats_.end()) return found->second;
  }
  auto chosen = chooseFormat(coverage);
  if (auto* problem = std::get_if<CoverageProblem>(&chosen)) return std::move(*problem);
  auto shared = std::make_shared<const CoverageFormat>(std::get<CoverageFormat>(std::move(chosen)));
  const std::lock_guard lock(mutex_);
  return formats_[coverage.id] = shared;
}

}  // namespace vlclientui::client
