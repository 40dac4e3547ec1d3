#include "client/mapping/PatchReading.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <gdal_priv.h>

#include "client/raster/GiveUp.h"

namespace vlclientui::client {
namespace {

// What of a level is read, into so many pixels.
struct Extract {
  Window window;
  int columns;
  int rows;

  [[nodiscard]] std::size_t size() const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  }
};

bool readBand(GDALRasterBand& band, const Extract& extract, void* first, GDALDataType type, GSpacing step) {
  const Window& window = extract.window;
  GDALRasterIOExtraArg extra;
  INIT_RASTERIO_EXTRA_ARG(extra);
  extra.pfnProgress = untilGivenUp;
  return band.RasterIO(GF_Read, window.x, window.y, window.width, window.height, first, extract.columns,
                       extract.rows, type, step, step * extract.columns, &extra) == CE_None;
}

bool readTogether(GDALDataset& all, const Extract& extract, std::vector<int> bands, void* first,
                  GDALDataType type) {
  const Window& window = extract.window;
  GDALRasterIOExtraArg extra;
  INIT_RASTERIO_EXTRA_ARG(extra);
  extra.pfnProgress = untilGivenUp;
  const GSpacing size = GDALGetDataTypeSizeBytes(type);
  const auto step = size * static_cast<GSpacing>(bands.size());
  return all.RasterIO(GF_Read, window.x, window.y, window.width, window.height, first, extract.columns,
                      extract.rows, type, static_cast<int>(bands.size()), bands.data(), step,
                      step * extract.columns, size, &extra) == CE_None;
}

// Pixel by pixel, all bands together.
bool readBands(const RasterLevel& level, const Extract& extract, const std::vector<int>& bands, void* first,
               GDALDataType type) {
  if (level.together != nullptr && bands.size() > 1) {
    return readTogether(*level.together, extract, bands, first, type);
  }
  const GSpacing size = GDALGetDataTypeSizeBytes(type);
  for (std::size_t i = 0; i < bands.size(); ++i) {
    auto* const begin = static_cast<std::byte*>(first) + i * static_cast<std::size_t>(size);
    GDALRasterBand& band = *level.bands[static_cast<std::size_t>(bands[i]) - 1];
    if (!readBand(band, extract, begin, type, size * static_cast<GSpacing>(bands.size()))) return false;
  }
  return true;
}

bool leaveOutMaskedBy(GDALRasterBand& maskBand, const Extract& extract, std::vector<std::uint8_t>& alpha) {
  std::vector<std::uint8_t> mask(alpha.size());
  if (!readBand(maskBand, extract, mask.data(), GDT_Byte, 1)) return false;
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if (mask[i] == 0) alpha[i] = 0;
  }
  return true;
}

// One piece of a level.
class Piece {
 public:
  Piece(const OpenRaster& raster, const RasterLevel& level, const Extract& window,
        const std::vector<int>& bands, LevelPixels& pixels)
      : raster_(raster), level_(level), window_(window), bands_(bands), pixels_(pixels) {
    if (raster.alpha != 0) bands_.push_back(raster.alpha);
    pixels.stride = static_cast<int>(bands_.size());
    pixels.samples.resize(window.size() * bands_.size());
    pixels.alpha.assign(window.size(), 255);
  }

  bool read() { return readSamples() && leaveOutEmpty() && leaveOutMasked() && takeAlpha() && mendSamples(); }

 private:
  [[nodiscard]] GDALRasterBand& band(int number) const {
    return *level_.bands[static_cast<std::size_t>(number) - 1];
  }

  bool readSamples() { return readBands(level_, window_, bands_, pixels_.samples.data(), GDT_Float32); }

