#pragma once

#include <optional>
#include <string>

namespace vlclientui::client {

/// The name by which the raster library opens a file of the web, and from then on can: its pixels are fetched
/// by requests for parts of the file, as they are read. The same name for the same address in every process;
/// it holds no secret. Keys in the address itself are kept in memory; of addresses that differ in nothing
/// else, the second and later ones get a number, in the order in which this process meets them.
/// @param address absolute, http or https.
[[nodiscard]] std::string rangeRasterName(const std::string& address);

/// The address behind such a name, without the secrets it may have had; nothing for other names.
[[nodiscard]] std::optional<std::string> addressOfRangeRaster(const std::string& name);

/// Where a raster lies, for a person: the address of a file of the web, the place of a coverage, or the name
/// as it is. Without secrets.
[[nodiscard]] std::string shownPlace(const std::string& name);

/// Teaches the raster library to open such names. Does nothing from the second call on.
void registerRangeFiles();

}  // namespace vlclientui::client
