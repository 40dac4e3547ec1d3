#pragma once

#include <string>
#include <vector>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// What the box of servers begins with: the servers of the user's settings file as the client library shows
/// them, and the local one.
[[nodiscard]] std::vector<std::string> firstServers();

/// While it lives, the selection windows of its thread begin with these servers in place of the user's, and
/// leave the user's settings as they are. One per thread at a time, the newest counts.
class ServersInPlace {
 public:
  explicit ServersInPlace(std::vector<std::string> servers);
  ServersInPlace(const ServersInPlace&) = delete;
  ServersInPlace& operator=(const ServersInPlace&) = delete;
  ~ServersInPlace();

  /// Of the calling thread; null where the user's own count.
  [[nodiscard]] static const std::vector<std::string>* ofThread();

 private:
  std::vector<std::string> servers_;
  const ServersInPlace* former_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
