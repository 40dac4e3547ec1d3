#pragma once

#include <optional>

#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// How the pixels of a source become those of a grid. The table of choices is in docs/export.md.
enum class Resampling { Nearest, Average, Bilinear };

/// Whether values between two neighbours mean anything.
enum class PixelMeaning { Quantity, Label };

/// The rectangle of a source within a grid, in the grid's pixels from its top left corner. Edges closer than
/// a thousandth of a pixel to a whole one are on it, as coordinates come with few decimals.
struct GridPlace {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

[[nodiscard]] GridPlace placeInGrid(const Bounds& source, const OutputGrid& grid);

/// @param columns,rows of the source. @param wish of a person; labels stay nearest all the same.
[[nodiscard]] Resampling chooseResampling(const GridPlace& place, int columns, int rows, PixelMeaning meaning,
                                          std::optional<Resampling> wish = std::nullopt);

}  // namespace vlclientui::client
