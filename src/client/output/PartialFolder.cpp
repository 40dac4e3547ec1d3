#include "client/output/PartialFolder.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "client/raster/NameMark.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view partialEnd = ".partial";

std::string hostName() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return "host";
  return name.data();
}

// A hidden name is longer than the file's, which may be as long as a name can be.
std::string shortened(const std::string& target) {
  constexpr std::size_t longest = 100;
  constexpr std::size_t markDigits = 16;
  return target.size() <= longest ? target : nameMark(target, markDigits);
}

// ".Name.tif.host-" + process + ".partial": several machines may write to a shared folder.
std::string partialPrefix(const std::string& target) {
  return "." + shortened(target) + "." + hostName() + "-";
}

// The process in a partial folder's name; 0 for another target's folder.
pid_t ownerOf(const std::string& name, const std::string& prefix) {
  if (!name.starts_with(prefix) || !name.ends_with(partialEnd)) return 0;
  pid_t process = 0;
  std::from_chars(name.data() + prefix.size(), name.data() + name.size(), process);
  return process;
}

bool isDead(pid_t process) { return process > 0 && kill(process, 0) != 0 && errno == ESRCH; }

void sweep(const fs::path& home, const std::string& target) {
  std::error_code error;
  const std::string prefix = partialPrefix(target);
  std::vector<fs::path> stale;
  for (fs::directory_iterator it(home, error), end; !error && it != end; it.increment(error)) {
    if (isDead(ownerOf(it->path().filename().string(), prefix))) stale.push_back(it->path());
  }
  for (const fs::path& folder : stale) fs::remove_all(folder, error);
}

std::string hiddenName(const std::string& target) {
  static std::atomic<unsigned> count = 0;
  return partialPrefix(target) + std::to_string(getpid()) + "-" + std::to_string(++count) +
         std::string(partialEnd);
}

bool knowsNoNamelessFiles(int reason) {
  return reason == EOPNOTSUPP || reason == EISDIR || reason == ENOENT || reason == EINVAL;
}

}  // namespace

std::string reasonText(int reason) {
  const std::string text = std::strerror(reason);
  switch (reason) {
    case ENOSPC:
    case EDQUOT:
      return text + ". Free some room, or choose another folder.";
    case EFBIG:
      return text + ". The file system or a limit of the account allows no larger files.";
    case EACCES:
    case EPERM:
    case EROFS:
      return text + ". Choose a folder that you may write.";
    default:
      return text;
  }
}

void failAt(const std::string& what, const fs::path& path, int reason) {
  throw RuntimeFailure(what + " " + utf8FromAny(path.string()) + ": " + reasonText(reason));
}

PartialFolder::PartialFolder(fs::path home, const std::string& target, PartialPlace place)
    : home_(std::move(home)), hidden_(home_ / hiddenName(target)), place_(place) {
  sweep(home_, target);
}

PartialFolder::~PartialFolder() {
  std::error_code error;
  fs::remove_all(hidden_, error);
}

void PartialFolder::prove() {
  std::error_code error;
  if (!fs::is_directory(home_, error)) failAt("Cannot write, there is no such folder:", home_, ENOENT);
  if (place_ == PartialPlace::WithoutName) {
    if (GrowingFile::withoutName(home_)) return;
    if (!knowsNoNamelessFiles(errno)) failAt("Cannot write in the folder", home_, errno);
    place_ = PartialPlace::HiddenFolder;
  }
  if (!makeHidden()) failAt("Cannot write in the folder", home_, errno);
}

std::shared_ptr<GrowingFile> PartialFolder::make(const std::string& name) {
  if (place_ == PartialPlace::WithoutName) {
    auto file = GrowingFile::withoutName(home_);
    if (file || !knowsNoNamelessFiles(errno)) return file;
    place_ = PartialPlace::HiddenFolder;
  }
  return makeHidden() ? GrowingFile::named(hidden_ / name) : nullptr;
}

void PartialFolder::giveName(GrowingFile& file, const std::string& name) {
  if (place_ == PartialPlace::HiddenFolder) return;
  if (!makeHidden()) failAt("Cannot write in the folder", home_, errno);
  if (!file.giveName(hidden_ / name)) failAt("Cannot put in place:", home_ / name, file.failureNumber());
}

void PartialFolder::move(const std::string& name, const fs::path& place) {
  std::error_code error;
  fs::rename(hidden_ / name, place, error);
  if (error) failAt("Cannot put in place:", place, error.value());
}

void PartialFolder::settle() {
  std::error_code error;
  fs::remove_all(hidden_, error);
  const int handle = open(home_.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) failAt("Cannot bring to the disk:", home_, errno);
  const int result = fsync(handle);
  const int reason = errno;
  close(handle);
  // Some file systems cannot sync folders.
  if (result != 0 && reason != EINVAL) failAt("Cannot bring to the disk:", home_, reason);
}

bool PartialFolder::makeHidden() {
  std::error_code error;
  if (fs::is_directory(hidden_, error) || fs::create_directory(hidden_, error)) return true;
  errno = error ? error.value() : EEXIST;
  return false;
}

}  // namespace vlclientui::client
