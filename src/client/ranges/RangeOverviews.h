#pragma once

namespace vlclientui::client {

/// From now on rasters of the web, whoever opens them, name no file of their overviews. An image may tell one
/// in its own metadata, and the raster library would open any file of this machine by it.
/// @pre called once, before a raster of the web is opened.
void keepOverviewsWithinRasters();

}  // namespace vlclientui::client
