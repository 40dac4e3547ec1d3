#include "client/raster/GeoTransform.h"

#include <algorithm>
#include <cmath>

#include <gdal_priv.h>

namespace vlclientui::client {
namespace {

// Rounding noise that remains when the sine of a quarter turn was computed.
constexpr double noise = 1e-9;

bool isNothingBeside(double part, double other) { return std::abs(part) <= noise * std::abs(other); }

}  // namespace

bool isUsable(const GeoTransform& transform) {
  if (!std::ranges::all_of(transform, [](double part) { return std::isfinite(part); })) return false;
  const double across = std::hypot(transform[1], transform[4]);
  const double down = std::hypot(transform[2], transform[5]);
  const double area = transform[1] * transform[5] - transform[2] * transform[4];
  return std::isfinite(area) && std::abs(area) > noise * across * down;
}

bool placesRaster(const GeoTransform& transform, std::int64_t columns, std::int64_t rows) {
  const Bounds place = envelopeOf(transform, columns, rows);
  const double across = place.xMax - place.xMin;
  const double down = place.yMax - place.yMin;
  return std::isfinite(across) && std::isfinite(down) && across > 0 && down > 0;
}

bool readGeoTransform(GDALDataset& dataset, GeoTransform& transform) {
  return dataset.GetGeoTransform(transform.data()) == CE_None && isUsable(transform) &&
         placesRaster(transform, dataset.GetRasterXSize(), dataset.GetRasterYSize());
}

bool isNorthUp(const GeoTransform& transform) {
  return transform[2] == 0 && transform[4] == 0 && transform[1] > 0 && transform[5] < 0;
}

Bounds envelopeOf(const GeoTransform& transform, std::int64_t columns, std::int64_t rows) {
  const auto [x0, xColumn, xRow, y0, yColumn, yRow] = transform;
  const auto across = static_cast<double>(columns);
  const auto down = static_cast<double>(rows);
  const auto xs =
      std::minmax({x0, x0 + across * xColumn, x0 + down * xRow, x0 + across * xColumn + down * xRow});
  const auto ys =
      std::minmax({y0, y0 + across * yColumn, y0 + down * yRow, y0 + across * yColumn + down * yRow});
  return {xs.first, ys.first, xs.second, ys.second};
}

PixelSize northUpPixelSize(const GeoTransform& transform, std::int64_t columns, std::int64_t rows) {
  const auto [x0, xColumn, xRow, y0, yColumn, yRow] = transform;
  if (isNothingBeside(xRow, yRow) && isNothingBeside(yColumn, xColumn)) {
    return {std::abs(xColumn), std::abs(yRow)};
  }
  if (isNothingBeside(xColumn, yColumn) && isNothingBeside(yRow, xRow)) {
    return {std::abs(xRow), std::abs(yColumn)};
  }
  const auto across = static_cast<double>(columns);
  const auto down = static_cast<double>(rows);
  const double diagonal =
      std::max(std::hypot(across * xColumn + down * xRow, across * yColumn + down * yRow),
               std::hypot(across * xColumn - down * xRow, across * yColumn - down * yRow));
  const double side = diagonal / std::hypot(across, down);
  return {side, side};
}

std::int64_t pixelCount(double length, double pixelSide) {
  return std::max<std::int64_t>(1, std::llround(length / pixelSide));
}

}  // namespace vlclientui::client
