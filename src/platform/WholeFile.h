#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Reads and writes files as a whole. Paths are native.
namespace vlclientui::platform {

/// Nothing when the path is not a readable regular file; folders, pipes and devices are not.
[[nodiscard]] std::optional<std::string> readWholeFile(const std::string& nativePath);

/// Replaces the file's content, or creates the file; never leaves half of one. The content is written under
/// another name in the same folder, brought to disk and renamed. Access rights of an old file stay, and a
/// symbolic link stays one. On failure the old file is untouched and nothing new is left in the folder.
/// @throws RuntimeFailure when the file cannot be written.
void writeWholeFile(const std::string& nativePath, std::string_view content);

}  // namespace vlclientui::platform
