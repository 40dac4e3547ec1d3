#include "Grid.h"

#include <array>
#include <cmath>

namespace vlclientui::samples {
namespace {

std::array<double, 4> cubicWeights(double t) {
  return {((-0.5 * t + 1.0) * t - 0.5) * t, (1.5 * t - 2.5) * t * t + 1.0, ((-1.5 * t + 2.0) * t + 0.5) * t,
          (0.5 * t - 0.5) * t * t};
}

Grid blurredAcross(const Grid& grid, int radius, int stepX, int stepY) {
  Grid out(grid.width, grid.height);
  for (int y = 0; y < grid.height; ++y) {
    for (int x = 0; x < grid.width; ++x) {
      float sum = 0;
      for (int k = -radius; k <= radius; ++k) sum += grid.near(x + k * stepX, y + k * stepY);
      out.at(x, y) = sum / static_cast<float>(2 * radius + 1);
    }
  }
  return out;
}

}  // namespace

float Grid::sample(double x, double y) const {
  const int column = static_cast<int>(std::floor(x));
  const int row = static_cast<int>(std::floor(y));
  const auto across = cubicWeights(x - column);
  const auto down = cubicWeights(y - row);
  double sum = 0;
  for (int j = 0; j < 4; ++j) {
    for (int i = 0; i < 4; ++i) {
      sum += across[static_cast<std::size_t>(i)] * down[static_cast<std::size_t>(j)] *
             static_cast<double>(near(column + i - 1, row + j - 1));
    }
  }
  return static_cast<float>(sum);
}

Grid resampled(const Grid& grid, int width, int height) {
  Grid out(width, height);
  const double stepX = static_cast<double>(grid.width) / width;
  const double stepY = static_cast<double>(grid.height) / height;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      out.at(x, y) = grid.sample((x + 0.5) * stepX - 0.5, (y + 0.5) * stepY - 0.5);
    }
  }
  return out;
}

Grid cropped(const Grid& grid, int left, int top, int width, int height) {
  Grid out(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) out.at(x, y) = grid.at(left + x, top + y);
  }
  return out;
}

Grid blurred(const Grid& grid, int radius) {
  return blurredAcross(blurredAcross(grid, radius, 1, 0), radius, 0, 1);
}

}  // namespace vlclientui::samples
