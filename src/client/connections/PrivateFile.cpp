#include "client/connections/PrivateFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "contracts/NewFile.h"
#include "contracts/ReplacedFile.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr mode_t ownerOnly = 0600;
constexpr mode_t folderOfOwner = 0700;
constexpr std::int64_t mostBytes = std::int64_t{4} << 20;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }

 private:
  int number_;
};

[[noreturn]] void fail(const fs::path& file, const std::string& what, int error) {
  throw RuntimeFailure("The file '" + file.string() + "' cannot be " + what + ": " + std::strerror(error));
}

void makeFolder(const fs::path& file) {
  const fs::path folder = file.parent_path();
  std::error_code error;
  fs::create_directories(folder.parent_path(), error);
  const bool isMade = ::mkdir(folder.c_str(), folderOfOwner) == 0;
  if (!isMade && errno != EEXIST) fail(file, "written", errno);
  if (!fs::is_directory(folder, error)) fail(file, "written", ENOTDIR);
  if (!isMade && ::chmod(folder.c_str(), folderOfOwner) != 0) fail(file, "kept from others", errno);
}

/// Waits until no other process holds it; let go with the object.
class Lock {
 public:
  explicit Lock(const fs::path& file)
      : descriptor_(::open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, ownerOnly)) {
    int outcome = -1;
    while (descriptor_.isOpen() && (outcome = ::flock(descriptor_.get(), LOCK_EX)) != 0 && errno == EINTR) {
    }
    if (outcome != 0) fail(file, "locked", errno);
  }

 private:
  Descriptor descriptor_;
};

void replace(const fs::path& file, std::string_view text) {
  NewFile written(replacedFile(file).file, ownerOnly);
  const bool isWritten = written.isOpen() &&
                         written.setRights(fs::perms::owner_read | fs::perms::owner_write) &&
                         written.write(text) && written.takePlace();
  if (!isWritten) fail(file, "written", errno);
}

std::string readAll(const fs::path& file, const Descriptor& descriptor) {
  std::string text;
  char piece[16384];
  for (;;) {
    const ssize_t got = ::read(descriptor.get(), piece, sizeof(piece));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail(file, "read", errno);
    if (got == 0) return text;
    text.append(piece, static_cast<std::size_t>(got));
  }
}

}  // namespace

PrivateFile::Stamp PrivateFile::stamp() const {
  struct stat status {};
  if (::stat(file_.c_str(), &status) != 0) return {};
  return {status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::optional<std::string> PrivateFile::read() const {
  const Descriptor descriptor(::open(file_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!descriptor.isOpen() && (errno == ENOENT || errno == ENOTDIR)) return std::nullopt;
  struct stat status {};
  if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) fail(file_, "read", errno);
  if (!S_ISREG(status.st_mode) || status.st_size > mostBytes) fail(file_, "read", EINVAL);
  const bool isOpenToOthers = (status.st_mode & (S_IRWXG | S_IRWXO)) != 0;
  if (isOpenToOthers && ::fchmod(descriptor.get(), ownerOnly) == 0)
    endSilently("others could read '" + file_.string() + "'; now they cannot");
  return readAll(file_, descriptor);
}

void PrivateFile::change(const Edit& edit) const {
  makeFolder(file_);
  const Lock lock(file_);
  const auto before = read();
  const std::string after = edit(before);
  if (before != after) replace(file_, after);
}

fs::path connectionsFolder() {
  const char* const data = std::getenv("XDG_DATA_HOME");
  const char* const home = std::getenv("HOME");
  const bool hasData = data != nullptr && fs::path(data).is_absolute();
  if (!hasData && (home == nullptr || *home == '\0')) return {};
  return (hasData ? fs::path(data) : fs::path(home) / ".local" / "share") / "VLClientUI" / "connections";
}

}  // namespace vlclientui::client
