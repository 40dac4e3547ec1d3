#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "client/drawing/Drawing.h"
#include "client/raster/OutputGrid.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Pixels as values to compute with.
struct RasterValues {
  int columns = 0;
  int rows = 0;
  int bands = 0;     ///< all but transparency
  std::string type;  ///< of one value: "Byte", "Int16", "Float32", "CFloat64"; complex integers become floats
  std::vector<std::byte> values;      ///< band by band, each with its rows from the top
  std::vector<std::uint8_t> isValid;  ///< one for each value, in their order: 0 where there are no data
};

/// The pixels that an export of the grid would write, all in memory.
/// @throws RuntimeFailure when a source cannot be read, also when that was given up.
[[nodiscard]] RasterValues readValues(const Drawing& drawing, const OutputGrid& grid);

}  // namespace vlclientui::client
#pragma GCC visibility pop
