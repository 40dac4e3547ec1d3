#include "Terrain.h"

#include <algorithm>
#include <cmath>

#include "Drainage.h"
#include "Noise.h"

namespace vlclientui::samples {
namespace {

constexpr double degree = 3.14159265358979323846 / 180;
// The rim of the eroded ground drains straight off the edge and is cut away.
constexpr double rimWidth = 0.125;
constexpr float valleyFloor = 380;
constexpr float summit = 2960;
constexpr float steepest = 0.95F;
constexpr double lakeShare = 0.03;

// Distance from the axis of the main valley, in widths of the ground.
double offValley(double x, double y) {
  const double axis = 0.56 + 0.13 * std::sin(x * 5.2 + 0.4) + 0.03 * gradientNoise(x * 6, 3.5, 71);
  return std::abs(y - axis);
}

Grid upliftFor(int cells) {
  Grid uplift(cells, cells);
  for (int j = 0; j < cells; ++j) {
    for (int i = 0; i < cells; ++i) {
      const double x = static_cast<double>(i) / cells;
      const double y = static_cast<double>(j) / cells;
      const double off = offValley(x, y);
      const double massif = 0.55 + 0.75 * ridgedNoise(x * 2.6 + 4, y * 2.6, 4, 11);
      const double rise =
          0.03 + 0.97 * smoothStep(0.015, 0.24, off + 0.03 * fractalNoise(x * 9, y * 9, 3, 5));
      uplift.at(i, j) = static_cast<float>(massif * rise);
    }
  }
  return uplift;
}

void addRoughness(Grid& heights, double strength, double features, std::uint32_t seed) {
  for (int j = 0; j < heights.height; ++j) {
    for (int i = 0; i < heights.width; ++i) {
      const double x = features * i / heights.width;
      const double y = features * j / heights.height;
      heights.at(i, j) += static_cast<float>(strength * fractalNoise(x, y, 4, seed));
    }
  }
}

// Coarse to fine: the large rivers settle while cells are few.
Grid erodedGround(int cells) {
  int size = cells / 8;
  Grid heights(size, size);
  addRoughness(heights, 0.05, 6, 23);
  for (const int steps : {70, 25, 8, 2}) {
    erode(heights, upliftFor(size), steps);
    if (size >= cells) break;
    size *= 2;
    heights = resampled(heights, size, size);
    addRoughness(heights, 0.02, size / 12.0, static_cast<std::uint32_t>(size));
  }
  return heights;
}

float percentile(const Grid& grid, double share) {
  std::vector<float> sorted = grid.values;
  const auto rank = static_cast<std::ptrdiff_t>(static_cast<double>(sorted.size() - 1) * share);
  std::nth_element(sorted.begin(), sorted.begin() + rank, sorted.end());
  return sorted[static_cast<std::size_t>(rank)];
}

void scaleTo(Grid& heights, float lowest, float highest) {
  const float from = percentile(heights, 0.002);
  const float scale = (highest - lowest) / (percentile(heights, 0.998) - from);
  for (float& height : heights.values) height = lowest + std::max(height - from, 0.0F) * scale;
}

// Rivers of the lowlands lay down what they bring: floors are broad and nearly level.
void fillValleyFloors(Grid& heights) {
  const Grid around = blurred(heights, 9);
  for (std::size_t i = 0; i < heights.values.size(); ++i) {
    const double low = 1 - smoothStep(valleyFloor + 60, valleyFloor + 420, heights.values[i]);
    heights.values[i] += static_cast<float>(0.75 * low) * (around.values[i] - heights.values[i]);
  }
}

void fillLake(Terrain& terrain) {
  terrain.lakeLevel = percentile(terrain.height, lakeShare);
  terrain.water = Grid(terrain.height.width, terrain.height.height);
  for (std::size_t i = 0; i < terrain.height.values.size(); ++i) {
    if (terrain.height.values[i] > terrain.lakeLevel) continue;
    terrain.height.values[i] = terrain.lakeLevel;
    terrain.water.values[i] = 1;
  }
}

void addStreams(Terrain& terrain) {
  const Drainage drainage = drainageOf(terrain.height);
  terrain.moisture = Grid(terrain.height.width, terrain.height.height);
  for (std::size_t i = 0; i < drainage.area.size(); ++i) {
    const double size = std::log10(static_cast<double>(drainage.area[i]));
    terrain.moisture.values[i] = static_cast<float>(smoothStep(0.3, 3.4, size));
    const auto river = static_cast<float>(0.9 * smoothStep(3.75, 4.15, size));
    terrain.water.values[i] = std::max(terrain.water.values[i], river);
  }
  terrain.moisture = blurred(terrain.moisture, 2);
}

Grid detailGrid(const Grid& whole, int left, int top, int width, int height, int finer) {
  Grid part(width * finer, height * finer);
  for (int y = 0; y < part.height; ++y) {
    for (int x = 0; x < part.width; ++x) {
      part.at(x, y) = whole.sample(left + (x + 0.5) / finer - 0.5, top + (y + 0.5) / finer - 0.5);
    }
  }
  return part;
}

}  // namespace

Terrain makeTerrain(int cells, double cellSize) {
  Terrain terrain;
  terrain.cellSize = cellSize;
  const int rim = static_cast<int>(cells * rimWidth / (1 - 2 * rimWidth) / 8) * 8;
  Grid ground = erodedGround(cells + 2 * rim);
  scaleTo(ground, valleyFloor, summit);
  limitSlopes(ground, steepest, static_cast<float>(cellSize));
  addRoughness(ground, 9, cells / 10.0, 91);
  terrain.height = cropped(ground, rim, rim, cells, cells);
  fillValleyFloors(terrain.height);
  fillLake(terrain);
  addStreams(terrain);
  return terrain;
}

Terrain detailOf(const Terrain& whole, int left, int top, int width, int height, int finer) {
  Terrain part;
  part.cellSize = whole.cellSize / finer;
  part.lakeLevel = whole.lakeLevel;
  part.originX = whole.originX + left * whole.cellSize;
  part.originY = whole.originY + top * whole.cellSize;
  part.height = detailGrid(whole.height, left, top, width, height, finer);
  part.water = detailGrid(whole.water, left, top, width, height, finer);
  part.moisture = detailGrid(whole.moisture, left, top, width, height, finer);
  addRoughness(part.height, 3, part.height.width / 9.0, 47);
  return part;
}

Gradient gradientAt(const Terrain& terrain, int x, int y) {
  const Grid& heights = terrain.height;
  const double run = 2 * terrain.cellSize;
  return {static_cast<double>(heights.near(x + 1, y) - heights.near(x - 1, y)) / run,
          static_cast<double>(heights.near(x, y + 1) - heights.near(x, y - 1)) / run};
}

double sunlight(const Gradient& gradient, double azimuth, double elevation) {
  const double east = std::sin(azimuth * degree) * std::cos(elevation * degree);
  const double south = -std::cos(azimuth * degree) * std::cos(elevation * degree);
  const double up = std::sin(elevation * degree);
  const double length = std::sqrt(1 + gradient.east * gradient.east + gradient.south * gradient.south);
  return std::max(0.0, (up - gradient.east * east - gradient.south * south) / length);
}

}  // namespace vlclientui::samples
