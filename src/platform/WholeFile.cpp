#include "platform/WholeFile.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "contracts/ReplacedFile.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::platform {
namespace {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  /// Some file systems report a failed write only here.
  [[nodiscard]] bool close() { return ::close(std::exchange(descriptor_, -1)) == 0; }

 private:
  int descriptor_;
};

[[noreturn]] void failToWrite(const std::string& path, int error) {
  throw RuntimeFailure("The file '" + path + "' cannot be written: " + std::strerror(error));
}

/// Creates a file, with the rights of any new file; fails when one exists.
int openNew(const std::string& name) {
  return ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

std::string temporaryName(const std::string& target) {
  static std::atomic<unsigned> counter{0};
  return target + "." + std::to_string(::getpid()) + "-" + std::to_string(++counter) + ".tmp";
}

/// The temporary file beside the target; removed unless it was renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& target)
      : name_(temporaryName(target)), descriptor_(openNew(name_)) {
    if (!descriptor_.isOpen()) failToWrite(target, errno);
  }
  ~TemporaryFile() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Gives it the rights of the file that it replaces, if any.
  [[nodiscard]] bool takeRightsOf(const ReplacedFile& former) const {
    return !former.rights || ::fchmod(descriptor_.get(), static_cast<mode_t>(*former.rights)) == 0;
  }

  [[nodiscard]] bool write(std::string_view content) const {
    while (!content.empty()) {
      const ssize_t written = ::write(descriptor_.get(), content.data(), content.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return false;
      content.remove_prefix(static_cast<std::size_t>(written));
    }
    return ::fsync(descriptor_.get()) == 0;
  }

  [[nodiscard]] bool renameTo(const std::string& target) {
    if (!descriptor_.close() || ::rename(name_.c_str(), target.c_str()) != 0) return false;
    name_.clear();
    return true;
  }

 private:
  std::string name_;
  FileDescriptor descriptor_;
};

/// Brings the new name to disk. The file is in place already, so a failure has no consequence.
void syncFolderOf(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const FileDescriptor descriptor(
      ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.get());
}

std::optional<std::string> readAll(const FileDescriptor& file, std::size_t expectedSize) {
  std::string content(expectedSize + 1, '\0');
  std::size_t length = 0;
  for (;;) {
    if (length == content.size()) content.resize(content.size() * 2);
    const ssize_t got = ::read(file.get(), content.data() + length, content.size() - length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    length += static_cast<std::size_t>(got);
  }
  content.resize(length);
  return content;
}

}  // namespace

std::optional<std::string> readWholeFile(const std::string& nativePath) {
  // Without O_NONBLOCK, opening a pipe would block until somebody writes to it.
  const FileDescriptor file(::open(nativePath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return readAll(file, static_cast<std::size_t>(status.st_size));
}

void writeWholeFile(const std::string& nativePath, std::string_view content) {
  const ReplacedFile former = replacedFile(nativePath);
  if (former.isDevice)
    throw RuntimeFailure("The file '" + nativePath + "' cannot be written: it is a device or a pipe");
  const std::string target = former.file.string();
  TemporaryFile temporary(target);
  const bool isWritten = temporary.takeRightsOf(former) && temporary.write(content);
  if (!isWritten || !temporary.renameTo(target)) failToWrite(nativePath, errno);
  syncFolderOf(target);
}

}  // namespace vlclientui::platform
