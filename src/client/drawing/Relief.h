#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vlclientui::client {

/// Values of one band on a small grid, rows from the top.
struct ValueGrid {
  int width = 0;
  int height = 0;
  std::vector<float> values;          ///< width * height
  std::vector<std::uint8_t> isValid;  ///< 0 for a pixel without data

  [[nodiscard]] std::size_t size() const { return values.size(); }
};

struct ValueRange {
  float low = 0;
  float high = 1;
};

/// The values below which the given shares (0 to 1) of the valid pixels lie. high > low, even for a grid of
/// one value or without any.
[[nodiscard]] ValueRange percentileRange(const ValueGrid& grid, double lowShare, double highShare);

struct Rgb {
  float red = 0;  ///< 0 to 255, like the others
  float green = 0;
  float blue = 0;
};

enum class ReliefTint {
  Heights,     ///< meadow to rock to snow, water below zero
  Deviations,  ///< two colors, one on each side of zero
};

/// What a relief looks like whichever part of it is drawn.
struct ReliefScale {
  ValueRange range;         ///< of the tints
  double exaggeration = 1;  ///< of slopes
};

/// So strong that slopes of this steepness look well. @param steepness usual difference of neighbors that are
/// two pixels apart, halved. @returns 0 for level ground.
[[nodiscard]] double exaggerationFor(double steepness);

/// A tinted relief lit from the north-west, by a scale that does not depend on the heights that are drawn.
/// @param aspect height of a pixel divided by its width, both on the ground.
/// @returns four bytes per pixel: red, green, blue, alpha; none where the work was given up.
[[nodiscard]] std::vector<std::uint8_t> drawRelief(const ValueGrid& heights, ReliefTint tint, double aspect,
                                                   const ReliefScale& scale);

/// The same by a scale of its own. Slopes are exaggerated until they look alike on any ground and at
/// any scale, so that a small picture always shows form.
/// @param aspect height of a pixel divided by its width, both on the ground.
/// @returns four bytes per pixel: red, green, blue, alpha; none where the work was given up.
[[nodiscard]] std::vector<std::uint8_t> drawRelief(const ValueGrid& heights, ReliefTint tint, double aspect);

}  // namespace vlclientui::client
