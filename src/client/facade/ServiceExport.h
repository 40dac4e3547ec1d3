#pragma once

#include <string>

#include "client/drawing/Drawing.h"
#include "client/facade/ExportForecast.h"
#include "client/output/GetImageRequest.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

/// Writes the file of a request. @param job the element that tells how to make it again, for the metadata
/// beside the image. @throws RuntimeFailure with a readable text; the former file is untouched then.
void exportService(const Drawing& drawing, const GetImageRequest& request, const std::string& job,
                   Keeping keeping, const ExportProgress& progress);

/// What that is going to take. Reads a small part of it, and fetches one part of it to measure.
/// @throws RuntimeFailure for what the export would refuse, and where nothing can be read.
[[nodiscard]] ExportForecast forecastExport(const Drawing& drawing, const GetImageRequest& request);

/// Whether any of its pixels come from servers.
[[nodiscard]] bool readsServers(const ImageServiceRecord& service);

/// What an earlier export to the file of the request kept.
[[nodiscard]] std::optional<KeptPart> keptPart(const GetImageRequest& request);

}  // namespace vlclientui::client
