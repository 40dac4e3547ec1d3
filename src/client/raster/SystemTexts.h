#pragma once

#include <string>

#include "client/raster/RasterFacts.h"

class OGRSpatialReference;

namespace vlclientui::client {

/// The whole definition of a coordinate system; empty when it cannot be written.
[[nodiscard]] std::string wktOf(const OGRSpatialReference& system);

/// Sets the three texts about the coordinate system.
void setSystem(RasterFacts& facts, const OGRSpatialReference& system);

}  // namespace vlclientui::client
