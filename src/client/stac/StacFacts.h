#pragma once

#include <string>

#include "client/raster/FileMetadata.h"
#include "client/raster/RasterFacts.h"
#include "client/stac/StacDocuments.h"

namespace vlclientui::client {

/// What a list shows of a collection. What it does not tell is unknown: no item is asked for.
[[nodiscard]] RasterFacts collectionFacts(const StacDocument& collection);

/// Its place and dates for people: "46.5 N 8.1 E, 2019-06-21 to 2021-07-14".
[[nodiscard]] std::string collectionRegion(const StacDocument& collection);

/// Platforms or instruments, from its summaries.
[[nodiscard]] std::string collectionSource(const StacDocument& collection);

/// What it tells for people: description, keywords, license, dates, and where it stands.
[[nodiscard]] FileMetadata collectionMetadata(const StacDocument& collection, const std::string& address);

}  // namespace vlclientui::client
