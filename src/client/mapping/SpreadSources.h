#pragma once

#include <cstddef>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/mapping/PointWay.h"
#include "client/mapping/SampleTile.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Window.h"

/// Quick pictures of mosaics: where a tile touches so many sources that to open all of them takes long, a few
/// stand for all.
namespace vlclientui::client {

/// A source on a tile.
struct PlacedSource {
  const ImageSource* source = nullptr;
  Window box;  ///< around it, in pixels of the tile, within it; empty where it lies beside
};

/// In the order of the sources. @param toMap from the service's system to the map's.
[[nodiscard]] std::vector<PlacedSource> placedOn(const OutputGrid& grid, const PointWay& toMap,
                                                 const std::vector<const ImageSource*>& sources);

/// Of each ninth of the tile one source: the first around its middle, else that next to it.
/// @returns places in `sources`, in their order, each once.
[[nodiscard]] std::vector<std::size_t> spreadOver(const OutputGrid& grid,
                                                  const std::vector<PlacedSource>& sources);

/// Lays the means of the chosen sources, which the tile holds, where it is empty and the others lie: mixed,
/// the nearer the more. @returns whether there is any mean.
[[nodiscard]] bool fillBetween(const std::vector<PlacedSource>& sources,
                               const std::vector<std::size_t>& chosen, SampleTile& tile);

}  // namespace vlclientui::client
