#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/network/CoverageClient.h"
#include "client/network/CoveragePassage.h"
#include "client/network/TileGroups.h"
#include "client/network/TileStore.h"

namespace vlclientui::client {

/// A coverage in tiles, at its own size and at reductions by powers of two. Any thread may read. To be held
/// by a shared pointer.
class CoverageReader : public std::enable_shared_from_this<CoverageReader> {
 public:
  static constexpr int tileSide = coverageTileSide;

  /// @param store,passages must outlive this object.
  CoverageReader(std::shared_ptr<CoverageClient> client, std::shared_ptr<const CoverageDescription> coverage,
                 std::shared_ptr<const CoverageFormat> format, TileStore& store,
                 const CoveragePassages& passages);

  /// Level 0 and all reductions that are worth having. Of a server that gives pixels at their own size only,
  /// reductions are made here; a reduction that would need far more pixels than it has cannot be read.
  [[nodiscard]] int levels() const { return levels_; }
  [[nodiscard]] std::int64_t columns(int level) const;
  [[nodiscard]] std::int64_t rows(int level) const;

  /// Pixels of a tile, band after band, rows of `tileSide` pixels each; beyond the edges they are 0.
  using Each = std::function<void(int column, int row, const std::vector<std::byte>& pixels)>;
  /// Every tile of the range once, in any order: those that are kept first, the others as they come.
  /// @returns why it broke off; empty when all is well.
  [[nodiscard]] std::string read(const TileRange& range, const Each& each);

  /// The tiles of a window, as a passage through it reads them at a level.
  [[nodiscard]] TileRange area(const PixelWindow& window, int level) const;
  /// How many requests for pixels it takes to read a window through at a level.
  [[nodiscard]] std::int64_t requestsFor(const PixelWindow& window, int level) const;
  /// How many pixels they bring.
  [[nodiscard]] std::int64_t pixelsFor(const PixelWindow& window, int level) const;
  /// What one of them asks for that lies in the middle.
  [[nodiscard]] CoveragePart middlePart(const PixelWindow& window, int level) const;

  [[nodiscard]] const CoverageDescription& coverage() const { return *coverage_; }
  [[nodiscard]] const CoverageFormat& format() const { return *format_; }
  [[nodiscard]] const std::string& address() const { return client_->address(); }
  [[nodiscard]] CoverageClient& client() const { return *client_; }

 private:
  [[nodiscard]] CoveragePart partOf(const TileRange& range) const;
  [[nodiscard]] int fetchedLevel(int level) const;
  [[nodiscard]] GroupShape shapeOf(const TileRange& area) const;
  [[nodiscard]] std::int64_t mostTilesAhead() const;
  [[nodiscard]] TileRange whole(int level) const;
  [[nodiscard]] std::string readFetched(const TileRange& range, const Each& each);
  [[nodiscard]] std::string readReduced(const TileRange& range, const Each& each);
  [[nodiscard]] std::string reduce(int level, int column, int row, std::vector<std::byte>& tile);
  [[nodiscard]] std::string refusal(int level) const;
  [[nodiscard]] std::string cut(const TileRange& range, const CoveragePart& part, const std::string& image,
                                const Each& each);
  [[nodiscard]] TileRange lackingOf(const TileRange& group);
  [[nodiscard]] std::vector<TileRange> missing(const TileRange& range, const GroupShape& shape,
                                               const Each& each);
  [[nodiscard]] bool isKept(const TileRange& range);
  /// @param told of what was fetched; may be empty.
  [[nodiscard]] std::string fetch(std::vector<TileRange> ranges, const Each& each,
                                  const FetchAhead::Told& told = {});
  [[nodiscard]] std::unique_ptr<FetchAhead> fetchAhead(const TileRange& area, const TileRange& first,
                                                       const CoveragePassage& passage);
  [[nodiscard]] std::string readPassage(CoveragePassage& passage, const TileRange& area,
                                        const TileRange& range, const Each& each);
  [[nodiscard]] TileStore::Key keyOf(int level, int column, int row) const;

  std::shared_ptr<CoverageClient> client_;
  std::shared_ptr<const CoverageDescription> coverage_;
  std::shared_ptr<const CoverageFormat> format_;
  TileStore& store_;
  const CoveragePassages& passages_;
  std::string name_;
  int levels_ = 1;
  std::atomic<int> misses_ = 0;  ///< reads that had to fetch something
};

}  // namespace vlclientui::client
