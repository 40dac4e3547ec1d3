#include "Noise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace vlclientui::samples {
namespace {

std::uint32_t mixed(std::uint32_t h) {
  h ^= h >> 16U;
  h *= 0x7feb352dU;
  h ^= h >> 15U;
  h *= 0x846ca68bU;
  return h ^ (h >> 16U);
}

double faded(double t) { return t * t * t * (t * (t * 6 - 15) + 10); }

struct Direction {
  double x = 0;
  double y = 0;
};

std::array<Direction, 64> evenDirections() {
  std::array<Direction, 64> directions{};
  for (std::size_t i = 0; i < directions.size(); ++i) {
    const double angle = static_cast<double>(i) * 6.283185307179586 / 64;
    directions[i] = {std::cos(angle), std::sin(angle)};
  }
  return directions;
}

double slopeAt(std::int32_t x, std::int32_t y, double dx, double dy, std::uint32_t seed) {
  static const std::array<Direction, 64> directions = evenDirections();
  const Direction& direction = directions[static_cast<std::size_t>(hashedUnit(x, y, seed) * 64)];
  return direction.x * dx + direction.y * dy;
}

double between(double from, double to, double share) { return from + (to - from) * share; }

}  // namespace

double hashedUnit(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  const std::uint32_t h =
      mixed(static_cast<std::uint32_t>(x) + mixed(static_cast<std::uint32_t>(y) + mixed(seed)));
  return static_cast<double>(h) / 4294967296.0;
}

double gradientNoise(double x, double y, std::uint32_t seed) {
  const auto column = static_cast<std::int32_t>(std::floor(x));
  const auto row = static_cast<std::int32_t>(std::floor(y));
  const double dx = x - column;
  const double dy = y - row;
  const double top =
      between(slopeAt(column, row, dx, dy, seed), slopeAt(column + 1, row, dx - 1, dy, seed), faded(dx));
  const double bottom = between(slopeAt(column, row + 1, dx, dy - 1, seed),
                                slopeAt(column + 1, row + 1, dx - 1, dy - 1, seed), faded(dx));
  return between(top, bottom, faded(dy)) * 1.5;
}

double fractalNoise(double x, double y, int octaves, std::uint32_t seed) {
  double sum = 0;
  double strength = 0.5;
  for (int i = 0; i < octaves; ++i, strength /= 2, x *= 2, y *= 2) {
    sum += strength * gradientNoise(x, y, seed + static_cast<std::uint32_t>(i));
  }
  return sum;
}

double ridgedNoise(double x, double y, int octaves, std::uint32_t seed) {
  double sum = 0;
  double strength = 0.5;
  for (int i = 0; i < octaves; ++i, strength /= 2, x *= 2, y *= 2) {
    const double crest =
        1 - std::min(std::abs(gradientNoise(x, y, seed + static_cast<std::uint32_t>(i))), 1.0);
    sum += strength * crest * crest;
  }
  return sum;
}

double patchNoise(double x, double y, std::uint32_t seed) {
  const auto column = static_cast<std::int32_t>(std::floor(x));
  const auto row = static_cast<std::int32_t>(std::floor(y));
  double nearest = 1e9;
  double value = 0;
  for (std::int32_t j = row - 1; j <= row + 1; ++j) {
    for (std::int32_t i = column - 1; i <= column + 1; ++i) {
      const double dx = i + hashedUnit(i, j, seed) - x;
      const double dy = j + hashedUnit(i, j, seed + 1) - y;
      const double distance = std::abs(dx) + std::abs(dy);
      if (distance >= nearest) continue;
      nearest = distance;
      value = hashedUnit(i, j, seed + 2);
    }
  }
  return value;
}

double smoothStep(double from, double to, double value) {
  const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

}  // namespace vlclientui::samples
