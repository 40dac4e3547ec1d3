#pragma once

#include <filesystem>

#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

class GeographicBounds;

/// Opens the file read-only and reads its header; pixels are never read, statistics never made. Safe on any
/// thread. Every failure is a RasterProblem.
/// @param geographic may serve many files of one thread.
[[nodiscard]] RasterResult readRasterFacts(const std::filesystem::path& file, GeographicBounds& geographic);
[[nodiscard]] RasterResult readRasterFacts(const std::filesystem::path& file);

}  // namespace vlclientui::client
