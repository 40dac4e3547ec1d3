#pragma once

#include <QPolygonF>
#include <array>
#include <map>
#include <string>
#include <vector>

#include "host/ServiceView.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {

/// Outlines of places that are told in degrees, on a map. They are remembered in its coordinates, since to
/// bring them there takes longer than to paint them.
class Outlines {
 public:
  /// In pixels of the widget. Edges that are straight in degrees may be bent on the map.
  [[nodiscard]] QPolygonF of(const MapFrame& frame, const host::GeographicEnvelope& extent);

 private:
  using Places = std::vector<client::MapPoint>;

  void follow(const MapFrame& frame);

  std::string wkt_;  ///< of the map that they are known for
  std::map<std::array<double, 4>, Places> extents_;
};

}  // namespace vlclientui::viewer
