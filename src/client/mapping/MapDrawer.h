#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/mapping/PictureStore.h"
#include "client/mapping/Stretch.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct Drawing;
class SmallCopies;

/// A service on a map.
struct MapLayer {
  /// How the service is drawn: with an area in the service's coordinates, with all of its sources there that
  /// only a catalogue told of so far; without one, as far as it is known. Any thread may call it, several at
  /// a time; it may throw RuntimeFailure.
  using Source = std::function<std::shared_ptr<const Drawing>(const std::optional<Bounds>& area)>;

  std::string id;  ///< of who is drawn, and how: another one after properties or stretch have changed
  /// Gives what is drawn; never empty.
  Source source;
  std::shared_ptr<const Stretch> stretch = nullptr;  ///< null: decided once from the service, and kept
  /// Who is drawn, however: its pictures by a former id are shown until there are new ones, and its stretch
  /// is decided once for all ids. Empty: `id`.
  std::string service = {};
};

/// What a map shows.
struct MapScene {
  std::string wkt;   ///< the map's system
  double pixel = 1;  ///< of the screen, in units of the map; above 0
  Bounds area;       ///< in coordinates of the map
  std::vector<MapLayer>
      layers;  ///< that are visible, bottom first; of those with one id only the first counts
};

/// Draws maps on threads of its own, tile by tile: quickly what is not there yet, then finely, the middle of
/// the map first. Only what the scene that was shown last needs is drawn; other work is given up within a few
/// milliseconds, also inside a read. Pictures stay in memory, the last used ones. What fails is tried again
/// after a while, ever more seldom.
class MapDrawer {
 public:
  /// What may be set of a drawer.
  struct Settings {
    std::size_t threads = 3;  ///< one of them stays free of each layer, which may wait for a server
    std::size_t mostBytes = std::size_t{96} << 20U;       ///< of pictures
    std::chrono::milliseconds retry{5'000};               ///< until what failed is tried again, at first
    std::shared_ptr<const SmallCopies> copies = nullptr;  ///< of large rasters, drawn from where there are
  };

  /// @param changed called on a worker after each picture, and when the last one is done; must return soon,
  /// and not call this object.
  explicit MapDrawer(std::function<void()> changed);
  /// The same with settings of one's own.
  MapDrawer(std::function<void()> changed, const Settings& settings);
  /// Gives up all work, and waits for its end.
  ~MapDrawer();
  MapDrawer(const MapDrawer&) = delete;
  MapDrawer& operator=(const MapDrawer&) = delete;

  /// Returns at once. The scene that was shown before is wanted no more.
  void show(MapScene scene);

  /// What there is of a layer of the scene: tiles as wanted, and first, for those that are missing, what else
  /// lies there, each for the part that it is to fill. To be laid over each other in this order.
  [[nodiscard]] std::vector<StoredTile> tiles(const std::string& layer);
  /// Whether something of the scene is missing still. What failed is not, until it is tried again.
  [[nodiscard]] bool isBusy() const;
  /// Whether every part of the scene has a picture of its own, be it a quick one.
  [[nodiscard]] bool isCovered() const;
  /// For a person: why a layer of the scene, or something of it, cannot be drawn; empty when all is well.
  [[nodiscard]] std::string problem(const std::string& layer) const;
  /// As it was given, or decided; null until then.
  [[nodiscard]] std::shared_ptr<const Stretch> stretch(const std::string& layer) const;
  /// Files of which small copies would be of use, as far as they were met; each is told once, and
  /// again after something was forgotten.
  [[nodiscard]] std::vector<std::string> takeSlowFiles();
  /// Pictures and stretch of a service are not used any more, as when its files have changed. Rasters are
  /// opened anew.
  void forget(const std::string& service);

  /// How many tiles were drawn, and given up, and how many stretches were decided, since the beginning.
  struct Counts {
    /// Tiles that were drawn to their end.
    std::size_t drawn = 0;
    /// Tiles that nobody wanted any more.
    std::size_t givenUp = 0;
    /// Stretches that were decided from pixels.
    std::size_t decided = 0;
  };
  /// Of all work so far, for tests and benchmarks.
  [[nodiscard]] Counts counts() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
