#pragma once

#include <filesystem>
#include <string>

namespace vlclientui::client {

/// A reference in a file, where a relative path of a raster or definition counts from the file's folder.
/// References of servers and absolute paths stay as they are.
[[nodiscard]] std::string referenceFrom(const std::filesystem::path& folder, const std::string& reference);

/// Whether the text is a path that begins neither at a root nor at a drive.
[[nodiscard]] bool isRelativePath(const std::string& text);

}  // namespace vlclientui::client
