#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "client/mapping/MapDrawer.h"
#include "client/mapping/ServicePicture.h"
#include "client/raster/OutputGrid.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A piece of a map that a host asks for.
struct AskedBlock {
  std::string wkt;  ///< the map's system; empty for plain pixels of services without a system
  /// Its pixels, in coordinates of the map.
  OutputGrid grid;
};

/// Draws services for hosts that run their maps themselves and ask block by block, on threads of their own.
/// The pixels are those of MapDrawer. Rasters stay open between blocks, and how a service is colored is
/// decided once, for all ids of it. Any thread may ask, several at a time.
class BlockDrawer {
 public:
  /// @param copies of large rasters, drawn from where there are; null for none.
  explicit BlockDrawer(std::shared_ptr<const SmallCopies> copies = nullptr);
  ~BlockDrawer();
  BlockDrawer(const BlockDrawer&) = delete;
  BlockDrawer& operator=(const BlockDrawer&) = delete;

  /// Takes helpers for a large block; looks meanwhile whether the work of this thread was given up
  /// (waiting/Wait.h).
  /// @returns nothing when it was; a picture without pixels where the service does not lie.
  /// @throws RuntimeFailure when nothing of the service can be drawn there.
  [[nodiscard]] std::optional<ServicePicture> draw(const MapLayer& layer, const AskedBlock& block);
  /// As it was given, or decided, which may take some hundredths of a second.
  /// @returns null when the work of this thread was given up. @throws RuntimeFailure when it cannot be read.
  [[nodiscard]] std::shared_ptr<const Stretch> stretch(const MapLayer& layer);
  /// Nothing decided about a service holds any more, as when its files have changed.
  void forget(const std::string& service);
  /// Closes all rasters that nobody uses at the moment.
  void close();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
