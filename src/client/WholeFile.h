#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vlclientui::client {

/// A hidden folder beside a target, in which a file grows under its final name with all that goes with it.
/// Gone with this object, so that whatever ends the work early leaves nothing. Folders that a process left
/// behind that no longer runs are swept away when the next one is made for the same target.
class PartialFiles {
 public:
  /// @throws RuntimeFailure when the target's folder is missing or cannot be written, or the target is a
  /// folder itself.
  explicit PartialFiles(const std::filesystem::path& target);
  ~PartialFiles();
  PartialFiles(const PartialFiles&) = delete;
  PartialFiles& operator=(const PartialFiles&) = delete;

  /// The target's name within the folder.
  [[nodiscard]] std::filesystem::path file() const;

  /// Brings all to the disk, then moves all beside the target and over it, the target itself last. A former
  /// ".aux.xml" that has no successor is removed, as it would describe another image.
  /// @throws RuntimeFailure; the former target is untouched then.
  void publish();

 private:
  std::filesystem::path target_;
  std::filesystem::path folder_;
};

/// @throws RuntimeFailure; the former file is untouched then.
void writeWholeFile(const std::filesystem::path& target, std::string_view content);
/// Within a partial folder. @throws RuntimeFailure when not all could be written.
void writeFile(const std::filesystem::path& file, std::string_view content);

}  // namespace vlclientui::client
