#pragma once

#include <memory>
#include <string>
#include <vector>

#include "client/drawing/Drawing.h"
#include "client/drawing/ImageSource.h"
#include "client/drawing/SourceUse.h"
#include "client/raster/FileMetadata.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// The documents of one service. Numbers with "." and as many digits as read back the same; a fact that is
/// not known has no element. Which elements: docs/export.md and docs/mosaics.md.

[[nodiscard]] std::string serviceInfoDocument(const ImageServiceRecord& service);

/// The group `Basic` alone.
[[nodiscard]] std::string basicMetadataDocument(const DrawnImage& image);

/// Also `Detailed`: the rasters whose rectangles the image touches, and what was done with them.
/// @param uses of all sources, in the service's order.
/// @param metadata of the rasters that are in the window, in that order; never null.
[[nodiscard]] std::string imageMetadataDocument(
    const DrawnImage& image, const std::vector<SourceUse>& uses,
    const std::vector<std::shared_ptr<const FileMetadata>>& metadata);

/// Root `Metadata`: what the raster's file tells of itself, or what the definition of a mosaic tells.
[[nodiscard]] std::string serviceMetadataDocument(const ImageServiceRecord& service);

/// Of all sources, each once, as they come.
[[nodiscard]] std::vector<std::string> attributeNames(const ImageServiceRecord& service);

/// As the service is before anyone changed it: drawn as defined, the viewpoint in the middle.
[[nodiscard]] std::string defaultPropertiesDocument(const ImageServiceRecord& service);

/// The whole service at its own pixel size, but no more than 2,147,483,647 columns or rows.
[[nodiscard]] OutputGrid wholeGrid(const ImageServiceRecord& service);

/// @param message empty when nothing failed.
[[nodiscard]] std::string statusDocument(const std::string& message);

}  // namespace vlclientui::client
