#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What values of a service become.
enum class Coloring {
  Palette,     ///< the colors that the raster holds for its classes
  Colors,      ///< three bands as red, green and blue
  Ramp,        ///< one band along a row of colors
  Relief,      ///< heights, tinted and lit
  Deviations,  ///< as relief, with one color on each side of zero
  Shading,     ///< heights, lit alone, as steep as they are (Hillshade.h)
};

/// Dusk, Lagoon and Ice grow lighter by even steps (PerceptualRamp.h).
enum class Ramp {
  Gray,      ///< black to white
  Ground,    ///< green lowlands over brown to white
  Heat,      ///< black over red to pale yellow
  Water,     ///< white to deep blue
  Spectrum,  ///< blue over green to red
  Dusk,      ///< deep blue over red to sand
  Lagoon,    ///< deep blue over green to yellow
  Ice        ///< black over blue to white
};

/// How values of a service become colors, for all pictures of it: decided once, and changed by a person. A
/// plain value; nothing in it depends on what is shown.
struct Stretch {
  /// Which of the ways below counts.
  Coloring coloring = Coloring::Colors;
  std::array<int, 3> bands = {1, 1, 1};      ///< numbers from 1; all three for Colors, else the first alone
  std::array<double, 3> lowest = {0, 0, 0};  ///< become 0, for each of the bands
  /// Become 255, for each of the bands.
  std::array<double, 3> highest = {255, 255, 255};
  double lift = 1;  ///< above 0; an exponent of the shares between both, below 1 to lift what is dark
  /// Of Coloring::Ramp.
  Ramp ramp = Ramp::Gray;
  double steepness =
      0;  ///< of relief: usual difference of neighbors a pixel of the service apart; 0 for level
  double roughness = 1;     ///< 0 to 1: how that grows with the distance, as an exponent
  double exaggeration = 1;  ///< of shading, above 0: how many times higher the heights count

  /// Whether all members are equal.
  bool operator==(const Stretch&) const = default;

  /// The bands that are read.
  [[nodiscard]] std::vector<int> shownBands() const;
  /// Whether heights are tinted and lit.
  [[nodiscard]] bool isRelief() const {
    return coloring == Coloring::Relief || coloring == Coloring::Deviations;
  }
  /// Whether colors of a pixel depend on those around it.
  [[nodiscard]] bool needsNeighbors() const { return isRelief() || coloring == Coloring::Shading; }
};

/// One line of fields: "coloring=colors bands=4,3,2 lowest=12,10,9 highest=260,250,240 lift=0.72". Numbers
/// have a decimal point whatever the locale.
[[nodiscard]] std::string stretchText(const Stretch& stretch);
/// Fields that are missing keep their defaults, unknown ones are skipped.
/// @returns nothing for a text with a value that makes no sense.
[[nodiscard]] std::optional<Stretch> stretchOf(const std::string& text);

}  // namespace vlclientui::client
#pragma GCC visibility pop
