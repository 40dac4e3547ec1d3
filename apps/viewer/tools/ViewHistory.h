#pragma once

#include <cstddef>
#include <vector>

#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {

/// The views that a person came from, and went back from.
class ViewHistory {
 public:
  static constexpr std::size_t most = 100;

  /// A view at which the map has come to rest. One that is as the present one adds nothing; one in another
  /// system takes its place, since it shows the same; any other makes those that were gone back from
  /// forgotten.
  void note(const MapFrame& view);

  [[nodiscard]] bool isBegun() const { return !views_.empty(); }
  [[nodiscard]] bool hasPrevious() const { return at_ > 0; }
  [[nodiscard]] bool hasNext() const { return at_ + 1 < views_.size(); }
  /// @pre there is one. @returns what is to be shown, which is the present one from now on.
  const MapFrame& previous() { return views_[--at_]; }
  const MapFrame& next() { return views_[++at_]; }

 private:
  std::vector<MapFrame> views_;
  std::size_t at_ = 0;  ///< the present one
};

}  // namespace vlclientui::viewer
