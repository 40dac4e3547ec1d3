#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vlclientui::client {

/// Rows of a PNG, as they are filtered before they are packed: each sample less what its neighbors let
/// expect.

/// Begins with as many zeros as a pixel has bytes, which filters take for what lies left of the image.
using PngRow = std::vector<std::uint8_t>;

class PngFilter {
 public:
  /// @param pixelBytes of one pixel. @param rowBytes of a row without the zeros. @param isPlain leaves rows
  /// as they are, which numbers of colors want: neighboring ones are not alike.
  PngFilter(std::size_t pixelBytes, std::size_t rowBytes, bool isPlain);

  /// The row behind the number of its filter: the one whose bytes are the nearest to zero, which packs well
  /// most times. Stays until the next call. @pre both rows have the zeros and rowBytes.
  [[nodiscard]] const std::vector<std::uint8_t>& filtered(const PngRow& row, const PngRow& above);

 private:
  template <class Guess>
  void attempt(std::uint8_t number, const PngRow& row, const PngRow& above, Guess guess);

  std::size_t pixelBytes_;
  std::size_t rowBytes_;
  bool isPlain_;
  std::uint32_t leastCost_ = 0;
  std::vector<std::uint8_t> best_;
  std::vector<std::uint8_t> next_;
};

}  // namespace vlclientui::client
