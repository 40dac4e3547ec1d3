#include "client/raster/SteppedReading.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <gdal_priv.h>

#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto pause = std::chrono::milliseconds(100);

std::pair<Window, Window> halves(const Window& window) {
  if (window.height > 1) {
    const int upper = window.height / 2;
    return {{window.x, window.y, window.width, upper},
            {window.x, window.y + upper, window.width, window.height - upper}};
  }
  const int left = window.width / 2;
  return {{window.x, window.y, left, 1}, {window.x + left, window.y, window.width - left, 1}};
}

double pixelsOf(const Window& window) { return static_cast<double>(window.width) * window.height; }

class Reading {
 public:
  Reading(GDALDataset& raster, const Window& whole, const PixelTarget& target, const ReadProgress& progress)
      : raster_(raster), whole_(whole), target_(target), progress_(progress) {}

  bool run(const Window& part, std::size_t stepBytes) {
    const double bytes = pixelsOf(part) * target_.bandCount * GDALGetDataTypeSizeBytes(target_.type);
    const bool isStep = bytes <= static_cast<double>(stepBytes) || (part.width == 1 && part.height == 1);
    if (isStep) return step(part);
    const auto [first, second] = halves(part);
    return run(first, stepBytes) && run(second, stepBytes);
  }

 private:
  bool step(const Window& part) {
    stepPixels_ = pixelsOf(part);
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.pfnProgress = tellWithin;
    extra.pProgressData = this;
    std::byte* values =
        target_.values + (part.y - whole_.y) * target_.lineStep + (part.x - whole_.x) * target_.pixelStep;
    if (read(part, values, extra) != CE_None) return false;
    done_ += stepPixels_;
    return tell(done_);
  }

  CPLErr read(const Window& part, std::byte* values, GDALRasterIOExtraArg& extra) {
    if (target_.part == PixelPart::Mask) {
      return raster_.GetRasterBand(1)->GetMaskBand()->RasterIO(
          GF_Read, part.x, part.y, part.width, part.height, values, part.width, part.height, target_.type,
          target_.pixelStep, target_.lineStep, &extra);
    }
    return raster_.RasterIO(GF_Read, part.x, part.y, part.width, part.height, values, part.width, part.height,
                            target_.type, target_.bandCount, target_.bands, target_.pixelStep,
                            target_.lineStep, target_.bandStep, &extra);
  }

  // GDAL may count from 0 again for each band or source.
  bool tell(double pixels) {
    told_ = Clock::now();
    most_ = std::max(most_, std::min(1.0, pixels / pixelsOf(whole_)));
    return progress_(most_) && !WaitScope::isGivenUp();
  }

  static int CPL_STDCALL tellWithin(double share, const char* /*message*/, void* data) {
    auto& self = *static_cast<Reading*>(data);
    if (Clock::now() - self.told_ < pause) return TRUE;
    return self.tell(self.done_ + share * self.stepPixels_) ? TRUE : FALSE;
  }

  GDALDataset& raster_;
  const Window& whole_;
  const PixelTarget& target_;
  const ReadProgress& progress_;
  double done_ = 0;
  double stepPixels_ = 0;
  double most_ = 0;
  Clock::time_point told_ = Clock::now();
};

}  // namespace

bool readInSteps(GDALDataset& raster, const Window& window, const PixelTarget& target, std::size_t stepBytes,
                 const ReadProgress& progress) {
  return Reading(raster, window, target, progress).run(window, stepBytes);
}

}  // namespace vlclientui::client
