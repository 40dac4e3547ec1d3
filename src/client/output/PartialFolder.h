#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "client/output/GrowingFile.h"

namespace vlclientui::client {

/// Where files are while they grow.
enum class PartialPlace {
  WithoutName,   ///< nameless; a hidden folder where the file system has no nameless files
  HiddenFolder,  ///< always in a hidden folder beside the target
};

/// A folder in which files grow hidden before they are moved into place. Whatever is not moved vanishes with
/// this object.
class PartialFolder {
 public:
  /// Removes what dead processes left of exports to the same target.
  /// @param target the name in the names of hidden folders.
  PartialFolder(std::filesystem::path home, const std::string& target, PartialPlace place);
  ~PartialFolder();
  PartialFolder(const PartialFolder&) = delete;
  PartialFolder& operator=(const PartialFolder&) = delete;

  /// Checks that files can be made here. @throws RuntimeFailure when they cannot.
  void prove();
  /// @returns null, with errno, when it cannot be made.
  [[nodiscard]] std::shared_ptr<GrowingFile> make(const std::string& name);
  /// A file without a name cannot be moved over another: it gets one that is hidden. @throws RuntimeFailure.
  void giveName(GrowingFile& file, const std::string& name);
  /// @param place in this folder. @throws RuntimeFailure.
  void move(const std::string& name, const std::filesystem::path& place);
  /// Takes away what is hidden and brings the moved names to the disk. @throws RuntimeFailure.
  void settle();

 private:
  [[nodiscard]] bool makeHidden();

  std::filesystem::path home_;
  std::filesystem::path hidden_;
  PartialPlace place_;
};

/// @param reason an errno value, told with what helps.
[[nodiscard]] std::string reasonText(int reason);
[[noreturn]] void failAt(const std::string& what, const std::filesystem::path& path, int reason);

}  // namespace vlclientui::client
