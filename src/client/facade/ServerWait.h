#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

/// A call that needs a server blocks its thread until the answer is there. A host can show such a wait and
/// end it.
#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What a thread waits for.
struct ServerWait {
  std::string host;     ///< with its port where that is not the usual one
  std::uint64_t bytes;  ///< that have come so far
  /// Since the wait began.
  std::chrono::milliseconds waited;
};

/// Asked on the waiting thread, about twenty times a second, once half a second has gone. It may paint and
/// take the input of a window of its own, and should leave forms and dialogs alone. It raises nothing.
/// @returns false to give up: what is waited for counts as silent then.
using WaitQuestion = std::function<bool(const ServerWait&)>;

/// Makes a question for one call; the question is dropped when the call has ended. May be empty.
using WaitQuestions = std::function<WaitQuestion()>;

/// While it lives, waits of the thread that made it ask its question. To be destroyed on that thread.
class ServerWaitScope {
 public:
  /// @param questions asked for one question now; nothing is asked where it, or what it gives, is empty.
  explicit ServerWaitScope(const WaitQuestions& questions);
  ServerWaitScope(const ServerWaitScope&) = delete;
  ServerWaitScope& operator=(const ServerWaitScope&) = delete;
  ~ServerWaitScope();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
