#pragma once

#include <string>
#include <variant>
#include <vector>

#include "client/catalogue/CatalogueScan.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// Where a source lies in a mosaic, or why it has no place there: its system cannot be brought into that of
/// the first one, or it lacks bands. A single band goes for three, as grey is all three colours.
[[nodiscard]] std::variant<Bounds, std::string> placeInMosaic(const RasterFacts& first,
                                                              const RasterFacts& source);

/// One mosaic as a service: the extent around all readable sources in the system of the first of them,
/// the finest pixel, the pixel kind of the first. Sources that are unreadable, or have no place there, are
/// left out and reported.
/// @param sources results for the definition's sources, in their order.
/// @param problems receives what was left out. @returns a problem when no source is left.
[[nodiscard]] RasterResult mosaicFacts(const MosaicDefinition& definition,
                                       const std::vector<RasterResult>& sources,
                                       std::vector<LeftOut>& problems);

}  // namespace vlclientui::client
