#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/mapping/MapPoint.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// The way of places from one coordinate system into another. To find it takes milliseconds, so it is kept.
/// For one thread at a time.
class PointWay {
 public:
  /// @param from,to whole definitions; one that is empty, or equal to the other, leaves places as they are.
  /// @returns null when there is no way.
  [[nodiscard]] static std::unique_ptr<PointWay> between(const std::string& from, const std::string& to);

  ~PointWay();
  PointWay(const PointWay&) = delete;
  PointWay& operator=(const PointWay&) = delete;

  /// Whether places stay as they are.
  [[nodiscard]] bool changesNothing() const;
  /// Places that have none in the other system become unknown.
  void apply(std::vector<MapPoint>& places) const;
  /// The same for one place.
  [[nodiscard]] MapPoint of(MapPoint place) const;

 private:
  struct Parts;
  explicit PointWay(std::unique_ptr<Parts> parts);

  std::unique_ptr<Parts> parts_;
};

/// Places that stand for an area: a net of so many steps each way over it, its edges included.
[[nodiscard]] std::vector<MapPoint> netOf(const Bounds& area, int steps);

/// What of the other system an area may touch; too much rather than too little, all of it where the area
/// reaches beyond what can be projected. Nothing where it touches none.
[[nodiscard]] std::optional<Bounds> reachOf(const Bounds& area, const PointWay& way);

}  // namespace vlclientui::client
#pragma GCC visibility pop
