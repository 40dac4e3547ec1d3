#include "client/network/CoverageReader.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <utility>

#include <gdal_priv.h>

#include "client/network/MemoryImage.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr int mostTilesAcross = 4;
constexpr std::int64_t mostBytesAhead = 24 << 20;
constexpr std::int64_t smallestLevel = 128;  // pixels of the shorter side

bool isRefusedForSize(const CoverageProblem& problem) {
  return problem.code == "InvalidParameterValue" || lowered(problem.text).find("size") != std::string::npos;
}

// One pixel alone along a side is resampled by some servers, so that it gets a neighbor.
struct Span {
  std::int64_t begin = 0;
  std::int64_t end = 0;

  [[nodiscard]] std::int64_t length() const { return end - begin; }
};
Span requested(std::int64_t first, std::int64_t count, std::int64_t whole) {
  Span span{first, std::min(first + count, whole)};
  span.begin = std::min(span.begin, span.end - 1);
  if (span.length() < 2 && span.begin > 0) --span.begin;
  if (span.length() < 2 && span.end < whole) ++span.end;
  return span;
}

int tileCount(std::int64_t pixels) {
  return static_cast<int>((pixels + CoverageReader::tileSide - 1) / CoverageReader::tileSide);
}

// An image over another place would put pixels where they do not belong.
bool isPlacedAs(GDALDataset& raster, const Bounds& bounds, std::int64_t columns) {
  GeoTransform transform{};
  if (!readGeoTransform(raster, transform)) return true;
  const double tolerance = 0.5 * (bounds.xMax - bounds.xMin) / static_cast<double>(columns);
  return std::abs(transform[0] - bounds.xMin) <= tolerance &&
         std::abs(transform[3] - bounds.yMax) <= tolerance;
}

struct Pixels {
  std::vector<std::byte> bytes;  // band after band
  Span across;
  Span down;
  std::size_t size = 0;  // bytes of a value

  [[nodiscard]] const std::byte* at(int band, std::int64_t column, std::int64_t row) const {
    const std::int64_t x = std::clamp(column, across.begin, across.end - 1) - across.begin;
    const std::int64_t y = std::clamp(row, down.begin, down.end - 1) - down.begin;
    const std::int64_t index = (band * down.length() + y) * across.length() + x;
    return bytes.data() + static_cast<std::size_t>(index) * size;
  }
};

void copyTile(const Pixels& pixels, int bands, const Span& across, const Span& down,
              std::vector<std::byte>& tile) {
  constexpr std::size_t side = CoverageReader::tileSide;
  for (int band = 0; band < bands; ++band) {
    for (std::int64_t row = down.begin; row < down.end; ++row) {
      const auto line = static_cast<std::size_t>(band) * side + static_cast<std::size_t>(row - down.begin);
      std::byte* const out = tile.data() + line * side * pixels.size;
      const std::int64_t inside =
          std::clamp(pixels.across.end - across.begin, std::int64_t{0}, across.length());
      if (inside > 0) {
        std::memcpy(out, pixels.at(band, across.begin, row), static_cast<std::size_t>(inside) * pixels.size);
      }
      for (std::int64_t column = across.begin + inside; column < across.end; ++column) {
        const auto offset = static_cast<std::size_t>(column - across.begin) * pixels.size;
        std::memcpy(out + offset, pixels.at(band, column, row), pixels.size);
      }
    }
  }
}

std::vector<CoverageReader::TileRange> quarters(const CoverageReader::TileRange& range) {
  const int middle = (range.left + range.right) / 2;
  const int center = (range.top + range.bottom) / 2;
  std::vector<CoverageReader::TileRange> parts;
  for (const auto& [top, bottom] : {std::pair(range.top, center), std::pair(center + 1, range.bottom)}) {
    for (const auto& [left, right] : {std::pair(range.left, middle), std::pair(middle + 1, range.right)}) {
      if (left <= right && top <= bottom) parts.push_back({range.level, left, top, right, bottom});
    }
  }
  return parts;
}

bool isOneTile(const CoverageReader::TileRange& range) {
  return range.left == range.right && range.top == range.bottom;
}

}  // namespace

