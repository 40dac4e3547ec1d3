#include "client/drawing/RasterValues.h"

#include "client/drawing/RequestPart.h"
#include "client/drawing/RequestRaster.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GiveUp.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

/// Few programs compute with complex integers.
GDALDataType valueType(GDALDataType stored) {
  if (stored == GDT_CInt16) return GDT_CFloat32;
  return stored == GDT_CInt32 ? GDT_CFloat64 : stored;
}

void readBand(GDALRasterBand& band, void* into, GDALDataType type, const GdalScope& scope) {
  GDALRasterIOExtraArg reading;
  INIT_RASTERIO_EXTRA_ARG(reading);
  reading.pfnProgress = untilGivenUp;
  const int columns = band.GetXSize();
  const int rows = band.GetYSize();
  if (band.RasterIO(GF_Read, 0, 0, columns, rows, into, columns, rows, type, 0, 0, &reading) != CE_None) {
    throw RuntimeFailure(scope.readFailure());
  }
}

}  // namespace

RasterValues readValues(const Drawing& drawing, const OutputGrid& grid) {
  const GdalScope scope;
  const DatasetPtr request = openRequest(*drawing.service, drawing.order, grid);
  const RequestBands bands = requestBandsOf(*request);
  const GDALDataType type = valueType(bands.type);
  RasterValues taken{
      grid.columns, grid.rows, static_cast<int>(bands.colors.size()), GDALGetDataTypeName(type), {}, {}};
  const std::size_t pixels = static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows);
  const std::size_t bytes = pixels * static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type));
  taken.values.resize(bytes * bands.colors.size());
  taken.isValid.resize(pixels * bands.colors.size());
  for (std::size_t i = 0; i < bands.colors.size(); ++i) {
    GDALRasterBand& band = *request->GetRasterBand(bands.colors[i]);
    readBand(band, taken.values.data() + i * bytes, type, scope);
    readBand(*band.GetMaskBand(), taken.isValid.data() + i * pixels, GDT_Byte, scope);
  }
  for (std::uint8_t& valid : taken.isValid) valid = valid == 0 ? 0 : 1;
  return taken;
}

}  // namespace vlclientui::client
