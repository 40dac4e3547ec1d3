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
  using Handler = std::function<void(Args...)>;
  using Connection = int;

  Connection connect(Handler handler) {
    handlers_.emplace_back(++last_, std::move(handler));
    return last_;
  }

  void disconnect(Connection connection) {
    std::erase_if(handlers_, [connection](const auto& entry) { return entry.first == connection; });
  }

  void disconnectAll() { handlers_.clear(); }

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
