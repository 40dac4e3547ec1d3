#pragma once

#include <filesystem>

#include "Coverage.h"

namespace vlclientui::samples {

/// The field of a tile index that holds the file, seen from the catalogue.
constexpr const char* tileItem = "location";

/// Writes the outlines of a mosaic's rasters as a shape file. A failure is a SampleFailure.
void writeTileIndex(const std::filesystem::path& path, const std::filesystem::path& catalogue,
                    const Coverage& mosaic);

}  // namespace vlclientui::samples
