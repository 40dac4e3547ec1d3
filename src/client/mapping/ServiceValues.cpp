#include "client/mapping/ServiceValues.h"

#include <algorithm>
#include <string>

#include <gdal_priv.h>

#include "client/drawing/Drawing.h"
#include "client/drawing/RequestRaster.h"
#include "client/mapping/Areas.h"
#include "client/raster/GdalScope.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr int rowsAtATime = 128;

bool readRows(GDALRasterBand& band, int row, int rows, BandPixels& pixels) {
  const int columns = band.GetXSize();
  const auto at = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns);
  const auto read = [&](GDALRasterBand& from, void* into, GDALDataType type) {
    return from.RasterIO(GF_Read, 0, row, columns, rows, into, columns, rows, type, 0, 0, nullptr) == CE_None;
  };
  return read(band, pixels.values.data() + at, GDT_Float64) &&
         read(*band.GetMaskBand(), pixels.mask.data() + at, GDT_Byte);
}

}  // namespace

std::optional<BandPixels> bandPixels(const DrawingSource& source, const OutputGrid& grid, int band) {
  const GdalScope scope;
  const auto whole = source(std::nullopt);
  const auto size = static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows);
  BandPixels pixels{std::vector<double>(size), std::vector<std::uint8_t>(size)};
  const auto part = commonPart(whole->service->facts.envelope, grid.extent);
  if (!part) return pixels;
  const auto drawing = source(part);
  const DatasetPtr request = openRequest(*drawing->service, drawing->order, grid);
  if (band < 1 || band > request->GetRasterCount()) {
    throw RuntimeFailure("The service has no band " + std::to_string(band));
  }
  GDALRasterBand& read = *request->GetRasterBand(band);
  for (int row = 0; row < grid.rows; row += rowsAtATime) {
    if (WaitScope::isGivenUp()) return std::nullopt;
    if (readRows(read, row, std::min(rowsAtATime, grid.rows - row), pixels)) continue;
    if (WaitScope::isGivenUp()) return std::nullopt;
    throw RuntimeFailure("The values cannot be read. " + scope.readFailure());
  }
  return pixels;
}

}  // namespace vlclientui::client