  // Holes are where every band that has a value for them holds it; most often a band that is shown tells.
  bool leaveOutEmpty() {
    if (!hasAnyNoData(raster_.noData)) return true;
    std::vector<std::uint8_t>& alpha = pixels_.alpha;
    std::ranges::fill(alpha, std::uint8_t{0});
    std::vector<float> others;
    for (std::size_t i = 0; i < raster_.colors.size(); ++i) {
      if (!raster_.noData[i]) continue;
      if (std::ranges::find(alpha, 0) == alpha.end()) return true;
      const auto empty = static_cast<float>(*raster_.noData[i]);
      const auto shown = std::ranges::find(bands_, raster_.colors[i]);
      if (shown != bands_.end()) {
        markData(pixels_.samples.data() + (shown - bands_.begin()), bands_.size(), empty);
        continue;
      }
      others.resize(alpha.size());
      if (!readBand(band(raster_.colors[i]), window_, others.data(), GDT_Float32, sizeof(float)))
        return false;
      markData(others.data(), 1, empty);
    }
    return true;
  }

  void markData(const float* sample, std::size_t step, float empty) {
    const bool isNone = std::isnan(empty);
    for (std::uint8_t& alpha : pixels_.alpha) {
      if (isNone ? !std::isnan(*sample) : *sample != empty) alpha = 255;
      sample += step;
    }
  }

  bool leaveOutMasked() {
    return !raster_.hasOwnMask || leaveOutMaskedBy(*band(1).GetMaskBand(), window_, pixels_.alpha);
  }

  bool takeAlpha() {
    if (raster_.alpha == 0) return true;
    const float* sample = pixels_.samples.data() + (bands_.size() - 1);
    for (std::uint8_t& alpha : pixels_.alpha) {
      const float share = *sample * 255.0F / static_cast<float>(raster_.opaque);
      sample += bands_.size();
      if (alpha == 0 || !(share > 0)) {
        alpha = 0;
      } else {
        alpha = static_cast<std::uint8_t>(std::clamp(share + 0.5F, 1.0F, 255.0F));
      }
    }
    return true;
  }

  // A pixel without any number is a hole, however opaque; one band without is none.
  bool mendSamples() {
    const GDALDataType type = band(1).GetRasterDataType();
    if (GDALDataTypeIsFloating(type) == 0) return true;
    const std::size_t values = bands_.size() - (raster_.alpha != 0 ? 1 : 0);
    float* sample = pixels_.samples.data();
    for (std::uint8_t& alpha : pixels_.alpha) {
      bool isAny = false;
      for (std::size_t i = 0; i < bands_.size(); ++i, ++sample) {
        if (std::isfinite(*sample)) {
          isAny = isAny || i < values;
        } else {
          *sample = 0;
        }
      }
      if (!isAny) alpha = 0;
    }
    return true;
  }

  const OpenRaster& raster_;
  const RasterLevel& level_;
  const Extract window_;
  std::vector<int> bands_;
  LevelPixels& pixels_;
};

}  // namespace

bool readLevel(const OpenRaster& raster, const RasterLevel& level, const Window& window,
               const std::vector<int>& bands, LevelPixels& pixels, int every) {
  // The library asks between blocks only.
  if (untilGivenUp(0, nullptr, nullptr) == 0) return false;
  const Extract extract{window, (window.width + every - 1) / every, (window.height + every - 1) / every};
  return Piece(raster, level, extract, bands, pixels).read();
}

bool areBytes(const OpenRaster& raster, const std::vector<int>& bands) {
  if (raster.alpha != 0 || hasAnyNoData(raster.noData)) return false;
  return std::ranges::all_of(bands, [&](int number) {
    return raster.dataset->GetRasterBand(number)->GetRasterDataType() == GDT_Byte;
  });
}

bool readBytes(const OpenRaster& raster, const RasterLevel& level, const Window& window,
               const std::vector<int>& bands, std::vector<std::uint8_t>& bytes,
               std::vector<std::uint8_t>& alpha) {
  if (untilGivenUp(0, nullptr, nullptr) == 0) return false;
  const Extract extract{window, window.width, window.height};
  bytes.resize(extract.size() * bands.size());
  alpha.assign(extract.size(), 255);
  if (!readBands(level, extract, bands, bytes.data(), GDT_Byte)) return false;
  return !raster.hasOwnMask || leaveOutMaskedBy(*level.bands.front()->GetMaskBand(), extract, alpha);
}

}  // namespace vlclientui::client
