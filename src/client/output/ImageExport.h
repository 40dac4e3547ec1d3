#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/output/GetImageRequest.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

/// Writes an area of a service to a file, whole or not at all, in constant memory. Refuses what it can before
/// the first byte. Companions (world file, metadata, what the format itself cannot hold) are written beside
/// the file. docs/export.md lists all choices.
/// @param order of the service's sources, bottom first.
/// @throws RuntimeFailure with a readable text, also after a cancel; the former file is then untouched.
void exportImage(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                 const GetImageRequest& request, const ExportProgress& progress);

}  // namespace vlclientui::client
