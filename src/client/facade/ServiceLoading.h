#pragma once

#include <string>

#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

class CatalogueServer;

/// Finds a service and reads the headers of its rasters. Sources of a mosaic that cannot be read, or cannot
/// be transformed to its coordinate system, are left out.
/// @param reference "ImageService://server/name", "VLDef://file" or the path of a raster or definition.
/// @throws RuntimeFailure when there is no such service, or none of it can be read.
[[nodiscard]] ImageServiceRecord loadImageService(CatalogueServer& server, const std::string& reference);

}  // namespace vlclientui::client
