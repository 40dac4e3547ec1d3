#include "client/mapping/Coloring.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

#include "client/drawing/Relief.h"
#include "client/mapping/PerceptualRamp.h"

namespace vlclientui::client {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Color = std::array<std::uint8_t, 3>;

constexpr std::size_t tableSize = 4096;

constexpr std::array<Color, 2> grayStops = {{{0, 0, 0}, {255, 255, 255}}};
constexpr std::array<Color, 5> groundStops = {
    {{72, 116, 84}, {150, 176, 112}, {226, 210, 154}, {176, 132, 96}, {250, 250, 252}}};
constexpr std::array<Color, 4> heatStops = {{{16, 8, 24}, {150, 24, 40}, {240, 140, 40}, {255, 250, 210}}};
constexpr std::array<Color, 3> waterStops = {{{240, 248, 252}, {96, 160, 204}, {16, 44, 96}}};
constexpr std::array<Color, 5> spectrumStops = {
    {{44, 74, 168}, {60, 170, 190}, {120, 190, 90}, {240, 200, 70}, {196, 48, 44}}};

// Their lightness grows by the same from stop to stop.
constexpr std::array<LabColor, 6> duskStops = {
    {{10, 18, -28}, {27, 38, -38}, {44, 56, -8}, {61, 46, 34}, {78, 16, 58}, {95, -4, 30}}};
constexpr std::array<LabColor, 5> lagoonStops = {
    {{12, 14, -32}, {32, 4, -38}, {52, -18, -18}, {72, -38, 16}, {92, -18, 56}}};
constexpr std::array<LabColor, 4> iceStops = {{{8, 2, -14}, {37, 0, -34}, {66, -10, -28}, {95, -3, -4}}};

std::span<const LabColor> evenStopsOf(Ramp ramp) {
  if (ramp == Ramp::Dusk) return duskStops;
  if (ramp == Ramp::Lagoon) return lagoonStops;
  return ramp == Ramp::Ice ? std::span<const LabColor>(iceStops) : std::span<const LabColor>();
}

std::span<const Color> stopsOf(Ramp ramp) {
  switch (ramp) {
    case Ramp::Ground:
      return groundStops;
    case Ramp::Heat:
      return heatStops;
    case Ramp::Water:
      return waterStops;
    case Ramp::Spectrum:
      return spectrumStops;
    case Ramp::Gray:
    case Ramp::Dusk:
    case Ramp::Lagoon:
    case Ramp::Ice:
      break;
  }
  return grayStops;
}

double shareOf(double value, double lowest, double highest) {
  const double span = highest - lowest;
  // A range turned around makes a negative.
  return span == 0 ? (value < lowest ? 0 : 1) : std::clamp((value - lowest) / span, 0.0, 1.0);
}

// Shares of 0 to 1 as bytes, lifted.
class LiftTable {
 public:
  explicit LiftTable(double lift) {
    for (std::size_t i = 0; i < tableSize; ++i) {
      const double share = static_cast<double>(i) / (tableSize - 1);
      bytes_[i] = static_cast<std::uint8_t>(255 * (lift == 1 ? share : std::pow(share, lift)) + 0.5);
    }
  }
  [[nodiscard]] std::uint8_t operator[](std::size_t place) const { return bytes_[place]; }

 private:
  std::array<std::uint8_t, tableSize> bytes_{};
};

// Of values by the range of a band.
struct BandScale {
  float lowest = 0;
  float steps = 0;  ///< of the table, for a value one higher

  [[nodiscard]] std::size_t place(float value) const {
    if (steps == 0) return value < lowest ? 0 : tableSize - 1;
    constexpr float most = tableSize - 1;
    const float at = (value - lowest) * steps;
    const float raised = at > 0 ? at : 0.0F;
    return static_cast<std::size_t>(static_cast<int>((raised < most ? raised : most) + 0.5F));
  }
};

BandScale scaleOf(double lowest, double highest) {
  const double span = highest - lowest;
  return {static_cast<float>(lowest), span == 0 ? 0.0F : static_cast<float>((tableSize - 1) / span)};
}

// Tiles come one behind the other with the same lift, and a table takes its time.
LiftTable tableOf(double lift) {
  thread_local std::optional<std::pair<double, LiftTable>> last;
  if (!last || last->first != lift) last.emplace(lift, LiftTable(lift));
  return last->second;
}

// Pixels of three bands behind each other, many at a time: in small loops of a known length the compiler
// takes four numbers in one go.
class ColorRun {
 public:
  static constexpr std::size_t pixels = 64;

