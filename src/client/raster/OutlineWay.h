#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <ogr_spatialref.h>

#include "client/raster/RasterFacts.h"
#include "client/raster/Transformation.h"

namespace vlclientui::client {

/// What lies around rectangles that are brought from one system into another one: their edges are, since
/// these become curves. The raster library does the same, but sets up further transformations for each
/// rectangle. For one thread at a time.
class OutlineWay {
 public:
  OutlineWay(const OGRSpatialReference& from, const OGRSpatialReference& to);

  /// Longitudes go on where they pass the antimeridian, so that those of 170 to 190 are; the turn that they
  /// begin in is any. A rectangle with a pole inside reaches the pole and all around.
  /// @returns nothing when no place of the edges can be transformed.
  [[nodiscard]] std::optional<Bounds> around(const Bounds& bounds) const;

  /// A whole turn in the units of the target; 0 where that has no longitudes.
  [[nodiscard]] double turn() const { return turn_; }

 private:
  struct Place {
    double x = 0;
    double y = 0;
  };
  using Measure = double (*)(const Place& place);

  [[nodiscard]] std::vector<Place> imageOf(const Bounds& bounds, double from, double to,
                                           std::size_t steps) const;
  void joinTurns(std::vector<Place>& places, const Place& first) const;
  [[nodiscard]] double least(const Bounds& bounds, const std::vector<Place>& outline, Measure measure) const;
  [[nodiscard]] Bounds withPoles(Bounds image, const Bounds& bounds) const;
  void findPoles(const OGRSpatialReference& from, const OGRSpatialReference& to);

  TransformationPtr way_;
  double turn_ = 0;
  std::optional<Place> northPole_;  ///< where they lie in the first system
  std::optional<Place> southPole_;
};

}  // namespace vlclientui::client
