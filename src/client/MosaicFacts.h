#pragma once

#include <vector>

#include "client/CatalogueScan.h"
#include "client/RasterFacts.h"

namespace vlclientui::client {

/// One mosaic as a service: the extent around all readable sources in the system of the first of them,
/// the finest pixel, the pixel kind of the first. Sources that are unreadable, or cannot be brought into
/// that system, are left out and reported.
/// @param sources results for the definition's sources, in their order.
/// @param problems receives what was left out. @returns a problem when no source is left.
[[nodiscard]] RasterResult mosaicFacts(const MosaicDefinition& definition,
                                       const std::vector<RasterResult>& sources,
                                       std::vector<CatalogueProblem>& problems);

}  // namespace vlclientui::client
