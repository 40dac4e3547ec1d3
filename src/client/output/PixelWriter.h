#pragma once

#include <string>

#include "client/output/ExportPlan.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

class StepKeeper;

/// Writes all pixels of a virtual raster into a new file, the reading on a second thread where the format
/// allows it.
/// @param reduction pixels of the sources behind one pixel of the request, at least 1; so much less is read
/// at once. @param progress of this step, 0 to 1.
/// @param file in a growing folder, as the raster library calls it. @param keeper gives and gets what is
/// read of the request; may be null.
/// @throws RuntimeFailure when anything could not be read or written, or progress canceled; the file is in
/// any state then.
void writePixels(GDALDataset& request, double reduction, const ExportPlan& plan, const std::string& file,
                 const ExportProgress& progress, StepKeeper* keeper = nullptr);

}  // namespace vlclientui::client
