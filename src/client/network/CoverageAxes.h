#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/network/Coverages.h"
#include "client/network/GridPlacing.h"

namespace vlclientui::client {

class XmlElement;

/// The words of a text that blanks separate, without the quotes around dates.
[[nodiscard]] std::vector<std::string> wordsOf(const std::string& text);

/// The systems of a compound one ("http://www.opengis.net/def/crs-compound?1=...&2=..."), in order; of any
/// other name that name alone.
[[nodiscard]] std::vector<std::string> systemsIn(const std::string& name);

/// How a document of 2.0.1 tells the axes of a coverage. Two of them span the image; at the others, such as
/// times and heights, one point is taken.
struct CoverageAxes {
  std::string system;  ///< of the image
  AxisOrder order = AxisOrder::EastNorth;
  std::string xLabel;
  std::string yLabel;
  std::size_t east = 0;  ///< place among the coordinates of a corner or a vector
  std::size_t north = 0;
  std::size_t coordinates = 2;  ///< of a corner or a vector
  EastNorth low;
  EastNorth high;
  std::vector<CoverageSlice> slices;
};

/// @param envelope with its labels and corners. @returns nothing where no two of its axes span an image.
[[nodiscard]] std::optional<CoverageAxes> axesOf(const XmlElement& envelope);

/// One axis of the grid, along an axis of the system.
struct GridAxis {
  double step = 0;
  std::int64_t pixels = 0;  ///< 0 where it is not told
};
struct GridAxes {
  GridAxis east;
  GridAxis north;
};

/// @param domain what holds the grid, by plain or by general axes. @returns nothing for a grid that is
/// turned, uneven along the image, or of a size that no raster has.
[[nodiscard]] std::optional<GridAxes> gridAxesOf(const XmlElement& domain, const CoverageAxes& axes);

}  // namespace vlclientui::client
