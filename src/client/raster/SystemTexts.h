#pragma once

#include <string>

#include "client/raster/RasterFacts.h"

class OGRSpatialReference;

namespace vlclientui::client {

/// The whole definition of a coordinate system; empty when it cannot be written.
[[nodiscard]] std::string wktOf(const OGRSpatialReference& system);

/// Whether two texts, each a code as "EPSG:4326" or a whole definition, mean the same coordinate system,
/// whoever wrote them. What cannot be read is the same as its equal alone.
[[nodiscard]] bool isSameSystem(const std::string& one, const std::string& other);

/// Sets the three texts about the coordinate system.
void setSystem(RasterFacts& facts, const OGRSpatialReference& system);

}  // namespace vlclientui::client
