#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/network/CoverageClient.h"
#include "client/network/TileStore.h"

namespace vlclientui::client {

/// A coverage in tiles, at its own size and at reductions by powers of two. Any thread may read.
class CoverageReader {
 public:
  static constexpr int tileSide = 256;

  /// Tiles of one level, by column and row.
  struct TileRange {
    int level = 0;
    int left = 0;
    int top = 0;
    int right = 0;   ///< the last one
    int bottom = 0;  ///< the last one
  };

  /// @param store must outlive this object.
  CoverageReader(std::shared_ptr<CoverageClient> client, std::shared_ptr<const CoverageDescription> coverage,
                 std::shared_ptr<const CoverageFormat> format, TileStore& store);

  /// Level 0 and all reductions that are worth having.
  [[nodiscard]] int levels() const { return levels_; }
  [[nodiscard]] std::int64_t columns(int level) const;
  [[nodiscard]] std::int64_t rows(int level) const;

  /// Pixels of a tile, band after band, rows of `tileSide` pixels each; beyond the edges they are 0.
  using Each = std::function<void(int column, int row, const std::vector<std::byte>& pixels)>;
  /// Every tile of the range once, in any order: those that are kept first, the others as they come.
  /// @returns why it broke off; empty when all is well.
  [[nodiscard]] std::string read(const TileRange& range, const Each& each);

  [[nodiscard]] const CoverageDescription& coverage() const { return *coverage_; }
  [[nodiscard]] const CoverageFormat& format() const { return *format_; }
  [[nodiscard]] const std::string& address() const { return client_->address(); }

 private:
  [[nodiscard]] CoveragePart partOf(const TileRange& range) const;
  [[nodiscard]] std::string cut(const TileRange& range, const CoveragePart& part, const std::string& image,
                                const Each& each);
  [[nodiscard]] std::vector<TileRange> missing(const TileRange& range, const Each& each);
  [[nodiscard]] bool isKept(const TileRange& range);
  [[nodiscard]] TileRange ahead(const TileRange& range) const;
  [[nodiscard]] std::string fetch(std::vector<TileRange> ranges, const Each& each);
  [[nodiscard]] TileStore::Key keyOf(int level, int column, int row) const;

  std::shared_ptr<CoverageClient> client_;
  std::shared_ptr<const CoverageDescription> coverage_;
  std::shared_ptr<const CoverageFormat> format_;
  TileStore& store_;
  std::string name_;
  int levels_ = 1;
  std::atomic<int> misses_ = 0;   ///< reads that had to fetch something
  std::atomic<int> tilesAcross_;  ///< of one request, along each side
};

}  // namespace vlclientui::client
