#pragma once

#include <cstddef>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Resampling.h"

namespace vlclientui::client {

/// What became of one source in an image.
struct SourceUse {
  bool isInWindow = false;  ///< its rectangle meets the image's
  bool takesPart = false;   ///< the mosaic method lets it, and it is in the window
  bool isVisible = false;   ///< at least one pixel of the image is its own
  bool isTurned = false;    ///< brought to north up or into the service's system first
  Resampling resampling = Resampling::Nearest;
  std::size_t position = 0;  ///< among those that take part, 1 for the topmost; 0 for the others
};

/// One for each source of the service, in its order. Reads the masks of sources that may have holes, at the
/// image's resolution but no more than 1,024 by 1,024 cells; a pixel belongs to the source that lies on top
/// at its centre. A source that cannot be read shows nothing.
/// @param order bottom first, as orderedSources gives it.
[[nodiscard]] std::vector<SourceUse> sourceUses(const ImageServiceRecord& service,
                                                const std::vector<std::size_t>& order,
                                                const OutputGrid& grid);

}  // namespace vlclientui::client
