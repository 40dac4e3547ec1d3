#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
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
/// it. @param result its bands.
template <std::size_t bands, class Sample>
inline void mix(const Sample* upper, const Sample* lower, float across, float down, float* result) {
  const auto along = [](Sample from, Sample to, float share) {
    const auto begin = static_cast<float>(from);
    return begin + (static_cast<float>(to) - begin) * share;
  };
#pragma GCC unroll 4
  for (std::size_t band = 0; band < bands; ++band) {
    const float above = along(upper[band], upper[band + bands], across);
    const float below = along(lower[band], lower[band + bands], across);
    result[band] = above + (below - above) * down;
  }
}

/// Whether a patch has no hole.
[[nodiscard]] inline bool isWhole(const PixelPatch& patch) {
  return std::ranges::all_of(patch.alpha, [](std::uint8_t alpha) { return alpha == 255; });
}

/// Rows of a patch as the numbers that are mixed. Each is turned into them once while rows are asked for in
/// turn, with their next ones.
template <std::size_t bands, class Sample>
class FloatRows {
 public:
  /// @param samples of the patch; both outlive this.
  FloatRows(const PixelPatch& patch, const Sample* samples)
      : samples_(samples), count_(static_cast<std::size_t>(patch.window.width) * bands) {}

  [[nodiscard]] const float* row(int number) {
    const Sample* const from = samples_ + static_cast<std::size_t>(number) * count_;
    if constexpr (std::is_same_v<Sample, float>) {
      return from;
    } else {
      Kept& kept = kept_[static_cast<std::size_t>(number) % 2];
      if (kept.number != number) {
        kept.number = number;
        kept.values.resize(count_);
        convert(from, kept.values.data());
      }
      return kept.values.data();
    }
  }

 private:
  struct Kept {
    int number = -1;
    std::vector<float> values;
  };

  // In runs of a known length the compiler takes several in one go.
  void convert(const Sample* from, float* to) const {
    constexpr std::size_t run = 16;
    std::size_t i = 0;
    for (; i + run <= count_; i += run) {
      for (std::size_t j = 0; j < run; ++j) to[i + j] = static_cast<float>(from[i + j]);
    }
    for (; i < count_; ++i) to[i] = static_cast<float>(from[i]);
  }

  const Sample* samples_;
  const std::size_t count_;
  std::array<Kept, 2> kept_;
};

/// Fills those pixels of a row that are empty and lie between four whole ones.
/// @param upper,lower rows of the patch. @param columns one for each pixel. @param to,alpha of the first
/// pixel.
template <std::size_t bands, class Sample>
void mixRow(const Sample* upper, const Sample* lower, const std::vector<Between>& columns, float down,
            float* to, std::uint8_t* alpha) {
  for (const Between& across : columns) {
    if (*alpha == 0 && across.isInside && !across.isBeyond) {
      const std::size_t left = static_cast<std::size_t>(across.first) * bands;
      mix<bands>(upper + left, lower + left, across.share, down, to);
      *alpha = 255;
    }
    to += bands;
    ++alpha;
  }
}

}  // namespace vlclientui::client
