#include "client/transport/Transport.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <random>
#include <utility>

#include "client/transport/Address.h"
#include "client/transport/Call.h"
#include "client/transport/ExchangeFaults.h"
#include "client/transport/TransferThread.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using std::chrono::milliseconds;

double ownChance() {
  thread_local std::minstd_rand generator(std::random_device{}());
  return std::uniform_real_distribution<double>(0.0, 1.0)(generator);
}

std::string fromEnvironment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

TransportSettings completed(TransportSettings settings) {
  TransportSources& sources = settings.sources;
  if (!sources.now) sources.now = [] { return std::chrono::system_clock::now(); };
  if (!sources.chance) sources.chance = ownChance;
  if (!sources.pause) sources.pause = [](milliseconds pause) { return pause; };
  // libcurl knows the certificates of the system by itself, these variables only its command does.
  if (settings.trusted.file.empty()) settings.trusted.file = fromEnvironment("SSL_CERT_FILE");
  if (settings.trusted.folder.empty()) settings.trusted.folder = fromEnvironment("SSL_CERT_DIR");
  return settings;
}

/// One fetchEach: sends as many requests as may be underway, and hands out what comes.
class Fetching {
 public:
  Fetching(TransferThread& thread, std::shared_ptr<const TransportSettings> settings,
           const std::vector<HttpRequest>& requests, const Transport::Each& each)
      : thread_(thread),
        settings_(std::move(settings)),
        requests_(requests),
        each_(each),
        isDone_(requests.size(), false) {}
  Fetching(const Fetching&) = delete;
  Fetching& operator=(const Fetching&) = delete;
  ~Fetching() {
    if (done_ == requests_.size() && !isGivenUp_) return;
    call_->abandon();
    thread_.dropAbandoned();
  }

  void run(std::size_t atATime) {
    Waiting waiting([call = call_] { call->wake(); });
    bool isWanted = true;
    while (isWanted && done_ < requests_.size()) {
      if (waiting.isGivenUp()) return handOutCanceled();
      while (isWanted && sent_ < requests_.size() && sent_ - done_ < atATime) isWanted = send();
      if (!isWanted || done_ == requests_.size()) return;
      if (auto finished = call_->take(waiting.nextQuestion())) {
        isWanted = handOut(finished->index, std::move(finished->result));
      } else {
        waiting.ask(whatIsWaitedFor());
      }
    }
  }

 private:
  /// @returns whether more is wanted. A request without the secret that is due is not sent.
  bool send() {
    const std::size_t index = sent_++;
    if (auto failure = prepare(requests_[index].address)) return handOut(index, std::move(*failure));
    thread_.submit(call_, index, Errand(requests_[index], settings_));
    return true;
  }

  [[nodiscard]] std::optional<HttpFailure> prepare(const std::string& text) const {
    const auto address = settings_->prepareCredentials ? parsedAddress(text) : std::nullopt;
    if (!address) return std::nullopt;
    try {
      settings_->prepareCredentials(address->server, address->path);
    } catch (const RuntimeFailure& failure) {
      return HttpFailure{HttpFault::Other, address->server.shown() + ": " + failure.description()};
    }
    return std::nullopt;
  }

  bool handOut(std::size_t index, HttpResult result) {
    isDone_[index] = true;
    ++done_;
    return each_(index, std::move(result));
  }

  void handOutCanceled() {
    isGivenUp_ = true;
    for (std::size_t i = 0; i < requests_.size(); ++i) {
      if (!isDone_[i] && !handOut(i, canceled(hostOf(i)))) return;
    }
  }

  [[nodiscard]] std::string hostOf(std::size_t index) const {
    const auto address = parsedAddress(requests_[index].address);
    return address ? address->server.shown() : "a server";
  }

  [[nodiscard]] WaitedFor whatIsWaitedFor() const {
    const auto open = std::find(isDone_.begin(), isDone_.end(), false);
    return {hostOf(static_cast<std::size_t>(open - isDone_.begin())),
            *call_->received(),
            requests_.size() - done_,
            {}};
  }

  TransferThread& thread_;
  std::shared_ptr<const TransportSettings> settings_;
  const std::vector<HttpRequest>& requests_;
  const Transport::Each& each_;
  std::shared_ptr<Call> call_ = std::make_shared<Call>();
  std::vector<bool> isDone_;
  std::size_t sent_ = 0;
  std::size_t done_ = 0;
  bool isGivenUp_ = false;
};

}  // namespace

Transport::Transport(TransportSettings settings)
    : settings_(std::make_shared<const TransportSettings>(completed(std::move(settings)))),
      thread_(std::make_unique<TransferThread>(settings_).release()) {}

Transport::~Transport() {
  const TransferThread* const thread = thread_;
  if (thread->isOfThisProcess()) delete thread;
}

// A lock might have been held by another thread at the fork, which is not there to give it back.
TransferThread& Transport::threadOfThisProcess() {
  TransferThread* thread = thread_;
  while (!thread->isOfThisProcess()) {
    auto own = std::make_unique<TransferThread>(settings_);
    if (thread_.compare_exchange_strong(thread, own.get())) thread = own.release();
  }
  return *thread;
}

void Transport::fetchEach(const std::vector<HttpRequest>& requests, std::size_t atATime, const Each& each) {
  const Each counted = [&](std::size_t index, HttpResult&& result) {
    if (const auto* answer = std::get_if<HttpAnswer>(&result)) {
      ++requests_;
      bytes_ += answer->body.size();
    }
    return each(index, std::move(result));
  };
  Fetching(threadOfThisProcess(), settings_, requests, counted).run(std::max<std::size_t>(atATime, 1));
}

std::vector<HttpResult> Transport::fetchAll(const std::vector<HttpRequest>& requests, std::size_t atATime) {
  std::vector<HttpResult> results(requests.size());
  fetchEach(requests, atATime, [&](std::size_t index, HttpResult&& result) {
    results[index] = std::move(result);
    return true;
  });
  return results;
}

HttpResult Transport::fetch(const HttpRequest& request) { return std::move(fetchAll({request}, 1).front()); }

}  // namespace vlclientui::client
