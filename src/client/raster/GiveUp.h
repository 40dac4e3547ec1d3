#pragma once

namespace vlclientui::client {

/// For the raster library's reading functions, as their progress: ends the reading once the work of this
/// thread was given up. The parameters are the library's, and unused.
/// @returns 1 to go on, 0 to end.
int untilGivenUp(double share, const char* message, void* data);

}  // namespace vlclientui::client
