#pragma once

#include <filesystem>
#include <functional>

#include "client/mapping/OpenRaster.h"

namespace vlclientui::client {

/// Whether a copy makes drawing from afar much faster: the raster is large, and has no overviews near the
/// size of a screen.
[[nodiscard]] bool deservesCopy(const OpenRaster& raster);

enum class CopyEnd { Whole, GivenUp };

/// Writes a reduced raster with overviews: same bands, same holes.
/// @throws RuntimeFailure when the raster cannot be read or the file not be written.
[[nodiscard]] CopyEnd writeCopy(const OpenRaster& raster, const std::filesystem::path& file,
                                const std::function<void(double)>& progress);

/// Adds what a copy holds to the levels of its raster. Does nothing for a file that is no copy of it.
void addCopy(OpenRaster& raster, const std::filesystem::path& copy);

}  // namespace vlclientui::client
