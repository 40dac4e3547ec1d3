#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vlclientui::samples {

/// A field of numbers on a regular grid, rows from the north.
struct Grid {
  int width = 0;
  int height = 0;
  std::vector<float> values;

  Grid() = default;
  Grid(int columns, int rows, float value = 0)
      : width(columns),
        height(rows),
        values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), value) {}

  [[nodiscard]] std::size_t index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
  }
  [[nodiscard]] float& at(int x, int y) { return values[index(x, y)]; }
  [[nodiscard]] float at(int x, int y) const { return values[index(x, y)]; }
  /// The nearest cell for a position outside.
  [[nodiscard]] float near(int x, int y) const {
    return at(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1));
  }
  /// Smooth between cell centers; in cells, the first center being 0.
  [[nodiscard]] float sample(double x, double y) const;
};

/// The same field with other numbers of cells.
[[nodiscard]] Grid resampled(const Grid& grid, int width, int height);
[[nodiscard]] Grid cropped(const Grid& grid, int left, int top, int width, int height);
/// Mean over a square of 2 * radius + 1 cells.
[[nodiscard]] Grid blurred(const Grid& grid, int radius);

}  // namespace vlclientui::samples
