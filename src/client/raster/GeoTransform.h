#pragma once

#include <array>
#include <cstdint>

#include "client/raster/RasterFacts.h"

class GDALDataset;

namespace vlclientui::client {

/// Where the corner of a pixel lies: x is [0] + column * [1] + row * [2], y is [3] + column * [4] + row *
/// [5].
using GeoTransform = std::array<double, 6>;

/// Whether all numbers are finite and columns and rows span an area.
[[nodiscard]] bool isUsable(const GeoTransform& transform);

/// Whether a raster of that size lies somewhere and has an area there: far from the origin, the sides of
/// small pixels get lost among the digits. @param transform usable.
[[nodiscard]] bool placesRaster(const GeoTransform& transform, std::int64_t columns, std::int64_t rows);
/// The dataset's own. @returns false when it has none, or one that is not usable.
[[nodiscard]] bool readGeoTransform(GDALDataset& dataset, GeoTransform& transform);

/// Rows run from north to south, columns from west to east.
[[nodiscard]] bool isNorthUp(const GeoTransform& transform);

/// Encloses all four corners, so that a rotated raster lies inside.
[[nodiscard]] Bounds envelopeOf(const GeoTransform& transform, std::int64_t columns, std::int64_t rows);

/// Sides of a pixel, both above 0.
struct PixelSize {
  double across = 0;
  double down = 0;
};

/// Size of the pixels after turning north up. Quarter turns and mirrors keep the sides; at other angles
/// pixels become squares, as many along the diagonal as the raster has.
[[nodiscard]] PixelSize northUpPixelSize(const GeoTransform& transform, std::int64_t columns,
                                         std::int64_t rows);

/// How many pixels fit into a length, at least 1.
[[nodiscard]] std::int64_t pixelCount(double length, double pixelSide);

}  // namespace vlclientui::client
