#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace vlclientui::client {

/// Pixels that were fetched, kept for whoever needs them next: of a certain number of bytes those that were
/// used last. Any thread may ask.
class TileStore {
 public:
  using Bytes = std::shared_ptr<const std::vector<std::byte>>;
  /// The raster, the level of reduction, and the tile's column and row.
  using Key = std::tuple<std::string, int, int, int>;

  explicit TileStore(std::size_t mostBytes) : mostBytes_(mostBytes) {}

  /// Null for what is not kept.
  [[nodiscard]] Bytes find(const Key& key);
  void keep(const Key& key, Bytes bytes);
  void forget();

 private:
  using Order = std::list<std::pair<Key, Bytes>>;

  std::size_t mostBytes_;
  std::mutex mutex_;
  std::size_t bytes_ = 0;
  Order order_;  ///< used last, first
  std::map<Key, Order::iterator> places_;
};

}  // namespace vlclientui::client
