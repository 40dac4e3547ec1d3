#pragma once

#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// The pixels of a result: extent in the service's coordinates; pixels need not be square.
struct OutputGrid {
  Bounds extent;    ///< outer edges of the outer pixels; neither side is 0
  int columns = 1;  ///< at least 1
  int rows = 1;     ///< at least 1

  /// In units of the coordinates, above 0.
  [[nodiscard]] double pixelWidth() const { return (extent.xMax - extent.xMin) / columns; }
  /// The same down.
  [[nodiscard]] double pixelHeight() const { return (extent.yMax - extent.yMin) / rows; }
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
