#include "client/stac/StacFetcher.h"

#include <set>
#include <utility>

#include "client/connections/Refusal.h"
#include "client/raster/Text.h"
#include "client/stac/SearchQuestion.h"
#include "client/stac/StacJson.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t atATime = 8;
constexpr std::size_t mostEmptyPages = 10;
constexpr auto pageLengthName = "limit";
constexpr auto pageLength = "1000";
constexpr auto jsonType = "application/json";

std::string hostOf(const std::string& address) {
  const auto parsed = parsedAddress(address);
  return parsed ? parsed->server.host + ":" + std::to_string(parsed->server.port) : std::string();
}

// A server may move its catalogue from http to https.
bool isSameHost(const std::string& one, const std::string& other) {
  const auto plain = [](std::string host) {
    for (const std::string_view usual : {":80", ":443"}) {
      if (host.ends_with(usual)) host.resize(host.size() - usual.size());
    }
    return host;
  };
  return plain(one) == plain(other);
}

// What tells of the document itself stays so.
bool mayPass(HttpFault fault) {
  switch (fault) {
    case HttpFault::NoSuchHost:
    case HttpFault::NoConnection:
    case HttpFault::TimedOut:
    case HttpFault::BrokenOff:
    case HttpFault::Canceled:
      return true;
    default:
      return false;
  }
}

bool mayPass(const HttpAnswer& answer) { return answer.status == 429 || answer.status >= 500; }

bool isGivenUp(const HttpResult& result) {
  const auto* const failure = std::get_if<HttpFailure>(&result);
  return failure != nullptr && failure->fault == HttpFault::Canceled;
}

bool isPostWanted(const HttpResult& result, const std::string& address) {
  const auto* const answer = std::get_if<HttpAnswer>(&result);
  return answer != nullptr && answer->status == notAllowed && isSearchAddress(address);
}

bool isEmpty(const StacDocument& page) { return page.items.empty() && page.children.empty(); }

}  // namespace

LeftOut leftOut(const std::string& address, const std::string& reason) {
  return {withoutSecrets(address), reason};
}

std::string tooManyItems(std::size_t limit) {
  return "there are more items than are used at a time; these are the first " + std::to_string(limit);
}

void tellDropped(std::vector<LeftOut>& problems, const StacPage& page) {
  if (page.document.dropped == 0) return;
  problems.push_back(leftOut(*page.base, std::to_string(page.document.dropped) + " of its items have no id"));
}

std::string withPageLength(const std::string& address) {
  const auto parsed = parsedAddress(address);
  const bool isTold = parsed && ("&" + parsed->query).find("&limit=") != std::string::npos;
  return isTold ? address : withParameter(address, pageLengthName, pageLength);
}

StacFetcher::StacFetcher(Transport& transport, const std::string& address, const StacLimits& limits)
    : transport_(transport), host_(hostOf(address)), limits_(limits) {}

HttpRequest StacFetcher::requestFor(const std::string& address, const std::string& body) const {
  HttpRequest request;
  request.address = address;
  request.headers = {{"Accept", "application/geo+json, application/json;q=0.9, */*;q=0.1"}};
  request.body = body;
  if (!body.empty()) request.bodyType = jsonType;
  request.mostBytes = limits_.documentBytes;
  request.remember = body.empty();
  return request;
}

OrStacProblem<StacPage> StacFetcher::read(const std::string& address, HttpResult&& result) {
  if (const auto* failure = std::get_if<HttpFailure>(&result)) {
    return StacProblem{failure->text, mayPass(failure->fault)};
  }
  const auto& answer = std::get<HttpAnswer>(result);
  const bool isGood = answer.status >= 200 && answer.status < 300;
  if (!isGood) return StacProblem{refusalText(answer), mayPass(answer)};
  bytes_ += answer.body.size();
  if (bytes_ > limits_.allBytes) return StacProblem{"the catalogue is too large"};
  auto document = reader_.read(answer.body);
  if (auto* problem = std::get_if<StacProblem>(&document)) return std::move(*problem);
  const std::string& base = answer.address.empty() ? address : answer.address;
  const bool wasLedAway = !isSameHost(hostOf(base), host_);
  if (wasLedAway) return StacProblem{"it is on another server, " + hostOf(base)};
  // The address after redirects, but with the parameters that are hidden in what is shown of it.
  const bool hidesSecrets = base.find(hiddenSecret) != std::string::npos;
  return StacPage{std::get<StacDocument>(std::move(document)),
                  std::make_shared<const std::string>(hidesSecrets ? address : base)};
}

OrStacProblem<StacPage> StacFetcher::fetch(const std::string& address) {
  return read(address, transport_.fetch(requestFor(address, {})));
}

OrStacProblem<StacPage> StacFetcher::firstPosted(Request& request, const std::string& longer) {
  const SearchQuestion plain = searchQuestion(request.address);
  const SearchQuestion question = searchQuestion(longer);
  request = {question.address, question.body};
  auto result = transport_.fetch(requestFor(request.address, request.body));
  const auto* answer = std::get_if<HttpAnswer>(&result);
  const bool isRefused = answer != nullptr && answer->status >= 400 && answer->status < 500;
  if (isRefused && plain.body != question.body) {
    request.body = plain.body;
    result = transport_.fetch(requestFor(request.address, request.body));
  }
  return read(request.address, std::move(result));
}

