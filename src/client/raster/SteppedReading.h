#pragma once

#include <cstddef>
#include <functional>

#include <gdal.h>

#include "client/raster/Window.h"

class GDALDataset;

namespace vlclientui::client {

class StepKeeper;

/// Bytes of several values, of which each takes some.
[[nodiscard]] constexpr std::size_t product(std::size_t bytes, int count) {
  return bytes * static_cast<std::size_t>(count);
}

/// What to read: the values of the bands, or the mask that they share.
enum class PixelPart { Values, Mask };

/// Where to put a window's pixels, and in what type.
struct PixelTarget {
  std::byte* values = nullptr;  ///< of the window's first pixel
  GDALDataType type = GDT_Byte;
  int bandCount = 1;
  int* bands = nullptr;  ///< their numbers; null for all in order; unused for the mask
  GSpacing pixelStep = 0;
  GSpacing lineStep = 0;
  GSpacing bandStep = 0;
  PixelPart part = PixelPart::Values;
};

/// Called with the share of a window read so far, 0 to 1, never decreasing; returning false stops.
using ReadProgress = std::function<bool(double share)>;

/// Reads a window in steps, since a pixel of a reduced raster may stand for a hundred pixels of its source.
/// Reports every step, and within long ones several times a second if the source allows.
/// @param stepBytes bytes per step, at least one pixel. @param keeper gives and gets each step; may be null.
/// @returns false when reading or keeping failed, was stopped, or the work of this thread was given up.
[[nodiscard]] bool readInSteps(GDALDataset& raster, const Window& window, const PixelTarget& target,
                               std::size_t stepBytes, const ReadProgress& progress,
                               StepKeeper* keeper = nullptr);

}  // namespace vlclientui::client
