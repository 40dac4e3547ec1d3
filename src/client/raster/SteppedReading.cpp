#include "client/raster/SteppedReading.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <gdal_priv.h>

#include "client/raster/StepKeeper.h"
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

std::size_t sampleBytes(const PixelTarget& target) {
  return static_cast<std::size_t>(GDALGetDataTypeSizeBytes(target.type));
}

std::string nameOf(const Window& part, const PixelTarget& target) {
  std::string name = target.part == PixelPart::Mask ? "mask" : "values";
  for (const int number : {part.x, part.y, part.width, part.height}) name += ' ' + std::to_string(number);
  name += std::string(" ") + GDALGetDataTypeName(target.type);
  for (int band = 0; band < target.bandCount; ++band)
    name += ' ' + std::to_string(target.bands == nullptr ? band + 1 : target.bands[band]);
  return name;
}

// A target of its own for a part, without gaps.
PixelTarget packed(const Window& part, const PixelTarget& target, std::byte* values) {
  PixelTarget own = target;
  own.values = values;
  own.pixelStep = static_cast<GSpacing>(sampleBytes(target));
  own.lineStep = own.pixelStep * part.width;
  own.bandStep = own.lineStep * part.height;
  return own;
}

void copyPart(const Window& part, const PixelTarget& from, const PixelTarget& to) {
  for (int band = 0; band < to.bandCount; ++band) {
    for (int row = 0; row < part.height; ++row) {
      const std::byte* source = from.values + band * from.bandStep + row * from.lineStep;
      std::byte* target = to.values + band * to.bandStep + row * to.lineStep;
      GDALCopyWords(source, from.type, static_cast<int>(from.pixelStep), target, to.type,
                    static_cast<int>(to.pixelStep), part.width);
    }
  }
}

class Reading {
 public:
  Reading(GDALDataset& raster, const Window& whole, const PixelTarget& target, const ReadProgress& progress,
          StepKeeper* keeper)
      : raster_(raster), whole_(whole), target_(target), progress_(progress), keeper_(keeper) {}

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
    PixelTarget place = target_;
    place.values += (part.y - whole_.y) * target_.lineStep + (part.x - whole_.x) * target_.pixelStep;
    if (keeper_ == nullptr ? !read(part, place) : !readKept(part, place)) return false;
    done_ += stepPixels_;
    return tell(done_);
  }

  bool readKept(const Window& part, const PixelTarget& place) {
    std::vector<std::byte> pixels(
        product(product(product(sampleBytes(target_), part.width), part.height), target_.bandCount));
    const PixelTarget own = packed(part, target_, pixels.data());
    const std::string name = nameOf(part, target_);
    if (!keeper_->find(name, pixels) && !(read(part, own) && keeper_->keep(name, pixels))) return false;
    copyPart(part, own, place);
    return true;
  }

  bool read(const Window& part, const PixelTarget& place) {
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.pfnProgress = tellWithin;
    extra.pProgressData = this;
    if (place.part == PixelPart::Mask) {
      return raster_.GetRasterBand(1)->GetMaskBand()->RasterIO(
                 GF_Read, part.x, part.y, part.width, part.height, place.values, part.width, part.height,
                 place.type, place.pixelStep, place.lineStep, &extra) == CE_None;
    }
    return raster_.RasterIO(GF_Read, part.x, part.y, part.width, part.height, place.values, part.width,
                            part.height, place.type, place.bandCount, place.bands, place.pixelStep,
                            place.lineStep, place.bandStep, &extra) == CE_None;
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
  StepKeeper* keeper_;
  double done_ = 0;
  double stepPixels_ = 0;
  double most_ = 0;
  Clock::time_point told_ = Clock::now();
};

}  // namespace

bool readInSteps(GDALDataset& raster, const Window& window, const PixelTarget& target, std::size_t stepBytes,
                 const ReadProgress& progress, StepKeeper* keeper) {
  return Reading(raster, window, target, progress, keeper).run(window, stepBytes);
}

}  // namespace vlclientui::client
