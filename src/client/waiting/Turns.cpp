#include "client/waiting/Turns.h"

#include "client/waiting/Wait.h"

namespace vlclientui::client {

Turn::Turn(Turns& turns, const std::string& host) : turns_(turns) {
  Waiting waiting([&turns] {
    const std::lock_guard lock(turns.mutex_);
    turns.changed_.notify_all();
  });
  const auto isOver = [&] { return waiting.isGivenUp() || !turns.isTaken_; };
  std::unique_lock lock(turns.mutex_);
  while (!isOver()) {
    const auto question = waiting.nextQuestion();
    if (!question) {
      turns.changed_.wait(lock, isOver);
    } else if (!turns.changed_.wait_until(lock, *question, isOver)) {
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
