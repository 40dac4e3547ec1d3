#include "client/drawing/RasterPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

#include <gdal_priv.h>

#include "client/drawing/PictureKind.h"
#include "client/drawing/Relief.h"
#include "client/raster/GiveUp.h"

namespace vlclientui::client {
namespace {

using Pixels = std::vector<std::uint8_t>;

constexpr double lowShare = 0.02;
constexpr double highShare = 0.98;

bool readBand(GDALRasterBand& band, ValueGrid& grid, GDALRIOResampleAlg resampling) {
  GDALRasterIOExtraArg extra;
  INIT_RASTERIO_EXTRA_ARG(extra);
  extra.eResampleAlg = resampling;
  extra.pfnProgress = untilGivenUp;
  return band.RasterIO(GF_Read, 0, 0, band.GetXSize(), band.GetYSize(), grid.values.data(), grid.width,
                       grid.height, GDT_Float32, 0, 0, &extra) == CE_None;
}

bool readMask(GDALRasterBand& band, ValueGrid& grid) {
  if ((band.GetMaskFlags() & GMF_ALL_VALID) != 0) return true;
  GDALRasterBand& mask = *band.GetMaskBand();
  GDALRasterIOExtraArg extra;
  INIT_RASTERIO_EXTRA_ARG(extra);
  extra.pfnProgress = untilGivenUp;
  return mask.RasterIO(GF_Read, 0, 0, mask.GetXSize(), mask.GetYSize(), grid.isValid.data(), grid.width,
                       grid.height, GDT_Byte, 0, 0, &extra) == CE_None;
}

std::optional<ValueGrid> readGrid(GDALRasterBand& band, int width, int height,
                                  GDALRIOResampleAlg resampling) {
  // The library asks between blocks only.
  if (untilGivenUp(0, nullptr, nullptr) == 0) return std::nullopt;
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  ValueGrid grid{width, height, std::vector<float>(count), Pixels(count, 255)};
  if (!readBand(band, grid, resampling) || !readMask(band, grid)) return std::nullopt;
  for (std::size_t i = 0; i < count; ++i) {
    if (std::isfinite(grid.values[i])) continue;
    grid.values[i] = 0;
    grid.isValid[i] = 0;
  }
  return grid;
}

double pixelAspect(GDALDataset& dataset, int width, int height) {
  std::array<double, 6> transform{};
  if (dataset.GetGeoTransform(transform.data()) != CE_None) return 1;
  const double across = std::hypot(transform[1], transform[4]) * dataset.GetRasterXSize() / width;
  const double down = std::hypot(transform[2], transform[5]) * dataset.GetRasterYSize() / height;
  return across > 0 && down > 0 ? down / across : 1;
}

Pixels drawElevation(GDALDataset& dataset, ReliefTint tint, int width, int height) {
  const auto grid = readGrid(*dataset.GetRasterBand(1), width, height, GRIORA_Average);
  if (!grid) return {};
  return drawRelief(*grid, tint, pixelAspect(dataset, width, height));
}

void appendEntry(Pixels& rgba, const GDALColorTable& table, const ValueGrid& grid, std::size_t i) {
  GDALColorEntry entry{0, 0, 0, 0};
  const bool known = table.GetColorEntryAsRGB(static_cast<int>(grid.values[i]), &entry) != 0;
  const bool visible = known && grid.isValid[i] != 0;
  for (const short part : {entry.c1, entry.c2, entry.c3}) rgba.push_back(static_cast<std::uint8_t>(part));
  rgba.push_back(visible ? static_cast<std::uint8_t>(entry.c4) : std::uint8_t{0});
}

Pixels drawPalette(GDALDataset& dataset, const GDALColorTable& table, int width, int height) {
  // The average of two class numbers would be a third class.
  const auto grid = readGrid(*dataset.GetRasterBand(1), width, height, GRIORA_Mode);
  if (!grid) return {};
  Pixels rgba;
  rgba.reserve(grid->size() * 4);
  for (std::size_t i = 0; i < grid->size(); ++i) appendEntry(rgba, table, *grid, i);
  return rgba;
}

// Data of many bits are mostly dark with a few bright spots; lifting the middle shows the ground.
constexpr float lift = 0.72F;

std::uint8_t stretched(float value, const ValueRange& range) {
  const float share = std::clamp((value - range.low) / (range.high - range.low), 0.0F, 1.0F);
  return static_cast<std::uint8_t>(255.0F * std::pow(share, lift) + 0.5F);
}

// One span for all channels keeps the color balance; a floor for each removes haze.
void stretch(std::array<ValueGrid, 3>& channels) {
  std::array<ValueRange, 3> ranges;
  float span = 0;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    ranges[i] = percentileRange(channels[i], lowShare, highShare);
    span = std::max(span, ranges[i].high - ranges[i].low);
  }
  for (std::size_t i = 0; i < channels.size(); ++i) {
    const ValueRange range{ranges[i].low, ranges[i].low + span};
    for (float& value : channels[i].values) value = stretched(value, range);
  }
}

Pixels interleaved(const std::array<ValueGrid, 3>& channels) {
  Pixels rgba;
  rgba.reserve(channels[0].size() * 4);
  for (std::size_t i = 0; i < channels[0].size(); ++i) {
    // A pixel is a hole when all channels are; a no-data value in one of them is a color.
    std::uint8_t alpha = 0;
    for (const ValueGrid& channel : channels) {
      rgba.push_back(static_cast<std::uint8_t>(channel.values[i]));
      alpha = std::max(alpha, channel.isValid[i]);
    }
    rgba.push_back(alpha);
  }
  return rgba;
}

Pixels drawColor(GDALDataset& dataset, const std::array<int, 3>& bands, int width, int height) {
  std::array<ValueGrid, 3> channels;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    auto grid = readGrid(*dataset.GetRasterBand(bands[i]), width, height, GRIORA_Average);
    if (!grid) return {};
    channels[i] = std::move(*grid);
  }
  if (dataset.GetRasterBand(bands[0])->GetRasterDataType() != GDT_Byte) stretch(channels);
  return interleaved(channels);
}

