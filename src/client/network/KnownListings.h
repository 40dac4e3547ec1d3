#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "client/raster/Text.h"

namespace vlclientui::client {

/// What servers listed last, to find a service by the name that was shown. Blanks at the ends of the text
/// that names a server count not. Any thread may ask.
template <class Listing>
class KnownListings {
 public:
  using ListingPtr = std::shared_ptr<const Listing>;

  /// Null for a server that was not listed.
  [[nodiscard]] ListingPtr of(const std::string& server) const {
    const std::lock_guard lock(mutex_);
    const auto found = listings_.find(trimmed(server));
    return found == listings_.end() ? nullptr : found->second;
  }
  void keep(const std::string& server, ListingPtr listing) {
    const std::lock_guard lock(mutex_);
    listings_[trimmed(server)] = std::move(listing);
  }

 private:
  mutable std::mutex mutex_;
  std::map<std::string, ListingPtr> listings_;
};

}  // namespace vlclientui::client
