#pragma once

#include <filesystem>
#include <vector>

namespace vlclientui::client {

/// Folders on the way to a file. Those that it made go again, where nothing came to stand in them and nobody
/// else is about to write there: several jobs, of this process or others, may share a new folder.
class MadeFolders {
 public:
  /// @param folder is there once this is made. @throws RuntimeFailure where it cannot be made.
  explicit MadeFolders(const std::filesystem::path& folder);
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;
  /// Where two jobs at a time both write nothing, their folder stays.
  ~MadeFolders();

 private:
  [[nodiscard]] bool hold(const std::filesystem::path& folder);

  std::vector<std::filesystem::path> made_;  ///< the innermost first
  int handle_ = -1;                          ///< of the innermost; its lock tells others not to remove it
};

}  // namespace vlclientui::client
