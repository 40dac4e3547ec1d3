#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "client/CatalogueScan.h"
#include "client/RasterFacts.h"
#include "client/ServiceProperties.h"

namespace vlclientui::client {

class CatalogueServer;

/// One raster behind a service.
struct ImageSource {
  std::filesystem::path file;
  std::string rasterId;
  std::vector<std::pair<std::string, std::string>> attributes;
  RasterFacts facts;
  Bounds place;  ///< its extent in the service's coordinates
};

/// A service with all that its documents and pixels are made from.
struct ImageServiceRecord {
  std::string reference;
  std::string name;  ///< whole name where the reference has one, else the file's stem
  RasterFacts facts;
  std::vector<ImageSource> sources;  ///< bottom first, as defined; never empty
};

/// Finds a service and reads the headers of its rasters. Sources of a mosaic that cannot be read, or cannot
/// be brought into its coordinate system, are left out.
/// @param reference "ImageService://server/name", "VLDef://file" or the path of a raster or definition.
/// @throws RuntimeFailure when there is no such service, or nothing of it can be read.
[[nodiscard]] ImageServiceRecord loadImageService(CatalogueServer& server, const std::string& reference);

/// The sources that the properties let take part, bottom first, as indexes.
/// LockRaster gives the one with that id, or all when there is none. ByAttribute puts the value closest to
/// the base on top (numbers by distance; texts in their own order, the first on top) and what lacks the
/// attribute below. ClosestToViewpoint puts the nearest centre on top; without a viewpoint nothing changes.
[[nodiscard]] std::vector<std::size_t> orderedSources(const std::vector<ImageSource>& sources,
                                                      const ServiceProperties& properties);

}  // namespace vlclientui::client
