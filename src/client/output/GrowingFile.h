#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>

namespace vlclientui::client {

/// An open file that need not have a name: without one the system frees it with the process, however that
/// ends. Operations return false, or less than asked, on failure; failureNumber() tells the first reason.
class GrowingFile {
 public:
  /// A file without a name on the folder's file system. @returns null where that knows no such files, or the
  /// folder cannot be written; errno tells the reason.
  [[nodiscard]] static std::shared_ptr<GrowingFile> withoutName(const std::filesystem::path& folder);
  /// A new file. @returns null, with errno, when it cannot be made.
  [[nodiscard]] static std::shared_ptr<GrowingFile> named(const std::filesystem::path& file);

  /// Takes the descriptor over.
  explicit GrowingFile(int descriptor) : descriptor_(descriptor) {}
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  /// @returns bytes read; less than asked at the end.
  [[nodiscard]] std::size_t read(std::uint64_t offset, void* bytes, std::size_t count) const;
  /// @returns bytes written.
  std::size_t write(std::uint64_t offset, const void* bytes, std::size_t count);
  bool resize(std::uint64_t size);
  [[nodiscard]] std::uint64_t size() const;
  /// Brings all to the disk.
  bool sync();
  /// Who may read and write the file, as chmod takes it.
  bool setRights(std::filesystem::perms rights);
  /// Gives a file without a name this one, which must be free and on the same file system.
  bool giveName(const std::filesystem::path& file);

  /// An errno value; 0 when nothing failed so far.
  [[nodiscard]] int failureNumber() const { return failure_; }

 private:
  bool keepFailure(bool isDone);
  void hurry(std::size_t written);

  int descriptor_;
  std::size_t waiting_ = 0;  ///< bytes that the disk has not been told of
  int failure_ = 0;
};

}  // namespace vlclientui::client
