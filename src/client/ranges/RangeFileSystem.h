#pragma once

namespace vlclientui::client {

/// Installs the file system of the raster library that the names of RangeFiles.h belong to: read only,
/// without folders. Of what may lie beside a file it knows only what RemoteFiles was told, so that opening a
/// file asks for that file alone. What is neither an image nor a mosaic is not handed out: many formats of
/// text lead the raster library to other files.
/// @pre called once.
void installRangeFileSystem();

}  // namespace vlclientui::client
