#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "client/connections/SentSecret.h"

namespace vlclientui::client {

/// The secrets that are at hand, and which of them a request takes. Any thread may ask.
class LiveSecrets {
 public:
  /// What comes later here wins where two speak for the same part of a server.
  enum class Origin { Named, Typed, Trial };

  /// Replaces the one of that origin and key.
  void put(Origin origin, const std::string& key, SentSecret secret);
  void drop(Origin origin, const std::string& key);
  /// Puts these, by their keys, in place of all of that origin, so that no request finds them missing.
  void replaceAll(Origin origin, std::map<std::string, SentSecret> secrets);
  /// Of all that speak for the path, the one that speaks for the least, but before it one that is tried;
  /// empty for none.
  [[nodiscard]] Credentials find(const Server& server, const std::string& path) const;
  /// Whether a secret of a name that speaks for the scope, which holds the path, would be taken there before
  /// those at hand.
  [[nodiscard]] bool wouldTake(const SecretScope& scope, const Server& server, const std::string& path) const;

 private:
  struct Entry {
    Origin origin;
    std::string key;
    SentSecret secret;
  };

  /// @pre the lock is held.
  [[nodiscard]] const Entry* best(const Server& server, const std::string& path) const;

  mutable std::mutex mutex_;
  std::vector<Entry> entries_;
};

}  // namespace vlclientui::client
