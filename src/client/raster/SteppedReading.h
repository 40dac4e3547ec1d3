#pragma once

#include <cstddef>
#include <functional>

#include <gdal.h>

#include "client/raster/Window.h"

class GDALDataset;

namespace vlclientui::client {

/// What is read of a raster: the values of its bands, or the mask that is theirs together.
enum class PixelPart { Values, Mask };

/// Where the pixels of a window go, and as what.
struct PixelTarget {
  std::byte* values = nullptr;  ///< of the window's first pixel
  GDALDataType type = GDT_Byte;
  int bandCount = 1;
  int* bands = nullptr;  ///< their numbers; null for all in their order; of no meaning for the mask
  GSpacing pixelStep = 0;
  GSpacing lineStep = 0;
  GSpacing bandStep = 0;
  PixelPart part = PixelPart::Values;
};

/// Told how much of a window is read, from 0 to 1, never less than before; false ends the reading.
using ReadProgress = std::function<bool(double share)>;

/// Reads a window step by step, since one of a reduced raster may stand for a hundred times as many pixels of
/// its source. Tells of every step, and within a long one several times a second where the source allows it.
/// @param stepBytes read at once, at least one pixel.
/// @returns false when it could not be read or was ended.
[[nodiscard]] bool readInSteps(GDALDataset& raster, const Window& window, const PixelTarget& target,
                               std::size_t stepBytes, const ReadProgress& progress);

}  // namespace vlclientui::client
