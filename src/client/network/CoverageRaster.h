#pragma once

#include <optional>
#include <string>
#include <utility>

namespace vlclientui::client {

/// The name by which the raster library opens a coverage; it holds no secret and means the same in every
/// process.
[[nodiscard]] std::string coverageRasterName(const std::string& address, const std::string& id);

/// Server and coverage of such a name; nothing for other names.
[[nodiscard]] std::optional<std::pair<std::string, std::string>> coverageOfRasterName(
    const std::string& name);

/// Where a raster lies, for a person: server and coverage without secrets; any other name as it is.
[[nodiscard]] std::string shownRasterPlace(const std::string& name);

/// Teaches the raster library to open such names: as a raster with bands, place, no-data value and
/// reductions, whose pixels are fetched as they are read. Does nothing from the second call on.
void registerCoverageRasters();

}  // namespace vlclientui::client
