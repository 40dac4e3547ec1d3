#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace vlclientui::client {

/// A small file of one user that nobody else may read: rights 0600 in a folder of 0700. It is written whole
/// or not at all, and several processes may change it at a time.
class PrivateFile {
 public:
  /// Tells one state of the file from another.
  struct Stamp {
    std::uint64_t inode = 0;
    std::int64_t size = -1;  ///< -1 where there is no file
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    bool operator==(const Stamp&) const = default;
  };
  /// Makes the new text from the one that is there, nothing where there is none. What it raises ends the
  /// change.
  using Edit = std::function<std::string(const std::optional<std::string>&)>;

  explicit PrivateFile(std::filesystem::path file) : file_(std::move(file)) {}

  [[nodiscard]] const std::filesystem::path& path() const { return file_; }
  [[nodiscard]] Stamp stamp() const;
  /// Nothing where there is no file. Rights of others on it are taken away.
  /// @throws RuntimeFailure when it is there and cannot be read.
  [[nodiscard]] std::optional<std::string> read() const;
  /// Reads and replaces it while no other process does. Makes the folder.
  /// @throws RuntimeFailure when it cannot be written; it is as it was then.
  void change(const Edit& edit) const;

 private:
  std::filesystem::path file_;
};

/// The folder of connections below the user's data: XDG_DATA_HOME, else .local/share of the home folder.
/// Empty where neither is known.
[[nodiscard]] std::filesystem::path connectionsFolder();

}  // namespace vlclientui::client
