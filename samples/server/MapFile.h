#pragma once

#include <filesystem>
#include <vector>

#include "Coverage.h"

namespace vlclientui::samples {

/// Writes what MapServer 8 needs to serve coverages: `samples.map`, `mapserver.conf` and a tile index for
/// each mosaic. The folder exists. Every failure is a SampleFailure.
void writeMapFile(const std::filesystem::path& folder, const std::filesystem::path& catalogue,
                  const std::vector<Coverage>& coverages);

}  // namespace vlclientui::samples