void flipRows(Pixels& rgba, int width, int height) {
  const std::size_t row = static_cast<std::size_t>(width) * 4;
  const auto count = static_cast<std::size_t>(height);
  if (rgba.size() != row * count) return;
  for (std::size_t i = 0; i < count / 2; ++i) {
    const auto top = rgba.begin() + static_cast<std::ptrdiff_t>(i * row);
    const auto bottom = rgba.begin() + static_cast<std::ptrdiff_t>((count - 1 - i) * row);
    std::swap_ranges(top, top + static_cast<std::ptrdiff_t>(row), bottom);
  }
}

bool isSouthUp(GDALDataset& dataset) {
  std::array<double, 6> transform{};
  return dataset.GetGeoTransform(transform.data()) == CE_None && transform[5] > 0;
}

Pixels drawByKind(GDALDataset& dataset, int width, int height) {
  const PictureKind kind = pictureKindOf(dataset);
  switch (kind.form) {
    case PictureKind::Form::Palette:
      return drawPalette(dataset, *dataset.GetRasterBand(1)->GetColorTable(), width, height);
    case PictureKind::Form::Heights:
      return drawElevation(dataset, ReliefTint::Heights, width, height);
    case PictureKind::Form::Deviations:
      return drawElevation(dataset, ReliefTint::Deviations, width, height);
    case PictureKind::Form::Colors:
      break;
  }
  return drawColor(dataset, kind.bands, width, height);
}

}  // namespace

Pixels drawRaster(GDALDataset& dataset, int width, int height) {
  if (dataset.GetRasterCount() == 0) return {};
  Pixels rgba = drawByKind(dataset, width, height);
  if (isSouthUp(dataset)) flipRows(rgba, width, height);
  return rgba;
}

}  // namespace vlclientui::client
