#pragma once

#include <string>
#include <vector>

#include "client/output/ExportPlan.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

class StepKeeper;

/// Writes all pixels of a virtual raster into a new file, the reading on other threads where the format
/// allows it.
/// @param requests the raster, opened once or several times to be read side by side.
/// @param reduction pixels of the sources behind one pixel of the request, at least 1; so much less is read
/// at once. @param progress of this step, 0 to 1.
/// @param file in a growing folder, as the raster library calls it. @param keeper gives and gets what is
/// read of the request; may be null.
/// @throws RuntimeFailure when anything could not be read or written, or progress canceled; the file is in
/// any state then.
void writePixels(const std::vector<GDALDataset*>& requests, double reduction, const ExportPlan& plan,
                 const std::string& file, const ExportProgress& progress, StepKeeper* keeper = nullptr);

}  // namespace vlclientui::client
