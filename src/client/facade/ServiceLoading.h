#pragma once

#include <memory>
#include <string>

#include "client/drawing/ImageSource.h"
#include "client/facade/MosaicReading.h"

namespace vlclientui::client {

class CatalogueServer;

/// A service, and the way to those of its sources that are not opened yet.
struct OpenedService {
  ImageServiceRecord record;
  std::shared_ptr<MosaicReading> mosaic;  ///< null for one raster
};

/// Finds a service and reads the headers of its rasters, of a catalogue's items only as far as needed: see
/// MosaicReading.h. Sources of a mosaic that cannot be read, or cannot be transformed to its coordinate
/// system, are left out.
/// @param reference "ImageService://server/name", "VLDef://file" or the path of a raster or definition.
/// @throws RuntimeFailure when there is no such service, or none of it can be read.
[[nodiscard]] OpenedService openImageService(const std::shared_ptr<CatalogueServer>& server,
                                             const std::string& reference);
[[nodiscard]] ImageServiceRecord loadImageService(CatalogueServer& server, const std::string& reference);

}  // namespace vlclientui::client
