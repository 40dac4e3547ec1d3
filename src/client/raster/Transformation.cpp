#include "client/raster/Transformation.h"

namespace vlclientui::client {

OGRSpatialReference inEastNorthOrder(OGRSpatialReference system) {
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  return system;
}

TransformationPtr transformation(const OGRSpatialReference& from, const OGRSpatialReference& to) {
  const OGRSpatialReference start = inEastNorthOrder(from);
  const OGRSpatialReference end = inEastNorthOrder(to);
  return TransformationPtr(OGRCreateCoordinateTransformation(&start, &end));
}

}  // namespace vlclientui::client
