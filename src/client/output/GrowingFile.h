#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>

namespace vlclientui::client {

/// An open file that may have no name; the system frees such a file with the process, however that ends. On
/// failure operations return false, or less than requested; failureNumber() has the first reason.
class GrowingFile {
 public:
  /// A file without a name on the folder's file system. @returns null, with errno, when the folder cannot be
  /// written or the file system does not support it.
  [[nodiscard]] static std::shared_ptr<GrowingFile> withoutName(const std::filesystem::path& folder);
  /// A new file. @returns null, with errno, when it cannot be made.
  [[nodiscard]] static std::shared_ptr<GrowingFile> named(const std::filesystem::path& file);

  /// A file that lies on no disk. @returns null, with errno, when it cannot be made.
  [[nodiscard]] static std::shared_ptr<GrowingFile> inMemory();

  /// Takes ownership of the descriptor.
  explicit GrowingFile(int descriptor) : descriptor_(descriptor) {}
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  /// @returns bytes read; fewer than requested at the end.
  [[nodiscard]] std::size_t read(std::uint64_t offset, void* bytes, std::size_t count) const;
  /// @returns bytes written.
  std::size_t write(std::uint64_t offset, const void* bytes, std::size_t count);
  bool resize(std::uint64_t size);
  [[nodiscard]] std::uint64_t size() const;
  /// Writes everything to disk.
  bool sync();
  /// Access rights, as for chmod.
  bool setRights(std::filesystem::perms rights);
  /// Names a nameless file. The name must be free and on the same file system.
  bool giveName(const std::filesystem::path& file);

  /// An errno value; 0 without a failure so far.
  [[nodiscard]] int failureNumber() const { return failure_; }

 private:
  bool keepFailure(bool isDone);
  void hurry(std::size_t written);

  int descriptor_;
  std::size_t waiting_ = 0;  ///< bytes not yet handed to the disk
  int failure_ = 0;
};

}  // namespace vlclientui::client
