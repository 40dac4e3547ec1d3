#pragma once

#include <filesystem>
#include <vector>

#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// A slip of the fingers must not replace a raster by what is made of it. A service's own are its definition,
/// its sources, what stands beside these (world files, overviews, masks, descriptions), the rasters that
/// virtual ones among them are made from, and so on down.
/// @param touched whole paths of all files that are about to be written or removed, whether they are there or
/// not.
/// @throws RuntimeFailure that names one of them when it is the service's own.
void refuseFilesOf(const ImageServiceRecord& service, const std::vector<std::filesystem::path>& touched);

}  // namespace vlclientui::client
