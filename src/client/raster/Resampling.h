#pragma once

#include <optional>

#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// How source pixels become grid pixels. docs/export.md has the table of choices.
enum class Resampling { Nearest, Average, Bilinear };

/// Whether values between two neighbors have a meaning.
enum class PixelMeaning { Quantity, Label };

/// A source's rectangle within a grid, in grid pixels from the top left corner. Edges within a thousandth of
/// a pixel of a whole one are moved onto it, since coordinates come with few decimals.
struct GridPlace {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

[[nodiscard]] GridPlace placeInGrid(const Bounds& source, const OutputGrid& grid);

/// @param columns,rows of the source. @param wish of a person; labels use nearest anyway.
[[nodiscard]] Resampling chooseResampling(const GridPlace& place, int columns, int rows, PixelMeaning meaning,
                                          std::optional<Resampling> wish = std::nullopt);

}  // namespace vlclientui::client
