#pragma once

#include <filesystem>
#include <string>

#include "client/raster/ContainedRaster.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {

/// The rasters that a raster without bands holds, in the file's order; at most a thousand.
/// @param name what the raster library opened.
[[nodiscard]] ContainerContent subdatasetsOf(GDALDataset& container, const std::string& name);

/// What the raster library opens for a path that may lead into a container; empty where it leads nowhere.
[[nodiscard]] std::string libraryName(const std::filesystem::path& raster);

/// A file or a raster in a container. Null on failure; a GdalScope on the stack has the reason.
[[nodiscard]] DatasetPtr openRasterAt(const std::filesystem::path& raster);

}  // namespace vlclientui::client
