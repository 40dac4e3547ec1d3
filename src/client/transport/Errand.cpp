#include "client/transport/Errand.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <limits>

#include "client/transport/HttpText.h"
#include "client/transport/Retries.h"
#include "client/transport/Secrets.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

constexpr int notModifiedStatus = 304;

bool isRedirect(const HttpAnswer& answer) {
  constexpr std::array statuses{301, 302, 303, 307, 308};
  return std::find(statuses.begin(), statuses.end(), answer.status) != statuses.end() &&
         !answer.header("Location").empty();
}

// These two repeat a POST; the others ask for the result of one.
bool keepsMethod(int status) { return status == 307 || status == 308; }

// What says in which form the answer is wanted; all else may be a key.
bool maySeeOthers(const HttpHeader& header) {
  return isSameWord(header.name, "Accept") || isSameWord(header.name, "Accept-Language");
}

bool hasOwnConditions(const HttpRequest& request) {
  return std::any_of(request.headers.begin(), request.headers.end(),
                     [](const HttpHeader& header) { return smallLetters(header.name).starts_with("if-"); });
}

}  // namespace

Errand::Errand(HttpRequest request, std::shared_ptr<const TransportSettings> settings)
    : request_(std::move(request)),
      settings_(std::move(settings)),
      address_(parsedAddress(request_.address)) {
  if (address_) first_ = address_->server;
}

std::optional<HttpFailure> Errand::refusal() const {
  const std::string shown = withoutSecrets(request_.address);
  if (!address_)
    return HttpFailure{HttpFault::BadAddress, "\"" + shown + "\" is no address of a web server."};
  if (address_->hasUser) {
    return HttpFailure{HttpFault::BadAddress, "The address of " + first_.shown() +
                                                  " holds a user or password, which belong elsewhere."};
  }
  if (!std::all_of(request_.headers.begin(), request_.headers.end(), isSound) ||
      !isSound({"Content-Type", request_.bodyType})) {
    return HttpFailure{HttpFault::Other,
                       "The request to " + first_.shown() + " has a header that cannot be sent."};
  }
  if (request_.range && request_.range->second < request_.range->first) {
    return HttpFailure{HttpFault::Other, "The request to " + first_.shown() + " is for no bytes at all."};
  }
  return std::nullopt;
}

std::string Errand::shownAddress() const { return withoutSecrets(address_->text()); }

std::uint64_t Errand::mostBytes() const {
  if (request_.mostBytes != 0) {
    return std::min<std::uint64_t>(request_.mostBytes, std::numeric_limits<std::int64_t>::max());
  }
  if (!request_.range) return settings_->mostBytes;
  // Room for a page that says what is wrong; a server without ranges is not heard to the end of its file.
  constexpr std::uint64_t page = 65536;
  return std::max(request_.range->second - request_.range->first + 1, page);
}

bool Errand::mayRemember() const {
  return request_.remember && request_.body.empty() && !request_.range && !hasOwnConditions(request_);
}

ExchangePlan Errand::plan(DocumentMemory& memory) {
  ExchangePlan plan;
  plan.address = address_->text();
  plan.server = address_->server;
  plan.range = request_.range;
  plan.body = request_.body;
  plan.bodyType = request_.bodyType;
  plan.mostBytes = mostBytes();
  plan.mostHeaderBytes = settings_->mostHeaderBytes;
  plan.limits = settings_->limits(request_.patience);
  plan.agent = settings_->agent;
  plan.trusted = settings_->trusted;
  std::copy_if(request_.headers.begin(), request_.headers.end(), std::back_inserter(plan.headers),
               [&](const HttpHeader& header) { return !hasLeft_ || maySeeOthers(header); });
  addConditions(plan, memory);
  return plan;
}

void Errand::addCredentials(ExchangePlan& plan) {
  if (hasLeft_ || !settings_->credentials) return;
  Credentials credentials;
  try {
    credentials = settings_->credentials(address_->server, address_->path);
  } catch (const std::exception&) {
    // Its text may hold what must not be shown.
    endSilently("the credentials for " + server().shown() + " could not be had");
  }
  plan.user = credentials.user;
  plan.password = credentials.password;
  std::copy_if(credentials.headers.begin(), credentials.headers.end(), std::back_inserter(plan.headers),
               isSound);
  for (const HttpHeader& parameter : credentials.parameters) {
    plan.address = withParameter(plan.address, parameter.name, parameter.value);
  }
}

// What one user was shown is not for another one, so all that is sent is a part of the key.
void Errand::addConditions(ExchangePlan& plan, DocumentMemory& memory) {
  addCredentials(plan);
  memoryKey_.clear();
  if (!mayRemember()) return;
  memoryKey_ = plan.address + "\n" + plan.user + "\n" + plan.password;
  for (const HttpHeader& header : plan.headers) memoryKey_ += "\n" + header.name + ":" + header.value;
  if (isUnconditional_) return;
  const std::vector<HttpHeader> conditions = memory.conditions(memoryKey_);
  plan.headers.insert(plan.headers.end(), conditions.begin(), conditions.end());
}

Errand::Next Errand::next(ExchangeOutcome&& outcome, DocumentMemory& memory, std::chrono::milliseconds left) {
  ++tried_;
  if (const auto pause = pauseBeforeRetry(outcome, request_, tried_, *settings_); pause && *pause <= left) {
    return Again{*pause};
  }
  if (outcome.failure) return HttpResult(*std::move(outcome.failure));
  if (isRedirect(outcome.answer)) return redirected(outcome.answer);
  if (outcome.answer.status == notModifiedStatus && !memoryKey_.empty()) {
    return notModified(std::move(outcome.answer), memory);
  }
  if (!memoryKey_.empty()) memory.keep(memoryKey_, outcome.answer);
  return handedOut(std::move(outcome.answer));
}

Errand::Next Errand::notModified(HttpAnswer&& answer, DocumentMemory& memory) {
  if (auto remembered = memory.confirmed(memoryKey_)) return handedOut(*std::move(remembered));
  // Forgotten while the question was underway; a server that says so unasked will not do it twice.
  if (isUnconditional_) return handedOut(std::move(answer));
  isUnconditional_ = true;
  return Again{};
}

Errand::Next Errand::redirected(const HttpAnswer& answer) {
  const std::string host = server().shown();
  if (++redirects_ > settings_->mostRedirects) {
    return HttpFailure{HttpFault::TooManyRedirects,
                       host + " leads from one address to the next without an end."};
  }
  const auto target = resolvedAddress(address_->text(), answer.header("Location"));
  auto address = target ? parsedAddress(*target) : std::nullopt;
  if (!address) {
    return HttpFailure{HttpFault::NotAllowed,
                       host + " leads to something that is no address of a web server."};
  }
  hasLeft_ = hasLeft_ || address->server != first_;
  address_ = std::move(address);
  if (!keepsMethod(answer.status)) request_.body.clear();
  tried_ = 0;
  return Again{};
}

HttpResult Errand::handedOut(HttpAnswer&& answer) const {
  answer.address = shownAddress();
  return std::move(answer);
}

}  // namespace vlclientui::client
