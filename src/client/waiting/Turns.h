#pragma once

#include <condition_variable>
#include <mutex>
#include <string>

namespace vlclientui::client {

/// For work that one thread does for all, as to fetch what several need: the others wait for their turn, tell
/// their listeners so, and may give that up, which a lock of the system does not allow.
class Turns {
 public:
  Turns() = default;
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

 private:
  friend class Turn;

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isTaken_ = false;
};

/// A turn, as long as it lives.
class Turn {
 public:
  /// Waits until no other thread has it, or the work of this thread is given up. @param host the server that
  /// those wait for who have it; stays as it is meanwhile.
  Turn(Turns& turns, const std::string& host);
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn();

  /// False for a wait that was given up.
  [[nodiscard]] bool isMine() const { return isMine_; }

 private:
  Turns& turns_;
  bool isMine_ = false;
};

}  // namespace vlclientui::client
