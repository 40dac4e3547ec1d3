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

/// The documents of one service. Numbers have "." and just the digits to read back the same. Unknown facts
/// have no element. docs/export.md and docs/mosaics.md list the elements.

[[nodiscard]] std::string serviceInfoDocument(const ImageServiceRecord& service);

/// The group `Basic` alone.
[[nodiscard]] std::string basicMetadataDocument(const DrawnImage& image);

/// Also `Detailed`: the rasters whose rectangles meet the image, and how they were processed.
/// @param uses of all sources, in the service's order.
/// @param metadata of the rasters in the window, in that order; never null.
[[nodiscard]] std::string imageMetadataDocument(
    const DrawnImage& image, const std::vector<SourceUse>& uses,
    const std::vector<std::shared_ptr<const FileMetadata>>& metadata);

/// Root `Metadata`: what the raster's file, or the mosaic's definition, says about itself.
/// @param origin an element of an exported image, to stand at the end.
[[nodiscard]] std::string serviceMetadataDocument(const ImageServiceRecord& service,
                                                  const std::string& origin = {});

/// Bytes of a pixel with all its bands.
[[nodiscard]] int bytesOfPixel(const RasterFacts& facts);

/// Of all sources, each name once, in order of appearance.
[[nodiscard]] std::vector<std::string> attributeNames(const ImageServiceRecord& service);

/// The properties of an unchanged service: drawn as defined, viewpoint in the middle.
[[nodiscard]] std::string defaultPropertiesDocument(const ImageServiceRecord& service);

/// The whole service at its own pixel size, but no more than 2,147,483,647 columns or rows.
[[nodiscard]] OutputGrid wholeGrid(const ImageServiceRecord& service);

/// A rectangle in a service's coordinates by the name under which a window lists it.
struct NamedBounds {
  std::string description;
  Bounds bounds;
};

/// What the export window takes for extents of the host.
[[nodiscard]] std::string customEnvelopesDocument(const std::vector<NamedBounds>& envelopes);

/// @param message empty when nothing failed.
[[nodiscard]] std::string statusDocument(const std::string& message);

}  // namespace vlclientui::client
