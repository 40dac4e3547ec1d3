#pragma once

#include <filesystem>
#include <string>

#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// The six lines of a world file.
[[nodiscard]] std::string worldFileText(const OutputGrid& grid);
/// The world file of an image: "a.Tif" has "a.tfw".
[[nodiscard]] std::filesystem::path worldFileOf(const std::filesystem::path& image);
/// Whether readers would take the file for the image's world file, by its name: "a.tfw", "a.tifw" and "a.wld"
/// of "a.tif", in any case.
[[nodiscard]] bool isWorldFileOf(const std::filesystem::path& image, const std::filesystem::path& file);

}  // namespace vlclientui::client
