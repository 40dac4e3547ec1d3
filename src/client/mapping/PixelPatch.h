#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "client/mapping/OpenRaster.h"
#include "client/raster/Window.h"

namespace vlclientui::client {

/// So many bands of a raster are read for a picture.
inline constexpr std::size_t mostSamples = 4;

/// A part of a raster at some resolution.
struct PixelPatch {
  Window window;      ///< in pixels of the patch, counted from the raster's corner
  double across = 1;  ///< pixels of the raster for one of the patch
  double down = 1;
  int bands = 1;
  std::vector<float> samples;       ///< pixel by pixel, all bands of a pixel together
  std::vector<std::uint8_t> bytes;  ///< instead of them, where PatchWish allows it; else empty
  std::vector<std::uint8_t> alpha;  ///< 0 for a hole

  [[nodiscard]] std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(window.width) +
           static_cast<std::size_t>(column);
  }
};

/// What becomes of the pixels that go into one.
enum class Reduction {
  Mean,  ///< of those with data
  Pick,  ///< the one in the middle
};

/// Which pixels of a raster are wanted.
struct PatchWish {
  std::size_t level = 0;
  int step = 1;            ///< pixels of the level, each way, for one of the patch; at least 1
  Window window;           ///< in pixels of the patch, not empty; what reaches beyond the raster is cut off
  std::vector<int> bands;  ///< numbers, 1 to mostSamples of them
  Reduction reduction = Reduction::Mean;
  bool mayBeBytes = false;  ///< for the reader it is the same, and bytes come faster
};

enum class ReadingEnd { Whole, GivenUp, Failed };

/// Reads in pieces of a few milliseconds, and looks between them whether the work of this thread was given
/// up. A pixel is a hole as MaskedRaster.h tells; one of several is a hole when all of them are.
/// @param patch is what has been read so far when the end is another than Whole.
[[nodiscard]] ReadingEnd readPatch(const OpenRaster& raster, const PatchWish& wish, PixelPatch& patch);

/// A picture of a raster from few of its blocks: each pixel of the patch comes from some pixels in its
/// middle. For rasters that have no overview near the wanted resolution.
/// @param reach in pixels of the raster. @param least so many of them each way go into one of the patch, at
/// least; at least 1. Patches of one raster and one `least` have one grid.
[[nodiscard]] ReadingEnd readSparsely(const OpenRaster& raster, const Window& reach, double least,
                                      const std::vector<int>& bands, Reduction reduction, PixelPatch& patch);

}  // namespace vlclientui::client
