#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vlclientui::client {

class Places;

/// Why a virtual raster may not be opened: one of the files that it names may not, it runs
/// code, or it holds an address or a coordinate system that is no plain definition. Readable;
/// empty when it may, and for texts that are no virtual raster at all but could be none of another kind
/// either.
/// @param folder from which relative names count; empty for a text without a file.
[[nodiscard]] std::string refusalOfMosaic(const std::string& text, const std::filesystem::path& folder,
                                          const Places& places);

/// The files that it may mean, as paths, however often; other kinds of names are passed over.
[[nodiscard]] std::vector<std::filesystem::path> sourcesOfMosaic(const std::string& text,
                                                                 const std::filesystem::path& folder);

}  // namespace vlclientui::client
