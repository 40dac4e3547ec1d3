#include "client/transport/TransferThread.h"

#include <algorithm>
#include <csignal>

#include "client/transport/ExchangeFaults.h"
#include "client/transport/Retries.h"

namespace vlclientui::client {
namespace {

using std::chrono::milliseconds;

// A poll ends earlier for every byte, wake and limit; this is for what nobody thought of.
constexpr milliseconds longestPoll = std::chrono::seconds(10);

void startLibrary() {
  static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(started);
}

double secondsSince(std::chrono::steady_clock::time_point begin) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

struct TransferThread::Job {
  std::shared_ptr<Call> call;
  std::size_t index;
  Errand errand;
  std::unique_ptr<Exchange> exchange;  ///< null while it waits for its turn
  Clock::time_point due{};             ///< not before
  std::optional<Clock::time_point> begun;
  Clock::time_point exchangeBegun{};
  Clock::time_point wholeUntil{};

  [[nodiscard]] bool isRunning() const { return exchange != nullptr; }
};

TransferThread::TransferThread(std::shared_ptr<const TransportSettings> settings)
    : settings_(std::move(settings)), memory_(settings_->rememberedBytes) {
  startLibrary();
  share_.reset(curl_share_init());
  multi_.reset(curl_multi_init());
  // A second connection to the same server need not introduce itself anew.
  curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
  curl_multi_setopt(multi_.get(), CURLMOPT_PIPELINING, CURLPIPE_MULTIPLEX);
  curl_multi_setopt(multi_.get(), CURLMOPT_MAXCONNECTS, static_cast<long>(settings_->inAll));
}

TransferThread::~TransferThread() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  curl_multi_wakeup(multi_.get());
  if (thread_.joinable()) thread_.join();
}

// Signals are for the threads of the host; one for a broken connection would end the process.
void TransferThread::startThread() {
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  thread_ = std::thread([this] { run(); });
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

void TransferThread::submit(const std::shared_ptr<Call>& call, std::size_t index, Errand errand) {
  if (auto refusal = errand.refusal()) {
    call->deliver({index, *std::move(refusal)});
    return;
  }
  {
    const std::lock_guard lock(mutex_);
    submitted_.push_back(std::make_unique<Job>(Job{call, index, std::move(errand), nullptr, {}, {}, {}, {}}));
  }
  std::call_once(started_, [this] { startThread(); });
  curl_multi_wakeup(multi_.get());
}

void TransferThread::dropAbandoned() { curl_multi_wakeup(multi_.get()); }

void TransferThread::run() {
  while (takeSubmitted()) {
    isChanged_ = false;
    eraseAbandoned();
    startWhatIsDue();
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    collect();
    endLate();
    curl_multi_poll(multi_.get(), nullptr, 0, pollTime(), nullptr);
  }
  for (const auto& job : jobs_) {
    stop(*job);
    job->call->deliver({job->index, canceled(job->errand.server().shown())});
  }
  jobs_.clear();
}

bool TransferThread::takeSubmitted() {
  const std::lock_guard lock(mutex_);
  for (auto& job : submitted_) jobs_.push_back(std::move(job));
  submitted_.clear();
  return !isStopping_;
}

void TransferThread::eraseAbandoned() {
  for (auto job = jobs_.begin(); job != jobs_.end();) {
    if ((*job)->call->isAbandoned()) {
      stop(**job);
      job = jobs_.erase(job);
    } else {
      ++job;
    }
  }
}

bool TransferThread::hasRoomFor(const Job& job) const {
  std::size_t inAll = 0;
  std::size_t there = 0;
  for (const auto& other : jobs_) {
    if (!other->isRunning()) continue;
    ++inAll;
    if (other->exchange->plan().server == job.errand.server()) ++there;
  }
  return inAll < settings_->inAll && there < settings_->perServer;
}

TransferThread::Clock::time_point TransferThread::dueTime(const Job& job) const {
  const auto rest = restUntil_.find(job.errand.server());
  return rest == restUntil_.end() ? job.due : std::max(job.due, rest->second);
}

void TransferThread::startWhatIsDue() {
  lookedAt_ = Clock::now();
  for (const auto& job : jobs_) {
    if (!job->isRunning() && dueTime(*job) <= lookedAt_ && hasRoomFor(*job)) start(*job);
  }
}

// The time of a request begins with its first exchange; its place in the queue is no fault of the server.
void TransferThread::start(Job& job) {
  job.exchangeBegun = Clock::now();
  if (!job.begun) {
    job.begun = job.exchangeBegun;
    job.wholeUntil = *job.begun + settings_->limits(job.errand.request().patience).whole;
  }
  job.exchange = std::make_unique<Exchange>(job.errand.plan(memory_), job.call->received(), share_.get());
  curl_multi_add_handle(multi_.get(), job.exchange->handle());
}

void TransferThread::stop(Job& job) {
  if (!job.isRunning()) return;
  curl_multi_remove_handle(multi_.get(), job.exchange->handle());
  job.exchange.reset();
}

TransferThread::Jobs::iterator TransferThread::jobOf(CURL* easy) {
  return std::find_if(jobs_.begin(), jobs_.end(), [easy](const auto& job) {
    return job->isRunning() && job->exchange->handle() == easy;
  });
}

void TransferThread::collect() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left)) {
    const auto job = jobOf(message->easy_handle);
    if (job != jobs_.end()) conclude(job, (*job)->exchange->finish(message->data.result));
  }
}

