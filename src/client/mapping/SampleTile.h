#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Values of a service's shown bands on a grid of the map, before they become colors.
struct SampleTile {
  int columns = 0;
  int rows = 0;
  std::size_t bands = 1;
  std::vector<float> samples;       ///< pixel by pixel, all bands of a pixel together
  std::vector<std::uint8_t> alpha;  ///< 0 where nothing lies yet

  SampleTile(int wantedColumns, int wantedRows, std::size_t wantedBands)
      : columns(wantedColumns),
        rows(wantedRows),
        bands(wantedBands),
        samples(size() * bands),
        alpha(size()) {}

  [[nodiscard]] std::size_t size() const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  }
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
