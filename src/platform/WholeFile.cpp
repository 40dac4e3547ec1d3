#include "platform/WholeFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "contracts/NewFile.h"
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

 private:
  int descriptor_;
};

[[noreturn]] void failToWrite(const std::string& path, int error) {
  throw RuntimeFailure("The file '" + path + "' cannot be written: " + std::strerror(error));
}

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
  NewFile file(target);
  const bool isWritten = file.isOpen() && (!former.rights || file.setRights(*former.rights)) &&
                         file.write(content) && file.takePlace();
  if (!isWritten) failToWrite(nativePath, errno);
  syncFolderOf(target);
}

}  // namespace vlclientui::platform
