#pragma once

#include <optional>

#include "client/mapping/MapDrawer.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/ServicePainter.h"

namespace vlclientui::client {

/// How a service is drawn on a piece of a map, with its sources there: those beside it may be of a server
/// that nobody needs to ask. Null where the service does not lie.
[[nodiscard]] std::shared_ptr<const Drawing> drawingOn(const MapLayer::Source& source, const MapGrid& map,
                                                       RasterHandles& handles);

}  // namespace vlclientui::client
