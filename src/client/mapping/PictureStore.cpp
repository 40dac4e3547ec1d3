#include "client/mapping/PictureStore.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vlclientui::client {
namespace {

// What an entry takes, one of an empty picture too: its key stands in both lists.
std::size_t bytesOf(const TileKey& key, const ServicePicture& picture) {
  constexpr std::size_t nodes = 512;
  return picture.rgba.size() + 2 * (key.layer.size() + key.wkt.size()) + nodes;
}

}  // namespace

Bounds TileKey::extent() const {
  const double length = side * pixel;
  const double left = static_cast<double>(column) * length;
  const double top = -static_cast<double>(row) * length;
  return {left, top - length, left + length, top};
}

std::vector<TileKey> tilesOf(const std::string& layer, const std::string& wkt, double pixel,
                             const Bounds& area, std::size_t most) {
  const double length = TileKey::side * pixel;
  const double left = std::floor(area.xMin / length);
  const double right = std::ceil(area.xMax / length);
  const double top = std::floor(-area.yMax / length);
  const double bottom = std::ceil(-area.yMin / length);
  std::vector<TileKey> tiles;
  if (!((right - left) * (bottom - top) <= static_cast<double>(most))) return tiles;
  for (auto row = static_cast<std::int64_t>(top); row < static_cast<std::int64_t>(bottom); ++row) {
    for (auto column = static_cast<std::int64_t>(left); column < static_cast<std::int64_t>(right); ++column) {
      tiles.push_back({layer, wkt, pixel, column, row});
    }
  }
  return tiles;
}

PicturePtr PictureStore::find(const TileKey& key) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(key);
  if (found == entries_.end()) return nullptr;
  uses_.splice(uses_.begin(), uses_, found->second.use);
  return found->second.picture;
}

void PictureStore::put(const TileKey& key, PicturePtr picture) {
  const std::lock_guard lock(mutex_);
  if (const auto found = entries_.find(key); found != entries_.end()) {
    if (picture->isQuick && !found->second.picture->isQuick) return;
    drop(found);
  }
  uses_.push_front(key);
  bytes_ += bytesOf(key, *picture);
  entries_.emplace(key, Entry{std::move(picture), uses_.begin()});
  dropOldest();
}

void PictureStore::drop(Entries::iterator entry) {
  bytes_ -= bytesOf(entry->first, *entry->second.picture);
  uses_.erase(entry->second.use);
  entries_.erase(entry);
}

void PictureStore::dropOldest() {
  while (bytes_ > most_ && entries_.size() > least_) drop(entries_.find(uses_.back()));
}

bool PictureStore::holds(const std::string& layer) const {
  const std::lock_guard lock(mutex_);
  const auto first = entries_.lower_bound({layer, "", 0, 0, 0});
  return first != entries_.end() && first->first.layer == layer;
}

std::vector<StoredTile> PictureStore::around(const std::string& layer, const std::string& wkt, double pixel,
                                             const Bounds& area, std::size_t most) const {
  std::vector<StoredTile> found;
  const std::lock_guard lock(mutex_);
  for (auto i = entries_.lower_bound({layer, wkt, 0, 0, 0}); i != entries_.end(); ++i) {
    const TileKey& key = i->first;
    if (key.layer != layer || key.wkt != wkt) break;
    if (overlap(key.extent(), area) && !i->second.picture->rgba.empty())
      found.push_back({key, i->second.picture});
  }
  const auto distance = [pixel](const StoredTile& tile) {
    return std::abs(std::log(tile.key.pixel / pixel));
  };
  std::ranges::stable_sort(found, std::ranges::greater(), distance);
  if (found.size() > most) found.erase(found.begin(), found.end() - static_cast<std::ptrdiff_t>(most));
  return found;
}

void PictureStore::keepAtLeast(std::size_t count) {
  const std::lock_guard lock(mutex_);
  least_ = std::max<std::size_t>(1, count);
  dropOldest();
}

void PictureStore::forget(const std::string& layer) {
  const std::lock_guard lock(mutex_);
  for (auto i = entries_.begin(); i != entries_.end();) {
    const auto next = std::next(i);
    if (i->first.layer == layer) drop(i);
    i = next;
  }
}

std::size_t PictureStore::bytes() const {
  const std::lock_guard lock(mutex_);
  return bytes_;
}

}  // namespace vlclientui::client
