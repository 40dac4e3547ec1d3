#include "client/waiting/Turns.h"

#include <algorithm>

#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

using Clock = Waiting::Clock;

std::optional<Clock::time_point> earlier(std::optional<Clock::time_point> one,
                                         std::optional<Clock::time_point> other) {
  if (!one || !other) return one ? one : other;
  return std::min(*one, *other);
}

}  // namespace

Turn::Turn(Turns& turns, const std::string& host, std::optional<std::chrono::milliseconds> longest)
    : turns_(turns) {
  const auto end = longest ? std::optional(Clock::now() + *longest) : std::nullopt;
  Waiting waiting([&turns] {
    const std::lock_guard lock(turns.mutex_);
    turns.changed_.notify_all();
  });
  const auto isOver = [&] { return waiting.isGivenUp() || !turns.isTaken_; };
  std::unique_lock lock(turns.mutex_);
  while (!isOver()) {
    const auto question = waiting.nextQuestion();
    const auto next = earlier(question, end);
    if (!next) {
      turns.changed_.wait(lock, isOver);
    } else if (turns.changed_.wait_until(lock, *next, isOver)) {
      break;
    } else if (end && Clock::now() >= *end) {
      isTooLate_ = true;
      return;
    } else if (question) {
      lock.unlock();
      waiting.ask({host, 0, 1, {}});
      lock.lock();
    }
  }
  if (waiting.isGivenUp()) return;
  turns.isTaken_ = true;
  isMine_ = true;
}

Turn::~Turn() {
  if (!isMine_) return;
  {
    const std::lock_guard lock(turns_.mutex_);
    turns_.isTaken_ = false;
  }
  turns_.changed_.notify_all();
}

}  // namespace vlclientui::client
