#pragma once

#include "client/network/Coverages.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

class GeographicBounds;

/// A title for lists: white space, line ends and tabs among it, as single blanks between words; the id where
/// there is no title.
[[nodiscard]] std::string coverageTitle(const std::string& title, const std::string& id);

/// What the list of services shows of a coverage. What the server does not tell is unknown: no pixel is asked
/// for.
/// @param description null where the server was not asked for it.
[[nodiscard]] RasterFacts coverageFacts(const CoverageSummary& summary,
                                        const CoverageDescription* description, GeographicBounds& geographic);

}  // namespace vlclientui::client
