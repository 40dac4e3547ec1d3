#pragma once

#include <optional>

#include "client/RasterFacts.h"

class OGRSpatialReference;

namespace vlclientui::client {

/// The WGS 84 envelope of a rectangle in another coordinate system, its edges densified, so that curved
/// edges stay inside. A rectangle that holds a pole reaches it and goes all around. One that crosses the
/// antimeridian is given as [-180, 180]: readers compare plain numbers, and a service shown once too
/// often is better than one that is not found.
/// @returns nothing when the rectangle cannot be transformed.
[[nodiscard]] std::optional<Bounds> geographicBounds(const Bounds& bounds, const OGRSpatialReference& system);

/// The same rectangle in another system, densified.
[[nodiscard]] std::optional<Bounds> transformBounds(const Bounds& bounds, const OGRSpatialReference& from,
                                                    const OGRSpatialReference& to);

}  // namespace vlclientui::client
