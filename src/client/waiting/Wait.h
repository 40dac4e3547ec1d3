#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
/// Waiting for a server blocks the thread that asked. A host sees such a wait, and ends it, through what
/// stands here. Nothing here knows of the network, so that whoever blocks for other reasons can wait in the
/// same way.
namespace vlclientui::client {

/// Ends waits from outside, on any thread and for any number of them. Copies share the flag.
class CancelToken {
 public:
  /// Every wait under this token ends at once, and none begins anew.
  void cancel() { source_.request_stop(); }
  [[nodiscard]] bool isCanceled() const { return source_.stop_requested(); }
  [[nodiscard]] std::stop_token stopToken() const { return source_.get_token(); }
  /// Whether both share the flag.
  [[nodiscard]] bool operator==(const CancelToken& other) const = default;

 private:
  std::stop_source source_;
};

/// What a thread waits for.
struct WaitedFor {
  std::string host;                    ///< the server, with its port where that is not the usual one
  std::uint64_t bytes = 0;             ///< that have come so far
  std::size_t openRequests = 0;        ///< requests that have no answer yet
  std::chrono::milliseconds waited{};  ///< so far, all waits under the scope together
};

enum class WaitAnswer { GoOn, GiveUp };

/// Hears of a wait that lasts, on the thread that waits.
///
/// Implementers: return soon, since what is fetched is handed on behind the call. Windows may be painted;
/// nothing may be called that waits for a server. Nothing is raised.
class WaitListener {
 public:
  virtual ~WaitListener() = default;
  virtual WaitAnswer stillWaiting(const WaitedFor& what) = 0;
};

/// When a listener is asked.
struct WaitPace {
  /// Of waiting under one scope, before the listener is asked for the first time.
  std::chrono::milliseconds quiet{500};
  /// Between one question and the next.
  std::chrono::milliseconds interval{50};
};

/// While it lives, waits of the thread that made it tell a listener and may be given up. Scopes nest: the
/// inner listener is asked where there is one, otherwise the outer one; what ends an outer scope ends the
/// inner ones. Once given up, everything under the scope fails as canceled, without a new request.
///
/// To be destroyed on the thread that made it, inner ones first.
class WaitScope {
 public:
  /// What scopes know of each other; a thread hands it to its helpers.
  class Link;

  /// @param listener may be null; must outlive the scope.
  explicit WaitScope(WaitListener* listener, CancelToken token = {}, WaitPace pace = {});
  /// For a helper thread: what is given up where the link was taken, is given up here too. No listener is
  /// asked on a helper.
  explicit WaitScope(const Link& link);
  WaitScope(const WaitScope&) = delete;
  WaitScope& operator=(const WaitScope&) = delete;
  ~WaitScope();

  /// To be handed to a helper thread; outlives the scopes that it was taken from.
  [[nodiscard]] static Link link();
  /// Whether the work of this thread was given up.
  [[nodiscard]] static bool isGivenUp();
  /// Whether this thread works under a scope of that token, or helps one that does.
  [[nodiscard]] static bool isUnder(const CancelToken& token);

 private:
  friend class Waiting;
  struct State;

  std::unique_ptr<State> state_;
  WaitScope* outer_;
};

class WaitScope::Link {
 private:
  friend class WaitScope;
  std::vector<CancelToken> tokens_;
};

/// One wait of this thread, by whoever blocks. The time that it lives counts as waiting.
class Waiting {
 public:
  using Clock = std::chrono::steady_clock;

  /// @param wake called when the wait is given up, once for each token that ends: from any thread, from here
  /// if that is so already.
  explicit Waiting(std::function<void()> wake);
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;
  ~Waiting();

  [[nodiscard]] bool isGivenUp() const;
  /// When the listener wants to be asked next; nothing where nobody listens.
  [[nodiscard]] std::optional<Clock::time_point> nextQuestion() const;
  /// Asks the listener if it is due, and gives up all that is under its scope if it says so.
  void ask(WaitedFor what);

 private:
  [[nodiscard]] std::chrono::milliseconds waitedSoFar() const;

  std::function<void()> wake_;
  WaitScope* asked_;  ///< the scope whose listener is asked; null where nobody listens
  Clock::time_point begin_;
  std::list<std::stop_callback<std::function<void()>>> callbacks_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
