#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Values of a service's shown bands on a grid of the map, before they become colors.
struct SampleTile {
  /// Pixels across.
  int columns = 0;
  /// Pixels down.
  int rows = 0;
  /// Values of one pixel.
  std::size_t bands = 1;
  std::vector<float> samples;       ///< pixel by pixel, all bands of a pixel together
  std::vector<std::uint8_t> alpha;  ///< 0 where nothing lies yet

  /// A tile on which nothing lies yet. @param wantedColumns,wantedRows,wantedBands at least 1.
  SampleTile(int wantedColumns, int wantedRows, std::size_t wantedBands)
      : columns(wantedColumns),
        rows(wantedRows),
        bands(wantedBands),
        samples(size() * bands),
        alpha(size()) {}

  /// How many pixels it has.
  [[nodiscard]] std::size_t size() const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  }
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
