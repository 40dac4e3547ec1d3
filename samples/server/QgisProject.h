#pragma once

#include <filesystem>
#include <vector>

#include "Coverage.h"

namespace vlclientui::samples {

/// Writes what QGIS Server 3 needs to serve coverages: `samples.qgs`, and a virtual raster for each mosaic.
/// The folder exists. Every failure is a SampleFailure.
void writeQgisProject(const std::filesystem::path& folder, const std::filesystem::path& catalogue,
                      const std::vector<Coverage>& coverages);

}  // namespace vlclientui::samples
