#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Files read and written whole. Paths are native.
namespace vlclientui::platform {

/// Nothing when there is no such regular file or it cannot be read. Folders, pipes and devices are none.
[[nodiscard]] std::optional<std::string> readWholeFile(const std::string& nativePath);

/// Replaces the file's content, or makes the file; never leaves half of one. The content is written beside
/// the target under another name, brought to disk and renamed; access rights of an old file stay, and a
/// symbolic link stays one. When anything fails, the old file is untouched and nothing is left beside it.
/// @throws RuntimeFailure when the file cannot be written.
void writeWholeFile(const std::string& nativePath, std::string_view content);

}  // namespace vlclientui::platform