// Its base is the whole question, since further pages are asked for by it.
OrStacProblem<StacPage> StacFetcher::fetchInAnyWay(const std::string& address) {
  auto result = transport_.fetch(requestFor(address, {}));
  if (!isPostWanted(result, address)) return read(address, std::move(result));
  Request request{address, {}};
  auto page = firstPosted(request, address);
  if (auto* found = std::get_if<StacPage>(&page)) found->base = std::make_shared<const std::string>(address);
  return page;
}

// Some servers refuse long pages instead of cutting them, and some take a search by POST alone.
OrStacProblem<StacPage> StacFetcher::firstPage(Request& request) {
  const std::string longer = withPageLength(request.address);
  auto result = transport_.fetch(requestFor(longer, {}));
  const auto* answer = std::get_if<HttpAnswer>(&result);
  const int status = answer == nullptr ? 0 : answer->status;
  if (isPostWanted(result, longer)) return firstPosted(request, longer);
  const bool isRefused = status >= 400 && status < 500;
  if (isRefused && longer != request.address) return fetch(request.address);
  return read(longer, std::move(result));
}

OrStacProblem<std::string> StacFetcher::followed(const std::string& base,
                                                 const std::string& reference) const {
  const auto address = resolvedAddress(base, reference);
  if (!address) return StacProblem{"\"" + withoutSecrets(reference) + "\" is no http or https address"};
  const std::string host = hostOf(*address);
  if (!isSameHost(host, host_)) return StacProblem{"the link leads to another server, " + host};
  return *address;
}

// The request for what follows a page; an empty address where nothing does.
OrStacProblem<StacFetcher::Request> StacFetcher::after(const StacPage& page, const Request& request) const {
  const StacLink* const link = page.document.link("next");
  if (link == nullptr) return Request();
  auto address = followed(*page.base, link->address);
  if (auto* problem = std::get_if<StacProblem>(&address)) return std::move(*problem);
  Request next{std::get<std::string>(std::move(address)), {}};
  if (!link->isPosted) return next;
  next.body = link->mergesBody ? stac_json::merged(request.body, link->body) : link->body;
  if (next.body.empty()) next.body = "{}";
  return next;
}

std::optional<StacProblem> StacFetcher::eachPage(const std::string& address,
                                                 const std::function<bool(StacPage&&)>& each) {
  Request request{address, {}};
  auto first = firstPage(request);
  if (auto* problem = std::get_if<StacProblem>(&first)) return std::move(*problem);
  return eachPageFrom(std::move(request), std::get<StacPage>(std::move(first)), each);
}

std::optional<StacProblem> StacFetcher::eachPage(StacPage&& first,
                                                 const std::function<bool(StacPage&&)>& each) {
  const std::string address = *first.base;
  if (first.document.link("next") != nullptr) return eachPage(address, each);
  return eachPageFrom({address, {}}, std::move(first), each);
}

std::optional<StacProblem> StacFetcher::eachPageFrom(Request at, StacPage&& page,
                                                     const std::function<bool(StacPage&&)>& each) {
  std::set<std::pair<std::string, std::string>> visited = {{at.address, at.body}};
  if (at.body.empty()) visited.emplace(withPageLength(at.address), "");
  std::size_t emptyPages = 0;
  for (std::size_t number = 1;; ++number) {
    emptyPages = isEmpty(page.document) ? emptyPages + 1 : 0;
    auto next = after(page, at);
    if (!each(std::move(page))) return std::nullopt;
    if (auto* problem = std::get_if<StacProblem>(&next)) return std::move(*problem);
    at = std::get<Request>(std::move(next));
    if (at.address.empty()) return std::nullopt;
    const bool isNew = visited.emplace(at.address, at.body).second;
    if (!isNew) return StacProblem{"its pages lead back to each other"};
    if (number >= limits_.pages || emptyPages >= mostEmptyPages) return StacProblem{"its pages never end"};
    auto fetched = read(at.address, transport_.fetch(requestFor(at.address, at.body)));
    if (auto* problem = std::get_if<StacProblem>(&fetched)) return std::move(*problem);
    page = std::get<StacPage>(std::move(fetched));
  }
}

std::optional<StacProblem> StacFetcher::eachDocument(
    const std::vector<std::string>& addresses, Passing passing, std::vector<LeftOut>& problems,
    const std::function<void(std::size_t, StacPage&&)>& each) {
  std::optional<StacProblem> end;
  std::vector<HttpRequest> requests;
  requests.reserve(addresses.size());
  for (const std::string& address : addresses) requests.push_back(requestFor(address, {}));
  transport_.fetchEach(requests, atATime, [&](std::size_t index, HttpResult&& result) {
    const bool endsAll = passing == Passing::EndsAll || isGivenUp(result);
    auto page = read(addresses[index], std::move(result));
    const auto* const problem = std::get_if<StacProblem>(&page);
    if (problem == nullptr) {
      each(index, std::get<StacPage>(std::move(page)));
    } else if (endsAll && problem->mayPass) {
      end = *problem;
    } else {
      problems.push_back(leftOut(addresses[index], problem->text));
    }
    return !end;
  });
  return end;
}

}  // namespace vlclientui::client
