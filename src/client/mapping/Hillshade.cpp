#include "client/mapping/Hillshade.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string_view>

namespace vlclientui::client {
namespace {

// The sun, as a vector to the east, to the north and up.
constexpr double radians = std::numbers::pi / 180;
constexpr double azimuth = 315 * radians;
constexpr double altitude = 45 * radians;

double between(double from, double to, double share) { return from + (to - from) * share; }

double sizeAt(const CornerCells& cells, double GroundCell::*side, double across, double down) {
  return between(between(cells.upperLeft.*side, cells.upperRight.*side, across),
                 between(cells.lowerLeft.*side, cells.lowerRight.*side, across), down);
}

class Light {
 public:
  Light(const SampleTile& tile, double factor) : tile_(tile), factor_(factor) {}

  [[nodiscard]] std::uint8_t at(int column, int row, double cellAcross, double cellDown) const {
    const auto z = [&](int dx, int dy) { return height(column, row, dx, dy); };
    const double east =
        (z(1, -1) + 2 * z(1, 0) + z(1, 1) - z(-1, -1) - 2 * z(-1, 0) - z(-1, 1)) / (8 * cellAcross) * factor_;
    const double north =
        (z(-1, -1) + 2 * z(0, -1) + z(1, -1) - z(-1, 1) - 2 * z(0, 1) - z(1, 1)) / (8 * cellDown) * factor_;
    const double facing = std::sin(altitude) - east * std::sin(azimuth) * std::cos(altitude) -
                          north * std::cos(azimuth) * std::cos(altitude);
    const double cosine = facing / std::sqrt(1 + east * east + north * north);
    return static_cast<std::uint8_t>(255 * std::max(0.0, cosine) + 0.5);
  }

 private:
  [[nodiscard]] std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(tile_.columns) +
           static_cast<std::size_t>(column);
  }
  [[nodiscard]] double height(int column, int row, int dx, int dy) const {
    const int x = column + dx;
    const int y = row + dy;
    const bool isWithin = x >= 0 && y >= 0 && x < tile_.columns && y < tile_.rows;
    const std::size_t there = isWithin ? index(x, y) : 0;
    const bool isThere = isWithin && tile_.alpha[there] != 0;
    return static_cast<double>(tile_.samples[(isThere ? there : index(column, row)) * tile_.bands]);
  }

  const SampleTile& tile_;
  double factor_;
};

}  // namespace

std::vector<std::uint8_t> hillshade(const SampleTile& heights, const CornerCells& cells, double factor) {
  const Light light(heights, factor);
  std::vector<std::uint8_t> shades;
  shades.reserve(heights.size());
  for (int row = 0; row < heights.rows; ++row) {
    const double down = (row + 0.5) / heights.rows;
    for (int column = 0; column < heights.columns; ++column) {
      const double across = (column + 0.5) / heights.columns;
      shades.push_back(light.at(column, row, sizeAt(cells, &GroundCell::across, across, down),
                                sizeAt(cells, &GroundCell::down, across, down)));
    }
  }
  return shades;
}

double metersOfHeightUnit(const std::string& unit) {
  std::string small = unit;
  std::ranges::transform(small, small.begin(),
                         [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  constexpr double surveyFoot = 1200.0 / 3937;
  if (small.find("survey") != std::string::npos || small == "ftus" || small == "us-ft") return surveyFoot;
  constexpr std::array<std::string_view, 4> feet = {"ft", "foot", "feet", "international foot"};
  return std::ranges::find(feet, small) != feet.end() ? 0.3048 : 1;
}

}  // namespace vlclientui::client
