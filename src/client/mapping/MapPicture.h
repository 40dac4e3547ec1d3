#pragma once

#include <optional>
#include <string>

#include "client/mapping/ServicePicture.h"
#include "client/mapping/ValuesAt.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What one picture of a map shows.
struct MapFrame {
  std::string wkt;  ///< the map's system; empty for plain pixels of services without a system
  Bounds extent;    ///< outer edges of the outer pixels, in coordinates of the map; neither side is 0
  int columns = 1;  ///< at least 1
  int rows = 1;     ///< at least 1
};

/// One picture of a service on a map of any system, drawn here and now, where a host has no tiles to keep.
/// Colors are decided from the whole service, so that pictures of its parts fit together. Any thread.
/// @returns transparent pixels where the service does not lie; nothing when the work of this thread was given
/// up.
/// @throws RuntimeFailure when no source that lies there can be read, or there is no way between the systems.
[[nodiscard]] std::optional<ServicePicture> pictureOnMap(const DrawingSource& source, const MapFrame& frame);

}  // namespace vlclientui::client
#pragma GCC visibility pop
