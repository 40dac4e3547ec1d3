#pragma once

#include <filesystem>
#include <optional>

namespace vlclientui {

/// What every writer keeps of the file in whose place it puts a new one: symbolic links stay links, and who
/// may read or write the file stays as it was.
struct ReplacedFile {
  std::filesystem::path file;  ///< behind all links, whether it is there or not
  std::optional<std::filesystem::perms>
      rights;  ///< with all bits that chmod knows; nothing for no regular file
};

/// @returns the path itself where it is no link, or one that leads in a circle.
[[nodiscard]] ReplacedFile replacedFile(const std::filesystem::path& path);

}  // namespace vlclientui