void TransferThread::endLate() {
  const Clock::time_point now = Clock::now();
  for (auto job = jobs_.begin(); job != jobs_.end();) {
    const auto next = std::next(job);
    if ((*job)->isRunning() && now >= std::min((*job)->exchange->silentUntil(), (*job)->wholeUntil)) {
      ExchangeOutcome outcome;
      outcome.failure = timedOut((*job)->errand.server());
      conclude(job, std::move(outcome));
    }
    job = next;
  }
}

void TransferThread::conclude(Jobs::iterator job, ExchangeOutcome outcome) {
  isChanged_ = true;
  Job& concluded = **job;
  report(concluded, outcome);
  stop(concluded);
  const Server server = concluded.errand.server();
  const bool isOverloaded = isOverload(outcome);
  const auto left = std::chrono::duration_cast<milliseconds>(concluded.wholeUntil - Clock::now());
  Errand::Next next = concluded.errand.next(std::move(outcome), memory_, left);
  if (const auto* const again = std::get_if<Errand::Again>(&next)) {
    concluded.due = Clock::now() + settings_->sources.pause(again->pause);
    // It is left alone by all requests, not by this one only.
    if (isOverloaded) restUntil_[server] = concluded.due;
    return;
  }
  finish(job, std::get<HttpResult>(std::move(next)));
}

void TransferThread::report(const Job& job, const ExchangeOutcome& outcome) const {
  if (!settings_->observer) return;
  ExchangeReport report;
  report.address = job.errand.shownAddress();
  report.status = outcome.answer.status;
  if (outcome.failure) report.fault = outcome.failure->fault;
  report.bytes = outcome.failure ? job.exchange->bodyBytes() : outcome.answer.body.size();
  report.seconds = secondsSince(job.exchangeBegun);
  settings_->observer(report);
}

void TransferThread::finish(Jobs::iterator job, HttpResult result) {
  if (auto* const answer = std::get_if<HttpAnswer>(&result)) answer->seconds = secondsSince(*(*job)->begun);
  (*job)->call->deliver({(*job)->index, std::move(result)});
  jobs_.erase(job);
}

int TransferThread::pollTime() const {
  if (isChanged_) return 0;
  Clock::time_point next = Clock::now() + longestPoll;
  for (const auto& job : jobs_) {
    if (job->isRunning()) {
      next = std::min({next, job->exchange->silentUntil(), job->wholeUntil});
    } else if (dueTime(*job) > lookedAt_) {
      next = std::min(next, dueTime(*job));
    }
  }
  // Rounded up, so that a limit has been reached when the poll ends.
  return static_cast<int>(
      std::max(std::chrono::ceil<milliseconds>(next - Clock::now()), milliseconds(0)).count());
}

}  // namespace vlclientui::client
