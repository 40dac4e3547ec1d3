#pragma once

#include <cstddef>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Resampling.h"

namespace vlclientui::client {

/// What an image shows of one source.
struct SourceUse {
  bool isInWindow = false;  ///< its rectangle meets the image's
  bool takesPart = false;   ///< it meets the window, and the mosaic method includes it
  bool isVisible = false;   ///< at least one pixel of the image comes from it
  bool isTurned = false;    ///< transformed first, to north up or into the service's system
  Resampling resampling = Resampling::Nearest;
  std::size_t position = 0;  ///< among those that take part, 1 for the topmost; 0 for the others
};

/// One for each source of the service, in order. Reads the masks of sources that may have holes at the
/// image's resolution, at most 1,024 by 1,024 cells; a pixel belongs to the topmost source at its center.
/// Sources that cannot be read show nothing.
/// @param order bottom first, as orderedSources gives it.
[[nodiscard]] std::vector<SourceUse> sourceUses(const ImageServiceRecord& service,
                                                const std::vector<std::size_t>& order,
                                                const OutputGrid& grid);

}  // namespace vlclientui::client
