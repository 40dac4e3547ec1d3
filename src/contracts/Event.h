#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui {

/// A list of handlers, called in the order of their connection. Handlers may connect and disconnect
/// while the event is raised; a change counts from the next raise on. A handler's exception ends the
/// raise and reaches whoever raised it.
template <class... Args>
class Event {
 public:
  /// What is called with the arguments of a raise.
  using Handler = std::function<void(Args...)>;
  /// Names a handler to disconnect it again; never used twice by one event.
  using Connection = int;

  /// Adds a handler behind those that are there. It is kept until it is disconnected or the event is
  /// destroyed.
  Connection connect(Handler handler) {
    handlers_.emplace_back(++last_, std::move(handler));
    return last_;
  }

  /// Removes one handler; a number that names none changes nothing.
  void disconnect(Connection connection) {
    std::erase_if(handlers_, [connection](const auto& entry) { return entry.first == connection; });
  }

  /// Removes every handler.
  void disconnectAll() { handlers_.clear(); }

  /// Calls the handlers that are connected now, on the calling thread, and returns when the last one has.
  void raise(Args... args) const {
    const auto current = handlers_;
    for (const auto& [connection, handler] : current) handler(args...);
  }

 private:
  std::vector<std::pair<Connection, Handler>> handlers_;
  Connection last_ = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
