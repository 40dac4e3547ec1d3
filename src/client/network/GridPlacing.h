#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "client/network/Coverages.h"

namespace vlclientui::client {

/// More pixels along a side has no raster.
inline constexpr double mostPixelsAlong = 1e9;

/// How an envelope may be meant where it is one pixel shorter than the number of pixels says.
enum class ShortEnvelope {
  RunsBetweenCenters,  ///< of the outermost pixels
  HasOnePixelLess,     ///< and the number is one too many
};

/// What a description tells of one axis of a grid, as it stands there.
struct ToldAxis {
  double low = 0;  ///< of the envelope
  double high = 0;
  double step = 0;          ///< from one pixel to the next; its sign does not count
  std::int64_t pixels = 0;  ///< 0 where it is not told
  ShortEnvelope shortOne = ShortEnvelope::RunsBetweenCenters;
};

/// Where the pixels of an axis really lie.
struct PlacedAxis {
  double low = 0;  ///< outer edge of the first pixel
  double high = 0;
  std::int64_t pixels = 0;
};

/// Servers round the step, count one pixel too many, or tell the envelope of the pixels' centers. The
/// envelope has the most digits, so it counts, and step and number of pixels tell how it is meant.
/// @returns nothing where the three contradict each other, or a number is not usable.
[[nodiscard]] std::optional<PlacedAxis> placeAxis(const ToldAxis& told);

/// A pair in the order of the document, east first.
struct EastNorth {
  double east = 0;
  double north = 0;
};
[[nodiscard]] std::optional<EastNorth> eastNorth(const std::vector<double>& pair, AxisOrder order);

/// The step along each axis of a grid that lies along the axes of its system.
struct GridSteps {
  double east = 0;
  double north = 0;
  bool columnsFirst = true;  ///< the first axis of the grid runs east
};
/// @returns nothing for a turned grid.
[[nodiscard]] std::optional<GridSteps> gridSteps(const std::vector<double>& first,
                                                 const std::vector<double>& second, AxisOrder order);

}  // namespace vlclientui::client
