#include "contracts/NewFile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
  return "." + target.filename().string().substr(0, longest) + "." + nameOfMachine() + "-";
}

fs::path folderOf(const fs::path& target) {
  return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

fs::path hiddenNameFor(const fs::path& target) {
  static std::atomic<unsigned> counter{0};
  const std::string own = std::to_string(getpid()) + "-" + std::to_string(++counter);
  return folderOf(target) / (beginningFor(target) + own + std::string(newEnd));
}

bool isOfAKilledProcess(const std::string& name, const std::string& beginning) {
  if (!name.starts_with(beginning) || !name.ends_with(newEnd)) return false;
  pid_t process = 0;
  std::from_chars(name.data() + beginning.size(), name.data() + name.size(), process);
  return process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

std::string systemNameOf(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

int openNameless(const fs::path& folder, unsigned rights) {
#ifdef O_TMPFILE
  const int descriptor = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, rights);
  // Without that name it could not be given one later.
  if (descriptor < 0 || access(systemNameOf(descriptor).c_str(), F_OK) == 0) return descriptor;
  ::close(descriptor);
#endif
  return -1;
}

}  // namespace

NewFile::NewFile(fs::path target, unsigned rights)
    : target_(std::move(target)), name_(hiddenNameFor(target_)) {
  removeLeftOvers(target_);
  descriptor_ = openNameless(folderOf(target_), rights);
  if (descriptor_ >= 0) return;
  descriptor_ = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, rights);
  isNamed_ = descriptor_ >= 0;
}

NewFile::~NewFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (isNamed_) ::unlink(name_.c_str());
}

void NewFile::removeLeftOvers(const fs::path& target) {
  const std::string beginning = beginningFor(target);
  std::vector<fs::path> leftOvers;
  std::error_code error;
  for (fs::directory_iterator it(folderOf(target), error), end; !error && it != end; it.increment(error)) {
    if (isOfAKilledProcess(it->path().filename().string(), beginning)) leftOvers.push_back(it->path());
  }
  for (const fs::path& file : leftOvers) fs::remove(file, error);
}

bool NewFile::setRights(fs::perms rights) const {
  return ::fchmod(descriptor_, static_cast<mode_t>(rights)) == 0;
}

bool NewFile::write(std::string_view content) const {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor_, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool NewFile::giveName() {
  if (isNamed_) return true;
  isNamed_ =
      ::linkat(AT_FDCWD, systemNameOf(descriptor_).c_str(), AT_FDCWD, name_.c_str(), AT_SYMLINK_FOLLOW) == 0;
  return isNamed_;
}

// Some file systems report a failed write only here.
bool NewFile::closeDescriptor() { return ::close(std::exchange(descriptor_, -1)) == 0; }

bool NewFile::takePlace() {
  if (::fsync(descriptor_) != 0 || !giveName() || !closeDescriptor()) return false;
  if (::rename(name_.c_str(), target_.c_str()) != 0) return false;
  isNamed_ = false;
  return true;
}

}  // namespace vlclientui
