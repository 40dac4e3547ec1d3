#pragma once

#include <filesystem>
#include <optional>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// What a writer keeps of the file that it replaces: symbolic links stay links, access rights stay as they
/// were.
struct ReplacedFile {
  std::filesystem::path file;  ///< with all links followed, whether it exists or not
  std::optional<std::filesystem::perms>
      rights;             ///< all bits that chmod knows; nothing unless it is a regular file
  bool isDevice = false;  ///< a device, pipe or socket, in whose place no file may be put
};

/// @returns the path itself unless it is a link that leads somewhere.
[[nodiscard]] ReplacedFile replacedFile(const std::filesystem::path& path);

}  // namespace vlclientui
#pragma GCC visibility pop
