#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "client/mapping/ServicePicture.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A square of a map, on the grid that belongs to the size of its pixels.
struct TileKey {
  static constexpr int side = 256;  ///< pixels

  std::string layer;        ///< who is drawn, and how
  std::string wkt;          ///< the map's system
  double pixel = 1;         ///< in units of the map, above 0
  std::int64_t column = 0;  ///< from the origin of the map's coordinates to the right
  std::int64_t row = 0;     ///< and downwards

  /// An order without a meaning of its own, for sorted containers.
  auto operator<=>(const TileKey&) const = default;

  /// Its outer edges, in coordinates of the map.
  [[nodiscard]] Bounds extent() const;
};

/// The tiles of a pixel size that an area touches, row by row. None for an area that needs more than `most`.
[[nodiscard]] std::vector<TileKey> tilesOf(const std::string& layer, const std::string& wkt, double pixel,
                                           const Bounds& area, std::size_t most);

/// A picture that nobody changes any more.
using PicturePtr = std::shared_ptr<const ServicePicture>;

/// A picture with its place.
struct StoredTile {
  /// Where it lies, and of whom it is.
  TileKey key;
  /// Never null.
  PicturePtr picture;
  std::optional<Bounds> part = std::nullopt;  ///< of the map, that it is to fill; nothing for all of it
};

/// Pictures that were drawn, the last used ones up to a number of bytes. Any thread may use it.
class PictureStore {
 public:
  /// @param mostBytes of pixels, beyond which the pictures not used for longest go.
  explicit PictureStore(std::size_t mostBytes) : most_(mostBytes) {}

  /// Null when there is none.
  [[nodiscard]] PicturePtr find(const TileKey& key);
  /// A quick picture does not replace a fine one.
  void put(const TileKey& key, PicturePtr picture);
  /// Whether there is any picture of a layer.
  [[nodiscard]] bool holds(const std::string& layer) const;
  /// Pictures of a layer within an area of a map, whatever their pixels: those last that come next to the
  /// wanted size. At most so many, the best ones.
  [[nodiscard]] std::vector<StoredTile> around(const std::string& layer, const std::string& wkt, double pixel,
                                               const Bounds& area, std::size_t most) const;
  /// What is shown stays whatever it takes: so many pictures, those that were used last.
  void keepAtLeast(std::size_t count);
  /// Drops all pictures of a layer.
  void forget(const std::string& layer);
  /// Of the pixels of all pictures.
  [[nodiscard]] std::size_t bytes() const;

 private:
  struct Entry {
    PicturePtr picture;
    std::list<TileKey>::iterator use;
  };
  using Entries = std::map<TileKey, Entry>;

  void drop(Entries::iterator entry);
  void dropOldest();

  const std::size_t most_;
  mutable std::mutex mutex_;
  Entries entries_;
  std::list<TileKey> uses_;  ///< last used first
  std::size_t bytes_ = 0;
  std::size_t least_ = 1;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
