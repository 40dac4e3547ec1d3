#include "client/connections/LiveSecrets.h"

#include <tuple>
#include <utility>

namespace vlclientui::client {
namespace {

auto rank(LiveSecrets::Origin origin, const SecretScope& scope) {
  return std::tuple(origin == LiveSecrets::Origin::Trial, scope.path.size(), origin);
}

}  // namespace

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

const LiveSecrets::Entry* LiveSecrets::best(const Server& server, const std::string& path) const {
  const Entry* best = nullptr;
  for (const Entry& entry : entries_) {
    if (!entry.secret.scope.holds(server, path)) continue;
    if (best == nullptr || rank(best->origin, best->secret.scope) <= rank(entry.origin, entry.secret.scope))
      best = &entry;
  }
  return best;
}

Credentials LiveSecrets::find(const Server& server, const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const Entry* const found = best(server, path);
  return found == nullptr ? Credentials() : found->secret.credentials;
}

bool LiveSecrets::wouldTake(const SecretScope& scope, const Server& server, const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const Entry* const found = best(server, path);
  return found == nullptr || rank(found->origin, found->secret.scope) < rank(Origin::Named, scope);
}

}  // namespace vlclientui::client
