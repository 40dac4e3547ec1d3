#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "client/raster/RasterFacts.h"

class OGRSpatialReference;

namespace vlclientui::client {

/// Brings rectangles to WGS 84. Finding the way from a system is dear and is remembered, so one object should
/// serve many rasters. For one thread at a time.
class GeographicBounds {
 public:
  GeographicBounds();
  ~GeographicBounds();
  GeographicBounds(const GeographicBounds&) = delete;
  GeographicBounds& operator=(const GeographicBounds&) = delete;

  /// The WGS 84 envelope of a rectangle in another coordinate system, its edges densified, so that curved
  /// edges stay inside. A rectangle that holds a pole reaches it and goes all around. One that crosses the
  /// antimeridian is given as [-180, 180]: readers compare plain numbers, and a service shown once too
  /// often is better than one that is not found.
  /// @param wkt the whole definition of the system, by which it is remembered.
  /// @returns nothing when the rectangle cannot be transformed.
  [[nodiscard]] std::optional<Bounds> of(const Bounds& bounds, const OGRSpatialReference& system,
                                         const std::string& wkt);

 private:
  struct Way;
  std::map<std::string, std::unique_ptr<Way>> ways_;
};

/// The same rectangle in another system, densified. @returns nothing when it cannot be transformed, or when
/// it crosses the antimeridian there, so that no rectangle of numbers tells its place.
[[nodiscard]] std::optional<Bounds> transformBounds(const Bounds& bounds, const OGRSpatialReference& from,
                                                    const OGRSpatialReference& to);

/// Longitude first, as everywhere here.
[[nodiscard]] OGRSpatialReference wgs84();

}  // namespace vlclientui::client
