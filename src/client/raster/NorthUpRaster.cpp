#include "client/raster/NorthUpRaster.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

#include <gdalwarper.h>
#include <ogr_spatialref.h>

#include "client/raster/GeoTransform.h"
#include "client/raster/MaskedRaster.h"
#include "client/raster/Subdatasets.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

struct WarpOptionsCloser {
  void operator()(GDALWarpOptions* options) const { GDALDestroyWarpOptions(options); }
};
using WarpOptionsPtr = std::unique_ptr<GDALWarpOptions, WarpOptionsCloser>;

std::string wktOf(const OGRSpatialReference* system) {
  if (system == nullptr || system->IsEmpty()) return {};
  char* text = nullptr;
  const bool exported = system->exportToWkt(&text) == OGRERR_NONE && text != nullptr;
  std::string wkt = exported ? text : "";
  CPLFree(text);
  return wkt;
}

bool isInSystem(GDALDataset& dataset, const std::string& srsWkt) {
  const std::string own = wktOf(dataset.GetSpatialRef());
  return own.empty() || srsWkt.empty() || own == srsWkt;
}

// A separate band marks the pixels, since any value may occur in the raster itself.
WarpOptionsPtr warpOptions(GDALDataset& dataset) {
  WarpOptionsPtr options(GDALCreateWarpOptions());
  GDALWarpInitDefaultBandMapping(options.get(), dataset.GetRasterCount());
  options->nDstAlphaBand = dataset.GetRasterCount() + 1;
  options->papszWarpOptions = CSLSetNameValue(options->papszWarpOptions, "INIT_DEST", "0");
  options->hSrcDS = GDALDataset::ToHandle(&dataset);
  options->eResampleAlg = GRA_NearestNeighbour;
  return options;
}

// Pixel for pixel, when the raster is mirrored or turned by a right angle.
DatasetPtr turned(GDALDataset& dataset, const GeoTransform& transform) {
  const Bounds extent = envelopeOf(transform, dataset.GetRasterXSize(), dataset.GetRasterYSize());
  const PixelSize pixel = northUpPixelSize(transform, dataset.GetRasterXSize(), dataset.GetRasterYSize());
  const std::int64_t columns = pixelCount(extent.xMax - extent.xMin, pixel.across);
  const std::int64_t rows = pixelCount(extent.yMax - extent.yMin, pixel.down);
  if (std::max(columns, rows) > std::numeric_limits<int>::max()) return nullptr;
  GeoTransform grid = {extent.xMin, (extent.xMax - extent.xMin) / static_cast<double>(columns),
                       0,           extent.yMax,
                       0,           (extent.yMin - extent.yMax) / static_cast<double>(rows)};
  const WarpOptionsPtr options = warpOptions(dataset);
  options->pTransformerArg = GDALCreateGenImgProjTransformer2(options->hSrcDS, nullptr, nullptr);
  if (options->pTransformerArg == nullptr) return nullptr;
  options->pfnTransformer = GDALGenImgProjTransform;
  GDALSetGenImgProjTransformerDstGeoTransform(options->pTransformerArg, grid.data());
  return DatasetPtr(GDALDataset::FromHandle(GDALCreateWarpedVRT(
      options->hSrcDS, static_cast<int>(columns), static_cast<int>(rows), grid.data(), options.get())));
}

// Nearest keeps all values; better resampling happens when the pixels are fitted to a grid.
DatasetPtr reprojected(GDALDataset& dataset, const std::string& srsWkt) {
  const WarpOptionsPtr options = warpOptions(dataset);
  const bool knowsSystem =
      !wktOf(dataset.GetSpatialRef()).empty() || !wktOf(dataset.GetGCPSpatialRef()).empty();
  const bool changesSystem = knowsSystem && !srsWkt.empty();
  constexpr double errorInPixels = 0.125;
  return DatasetPtr(GDALDataset::FromHandle(
      GDALAutoCreateWarpedVRT(options->hSrcDS, nullptr, changesSystem ? srsWkt.c_str() : nullptr,
                              GRA_NearestNeighbour, errorInPixels, options.get())));
}

std::string definitionOf(GDALDataset& virtualRaster) {
  char** texts = virtualRaster.GetMetadata("xml:VRT");
  return texts != nullptr && texts[0] != nullptr ? texts[0] : "";
}

[[noreturn]] void fail(const std::filesystem::path& file, const GdalScope& scope) {
  throw RuntimeFailure("The source raster " + utf8FromAny(file.string()) +
                       " cannot be read: " + utf8FromAny(scope.firstFailure("it is no raster")));
}

DatasetPtr opened(const std::filesystem::path& file, const std::string& name, const GdalScope& scope) {
  DatasetPtr dataset = openRaster(name);
  if (!dataset || dataset->GetRasterCount() == 0) fail(file, scope);
  return dataset;
}

// Opens the virtual raster again from its definition: the present one needs its source to stay open.
void replaceBy(NorthUpRaster& raster, DatasetPtr turnedRaster, const std::filesystem::path& file,
               const GdalScope& scope) {
  if (!turnedRaster) fail(file, scope);
  raster.name = maskedByLastBandName(definitionOf(*turnedRaster));
  turnedRaster.reset();
  raster.dataset = opened(file, raster.name, scope);
  raster.plainName.clear();
  raster.isTurned = true;
  raster.hasHoles = true;
}

void leaveOutHoles(NorthUpRaster& raster, const std::filesystem::path& file, std::optional<double> noData,
                   const GdalScope& scope) {
  raster.noData = noDataOf(*raster.dataset, noData);
  raster.hasHoles = hasHoles(*raster.dataset, noData);
  if (!raster.hasHoles) return;
  if (hasMaskOfItsOwn(*raster.dataset)) raster.plainName.clear();
  raster.name = maskedName(raster.name, noData);
  raster.dataset = opened(file, raster.name, scope);
}

}  // namespace

NorthUpRaster openNorthUp(const std::filesystem::path& file, const std::string& srsWkt,
                          std::optional<double> noData) {
  const GdalScope scope;
  const std::string name = libraryName(file);
  NorthUpRaster raster{name, name, opened(file, name, scope), {}, false, false, {}};
  leaveOutHoles(raster, file, noData, scope);
  GDALDataset& dataset = *raster.dataset;
  GeoTransform transform{};
  const bool isPlaced = readGeoTransform(dataset, transform);
  if (!isPlaced) transform = {0, 1, 0, static_cast<double>(dataset.GetRasterYSize()), 0, -1};
  if (!isInSystem(dataset, srsWkt) || (!isPlaced && dataset.GetGCPCount() > 2)) {
    replaceBy(raster, reprojected(dataset, srsWkt), file, scope);
  } else if (!isNorthUp(transform)) {
    replaceBy(raster, turned(dataset, transform), file, scope);
  }
  if (raster.isTurned && !readGeoTransform(*raster.dataset, transform)) fail(file, scope);
  raster.extent = envelopeOf(transform, raster.dataset->GetRasterXSize(), raster.dataset->GetRasterYSize());
  return raster;
}

double emptyValue(GDALDataType type) {
  if (type == GDT_Float32 || type == GDT_Float64) return std::numeric_limits<double>::quiet_NaN();
  if (type == GDT_Int16) return std::numeric_limits<std::int16_t>::min();
  if (type == GDT_Int32) return std::numeric_limits<std::int32_t>::min();
  return 0;
}

}  // namespace vlclientui::client
