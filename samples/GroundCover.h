#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "Terrain.h"

namespace vlclientui::samples {

/// Land-cover classes; the numbers are those of the raster, 0 standing for no data.
enum class CoverClass {
  Water = 1,
  BuiltUp,
  Cropland,
  Grassland,
  BroadleafForest,
  ConiferForest,
  AlpineMeadow,
  Rock,
  Scree,
  Snow,
};

constexpr std::size_t coverCount = 11;  ///< the class for no data included

struct CoverStyle {
  std::string_view name;
  std::array<short, 3> color;
};
[[nodiscard]] const std::array<CoverStyle, coverCount>& coverStyles();

/// Shares of the classes in one cell; they sum to 1.
struct Cover {
  std::array<double, coverCount> share{};
  double field = 0;  ///< which field the cell lies in, 0 to 1

  [[nodiscard]] double of(CoverClass kind) const { return share[static_cast<std::size_t>(kind)]; }
  [[nodiscard]] CoverClass dominant() const;
};

/// What grows or lies on a cell, by height, slope, exposure and moisture.
[[nodiscard]] Cover coverAt(const Terrain& terrain, int x, int y);

/// Reflectances of blue, green, red, near infrared and two short-wave infrared bands, 0 to 1.
using Spectrum = std::array<double, 6>;

/// When and under which light a picture is taken.
struct Season {
  double greenness = 1;      ///< 1 in high summer, 0 when leaves are brown
  double snowLine = 2200;    ///< meters
  double sunAzimuth = 148;   ///< degrees from north
  double sunElevation = 52;  ///< degrees
};

/// What a sensor sees of a cell, shaded by the sun and veiled by the air.
[[nodiscard]] Spectrum reflectanceAt(const Terrain& terrain, int x, int y, const Season& season);

}  // namespace vlclientui::samples
