#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
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
  /// those wait for who have it; stays as it is meanwhile. @param longest how long it waits at most; nothing
  /// for no end.
  Turn(Turns& turns, const std::string& host, std::optional<std::chrono::milliseconds> longest = {});
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn();

  /// False for a wait that was given up.
  [[nodiscard]] bool isMine() const { return isMine_; }
  /// True for a wait that lasted too long.
  [[nodiscard]] bool isTooLate() const { return isTooLate_; }

 private:
  Turns& turns_;
  bool isMine_ = false;
  bool isTooLate_ = false;
};

}  // namespace vlclientui::client
