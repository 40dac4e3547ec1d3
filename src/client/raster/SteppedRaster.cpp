#include "client/raster/SteppedRaster.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

class Band : public GDALProxyRasterBand {
 public:
  Band(GDALDataset& owner, GDALRasterBand& band, int number) : band_(band) {
    poDS = &owner;
    nBand = number;
    eDataType = band.GetRasterDataType();
    nRasterXSize = band.GetXSize();
    nRasterYSize = band.GetYSize();
    band.GetBlockSize(&nBlockXSize, &nBlockYSize);
    if (band.GetMaskFlags() == GMF_PER_DATASET) allValid_ = std::make_unique<GDALAllValidMaskBand>(this);
  }

  // The mask is written separately; the format's writer must not copy it.
  GDALRasterBand* GetMaskBand() override {
    return allValid_ ? allValid_.get() : GDALProxyRasterBand::GetMaskBand();
  }
  int GetMaskFlags() override { return allValid_ ? GMF_ALL_VALID : GDALProxyRasterBand::GetMaskFlags(); }

 protected:
  GDALRasterBand* RefUnderlyingRasterBand() const override { return &band_; }

 private:
  GDALRasterBand& band_;
  std::unique_ptr<GDALRasterBand> allValid_;  ///< in place of a mask; null for none
};

}  // namespace

SteppedRaster::SteppedRaster(GDALDataset& raster, std::size_t stepBytes, ReadProgress progress,
                             StepKeeper* keeper)
    : raster_(raster), stepBytes_(stepBytes), progress_(std::move(progress)), keeper_(keeper) {
  nRasterXSize = raster.GetRasterXSize();
  nRasterYSize = raster.GetRasterYSize();
  for (int band = 1; band <= raster.GetRasterCount(); ++band) {
    SetBand(band, new Band(*this, *raster.GetRasterBand(band), band));
  }
}

SteppedRaster::~SteppedRaster() = default;

GDALDataset* SteppedRaster::RefUnderlyingDataset() const { return &raster_; }

CPLErr SteppedRaster::IRasterIO(GDALRWFlag direction, int x, int y, int width, int height, void* values,
                                int bufferWidth, int bufferHeight, GDALDataType type, int bandCount,
                                int* bands, GSpacing pixelStep, GSpacing lineStep, GSpacing bandStep,
                                GDALRasterIOExtraArg* extra) {
  if (direction != GF_Read || bufferWidth != width || bufferHeight != height) {
    return GDALProxyDataset::IRasterIO(direction, x, y, width, height, values, bufferWidth, bufferHeight,
                                       type, bandCount, bands, pixelStep, lineStep, bandStep, extra);
  }
  const PixelTarget target{
      static_cast<std::byte*>(values), type, bandCount, bands, pixelStep, lineStep, bandStep};
  const double part = static_cast<double>(width) / nRasterXSize * height / nRasterYSize * bandCount / nBands;
  const auto tell = [&](double share) { return progress_(std::min(1.0, read_ + share * part)); };
  const GdalScope scope;
  const bool isRead = readInSteps(raster_, {x, y, width, height}, target, stepBytes_, tell, keeper_);
  read_ += part;
  if (!isRead) failure_ = scope.readFailure();
  return isRead ? CE_None : CE_Failure;
}

}  // namespace vlclientui::client
