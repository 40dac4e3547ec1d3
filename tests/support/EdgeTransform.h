#pragma once

#include <algorithm>
#include <limits>

#include <ogr_spatialref.h>

#include "client/raster/RasterFacts.h"

namespace vlclientui::test {

/// The bounds of a WGS 84 rectangle in another system, found the slow way: thousands of points along its
/// edges, one after the other. Off by less than a millimeter for a rectangle of some kilometers.
[[nodiscard]] inline client::Bounds boundsOfEdges(const client::Bounds& geographic, int epsg) {
  OGRSpatialReference from;
  from.SetWellKnownGeogCS("WGS84");
  from.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  OGRSpatialReference to;
  to.importFromEPSG(epsg);
  to.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  auto* way = OGRCreateCoordinateTransformation(&from, &to);
  constexpr double none = std::numeric_limits<double>::infinity();
  client::Bounds out{none, none, -none, -none};
  const auto visit = [&](double x, double y) {
    way->Transform(1, &x, &y);
    out = {std::min(out.xMin, x), std::min(out.yMin, y), std::max(out.xMax, x), std::max(out.yMax, y)};
  };
  constexpr int points = 5000;
  for (int i = 0; i <= points; ++i) {
    const double share = static_cast<double>(i) / points;
    const double x = geographic.xMin + (geographic.xMax - geographic.xMin) * share;
    const double y = geographic.yMin + (geographic.yMax - geographic.yMin) * share;
    visit(x, geographic.yMin);
    visit(x, geographic.yMax);
    visit(geographic.xMin, y);
    visit(geographic.xMax, y);
  }
  OGRCoordinateTransformation::DestroyCT(way);
  return out;
}

}  // namespace vlclientui::test
