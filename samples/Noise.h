#pragma once

#include <cstdint>

namespace vlclientui::samples {

/// Random numbers that depend on place and seed alone, so that every machine makes the same samples.

/// Evenly in [0, 1).
[[nodiscard]] double hashedUnit(std::int32_t x, std::int32_t y, std::uint32_t seed);
/// Smooth gradient noise, about -1 to 1; features of one unit.
[[nodiscard]] double gradientNoise(double x, double y, std::uint32_t seed);
/// Sum of octaves, each twice as fine and half as strong; about -1 to 1.
[[nodiscard]] double fractalNoise(double x, double y, int octaves, std::uint32_t seed);
/// Octaves folded into sharp crests; 0 to 1.
[[nodiscard]] double ridgedNoise(double x, double y, int octaves, std::uint32_t seed);
/// A number in [0, 1) for each of irregular patches about one unit across.
[[nodiscard]] double patchNoise(double x, double y, std::uint32_t seed);

/// 0 below the first edge, 1 above the second, smooth between. Edges may fall.
[[nodiscard]] double smoothStep(double from, double to, double value);

}  // namespace vlclientui::samples
