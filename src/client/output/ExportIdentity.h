#pragma once

#include <cstddef>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/output/ExportJournal.h"
#include "client/output/GetImageRequest.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

/// What identifies an export: the request, the service as it is drawn, and the content of the sources that
/// the request touches, which is asked for anew, of several servers at a time.
/// @param order of the service's sources, bottom first. @param progress is told 0 while servers are waited
/// for.
/// @throws RuntimeFailure where a source cannot be had, or the progress cancels.
[[nodiscard]] ExportIdentity exportIdentity(const ImageServiceRecord& service,
                                            const std::vector<std::size_t>& order,
                                            const GetImageRequest& request,
                                            const ExportProgress& progress = {});

/// The sources that take part and meet the grid, as indexes, bottom first.
[[nodiscard]] std::vector<std::size_t> sourcesWithin(const ImageServiceRecord& service,
                                                     const std::vector<std::size_t>& order,
                                                     const OutputGrid& grid);

}  // namespace vlclientui::client
