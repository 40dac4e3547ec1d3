#include "client/mapping/ServiceColors.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include <gdal_priv.h>

#include "client/drawing/Drawing.h"
#include "client/mapping/BandWords.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/StretchChoice.h"
#include "client/mapping/ValueSample.h"
#include "client/raster/GdalScope.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostSources = 8;

std::optional<ValueSpan> typeSpanOf(GDALRasterBand& band) {
  const GDALDataType type = band.GetRasterDataType();
  if (GDALDataTypeIsInteger(type) == 0 || GDALDataTypeIsComplex(type) != 0) return std::nullopt;
  const char* const told = band.GetMetadataItem("NBITS", "IMAGE_STRUCTURE");
  const int bits = told != nullptr ? std::atoi(told) : GDALGetDataTypeSizeBits(type);
  if (bits < 1 || bits > 32) return std::nullopt;
  if (GDALDataTypeIsSigned(type) != 0)
    return ValueSpan{-std::ldexp(1, bits - 1), std::ldexp(1, bits - 1) - 1};
  return ValueSpan{0, std::ldexp(1, bits) - 1};
}

const OpenRaster& modelOf(const Drawing& drawing, RasterHandles& handles) {
  const ImageSource& first = drawing.service->sources.front();
  const OpenRaster* const model = handles.raster(*drawing.service, first);
  if (model == nullptr) throw RuntimeFailure("The source raster " + first.shownName() + " cannot be read");
  return *model;
}

// Sources from all over the order.
std::vector<std::size_t> someOf(const std::vector<std::size_t>& order) {
  const std::size_t count = std::min(order.size(), mostSources);
  std::vector<std::size_t> some;
  for (std::size_t i = 0; i < count; ++i) some.push_back(order[i * order.size() / count]);
  return some;
}

// Of one band, by itself: how steep the ground is, is told of the first one alone. Sources that cannot be
// read tell nothing. Nothing when it was given up.
std::optional<ValueSample> sampleOf(const Drawing& drawing, const std::vector<int>& model, int band,
                                    RasterHandles& handles) {
  ValueSample sample(1);
  const auto some = someOf(drawing.order);
  for (const std::size_t i : some) {
    if (WaitScope::isGivenUp()) return std::nullopt;
    const OpenRaster* const raster = handles.raster(*drawing.service, drawing.service->sources[i]);
    const auto read = raster != nullptr ? sourceBandsOf(*raster, model, {band}) : std::nullopt;
    if (!read || read->palette != nullptr) continue;
    if (sample.add(*raster, *read, some.size()) == ReadingEnd::GivenUp) return std::nullopt;
  }
  return sample;
}

ServiceWords wordsOf(const OpenRaster& model) {
  ServiceWords words;
  for (const int number : model.colors) {
    GDALRasterBand& band = *model.dataset->GetRasterBand(number);
    words.bands.push_back({number, bandName(band, number), typeSpanOf(band)});
  }
  if (model.palette != nullptr)
    words.classes = classesOf(*model.dataset->GetRasterBand(words.bands.front().number));
  return words;
}

}  // namespace

ServiceWords serviceWordsOf(const Drawing& drawing) {
  const GdalScope scope;
  RasterHandles handles;
  return wordsOf(modelOf(drawing, handles));
}

std::optional<ServiceColors> serviceColorsOf(const Drawing& drawing) {
  const GdalScope scope;
  RasterHandles handles;
  const OpenRaster& model = modelOf(drawing, handles);
  ServiceColors colors{wordsOf(model), model.palette != nullptr, {}};
  const auto decided = chosenStretch(drawing, handles);
  if (!decided) return std::nullopt;
  colors.decided = *decided;
  return colors;
}

std::optional<std::vector<BandSpread>> spreadsOf(const Drawing& drawing, const std::vector<int>& bands) {
  const GdalScope scope;
  RasterHandles handles;
  const std::vector<int> model = modelOf(drawing, handles).colors;
  std::vector<BandSpread> spreads;
  for (const int band : bands) {
    const auto sample = sampleOf(drawing, model, band, handles);
    if (!sample) return std::nullopt;
    const auto usual = sample->range(0, 0.02, 0.98);
    const auto whole = sample->range(0, 0, 1);
    const auto slopes = sample->slopes();
    spreads.push_back({{usual.low, usual.high}, {whole.low, whole.high}, slopes.steepness, slopes.roughness});
  }
  return spreads;
}

}  // namespace vlclientui::client
