#pragma once

namespace vlclientui::client {

/// Stops what stands below GDAL from printing errors of the calling thread to standard error: HDF5 prints a
/// stack for each attribute that a reader asks for in vain, beside telling it, and has a switch per thread.
void stopPrintingErrors();

}  // namespace vlclientui::client
