#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/raster/GdalScope.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// Whether the pixels will be kept to the last bit, so that a value can tell holes.
enum class PixelFidelity { Exact, Lossy };

/// A virtual raster that is exactly the pixels of a grid: sources fitted to it and laid over each other.
/// Bands, their type, colours, units and texts are those of the service's first source. Holes are told by a
/// band of transparency where there is one; by a declared no-data value where it is certain that no pixel
/// with data holds it; else by a mask for all bands. Reading may be done on one other thread.
/// @param order indexes of the sources that take part, bottom first.
/// @throws RuntimeFailure naming the file when a source cannot be opened.
[[nodiscard]] DatasetPtr openRequest(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                                     const OutputGrid& grid, PixelFidelity fidelity = PixelFidelity::Exact);

/// What the holes of a raster with a mask hold, where all bands have one value for it; nothing where pixels
/// are not kept exactly. Whether pixels with data hold it too is not known. @param request made by
/// openRequest.
[[nodiscard]] std::optional<double> valueInHoles(GDALDataset& request);

/// True when the rectangles together cover the area, but for a thousandth part of a pixel.
[[nodiscard]] bool covers(const std::vector<Bounds>& parts, const OutputGrid& area);

}  // namespace vlclientui::client