  explicit ColorRun(const std::array<BandScale, 3>& scales) {
    for (std::size_t i = 0; i < samples; ++i) {
      lowest_[i] = scales[i % 3].lowest;
      steps_[i] = scales[i % 3].steps;
    }
  }
  void color(const float* values, const std::uint8_t* alpha, const LiftTable& table, std::uint8_t* rgba) {
    constexpr float most = tableSize - 1;
    for (std::size_t i = 0; i < samples; ++i) at_[i] = (values[i] - lowest_[i]) * steps_[i];
    for (float& at : at_) at = at > 0 ? at : 0.0F;
    for (float& at : at_) at = at < most ? at : most;
    for (std::size_t i = 0; i < samples; ++i) places_[i] = static_cast<int>(at_[i] + 0.5F);
    const int* place = places_.data();
    for (std::size_t i = 0; i < pixels; ++i, place += 3, rgba += 4) {
      if (alpha[i] == 0) continue;
      rgba[0] = table[static_cast<std::size_t>(place[0])];
      rgba[1] = table[static_cast<std::size_t>(place[1])];
      rgba[2] = table[static_cast<std::size_t>(place[2])];
      rgba[3] = alpha[i];
    }
  }

 private:
  static constexpr std::size_t samples = pixels * 3;
  std::array<float, samples> lowest_{};
  std::array<float, samples> steps_{};
  std::array<float, samples> at_{};
  std::array<int, samples> places_{};
};

Bytes inColors(const SampleTile& tile, const Stretch& stretch) {
  const LiftTable table = tableOf(stretch.lift);
  std::array<BandScale, 3> scales;
  for (std::size_t band = 0; band < 3; ++band)
    scales[band] = scaleOf(stretch.lowest[band], stretch.highest[band]);
  const std::size_t size = tile.size();
  const std::size_t bands = tile.bands;
  const std::array<std::size_t, 3> from = {0, std::min<std::size_t>(1, bands - 1),
                                           std::min<std::size_t>(2, bands - 1)};
  Bytes rgba(size * 4);
  // By pointers of its own: for all that the compiler knows, a byte that is written may change anything else.
  const float* sample = tile.samples.data();
  const std::uint8_t* const alpha = tile.alpha.data();
  std::uint8_t* color = rgba.data();
  std::size_t i = 0;
  const bool isFlat = std::ranges::any_of(scales, [](const BandScale& scale) { return scale.steps == 0; });
  if (bands == 3 && !isFlat) {
    ColorRun run(scales);
    for (; i + ColorRun::pixels <= size; i += ColorRun::pixels) {
      run.color(sample + i * 3, alpha + i, table, color + i * 4);
    }
    sample += i * 3;
    color += i * 4;
  }
  for (; i < size; ++i, sample += bands, color += 4) {
    if (alpha[i] == 0) continue;
    const std::size_t red = scales[0].place(sample[from[0]]);
    const std::size_t green = scales[1].place(sample[from[1]]);
    const std::size_t blue = scales[2].place(sample[from[2]]);
    color[0] = table[red];
    color[1] = table[green];
    color[2] = table[blue];
    color[3] = alpha[i];
  }
  return rgba;
}

Bytes alongRamp(const SampleTile& tile, const Stretch& stretch) {
  std::vector<Color> table(tableSize);
  for (std::size_t i = 0; i < tableSize; ++i) {
    const double share = static_cast<double>(i) / (tableSize - 1);
    table[i] = rampColor(stretch.ramp, std::pow(share, stretch.lift));
  }
  Bytes rgba(tile.size() * 4);
  for (std::size_t i = 0; i < tile.size(); ++i) {
    if (tile.alpha[i] == 0) continue;
    const auto value = static_cast<double>(tile.samples[i * tile.bands]);
    const double share = shareOf(value, stretch.lowest[0], stretch.highest[0]);
    std::ranges::copy(table[static_cast<std::size_t>(share * (tableSize - 1) + 0.5)],
                      rgba.begin() + static_cast<std::ptrdiff_t>(i * 4));
    rgba[i * 4 + 3] = tile.alpha[i];
  }
  return rgba;
}

Bytes byClass(const SampleTile& tile, const ClassColors& classes) {
  Bytes rgba(tile.size() * 4);
  for (std::size_t i = 0; i < tile.size(); ++i) {
    const float number = tile.samples[i * tile.bands];
    if (tile.alpha[i] == 0 || number < 0 || static_cast<std::size_t>(number) >= classes.size()) continue;
    std::ranges::copy(classes[static_cast<std::size_t>(number)],
                      rgba.begin() + static_cast<std::ptrdiff_t>(i * 4));
  }
  return rgba;
}

Bytes asRelief(const SampleTile& tile, const Stretch& stretch, double scale) {
  ValueGrid heights{tile.columns, tile.rows, std::vector<float>(tile.size()), tile.alpha};
  for (std::size_t i = 0; i < tile.size(); ++i) heights.values[i] = tile.samples[i * tile.bands];
  const ValueRange range{
      static_cast<float>(stretch.lowest[0]),
      static_cast<float>(std::max(stretch.highest[0], std::nextafter(stretch.lowest[0], 1e300)))};
  const double steepness = stretch.steepness * std::pow(scale, stretch.roughness);
  const bool deviates = stretch.coloring == Coloring::Deviations;
  Bytes rgba = drawRelief(heights, deviates ? ReliefTint::Deviations : ReliefTint::Heights, 1,
                          {range, exaggerationFor(steepness)});
  if (rgba.empty()) return rgba;  // given up
  for (std::size_t i = 0; i < tile.size(); ++i) rgba[i * 4 + 3] = tile.alpha[i];
  return rgba;
}

Bytes inLight(const SampleTile& tile, const Stretch& stretch, const TileGround& ground) {
  const Bytes shades = hillshade(tile, ground.cells, ground.meters * stretch.exaggeration);
  Bytes rgba(tile.size() * 4);
  for (std::size_t i = 0; i < tile.size(); ++i) {
    if (tile.alpha[i] == 0) continue;
    std::fill_n(rgba.begin() + static_cast<std::ptrdiff_t>(i * 4), 3, shades[i]);
    rgba[i * 4 + 3] = tile.alpha[i];
  }
  return rgba;
}

}  // namespace

