#include "contracts/NewFile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "contracts/Utf8.h"
#include "contracts/WriterLock.h"

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view newEnd = ".new";

std::string nameOfMachine() {
  std::array<char, 65> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return "unknown";
  return name.data();
}

// ".Name.machine-process-number.new": several machines may write into a shared folder.
std::string beginningFor(const fs::path& target) {
  constexpr std::size_t longest = 100;
  const std::string name = target.filename().string();
  return "." + std::string(utf8Start(name, longest)) + "." + nameOfMachine() + "-";
}

fs::path folderOf(const fs::path& target) {
  return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

fs::path hiddenNameFor(const fs::path& target) {
  static std::atomic<unsigned> counter{0};
  const std::string own = std::to_string(getpid()) + "-" + std::to_string(++counter);
  return folderOf(target) / (beginningFor(target) + own + std::string(newEnd));
}

// The process in a hidden name; 0 for other names.
pid_t writerOf(const std::string& name, const std::string& beginning) {
  if (!name.starts_with(beginning) || !name.ends_with(newEnd)) return 0;
  pid_t process = 0;
  std::from_chars(name.data() + beginning.size(), name.data() + name.size(), process);
  return process;
}

std::string systemNameOf(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

int openNameless(const fs::path& folder, unsigned rights) {
#ifdef O_TMPFILE
  const int descriptor = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, rights);
  if (descriptor < 0) return -1;
  // Held before it has a name. Without its name in the system it could not be given one.
  static_cast<void>(holdAsWriter(descriptor));
  if (access(systemNameOf(descriptor).c_str(), F_OK) == 0) return descriptor;
  ::close(descriptor);
#endif
  return -1;
}

bool writeAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool copyAll(int from, int to) {
  std::vector<char> piece(std::size_t{1} << 16U);
  for (off_t at = 0;;) {
    const ssize_t got = ::pread(from, piece.data(), piece.size(), at);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    if (!writeAll(to, {piece.data(), static_cast<std::size_t>(got)})) return false;
    at += got;
  }
}

bool copyWithRights(int from, int to) {
  struct stat status {};
  return copyAll(from, to) && ::fstat(from, &status) == 0 && ::fchmod(to, status.st_mode & 07777U) == 0 &&
         ::fsync(to) == 0;
}

// Some file systems report a failed write only there. Closed is another descriptor of the same file, so that
// it stays held until it is in place.
bool isClosedWell(int descriptor) {
  const int other = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  return other >= 0 && ::close(other) == 0;
}

// Names may be taken by processes of the same number in other containers.
constexpr int mostNames = 100;

}  // namespace

NewFile::NewFile(fs::path target, unsigned rights) : target_(std::move(target)) {
  removeLeftOvers(target_);
  descriptor_ = openNameless(folderOf(target_), rights);
  if (descriptor_ >= 0) return;
  descriptor_ = openNamed(rights);
  isNamed_ = descriptor_ >= 0;
}

NewFile::~NewFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (isNamed_) ::unlink(name_.c_str());
}

void NewFile::removeLeftOvers(const fs::path& target) {
  const std::string beginning = beginningFor(target);
  std::vector<fs::path> hidden;
  std::error_code error;
  for (fs::directory_iterator it(folderOf(target), error), end; !error && it != end; it.increment(error)) {
    if (writerOf(it->path().filename().string(), beginning) > 0) hidden.push_back(it->path());
  }
  for (const fs::path& file : hidden) removeAbandoned(file, writerOf(file.filename().string(), beginning));
}

bool NewFile::setRights(fs::perms rights) const {
  return ::fchmod(descriptor_, static_cast<mode_t>(rights)) == 0;
}

bool NewFile::write(std::string_view content) const { return writeAll(descriptor_, content); }

int NewFile::openNamed(unsigned rights) {
  for (int i = 0; i < mostNames; ++i) {
    name_ = hiddenNameFor(target_);
    const int descriptor = ::open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, rights);
    if (descriptor < 0 && errno != EEXIST) return -1;
    if (descriptor >= 0 && holdAsWriter(descriptor)) return descriptor;
    if (descriptor >= 0) ::close(descriptor);  // the process that took it for a left-over removes it
  }
  errno = EEXIST;
  return -1;
}

bool NewFile::giveName() {
  if (isNamed_) return true;
  for (int i = 0; i < mostNames; ++i) {
    name_ = hiddenNameFor(target_);
    isNamed_ = ::linkat(AT_FDCWD, systemNameOf(descriptor_).c_str(), AT_FDCWD, name_.c_str(),
                        AT_SYMLINK_FOLLOW) == 0;
    if (isNamed_) return true;
    if (errno != EEXIST) break;
  }
  return copyToName();
}

bool NewFile::copyToName() {
  constexpr unsigned ownerOnly = 0600;
  const int named = openNamed(ownerOnly);
  if (named < 0) return false;
  isNamed_ = true;
  const int nameless = std::exchange(descriptor_, named);
  const bool isCopied = copyWithRights(nameless, named);
  const int reason = errno;
  ::close(nameless);
  errno = reason;
  return isCopied;
}

bool NewFile::takePlace() {
  if (::fsync(descriptor_) != 0 || !giveName() || !isClosedWell(descriptor_)) return false;
  if (::rename(name_.c_str(), target_.c_str()) != 0) return false;
  isNamed_ = false;
  return true;
}

}  // namespace vlclientui
