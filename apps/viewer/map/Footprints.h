#pragma once

#include <QPixmap>
#include <string>
#include <vector>

#include "host/ServiceView.h"
#include "viewer/map/MapFrame.h"

class QPainter;

namespace vlclientui::viewer {

/// The outlines of the sources of a mosaic, with straight edges. Their corners are kept in coordinates of the
/// map, since to bring them there takes longer than to paint them. Very many are kept as a picture of the
/// view and what lies around it, which moves along with a drag.
class Footprints {
 public:
  void show(std::vector<host::GeographicCorners> footprints);
  void draw(QPainter& painter, const MapFrame& frame);

 private:
  /// Those that the frame shows, in its pixels. Without those of which the map lacks a corner.
  [[nodiscard]] std::vector<QPolygonF> within(const MapFrame& frame) const;
  void follow(const MapFrame& frame);
  [[nodiscard]] bool isKept(const MapFrame& frame, double density) const;
  void keep(const MapFrame& frame, double density);

  std::vector<host::GeographicCorners> footprints_;
  std::vector<client::MapPoint> corners_;  ///< of all footprints, on the map of this system
  std::string wkt_;
  MapFrame kept_;  ///< what the picture shows
  double density_ = 0;
  QPixmap picture_;  ///< null for none
};

}  // namespace vlclientui::viewer
