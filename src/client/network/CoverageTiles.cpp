#include "client/network/CoverageTiles.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <gdal_priv.h>

#include "client/network/MemoryImage.h"
#include "client/network/TileGroups.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

// An image over another place would put pixels where they do not belong.
bool isPlacedAs(GDALDataset& raster, const Bounds& bounds, std::int64_t columns) {
  GeoTransform transform{};
  if (!readGeoTransform(raster, transform)) return true;
  const double tolerance = 0.5 * (bounds.xMax - bounds.xMin) / static_cast<double>(columns);
  return std::abs(transform[0] - bounds.xMin) <= tolerance &&
         std::abs(transform[3] - bounds.yMax) <= tolerance;
}

std::string problemOf(GDALDataset& raster, const CoverageDescription& coverage, const CoverageFormat& format,
                      const CoveragePart& part) {
  if (raster.GetRasterXSize() != part.columns || raster.GetRasterYSize() != part.rows) {
    return "the server's image has another size than asked for";
  }
  if (raster.GetRasterCount() < format.bandCount) return "the server's image lacks bands";
  // A server that was set up anew, perhaps: values would be cut off without a word.
  if (raster.GetRasterBand(1)->GetRasterDataType() != GDALGetDataTypeByName(format.dataType.c_str()))
    return "the server's image has values of another type than before";
  if (!isPlacedAs(raster, boundsOfWindow(coverage, part.window), part.columns)) {
    return "the server's image lies at another place than asked for";
  }
  return {};
}

}  // namespace

std::string CoverageTiles::read(const std::string& image, const CoverageDescription& coverage,
                                const CoverageFormat& format, const CoveragePart& part, std::int64_t ratio) {
  const MemoryImage memory(image);
  if (memory.raster() == nullptr) return memory.problem();
  GDALDataset& raster = *memory.raster();
  if (std::string problem = problemOf(raster, coverage, format, part); !problem.empty()) return problem;
  const GDALDataType type = GDALGetDataTypeByName(format.dataType.c_str());
  bands_ = format.bandCount;
  size_ = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type));
  across_ = {part.window.column / ratio, part.window.column / ratio + part.columns};
  down_ = {part.window.row / ratio, part.window.row / ratio + part.rows};
  bytes_.resize(static_cast<std::size_t>(part.columns * part.rows * bands_) * size_);
  const auto columns = static_cast<int>(part.columns);
  const auto rows = static_cast<int>(part.rows);
  const GdalScope scope;
  const CPLErr isRead = raster.RasterIO(GF_Read, 0, 0, columns, rows, bytes_.data(), columns, rows, type,
                                        bands_, nullptr, 0, 0, 0, nullptr);
  return isRead == CE_None ? std::string() : utf8FromAny(scope.firstFailure("the server's image is damaged"));
}

std::vector<std::byte> CoverageTiles::cut(const PixelSpan& across, const PixelSpan& down) const {
  constexpr std::size_t side = coverageTileSide;
  std::vector<std::byte> tile(side * side * size_ * static_cast<std::size_t>(bands_));
  for (int band = 0; band < bands_; ++band) {
    for (std::int64_t row = down.begin; row < down.end; ++row) {
      const auto line = static_cast<std::size_t>(band) * side + static_cast<std::size_t>(row - down.begin);
      copyRow(band, row, across, tile.data() + line * side * size_);
    }
  }
  return tile;
}

void CoverageTiles::copyRow(int band, std::int64_t row, const PixelSpan& across, std::byte* out) const {
  const std::int64_t inside = std::clamp(across_.end - across.begin, std::int64_t{0}, across.length());
  if (inside > 0) std::memcpy(out, at(band, across.begin, row), static_cast<std::size_t>(inside) * size_);
  for (std::int64_t column = across.begin + inside; column < across.end; ++column) {
    const auto offset = static_cast<std::size_t>(column - across.begin) * size_;
    std::memcpy(out + offset, at(band, column, row), size_);
  }
}

const std::byte* CoverageTiles::at(int band, std::int64_t column, std::int64_t row) const {
  const std::int64_t x = std::clamp(column, across_.begin, across_.end - 1) - across_.begin;
  const std::int64_t y = std::clamp(row, down_.begin, down_.end - 1) - down_.begin;
  const std::int64_t index = (band * down_.length() + y) * across_.length() + x;
  return bytes_.data() + static_cast<std::size_t>(index) * size_;
}

}  // namespace vlclientui::client
