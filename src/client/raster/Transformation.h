#pragma once

#include <memory>

#include <ogr_spatialref.h>

namespace vlclientui::client {

/// Gives a transformation back to the raster library, which keeps the last ones for any thread: setting one
/// up takes a hundred times as long as taking one that is kept.
struct TransformationReturner {
  void operator()(OGRCoordinateTransformation* way) const { OGRCoordinateTransformation::DestroyCT(way); }
};
using TransformationPtr = std::unique_ptr<OGRCoordinateTransformation, TransformationReturner>;

/// Between places in east-north order, whatever order the systems name. For one thread at a time.
/// @returns null when there is no way from one to the other.
[[nodiscard]] TransformationPtr transformation(const OGRSpatialReference& from,
                                               const OGRSpatialReference& to);

/// The system with longitudes, or what goes east, first.
[[nodiscard]] OGRSpatialReference inEastNorthOrder(OGRSpatialReference system);

}  // namespace vlclientui::client