CoverageReader::CoverageReader(std::shared_ptr<CoverageClient> client,
                               std::shared_ptr<const CoverageDescription> coverage,
                               std::shared_ptr<const CoverageFormat> format, TileStore& store)
    : client_(std::move(client)),
      coverage_(std::move(coverage)),
      format_(std::move(format)),
      store_(store),
      name_(client_->address() + ' ' + coverage_->id),
      tilesAcross_(mostTilesAcross) {
  while (std::min(coverage_->columns, coverage_->rows) >> levels_ >= smallestLevel) ++levels_;
}

std::int64_t CoverageReader::columns(int level) const {
  return (coverage_->columns + (std::int64_t{1} << level) - 1) >> level;
}

std::int64_t CoverageReader::rows(int level) const {
  return (coverage_->rows + (std::int64_t{1} << level) - 1) >> level;
}

TileStore::Key CoverageReader::keyOf(int level, int column, int row) const {
  return {name_, level, column, row};
}

// Of a reduction only pixels that stand for a whole square are asked for: at other ratios servers resample in
// ways of their own. What is left over at the edges repeats its neighbor.
CoveragePart CoverageReader::partOf(const TileRange& range) const {
  const Span across =
      requested(std::int64_t{range.left} * tileSide, (std::int64_t{range.right} - range.left + 1) * tileSide,
                coverage_->columns >> range.level);
  const Span down =
      requested(std::int64_t{range.top} * tileSide, (std::int64_t{range.bottom} - range.top + 1) * tileSide,
                coverage_->rows >> range.level);
  return {{across.begin << range.level, down.begin << range.level, across.length() << range.level,
           down.length() << range.level},
          across.length(),
          down.length()};
}

std::string CoverageReader::cut(const TileRange& range, const CoveragePart& part, const std::string& image,
                                const Each& each) {
  const MemoryImage memory(image);
  if (memory.raster() == nullptr) return memory.problem();
  GDALDataset& raster = *memory.raster();
  if (raster.GetRasterXSize() != part.columns || raster.GetRasterYSize() != part.rows) {
    return "the server's image has another size than asked for";
  }
  if (raster.GetRasterCount() < format_->bandCount) return "the server's image lacks bands";
  if (!isPlacedAs(raster, boundsOfWindow(*coverage_, part.window), part.columns)) {
    return "the server's image lies at another place than asked for";
  }
  const GDALDataType type = GDALGetDataTypeByName(format_->dataType.c_str());
  const std::int64_t ratio = std::int64_t{1} << range.level;
  Pixels pixels;
  pixels.size = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type));
  pixels.across = {part.window.column / ratio, part.window.column / ratio + part.columns};
  pixels.down = {part.window.row / ratio, part.window.row / ratio + part.rows};
  pixels.bytes.resize(static_cast<std::size_t>(part.columns * part.rows * format_->bandCount) * pixels.size);
  const GdalScope scope;
  if (raster.RasterIO(GF_Read, 0, 0, static_cast<int>(part.columns), static_cast<int>(part.rows),
                      pixels.bytes.data(), static_cast<int>(part.columns), static_cast<int>(part.rows), type,
                      format_->bandCount, nullptr, 0, 0, 0, nullptr) != CE_None) {
    return utf8FromAny(scope.firstFailure("the server's image is damaged"));
  }
  const std::size_t tileBytes =
      std::size_t{tileSide} * tileSide * pixels.size * static_cast<std::size_t>(format_->bandCount);
  for (int row = range.top; row <= range.bottom; ++row) {
    for (int column = range.left; column <= range.right; ++column) {
      auto tile = std::make_shared<std::vector<std::byte>>(tileBytes);
      const std::int64_t x = std::int64_t{column} * tileSide;
      const std::int64_t y = std::int64_t{row} * tileSide;
      copyTile(pixels, format_->bandCount, {x, std::min(x + tileSide, columns(range.level))},
               {y, std::min(y + tileSide, rows(range.level))}, *tile);
      each(column, row, *tile);
      store_.keep(keyOf(range.level, column, row), std::move(tile));
    }
  }
  return {};
}

