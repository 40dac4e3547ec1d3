#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "client/mapping/PixelPatch.h"

namespace vlclientui::client {

/// Between two pixels of a patch, along one direction.
struct Between {
  int first = 0;
  float share = 0;        ///< of the second one
  bool isInside = false;  ///< the patch has both
  bool isBeyond = false;  ///< the raster
};

/// @param place in pixels of the patch, counted from the middle of the first one. @param count pixels of the
/// patch.
[[nodiscard]] inline Between between(double place, int count) {
  // Of more than -1; the library's own function is a call.
  const int first = static_cast<int>(place + 1) - 1;
  return {first, static_cast<float>(place - first), first >= 0 && first + 1 < count};
}

/// A pixel between four that are whole. @param upper,lower the left ones, each with its right neighbor behind
/// it.
template <std::size_t bands, class Sample>
[[nodiscard]] inline std::array<float, bands> mixed(const Sample* upper, const Sample* lower, float across,
                                                    float down) {
  const auto along = [](Sample from, Sample to, float share) {
    const auto begin = static_cast<float>(from);
    return begin + (static_cast<float>(to) - begin) * share;
  };
  std::array<float, bands> values{};
  for (std::size_t band = 0; band < bands; ++band) {
    const float above = along(upper[band], upper[band + bands], across);
    const float below = along(lower[band], lower[band + bands], across);
    values[band] = above + (below - above) * down;
  }
  return values;
}

/// Whether a patch has no hole.
[[nodiscard]] inline bool isWhole(const PixelPatch& patch) {
  return std::ranges::all_of(patch.alpha, [](std::uint8_t alpha) { return alpha == 255; });
}

/// Fills those pixels of a row that are empty and lie between four whole ones.
/// @param upper,lower rows of the patch. @param columns one for each pixel. @param to,alpha of the first
/// pixel.
template <std::size_t bands, class Sample>
void mixRow(const Sample* upper, const Sample* lower, const std::vector<Between>& columns, float down,
            float* to, std::uint8_t* alpha) {
  for (const Between& across : columns) {
    if (*alpha == 0 && across.isInside && !across.isBeyond) {
      const std::size_t left = static_cast<std::size_t>(across.first) * bands;
      const auto values = mixed<bands>(upper + left, lower + left, across.share, down);
      std::copy(values.begin(), values.end(), to);
      *alpha = 255;
    }
    to += bands;
    ++alpha;
  }
}

}  // namespace vlclientui::client
