#pragma once

#include <filesystem>

#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

class GeographicBounds;

/// Opens the file read-only and reads its header, never pixels or statistics. Safe on any thread. Every
/// failure is a RasterProblem.
/// @param geographic one per thread, for any number of files.
/// @param calledAs its title where it tells none itself; empty: the name of the file.
[[nodiscard]] RasterResult readRasterFacts(const std::filesystem::path& file, GeographicBounds& geographic,
                                           const std::string& calledAs = {});
[[nodiscard]] RasterResult readRasterFacts(const std::filesystem::path& file);

}  // namespace vlclientui::client
