#pragma once

#include <cstddef>
#include <string>

#include <gdal_proxy.h>

#include "client/raster/SteppedReading.h"

namespace vlclientui::client {

/// Another raster, read in steps by a writer of the raster library that would ask for much at once and be
/// deaf meanwhile.
class SteppedRaster : public GDALProxyDataset {
 public:
  /// @param raster must outlive this object. @param stepBytes as of readInSteps.
  /// @param progress of the whole raster, provided that each pixel is read once; false makes reading fail.
  SteppedRaster(GDALDataset& raster, std::size_t stepBytes, ReadProgress progress);
  ~SteppedRaster() override;

  /// Why it could not be read, for a person; empty when it could.
  [[nodiscard]] const std::string& failure() const { return failure_; }

 protected:
  GDALDataset* RefUnderlyingDataset() const override;
  CPLErr IRasterIO(GDALRWFlag direction, int x, int y, int width, int height, void* values, int bufferWidth,
                   int bufferHeight, GDALDataType type, int bandCount, int* bands, GSpacing pixelStep,
                   GSpacing lineStep, GSpacing bandStep, GDALRasterIOExtraArg* extra) override;

 private:
  GDALDataset& raster_;
  std::size_t stepBytes_;
  ReadProgress progress_;
  double read_ = 0;  ///< share of the whole raster
  std::string failure_;
};

}  // namespace vlclientui::client
