#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "client/raster/RasterFacts.h"

class OGRSpatialReference;

namespace vlclientui::client {

/// Transforms rectangles to WGS 84. Setting up a transformation is slow and remembered, so use one object for
/// many rasters. For one thread at a time.
class GeographicBounds {
 public:
  GeographicBounds();
  ~GeographicBounds();
  GeographicBounds(const GeographicBounds&) = delete;
  GeographicBounds& operator=(const GeographicBounds&) = delete;

  /// The WGS 84 envelope of a rectangle in another coordinate system. Edges are densified so that curved ones
  /// stay inside. A rectangle with a pole inside reaches the pole and all around. One that crosses the
  /// antimeridian becomes [-180, 180]: readers compare plain numbers, and showing a service too often is
  /// better than not finding it.
  /// @param wkt the system's whole definition, the key to remember it by.
  /// @returns nothing when the rectangle cannot be transformed.
  [[nodiscard]] std::optional<Bounds> of(const Bounds& bounds, const OGRSpatialReference& system,
                                         const std::string& wkt);

 private:
  struct Way;
  std::map<std::string, std::unique_ptr<Way>> ways_;
};

/// The way from one system into another one, for any number of rectangles: to find it takes milliseconds. For
/// one thread at a time.
class BoundsWay {
 public:
  BoundsWay(const OGRSpatialReference& from, const OGRSpatialReference& to);
  ~BoundsWay();
  BoundsWay(BoundsWay&&) noexcept;
  BoundsWay& operator=(BoundsWay&&) noexcept;

  /// As transformBounds.
  [[nodiscard]] std::optional<Bounds> of(const Bounds& bounds) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

/// The same rectangle in another system, densified. @returns nothing when it cannot be transformed, or
/// crosses the antimeridian there and so is no plain rectangle.
[[nodiscard]] std::optional<Bounds> transformBounds(const Bounds& bounds, const OGRSpatialReference& from,
                                                    const OGRSpatialReference& to);

/// Longitude first, as everywhere here.
[[nodiscard]] OGRSpatialReference wgs84();

}  // namespace vlclientui::client
