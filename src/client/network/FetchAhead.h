#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "client/network/TileGroups.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {

/// Fetches groups of tiles ahead of whoever reads them from the top on, on a thread of its own, so that
/// requests are underway all the time.
class FetchAhead {
 public:
  /// Tells of groups, or parts of them, that are there; false ends the fetching.
  using Told = std::function<bool(const TileRange& fetched)>;
  /// Fetches some groups and keeps their tiles. @returns why it broke off; empty when all is well.
  using Fetch = std::function<std::string(const std::vector<TileRange>& groups, const Told& told)>;

  /// @param groups in the order in which they are read. @param mostTiles to be there and not read yet, but
  /// for what a reader waits for. @param token ends the fetching.
  FetchAhead(std::vector<TileRange> groups, std::int64_t mostTiles, Fetch fetch, CancelToken token);
  /// Ends the fetching; what was asked for is given up.
  ~FetchAhead();
  FetchAhead(const FetchAhead&) = delete;
  FetchAhead& operator=(const FetchAhead&) = delete;

  /// Ends the fetching, and waits for that. Readers that wait are told so.
  void stop();
  /// Blocks until the groups that a range meets were fetched, as far as they are among those told. What lies
  /// above it counts as read. @returns why that broke off; empty when all is well.
  [[nodiscard]] std::string await(const TileRange& range);

 private:
  struct Group {
    TileRange range;
    std::int64_t missing = 0;  ///< tiles
  };

  void run();
  [[nodiscard]] bool tell(const TileRange& fetched);
  [[nodiscard]] bool isThere(const TileRange& range) const;
  [[nodiscard]] bool hasRoom() const;

  std::int64_t mostTiles_;
  Fetch fetch_;
  CancelToken token_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Group> groups_;
  std::vector<TileRange> unread_;  ///< that were fetched
  int waiting_ = 0;
  bool isStopped_ = false;
  bool isOver_ = false;
  std::string failure_;
  std::thread thread_;
};

}  // namespace vlclientui::client
