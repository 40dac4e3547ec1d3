#pragma once

#include <filesystem>
#include <string>

namespace vlclientui::client {

/// Why a virtual raster of this machine that leads to others is not opened: a few short ones that name each
/// other several times would keep the raster library busy for years, and one that holds itself for ever.
/// Readable; empty for all that people make.
/// @param text of it. @param folder from which its relative names count.
[[nodiscard]] std::string refusalOfNesting(const std::string& text, const std::filesystem::path& folder);

}  // namespace vlclientui::client
