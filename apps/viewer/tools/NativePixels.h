#pragma once

#include <optional>

#include "client/facade/ServiceDrawing.h"
#include "client/mapping/MapPoint.h"

namespace vlclientui::viewer {

class MapFrame;

/// Where a map shows a service pixel by pixel.
struct NativePlace {
  client::MapPoint middle;
  double pixel = 1;  ///< of the widget, in units of the map
};

/// One pixel of the screen for one of the service, across: at the middle of the map, or, where the service
/// does not reach there, at its own. @param density pixels of the screen for one of the widget.
/// @returns nothing where the map has no place for the service.
[[nodiscard]] std::optional<NativePlace> nativePlace(const MapFrame& frame, const client::RasterFacts& facts,
                                                     double density);

}  // namespace vlclientui::viewer
