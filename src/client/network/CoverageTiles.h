#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "client/network/CoverageClient.h"

namespace vlclientui::client {

/// Pixels from one to before another.
struct PixelSpan {
  std::int64_t begin = 0;
  std::int64_t end = 0;

  [[nodiscard]] std::int64_t length() const { return end - begin; }
};

/// The pixels of an image that a server sent, by their place in the coverage at the image's reduction.
class CoverageTiles {
 public:
  /// Reads the image and checks that it is what was asked for.
  /// @param ratio pixels of the coverage along a pixel's side. @returns why it cannot be used; empty when it
  /// can.
  [[nodiscard]] std::string read(const std::string& image, const CoverageDescription& coverage,
                                 const CoverageFormat& format, const CoveragePart& part, std::int64_t ratio);

  /// A tile of `coverageTileSide` pixels a side, band after band. Where the image ends before the spans do,
  /// its last pixels are repeated; what lies beyond the spans is 0.
  [[nodiscard]] std::vector<std::byte> cut(const PixelSpan& across, const PixelSpan& down) const;

 private:
  [[nodiscard]] const std::byte* at(int band, std::int64_t column, std::int64_t row) const;
  void copyRow(int band, std::int64_t row, const PixelSpan& across, std::byte* out) const;

  std::vector<std::byte> bytes_;  ///< band after band
  PixelSpan across_;
  PixelSpan down_;
  int bands_ = 0;
  std::size_t size_ = 0;  ///< bytes of a value
};

}  // namespace vlclientui::client
