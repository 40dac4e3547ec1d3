#pragma once

#include <cstddef>
#include <vector>

#include "client/GdalScope.h"
#include "client/ImageSource.h"
#include "client/OutputGrid.h"

namespace vlclientui::client {

/// A virtual raster that is exactly the pixels of a grid: sources fitted to it and laid over each other.
/// Bands, their type, colours, units and texts are those of the service's first source. Where no source
/// lies, pixels hold the bands' no-data value; one is declared when a source declares one, or when the grid
/// reaches beyond the sources and no band tells transparency. Reading may be done on one other thread.
/// @param order indexes of the sources that take part, bottom first.
/// @throws RuntimeFailure naming the file when a source cannot be opened.
[[nodiscard]] DatasetPtr openRequest(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                                     const OutputGrid& grid);

/// True when the rectangles together cover the area, but for a thousandth part of a pixel.
[[nodiscard]] bool covers(const std::vector<Bounds>& parts, const OutputGrid& area);

}  // namespace vlclientui::client
