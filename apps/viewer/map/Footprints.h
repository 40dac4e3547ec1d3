#pragma once

#include <QPixmap>
#include <vector>

#include "host/ServiceView.h"
#include "viewer/map/MapFrame.h"
#include "viewer/map/Outlines.h"

class QPainter;

namespace vlclientui::viewer {

/// The outlines of the sources of a mosaic. Very many are kept as a picture of the view and what lies around
/// it, which moves along with a drag.
class Footprints {
 public:
  void show(std::vector<host::GeographicCorners> footprints);
  void draw(QPainter& painter, const MapFrame& frame, Outlines& outlines);

 private:
  [[nodiscard]] std::vector<QPolygonF> within(const MapFrame& frame, Outlines& outlines) const;
  [[nodiscard]] bool isKept(const MapFrame& frame, double density) const;
  void keep(const MapFrame& frame, double density, Outlines& outlines);

  std::vector<host::GeographicCorners> footprints_;
  MapFrame kept_;  ///< what the picture shows
  double density_ = 0;
  QPixmap picture_;  ///< null for none
};

}  // namespace vlclientui::viewer
