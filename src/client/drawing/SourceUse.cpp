#include "client/drawing/SourceUse.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <gdal_priv.h>

#include "client/raster/GdalScope.h"
#include "client/raster/NorthUpRaster.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr int mostCells = 1024;
// Without overviews every pixel would be read, which takes too long for a document.
constexpr double mostPixels = 64e6;

OutputGrid cellsOf(const OutputGrid& image) {
  return {image.extent, std::min(image.columns, mostCells), std::min(image.rows, mostCells)};
}

// Cells whose centers lie in a source; a source smaller than a cell has the one around its middle.
struct CellRange {
  int from = 0;
  int to = 0;  ///< one beyond the last
};

CellRange cellsWithin(double start, double length, int count) {
  const auto at = [&](double edge) {
    return static_cast<int>(std::clamp(std::ceil(edge - 0.5), 0.0, static_cast<double>(count)));
  };
  const CellRange range{at(start), at(start + length)};
  if (range.to > range.from || length >= 1) return range;
  const int cell = static_cast<int>(std::clamp(std::floor(start + length / 2), 0.0, count - 1.0));
  return {cell, cell + 1};
}

using Mask = std::vector<std::uint8_t>;

// The part of a source over a range of cells, in the source's pixels.
struct PixelRange {
  int from = 0;
  int count = 1;
};

PixelRange pixelsUnder(const CellRange& cells, double start, double length, int pixels) {
  const double perCell = pixels / length;
  const auto at = [&](int cell) {
    return std::clamp((cell - start) * perCell, 0.0, static_cast<double>(pixels));
  };
  const int from = std::min(static_cast<int>(std::floor(at(cells.from))), pixels - 1);
  return {from, std::max(1, static_cast<int>(std::ceil(at(cells.to))) - from)};
}

class Canvas {
 public:
  explicit Canvas(const OutputGrid& image)
      : grid_(cellsOf(image)),
        taken_(static_cast<std::size_t>(grid_.columns) * static_cast<std::size_t>(grid_.rows), 0) {}

  /// False when all cells of a rectangle are taken: nothing below would be seen.
  [[nodiscard]] bool hasRoom(const Bounds& place) const {
    const GridPlace where = placeInGrid(place, grid_);
    const CellRange across = cellsWithin(where.left, where.width, grid_.columns);
    const CellRange down = cellsWithin(where.top, where.height, grid_.rows);
    for (int row = down.from; row < down.to; ++row) {
      const std::uint8_t* line = lineOf(row);
      if (std::find(line + across.from, line + across.to, 0) != line + across.to) return true;
    }
    return false;
  }

  /// Adds a source below all others. @param raster null for one without holes.
  /// @returns whether any cell shows it.
  bool add(const Bounds& place, const NorthUpRaster* raster) {
    const GridPlace where = placeInGrid(place, grid_);
    const CellRange across = cellsWithin(where.left, where.width, grid_.columns);
    const CellRange down = cellsWithin(where.top, where.height, grid_.rows);
    if (across.from >= across.to || down.from >= down.to) return false;
    return take(across, down, raster == nullptr ? Mask() : maskOf(*raster, where, across, down));
  }

 private:
  bool take(const CellRange& across, const CellRange& down, const Mask& mask) {
    bool isVisible = false;
    std::size_t i = 0;
    for (int row = down.from; row < down.to; ++row) {
      std::uint8_t* line = taken_.data() + startOf(row);
      for (int column = across.from; column < across.to; ++column, ++i) {
        if (line[column] != 0 || (!mask.empty() && mask[i] == 0)) continue;
        line[column] = 1;
        isVisible = true;
      }
    }
    return isVisible;
  }

  [[nodiscard]] std::size_t startOf(int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(grid_.columns);
  }
  [[nodiscard]] const std::uint8_t* lineOf(int row) const { return taken_.data() + startOf(row); }

  static bool isTooLargeToRead(GDALRasterBand& band, const PixelRange& x, const PixelRange& y) {
    return band.GetOverviewCount() == 0 && static_cast<double>(x.count) * y.count > mostPixels;
  }

  // Empty when all of it counts as data.
  static Mask maskOf(const NorthUpRaster& raster, const GridPlace& where, const CellRange& across,
                     const CellRange& down) {
    GDALRasterBand& mask = *raster.dataset->GetRasterBand(1)->GetMaskBand();
    const PixelRange x = pixelsUnder(across, where.left, where.width, mask.GetXSize());
    const PixelRange y = pixelsUnder(down, where.top, where.height, mask.GetYSize());
    if (isTooLargeToRead(mask, x, y)) return {};
    const int width = across.to - across.from;
    const int height = down.to - down.from;
    Mask cells(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    if (mask.RasterIO(GF_Read, x.from, y.from, x.count, y.count, cells.data(), width, height, GDT_Byte, 0, 0,
                      nullptr) != CE_None) {
      std::ranges::fill(cells, std::uint8_t{0});
    }
    return cells;
  }

  OutputGrid grid_;
  Mask taken_;
};

// A document does not open what no image needed.
bool hasHoles(const ImageServiceRecord& service, const ImageSource& source) {
  if (source.factsFrom == FactsFrom::Catalogue) return false;
  return source.facts.mayHaveHoles || service.pixels.noData || source.facts.srsWkt != service.facts.srsWkt;
}

Resampling resamplingOf(const ImageServiceRecord& service, const ImageSource& source, const Bounds& place,
                        int columns, int rows, const OutputGrid& image) {
  const PixelMeaning meaning = source.facts.hasLabels ? PixelMeaning::Label : PixelMeaning::Quantity;
  return chooseResampling(placeInGrid(place, image), columns, rows, meaning, service.pixels.resampling);
}

void judge(SourceUse& use, const ImageServiceRecord& service, const ImageSource& source, Canvas& canvas,
           const OutputGrid& image) {
  const bool hasRoom = canvas.hasRoom(source.place);
  use.isTurned = source.facts.srsWkt != service.facts.srsWkt;
  if (!hasRoom || !hasHoles(service, source)) {
    use.isVisible = hasRoom && canvas.add(source.place, nullptr);
    use.resampling = resamplingOf(service, source, source.place, static_cast<int>(source.facts.columns),
                                  static_cast<int>(source.facts.rows), image);
    return;
  }
  try {
    const NorthUpRaster raster = openNorthUp(source.file, service.facts.srsWkt, service.pixels.noData);
    use.isTurned = raster.isTurned;
    use.isVisible = canvas.add(raster.extent, &raster);
    use.resampling = resamplingOf(service, source, raster.extent, raster.dataset->GetRasterXSize(),
                                  raster.dataset->GetRasterYSize(), image);
  } catch (const RuntimeFailure&) {
    use.isVisible = false;
  }
}

}  // namespace

std::vector<SourceUse> sourceUses(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                                  const OutputGrid& grid) {
  const GdalScope scope;
  std::vector<SourceUse> uses(service.sources.size());
  for (std::size_t i = 0; i < uses.size(); ++i) {
    uses[i].isInWindow = overlap(service.sources[i].place, grid.extent);
  }
  Canvas canvas(grid);
  std::size_t position = 0;
  for (auto i = order.rbegin(); i != order.rend(); ++i) {
    SourceUse& use = uses[*i];
    if (!use.isInWindow) continue;
    use.takesPart = true;
    use.position = ++position;
    judge(use, service, service.sources[*i], canvas, grid);
  }
  return uses;
}

}  // namespace vlclientui::client
