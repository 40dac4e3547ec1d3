#include "client/drawing/Relief.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "client/raster/GiveUp.h"

namespace vlclientui::client {
namespace {

// The mean slope to aim at: steeper shading turns black, flatter turns gray.
constexpr double wantedSlope = 0.55;
constexpr double ambient = 0.42;

struct Stop {
  float at;
  Rgb color;
};

constexpr std::array<Stop, 6> heightTints = {{{0.00F, {124, 158, 104}},
                                              {0.20F, {168, 188, 122}},
                                              {0.42F, {222, 207, 150}},
                                              {0.64F, {190, 150, 108}},
                                              {0.84F, {176, 164, 156}},
                                              {1.00F, {250, 250, 252}}}};
constexpr std::array<Stop, 3> depths = {
    {{0.00F, {38, 82, 128}}, {0.60F, {96, 152, 190}}, {1.00F, {170, 208, 222}}}};
constexpr std::array<Stop, 5> deviations = {{{0.00F, {36, 72, 140}},
                                             {0.25F, {110, 160, 200}},
                                             {0.50F, {240, 238, 226}},
                                             {0.75F, {222, 150, 96}},
                                             {1.00F, {150, 44, 40}}}};

float between(float from, float to, float share) { return from + (to - from) * share; }

Rgb colorAt(std::span<const Stop> stops, float at) {
  if (!(at > stops.front().at)) return stops.front().color;
  for (std::size_t i = 1; i < stops.size(); ++i) {
    if (at > stops[i].at) continue;
    const Rgb& a = stops[i - 1].color;
    const Rgb& b = stops[i].color;
    const float share = (at - stops[i - 1].at) / (stops[i].at - stops[i - 1].at);
    return {between(a.red, b.red, share), between(a.green, b.green, share), between(a.blue, b.blue, share)};
  }
  return stops.back().color;
}

Rgb tintOf(float value, ReliefTint tint, const ValueRange& range) {
  if (tint == ReliefTint::Deviations) {
    const float reach = std::max(std::abs(range.low), std::abs(range.high));
    return colorAt(deviations, 0.5F + 0.5F * value / reach);
  }
  if (value < 0 && range.low < 0) return colorAt(depths, 1.0F - value / range.low);
  const float floor = std::max(range.low, 0.0F);
  return colorAt(heightTints, (value - floor) / std::max(range.high - floor, 1e-6F));
}

struct Slope {
  double east = 0;
  double south = 0;
};

bool isGivenUp() { return untilGivenUp(0, nullptr, nullptr) == 0; }

class Slopes {
 public:
  Slopes(const ValueGrid& grid, double aspect) : grid_(grid), aspect_(aspect) {}

  [[nodiscard]] Slope at(int column, int row) const {
    const double east = valueNear(column, row, 1, 0) - valueNear(column, row, -1, 0);
    const double south = valueNear(column, row, 0, 1) - valueNear(column, row, 0, -1);
    return {east / 2, south / 2 / aspect_};
  }

  [[nodiscard]] double rootMeanSquare() const {
    double sum = 0;
    for (int row = 0; row < grid_.height && !isGivenUp(); ++row) {
      for (int column = 0; column < grid_.width; ++column) {
        const Slope slope = at(column, row);
        sum += slope.east * slope.east + slope.south * slope.south;
      }
    }
    return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(grid_.size(), 1)));
  }

 private:
  // Beyond the data, the ground counts as level.
  [[nodiscard]] double valueNear(int column, int row, int dx, int dy) const {
    const std::size_t here = index(column, row);
    const std::size_t there =
        index(std::clamp(column + dx, 0, grid_.width - 1), std::clamp(row + dy, 0, grid_.height - 1));
    return grid_.isValid[there] != 0 ? grid_.values[there] : grid_.values[here];
  }

  [[nodiscard]] std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(grid_.width) +
           static_cast<std::size_t>(column);
  }

  const ValueGrid& grid_;
  double aspect_;
};

// Cosine of the angle to a light in the north-west at 45 degrees; level ground gives 1.
double lightOn(const Slope& slope, double exaggeration) {
  const double east = slope.east * exaggeration;
  const double south = slope.south * exaggeration;
  const double facing = (east + south) * 0.5 + 0.7071;
  const double light = std::max(facing, 0.0) / std::sqrt(1 + east * east + south * south);
  return ambient + (1 - ambient) * light / 0.7071;
}

std::uint8_t byteOf(double value) { return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0)); }

}  // namespace

ValueRange percentileRange(const ValueGrid& grid, double lowShare, double highShare) {
  std::vector<float> valid;
  for (std::size_t i = 0; i < grid.size(); ++i) {
    if (grid.isValid[i] != 0) valid.push_back(grid.values[i]);
  }
  if (valid.empty()) return {};
  const auto at = [&](double share) {
    const auto place =
        valid.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(valid.size() - 1));
    std::nth_element(valid.begin(), place, valid.end());
    return *place;
  };
  const ValueRange range{at(lowShare), at(highShare)};
  return range.high > range.low ? range : ValueRange{range.low, range.low + 1};
}

double exaggerationFor(double steepness) { return steepness > 0 ? wantedSlope / steepness : 0; }

std::vector<std::uint8_t> drawRelief(const ValueGrid& heights, ReliefTint tint, double aspect,
                                     const ReliefScale& scale) {
  const Slopes slopes(heights, aspect);
  std::vector<std::uint8_t> rgba;
  rgba.reserve(heights.size() * 4);
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const int column = static_cast<int>(i % static_cast<std::size_t>(heights.width));
    const int row = static_cast<int>(i / static_cast<std::size_t>(heights.width));
    if (column == 0 && isGivenUp()) return {};
    const double light = lightOn(slopes.at(column, row), scale.exaggeration);
    const Rgb color = tintOf(heights.values[i], tint, scale.range);
    const std::uint8_t alpha = heights.isValid[i] != 0 ? 255 : 0;
    rgba.insert(rgba.end(),
                {byteOf(color.red * light), byteOf(color.green * light), byteOf(color.blue * light), alpha});
  }
  return rgba;
}

std::vector<std::uint8_t> drawRelief(const ValueGrid& heights, ReliefTint tint, double aspect) {
  const double steepness = Slopes(heights, aspect).rootMeanSquare();
  return drawRelief(heights, tint, aspect,
                    {percentileRange(heights, 0.005, 0.995), exaggerationFor(steepness)});
}

}  // namespace vlclientui::client
