#include "client/connections/LiveSecrets.h"

#include <tuple>
#include <utility>

namespace vlclientui::client {

void LiveSecrets::put(Origin origin, const std::string& key, SentSecret secret) {
  const std::lock_guard lock(mutex_);
  std::erase_if(entries_, [&](const Entry& entry) { return entry.origin == origin && entry.key == key; });
  entries_.push_back({origin, key, std::move(secret)});
}

void LiveSecrets::drop(Origin origin, const std::string& key) {
  const std::lock_guard lock(mutex_);
  std::erase_if(entries_, [&](const Entry& entry) { return entry.origin == origin && entry.key == key; });
}

void LiveSecrets::replaceAll(Origin origin, std::map<std::string, SentSecret> secrets) {
  const std::lock_guard lock(mutex_);
  std::erase_if(entries_, [&](const Entry& entry) { return entry.origin == origin; });
  for (auto& [key, secret] : secrets) entries_.push_back({origin, key, std::move(secret)});
}

Credentials LiveSecrets::find(const Server& server, const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const Entry* best = nullptr;
  const auto rank = [](const Entry& entry) {
    return std::tuple(entry.origin == Origin::Trial, entry.secret.scope.path.size(), entry.origin);
  };
  for (const Entry& entry : entries_) {
    if (!entry.secret.scope.holds(server, path)) continue;
    if (best == nullptr || rank(*best) <= rank(entry)) best = &entry;
  }
  return best == nullptr ? Credentials() : best->secret.credentials;
}

}  // namespace vlclientui::client