// Groups of tiles whose corners lie at fixed places, so that neighbors ask for the same ones.
std::vector<CoverageReader::TileRange> CoverageReader::missing(const TileRange& range, const Each& each) {
  const int across = tilesAcross_;
  std::vector<TileRange> groups;
  for (int groupRow = range.top / across; groupRow <= range.bottom / across; ++groupRow) {
    for (int groupColumn = range.left / across; groupColumn <= range.right / across; ++groupColumn) {
      TileRange group{range.level, INT_MAX, INT_MAX, -1, -1};
      const int lastRow = std::min(groupRow * across + across - 1, range.bottom);
      const int lastColumn = std::min(groupColumn * across + across - 1, range.right);
      for (int row = std::max(groupRow * across, range.top); row <= lastRow; ++row) {
        for (int column = std::max(groupColumn * across, range.left); column <= lastColumn; ++column) {
          if (store_.find(keyOf(range.level, column, row))) continue;
          group = {range.level, std::min(group.left, column), std::min(group.top, row),
                   std::max(group.right, column), std::max(group.bottom, row)};
        }
      }
      if (group.right >= 0) groups.push_back(group);
    }
  }
  for (int row = range.top; row <= range.bottom; ++row) {
    for (int column = range.left; column <= range.right; ++column) {
      const bool comes = std::ranges::any_of(groups, [&](const TileRange& group) {
        return column >= group.left && column <= group.right && row >= group.top && row <= group.bottom;
      });
      if (comes) continue;
      if (const auto kept = store_.find(keyOf(range.level, column, row))) {
        each(column, row, *kept);
      } else {
        groups.push_back({range.level, column, row, column, row});
      }
    }
  }
  return groups;
}

std::string CoverageReader::fetch(std::vector<TileRange> ranges, const Each& each) {
  std::string failure;
  while (!ranges.empty() && failure.empty()) {
    std::vector<CoveragePart> parts;
    std::ranges::transform(ranges, std::back_inserter(parts),
                           [this](const TileRange& range) { return partOf(range); });
    std::vector<TileRange> smaller;
    client_->fetch(*coverage_, *format_, parts, [&](std::size_t index, OrProblem<std::string>&& image) {
      const auto* problem = std::get_if<CoverageProblem>(&image);
      if (problem != nullptr && isRefusedForSize(*problem) && !isOneTile(ranges[index])) {
        tilesAcross_ = std::max(1, tilesAcross_ / 2);
        std::ranges::move(quarters(ranges[index]), std::back_inserter(smaller));
        return true;
      }
      failure = problem != nullptr ? problem->text
                                   : cut(ranges[index], parts[index], std::get<std::string>(image), each);
      return failure.empty();
    });
    ranges = std::move(smaller);
  }
  return failure;
}

bool CoverageReader::isKept(const TileRange& range) {
  for (int row = range.top; row <= range.bottom; ++row) {
    for (int column = range.left; column <= range.right; ++column) {
      if (!store_.find(keyOf(range.level, column, row))) return false;
    }
  }
  return true;
}

// Whoever reads a raster through does so in rows of small windows: the whole groups to the right come as
// well, as far as they can be kept until they are read.
CoverageReader::TileRange CoverageReader::ahead(const TileRange& range) const {
  const int across = tilesAcross_;
  const std::int64_t tileBytes = std::int64_t{tileSide} * tileSide * format_->bytesOfPixel;
  const auto mostTiles =
      static_cast<int>(std::max<std::int64_t>(mostBytesAhead / std::max<std::int64_t>(tileBytes, 1), 1));
  TileRange wider = range;
  wider.top = range.top / across * across;
  wider.bottom = std::min((range.bottom / across + 1) * across, tileCount(rows(range.level))) - 1;
  const int columnsAhead = std::max(mostTiles / (wider.bottom - wider.top + 1), range.right - range.left + 1);
  wider.right = std::min(range.left + columnsAhead, tileCount(columns(range.level))) - 1;
  return wider;
}

std::string CoverageReader::read(const TileRange& range, const Each& each) {
  const int lastColumn = tileCount(columns(range.level)) - 1;
  const int lastRow = tileCount(rows(range.level)) - 1;
  const TileRange inside{range.level, std::max(range.left, 0), std::max(range.top, 0),
                         std::min(range.right, lastColumn), std::min(range.bottom, lastRow)};
  constexpr int missesOfAPassage = 2;
  const bool isPassage = !isKept(inside) && misses_++ >= missesOfAPassage;
  const TileRange wanted = isPassage ? ahead(inside) : inside;
  const Each wantedOnes = [&](int column, int row, const std::vector<std::byte>& pixels) {
    const bool isInside =
        column >= inside.left && column <= inside.right && row >= inside.top && row <= inside.bottom;
    if (isInside) each(column, row, pixels);
  };
  return fetch(missing(wanted, wantedOnes), wantedOnes);
}

}  // namespace vlclientui::client
