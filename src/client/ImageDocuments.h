#pragma once

#include <optional>
#include <string>

#include "client/ImageSource.h"
#include "client/OutputGrid.h"

namespace vlclientui::client {

/// The documents of one service. Numbers with "." and as many digits as read back the same; a fact that is
/// not known has no element. Which elements: docs/export.md.

[[nodiscard]] std::string serviceInfoDocument(const ImageServiceRecord& service);

enum class MetadataDetail { Basic, WithRasters };

/// @param image where the image last returned lies; its rasters are those that it touches.
[[nodiscard]] std::string imageMetadataDocument(const ImageServiceRecord& service, const OutputGrid& image,
                                                MetadataDetail detail);

/// Root `Metadata`.
[[nodiscard]] std::string serviceMetadataDocument(const ImageServiceRecord& service);

/// As the service is before anyone changed it: drawn as defined, the viewpoint in the middle.
[[nodiscard]] std::string defaultPropertiesDocument(const ImageServiceRecord& service);

/// The whole service at its own pixel size, but no more than 2,147,483,647 columns or rows.
[[nodiscard]] OutputGrid wholeGrid(const ImageServiceRecord& service);

/// @param message empty when nothing failed.
[[nodiscard]] std::string statusDocument(const std::string& message);

}  // namespace vlclientui::client
