#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "client/mapping/ValuesAt.h"
#include "client/raster/OutputGrid.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A band of a service on a grid.
struct BandPixels {
  std::vector<double> values;      ///< as stored, of complex numbers the real part; rows from the top
  std::vector<std::uint8_t> mask;  ///< 0 in holes, whose values mean nothing
};

/// Reads a band as it is stored, for hosts that compute with it: through the service's own properties, with
/// the exact pixels that an export of the same grid has. Opens the sources that lie there, and looks
/// meanwhile whether the work of this thread was given up (waiting/Wait.h). Any thread.
/// @param source gives all sources of an area (ServiceDrawing::wholeWithin): values without some of them are
/// wrong. @param grid in the coordinates of the service. @param band its number, from 1.
/// @returns nothing when it was given up. @throws RuntimeFailure when it cannot be read.
[[nodiscard]] std::optional<BandPixels> bandPixels(const DrawingSource& source, const OutputGrid& grid,
                                                   int band);

}  // namespace vlclientui::client
#pragma GCC visibility pop
