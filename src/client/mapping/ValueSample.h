#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include "client/mapping/PixelPatch.h"
#include "client/mapping/SourceBands.h"

namespace vlclientui::client {

/// Values from all over a service, and how steep its first band is.
class ValueSample {
 public:
  struct Range {
    double low = 0;
    double high = 1;
  };
  struct Slopes {
    double steepness = 0;  ///< usual difference of neighbors a pixel apart
    double roughness = 1;  ///< 0 to 1: how it grows with the distance
  };

  explicit ValueSample(std::size_t bands) : values_(bands) {}

  /// @param sources so many of them are sampled in all. @returns another end than Whole when that cannot be
  /// read.
  [[nodiscard]] ReadingEnd add(const OpenRaster& raster, const SourceBands& bands, std::size_t sources);

  /// The values below which these shares (0 to 1) of all lie; high > low.
  [[nodiscard]] Range range(std::size_t band, double lowShare, double highShare) const;
  [[nodiscard]] Slopes slopes() const;

 private:
  struct Squares {
    double sum = 0;
    double count = 0;
  };

  void takeValues(const PixelPatch& patch, const SourceBands& bands);
  void takeSlopes(const PixelPatch& patch);
  void takeSlopes(const PixelPatch& patch, int step);

  std::vector<std::vector<float>> values_;  ///< of each band
  std::map<double, Squares> squares_;       ///< of differences, by the distance in pixels of the raster
};

}  // namespace vlclientui::client
