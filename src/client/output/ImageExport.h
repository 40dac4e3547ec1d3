#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/output/GetImageRequest.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

/// Writes an area of a service to a file, whole or not at all, in memory that does not grow with the area.
/// Everything that can be refused is refused before the first byte. What goes with the file (world file,
/// metadata, what the format itself cannot hold) comes beside it. docs/export.md tells all choices.
/// @param order of the service's sources, bottom first.
/// @throws RuntimeFailure with a text for a person, also after a cancel; the former file is untouched then.
void exportImage(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                 const GetImageRequest& request, const ExportProgress& progress);

}  // namespace vlclientui::client
