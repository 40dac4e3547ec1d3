#pragma once

#include <cstddef>
#include <string>

#include <gdal_proxy.h>

#include "client/raster/SteppedReading.h"

namespace vlclientui::client {

/// Wraps a raster for a writer that would read a lot at once and could not be canceled meanwhile: reads in
/// steps.
class SteppedRaster : public GDALProxyDataset {
 public:
  /// @param raster must outlive this object. @param stepBytes as for readInSteps.
  /// @param progress counts the whole raster, if each pixel is read once; returning false makes reading fail.
  /// @param keeper gives and gets what is read; may be null.
  SteppedRaster(GDALDataset& raster, std::size_t stepBytes, ReadProgress progress,
                StepKeeper* keeper = nullptr);
  ~SteppedRaster() override;

  /// Why reading failed, readable; empty when it did not.
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
  StepKeeper* keeper_;
  double read_ = 0;  ///< of the whole raster, 0 to 1
  std::string failure_;
};

}  // namespace vlclientui::client
