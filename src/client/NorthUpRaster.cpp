#include "client/NorthUpRaster.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>

#include <gdalwarper.h>
#include <ogr_spatialref.h>

#include "client/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using GeoTransform = std::array<double, 6>;

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

bool isFinite(const GeoTransform& transform) {
  for (const double part : transform) {
    if (!std::isfinite(part)) return false;
  }
  return std::hypot(transform[1], transform[4]) > 0;
}

bool hasTransform(GDALDataset& dataset, GeoTransform& transform) {
  return dataset.GetGeoTransform(transform.data()) == CE_None && isFinite(transform);
}

bool isNorthUp(const GeoTransform& transform) {
  return transform[2] == 0 && transform[4] == 0 && transform[1] > 0 && transform[5] < 0;
}

Bounds extentOf(GDALDataset& dataset, const GeoTransform& transform) {
  return {transform[0], transform[3] + transform[5] * dataset.GetRasterYSize(),
          transform[0] + transform[1] * dataset.GetRasterXSize(), transform[3]};
}

bool isInSystem(GDALDataset& dataset, const std::string& srsWkt) {
  const std::string own = wktOf(dataset.GetSpatialRef());
  return own.empty() || srsWkt.empty() || own == srsWkt;
}

std::optional<double> noDataOf(GDALDataset& dataset) {
  int isSet = 0;
  const double value = dataset.GetRasterBand(1)->GetNoDataValue(&isSet);
  return isSet != 0 ? std::optional<double>(value) : std::nullopt;
}

double* repeated(double value, int count) {
  auto* values = static_cast<double*>(CPLMalloc(sizeof(double) * static_cast<std::size_t>(count)));
  for (int i = 0; i < count; ++i) values[i] = value;
  return values;
}

WarpOptionsPtr warpOptions(GDALDataset& dataset, std::optional<double> declared, double empty) {
  WarpOptionsPtr options(GDALCreateWarpOptions());
  const int bands = dataset.GetRasterCount();
  if (declared) options->padfSrcNoDataReal = repeated(*declared, bands);
  options->padfDstNoDataReal = repeated(empty, bands);
  options->papszWarpOptions = CSLSetNameValue(options->papszWarpOptions, "INIT_DEST", "NO_DATA");
  options->papszWarpOptions = CSLSetNameValue(options->papszWarpOptions, "UNIFIED_SRC_NODATA", "YES");
  return options;
}

// Nearest keeps every value what it was; a finer choice is made where the pixels are fitted to a grid.
DatasetPtr turned(GDALDataset& dataset, const std::string& srsWkt, std::optional<double> declared,
                  double empty) {
  const WarpOptionsPtr options = warpOptions(dataset, declared, empty);
  const bool sameSystem = isInSystem(dataset, srsWkt);
  constexpr double errorInPixels = 0.125;
  DatasetPtr result(GDALDataset::FromHandle(
      GDALAutoCreateWarpedVRT(GDALDataset::ToHandle(&dataset), nullptr, sameSystem ? nullptr : srsWkt.c_str(),
                              GRA_NearestNeighbour, errorInPixels, options.get())));
  if (!result) return result;
  for (int band = 1; band <= result->GetRasterCount(); ++band) {
    result->GetRasterBand(band)->SetNoDataValue(empty);
  }
  return result;
}

std::string definitionOf(GDALDataset& virtualRaster) {
  char** texts = virtualRaster.GetMetadata("xml:VRT");
  return texts != nullptr && texts[0] != nullptr ? texts[0] : "";
}

[[noreturn]] void fail(const std::filesystem::path& file, const GdalScope& scope) {
  throw RuntimeFailure("The source raster " + utf8FromAny(file.string()) +
                       " cannot be read: " + utf8FromAny(scope.firstFailure("it is no raster")));
}

// The virtual raster is opened anew from its definition, as the one at hand needs the source to stay open.
NorthUpRaster turnedRaster(const std::filesystem::path& file, DatasetPtr dataset, const std::string& srsWkt,
                           std::optional<double> declared, const GdalScope& scope) {
  const double empty = declared.value_or(emptyValue(dataset->GetRasterBand(1)->GetRasterDataType()));
  DatasetPtr virtualRaster = turned(*dataset, srsWkt, declared, empty);
  if (!virtualRaster) fail(file, scope);
  const std::string name = definitionOf(*virtualRaster);
  virtualRaster.reset();
  NorthUpRaster raster{name, openRaster(name), {}, true, empty};
  GeoTransform transform{};
  if (!raster.dataset || !hasTransform(*raster.dataset, transform)) fail(file, scope);
  raster.extent = extentOf(*raster.dataset, transform);
  return raster;
}

}  // namespace

NorthUpRaster openNorthUp(const std::filesystem::path& file, const std::string& srsWkt,
                          std::optional<double> noData) {
  const GdalScope scope;
  DatasetPtr dataset = openRaster(file.string());
  if (!dataset || dataset->GetRasterCount() == 0) fail(file, scope);
  const auto declared = noData ? noData : noDataOf(*dataset);
  GeoTransform transform{};
  const bool isPlaced = hasTransform(*dataset, transform);
  if (!isPlaced && dataset->GetGCPCount() > 2)
    return turnedRaster(file, std::move(dataset), srsWkt, declared, scope);
  if (!isPlaced) transform = {0, 1, 0, static_cast<double>(dataset->GetRasterYSize()), 0, -1};
  if (!isNorthUp(transform) || !isInSystem(*dataset, srsWkt)) {
    return turnedRaster(file, std::move(dataset), srsWkt, declared, scope);
  }
  const Bounds extent = extentOf(*dataset, transform);
  return {file.string(), std::move(dataset), extent, false, declared};
}

double emptyValue(GDALDataType type) {
  if (type == GDT_Float32 || type == GDT_Float64) return std::numeric_limits<double>::quiet_NaN();
  if (type == GDT_Int16) return std::numeric_limits<std::int16_t>::min();
  if (type == GDT_Int32) return std::numeric_limits<std::int32_t>::min();
  return 0;
}

}  // namespace vlclientui::client
