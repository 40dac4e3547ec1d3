#include "TiffFile.h"

#include <cpl_error.h>
#include <cpl_string.h>
#include <ogr_spatialref.h>

namespace vlclientui::samples {
namespace {

[[noreturn]] void fail(const std::string& path) { throw SampleFailure(path + ": " + CPLGetLastErrorMsg()); }

CPLStringList creationOptions(const TiffLayout& layout) {
  CPLStringList options;
  options.SetNameValue("TILED", "YES");
  options.SetNameValue("BLOCKXSIZE", "256");
  options.SetNameValue("BLOCKYSIZE", "256");
  options.SetNameValue("COMPRESS", "DEFLATE");
  options.SetNameValue("ZLEVEL", "9");
  for (const std::string& option : layout.options) options.AddString(option.c_str());
  return options;
}

}  // namespace

TiffFile::TiffFile(const std::string& path, const TiffLayout& layout) : path_(path) {
  GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
  if (driver == nullptr) throw SampleFailure("there is no GeoTIFF driver");
  const CPLStringList options = creationOptions(layout);
  dataset_.reset(
      driver->Create(path.c_str(), layout.width, layout.height, layout.bands, layout.type, options.List()));
  if (!dataset_) fail(path_);
}

void TiffFile::place(double west, double north, double cellSize, int epsg) {
  OGRSpatialReference system;
  if (system.importFromEPSG(epsg) != OGRERR_NONE) fail(path_);
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  std::array<double, 6> transform = {west, cellSize, 0, north, 0, -cellSize};
  if (dataset_->SetGeoTransform(transform.data()) != CE_None) fail(path_);
  if (dataset_->SetSpatialRef(&system) != CE_None) fail(path_);
}

void TiffFile::describe(const Metadata& items) {
  for (const auto& [name, value] : items) dataset_->SetMetadataItem(name, value.c_str());
}

void TiffFile::addOverviews(const char* resampling) {
  std::array<int, 2> levels = {2, 4};
  dataset_->FlushCache(false);
  if (dataset_->BuildOverviews(resampling, 2, levels.data(), 0, nullptr, nullptr, nullptr) != CE_None)
    fail(path_);
}

void TiffFile::close() {
  CPLErrorReset();
  dataset_.reset();
  if (CPLGetLastErrorType() >= CE_Failure) fail(path_);
}

void TiffFile::writeRaw(int number, const void* values, std::size_t bytes) {
  const int width = dataset_->GetRasterXSize();
  const int height = dataset_->GetRasterYSize();
  const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const GDALDataType type = band(number).GetRasterDataType();
  if (bytes != cells * static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type))) {
    throw SampleFailure(path_ + ": the values do not fill the band");
  }
  // The library takes pixels to be written through a pointer to non-const, and leaves them as they are.
  if (band(number).RasterIO(GF_Write, 0, 0, width, height, const_cast<void*>(values), width, height, type, 0,
                            0, nullptr) != CE_None) {
    fail(path_);
  }
}

}  // namespace vlclientui::samples
