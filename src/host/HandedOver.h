#pragma once

#include <string>

#pragma GCC visibility push(default)
namespace vlclientui::host {

/// What the pages of services hand to each other through the thread, until a save takes it. It belongs to no
/// dialog object, so a host that shows pages of several services in turn keeps it apart by itself.
struct HandedOver {
  std::string& lockImageId;  ///< the raster to lock the mosaic to; empty for none
  std::string& viewPointX;   ///< the viewpoint to save, map units as text; empty for none
  /// Likewise, upwards.
  std::string& viewPointY;
};

/// That of the calling thread.
[[nodiscard]] HandedOver handedOver();

}  // namespace vlclientui::host
#pragma GCC visibility pop
