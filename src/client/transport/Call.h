#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "client/transport/Http.h"

namespace vlclientui::client {

/// What stands between a thread that asked and the one that transfers: answers in the order in which they
/// come.
class Call {
 public:
  struct Finished {
    std::size_t index = 0;
    HttpResult result;
  };
  using Clock = std::chrono::steady_clock;

  void deliver(Finished finished);
  /// Ends a take, now or the next one.
  void wake();
  /// Blocks until there is an answer, a wake, or the time has come.
  [[nodiscard]] std::optional<Finished> take(std::optional<Clock::time_point> until);

  /// Nobody waits any more.
  void abandon() { isAbandoned_ = true; }
  [[nodiscard]] bool isAbandoned() const { return isAbandoned_; }

  /// Bytes that have come; shared with the exchanges.
  [[nodiscard]] const std::shared_ptr<std::atomic<std::uint64_t>>& received() const { return received_; }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Finished> finished_;
  bool isAwake_ = false;
  std::atomic<bool> isAbandoned_ = false;
  std::shared_ptr<std::atomic<std::uint64_t>> received_ = std::make_shared<std::atomic<std::uint64_t>>(0);
};

}  // namespace vlclientui::client
