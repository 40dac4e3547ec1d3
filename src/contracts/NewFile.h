#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The new content of a file, which takes the place of the former one as a whole. Until then it has no name
/// where the file system knows such files, so that it vanishes with a process that is killed. For a moment,
/// elsewhere all the time, it bears a hidden name beside its target; what killed processes of this machine
/// left under such names is removed when the next content for that target begins. Where a file without a name
/// can be given none, its content is copied to one that has it.
///
/// Operations return false on failure, with errno; the former file is untouched then.
class NewFile {
 public:
  /// @param target with links followed. @param rights of the new file, less those that the process withholds.
  explicit NewFile(std::filesystem::path target, unsigned rights = 0666);
  /// Removes what has not taken its place.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// What killed processes left for that target, as the constructor does it.
  static void removeLeftOvers(const std::filesystem::path& target);

  /// Whether it could be made.
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  /// Exactly these rights.
  [[nodiscard]] bool setRights(std::filesystem::perms rights) const;
  /// Appends all of it.
  [[nodiscard]] bool write(std::string_view content) const;
  /// Brings the content to disk and puts it in the place of the target. The last call.
  [[nodiscard]] bool takePlace();

 private:
  [[nodiscard]] int openNamed(unsigned rights);
  [[nodiscard]] bool giveName();
  [[nodiscard]] bool copyToName();

  std::filesystem::path target_;
  std::filesystem::path name_;  ///< beside the target
  bool isNamed_ = false;
  int descriptor_ = -1;
};

}  // namespace vlclientui
#pragma GCC visibility pop
