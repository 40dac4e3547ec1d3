#include "client/network/TileStore.h"

namespace vlclientui::client {

TileStore::Bytes TileStore::find(const Key& key) {
  const std::lock_guard lock(mutex_);
  const auto found = places_.find(key);
  if (found == places_.end()) return nullptr;
  order_.splice(order_.begin(), order_, found->second);
  return found->second->second;
}

void TileStore::keep(const Key& key, Bytes bytes) {
  const std::lock_guard lock(mutex_);
  const auto [place, isNew] = places_.try_emplace(key);
  if (!isNew) {
    bytes_ -= place->second->second->size();
    order_.erase(place->second);
  }
  bytes_ += bytes->size();
  order_.emplace_front(key, std::move(bytes));
  place->second = order_.begin();
  while (bytes_ > mostBytes_ && order_.size() > 1) {
    bytes_ -= order_.back().second->size();
    places_.erase(order_.back().first);
    order_.pop_back();
  }
}

void TileStore::forget() {
  const std::lock_guard lock(mutex_);
  places_.clear();
  order_.clear();
  bytes_ = 0;
}

}  // namespace vlclientui::client
