#pragma once

#include <chrono>
#include <condition_variable>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <curl/curl.h>
#include <unistd.h>

#include "client/transport/Call.h"
#include "client/transport/Errand.h"

namespace vlclientui::client {

/// The one thread that talks to servers. It starts with the first job and ends with the object.
class TransferThread {
 public:
  explicit TransferThread(std::shared_ptr<const TransportSettings> settings);
  TransferThread(const TransferThread&) = delete;
  TransferThread& operator=(const TransferThread&) = delete;
  ~TransferThread();

  /// Delivers one answer to the call, from any thread.
  void submit(const std::shared_ptr<Call>& call, std::size_t index, Errand errand);
  /// Drops what was submitted for abandoned calls. Returns at once.
  void dropAbandoned();
  /// False in a process that was forked since: the thread is none of its own there, its connections belong to
  /// the other process, and the object is neither to be used nor to be destroyed.
  [[nodiscard]] bool isOfThisProcess() const { return process_ == getpid(); }

 private:
  using Clock = std::chrono::steady_clock;
  struct Job;
  using Jobs = std::list<std::unique_ptr<Job>>;
  struct MultiCloser {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  struct ShareCloser {
    void operator()(CURLSH* share) const { curl_share_cleanup(share); }
  };

  void startThread();
  void run();
  [[nodiscard]] bool takeSubmitted();
  void eraseAbandoned();
  void startWhatIsDue();
  [[nodiscard]] bool hasRoomFor(const Job& job) const;
  [[nodiscard]] Clock::time_point dueTime(const Job& job) const;
  void start(Job& job);
  void collect();
  void endLate();
  void conclude(Jobs::iterator job, ExchangeOutcome outcome);
  void report(const Job& job, const ExchangeOutcome& outcome) const;
  void finish(Jobs::iterator job, HttpResult result);
  void stop(Job& job);
  [[nodiscard]] Jobs::iterator jobOf(CURL* easy);
  [[nodiscard]] int pollTime() const;

  const pid_t process_ = getpid();
  std::shared_ptr<const TransportSettings> settings_;
  std::once_flag started_;
  std::thread thread_;
  std::unique_ptr<CURLSH, ShareCloser> share_;
  std::unique_ptr<CURLM, MultiCloser> multi_;

  std::mutex mutex_;
  std::vector<std::unique_ptr<Job>> submitted_;
  bool isStopping_ = false;

  // Of the thread alone.
  Jobs jobs_;
  DocumentMemory memory_;
  std::map<Server, Clock::time_point> restUntil_;  ///< servers that have too much to do
  bool isChanged_ = false;
  Clock::time_point lookedAt_;  ///< when it was seen last what is due
};

}  // namespace vlclientui::client
