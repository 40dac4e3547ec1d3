#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/raster/GdalScope.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// Whether the file keeps pixels exactly, so that a value can mark holes.
enum class PixelFidelity { Exact, Lossy };

/// A virtual raster with exactly the pixels of a grid: sources fitted to it, one over the other. Bands, type,
/// colors, units and texts are those of the service's first source. A band of transparency marks the holes if
/// there is one; else a declared no-data value, if no pixel with data can have it; else a mask for all bands.
/// May be read on one other thread.
/// @param order indexes of the sources that take part, bottom first.
/// @throws RuntimeFailure naming the file when a source cannot be opened.
[[nodiscard]] DatasetPtr openRequest(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                                     const OutputGrid& grid, PixelFidelity fidelity = PixelFidelity::Exact);

/// The value in the holes of a raster with a mask, if all bands share one; nothing when pixels are not kept
/// exactly. Pixels with data may have the same value. @param request made by openRequest.
[[nodiscard]] std::optional<double> valueInHoles(GDALDataset& request);

/// Whether the rectangles together cover the area, within a thousandth of a pixel.
[[nodiscard]] bool covers(const std::vector<Bounds>& parts, const OutputGrid& area);

}  // namespace vlclientui::client
