#include "client/transport/Call.h"

#include <utility>

namespace vlclientui::client {

void Call::deliver(Finished finished) {
  {
    const std::lock_guard lock(mutex_);
    finished_.push_back(std::move(finished));
  }
  changed_.notify_one();
}

void Call::wake() {
  {
    const std::lock_guard lock(mutex_);
    isAwake_ = true;
  }
  changed_.notify_one();
}

std::optional<Call::Finished> Call::take(std::optional<Clock::time_point> until) {
  std::unique_lock lock(mutex_);
  const auto isDone = [this] { return isAwake_ || !finished_.empty(); };
  if (until) {
    changed_.wait_until(lock, *until, isDone);
  } else {
    changed_.wait(lock, isDone);
  }
  isAwake_ = false;
  if (finished_.empty()) return std::nullopt;
  Finished first = std::move(finished_.front());
  finished_.pop_front();
  return first;
}

}  // namespace vlclientui::client
