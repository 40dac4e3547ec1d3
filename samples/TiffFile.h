#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gdal_priv.h>

namespace vlclientui::samples {

/// The samples could not be made.
class SampleFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct DatasetCloser {
  void operator()(GDALDataset* dataset) const { GDALClose(GDALDataset::ToHandle(dataset)); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, DatasetCloser>;

struct TiffLayout {
  int width = 0;
  int height = 0;
  int bands = 1;
  GDALDataType type = GDT_Byte;
  std::vector<std::string> options;  ///< of creation, beside tiling and compression
};

using Metadata = std::vector<std::pair<const char*, std::string>>;

/// A tiled, compressed GeoTIFF under construction. Every failure is a SampleFailure.
class TiffFile {
 public:
  TiffFile(const std::string& path, const TiffLayout& layout);

  /// North up, square cells; the corner is the outer one in the north-west.
  void place(double west, double north, double cellSize, int epsg);
  void describe(const Metadata& items);
  template <class Value>
  void write(int band, const std::vector<Value>& values) {
    writeRaw(band, values.data(), values.size() * sizeof(Value));
  }
  void addOverviews(const char* resampling);
  /// Flushes all to the file.
  void close();

  [[nodiscard]] GDALDataset& dataset() { return *dataset_; }
  [[nodiscard]] GDALRasterBand& band(int number) { return *dataset_->GetRasterBand(number); }

 private:
  void writeRaw(int band, const void* values, std::size_t bytes);

  std::string path_;
  DatasetPtr dataset_;
};

}  // namespace vlclientui::samples
