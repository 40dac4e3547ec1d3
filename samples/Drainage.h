#pragma once

#include <vector>

#include "Grid.h"

namespace vlclientui::samples {

/// Where water runs on a surface. Hollows are taken as filled, so that every cell drains off the edge.
struct Drainage {
  std::vector<int> receiver;  ///< cell that a cell drains to; itself on the edge
  std::vector<int> order;     ///< all cells, each after its receiver
  std::vector<float> area;    ///< cells that drain through a cell, itself included
  std::vector<float> filled;  ///< heights with hollows filled
};

[[nodiscard]] Drainage drainageOf(const Grid& heights);

/// Cuts valleys under steady uplift: rivers wear down in proportion to slope and to a power of the area
/// they drain. One call stands for `steps` rounds in which all is lifted by `uplift`.
/// @param uplift per cell and round. @param edges of the grid stay as they are.
void erode(Grid& heights, const Grid& uplift, int steps);

/// Takes down whatever is steeper against the cell it drains to than loose ground can stand.
/// @param steepest rise over run. @param cell ground length of a cell in units of height.
void limitSlopes(Grid& heights, float steepest, float cell);

}  // namespace vlclientui::samples