Color rampColor(Ramp ramp, double share) {
  const std::span<const LabColor> even = evenStopsOf(ramp);
  if (!even.empty()) return screenColor(colorBetween(even, share));
  const std::span<const Color> stops = stopsOf(ramp);
  const double at = std::clamp(share, 0.0, 1.0) * static_cast<double>(stops.size() - 1);
  const auto below = std::min(static_cast<std::size_t>(at), stops.size() - 2);
  const double rest = at - static_cast<double>(below);
  Color color{};
  for (std::size_t i = 0; i < color.size(); ++i) {
    color[i] =
        static_cast<std::uint8_t>(stops[below][i] + (stops[below + 1][i] - stops[below][i]) * rest + 0.5);
  }
  return color;
}

Bytes coloredTile(const SampleTile& tile, const Stretch& stretch, const ClassColors& classes,
                  const TileGround& ground) {
  switch (stretch.coloring) {
    case Coloring::Palette:
      return byClass(tile, classes);
    case Coloring::Ramp:
      return alongRamp(tile, stretch);
    case Coloring::Relief:
    case Coloring::Deviations:
      return asRelief(tile, stretch, ground.scale);
    case Coloring::Shading:
      return inLight(tile, stretch, ground);
    case Coloring::Colors:
      break;
  }
  return inColors(tile, stretch);
}

}  // namespace vlclientui::client
