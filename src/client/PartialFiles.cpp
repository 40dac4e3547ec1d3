#include "client/PartialFiles.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "client/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

std::string hostName() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return "host";
  return name.data();
}

// ".Name.tif.host-" + process + ".partial": shared folders are written by several machines.
std::string partialPrefix(const fs::path& target) {
  return "." + target.filename().string() + "." + hostName() + "-";
}

constexpr std::string_view kPartialEnd = ".partial";

// The process behind a partial folder's name; 0 when it is none of this target's.
pid_t ownerOf(const std::string& name, const std::string& prefix) {
  if (!name.starts_with(prefix) || !name.ends_with(kPartialEnd)) return 0;
  pid_t process = 0;
  std::from_chars(name.data() + prefix.size(), name.data() + name.size(), process);
  return process;
}

bool isDead(pid_t process) { return process > 0 && kill(process, 0) != 0 && errno == ESRCH; }

void sweep(const fs::path& target) {
  std::error_code error;
  const std::string prefix = partialPrefix(target);
  std::vector<fs::path> stale;
  for (fs::directory_iterator it(target.parent_path(), error), end; !error && it != end;
       it.increment(error)) {
    if (isDead(ownerOf(it->path().filename().string(), prefix))) stale.push_back(it->path());
  }
  for (const fs::path& folder : stale) fs::remove_all(folder, error);
}

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

[[noreturn]] void fail(const std::string& what, const fs::path& path, int reason) {
  throw RuntimeFailure(what + " " + utf8FromAny(path.string()) + ": " + reasonText(reason));
}

void syncToDisk(const fs::path& path) {
  const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) fail("Cannot bring to the disk:", path, errno);
  const int result = fsync(handle);
  const int reason = errno;
  close(handle);
  // Some file systems know no syncing of folders.
  if (result != 0 && reason != EINVAL) fail("Cannot bring to the disk:", path, reason);
}

void moveOver(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::rename(from, to, error);
  if (error) fail("Cannot put in place:", to, error.value());
}

fs::path wholePath(const fs::path& path) {
  std::error_code error;
  fs::path whole = fs::absolute(path, error);
  return error ? path : whole;
}

fs::path hiddenFolderFor(const fs::path& target) {
  static unsigned count = 0;
  return target.parent_path() / (partialPrefix(target) + std::to_string(getpid()) + "-" +
                                 std::to_string(++count) + std::string(kPartialEnd));
}

}  // namespace

std::vector<fs::path> descriptionsOf(const fs::path& image) {
  std::vector<fs::path> files;
  for (const char* const ending : {".aux.xml", ".ovr", ".msk"}) files.emplace_back(image.string() + ending);
  return files;
}

PartialFiles::PartialFiles(const fs::path& target, PartialPlace place)
    : target_(wholePath(target)),
      hidden_(hiddenFolderFor(target_)),
      place_(place),
      folder_([this](const std::string& name) { return make(name); }) {
  std::error_code error;
  const fs::path home = target_.parent_path();
  if (fs::is_directory(target_, error))
    fail("Cannot write, there is a folder of this name:", target_, EISDIR);
  if (!fs::is_directory(home, error)) fail("Cannot write, there is no such folder:", home, ENOENT);
  sweep(target_);
  prove();
}

PartialFiles::~PartialFiles() {
  std::error_code error;
  fs::remove_all(hidden_, error);
}

std::string PartialFiles::file() const { return folder_.pathOf(target_.filename().string()); }

std::string PartialFiles::failure() const {
  const int reason = folder_.failureNumber();
  if (reason == 0) return {};
  return "Cannot write in the folder " + utf8FromAny(target_.parent_path().string()) + ": " +
         reasonText(reason);
}

void PartialFiles::write(const std::string& name, std::string_view content) {
  const auto file = folder_.make(name);
  const bool isWritten = file && file->write(0, content.data(), content.size()) == content.size();
  if (!isWritten) throw RuntimeFailure(failure());
}

void PartialFiles::publish() {
  syncAll();
  if (place_ == PartialPlace::WithoutName) giveNames();
  moveAll();
}

std::shared_ptr<GrowingFile> PartialFiles::make(const std::string& name) {
  if (place_ == PartialPlace::WithoutName) return GrowingFile::withoutName(target_.parent_path());
  return GrowingFile::named(hidden_ / name);
}

// A folder that cannot be written is told of before any work is done.
void PartialFiles::prove() {
  const fs::path home = target_.parent_path();
  if (place_ == PartialPlace::WithoutName) {
    if (GrowingFile::withoutName(home)) return;
    const int reason = errno;
    const bool isUnknown = reason == EOPNOTSUPP || reason == EISDIR || reason == ENOENT || reason == EINVAL;
    if (!isUnknown) fail("Cannot write in the folder", home, reason);
    place_ = PartialPlace::HiddenFolder;
  }
  makeHiddenFolder();
}

void PartialFiles::makeHiddenFolder() {
  std::error_code error;
  if (fs::create_directory(hidden_, error)) return;
  fail("Cannot write in the folder", target_.parent_path(), error ? error.value() : EEXIST);
}

void PartialFiles::syncAll() {
  for (const std::string& name : folder_.names()) {
    const auto file = folder_.find(name);
    if (!file->sync()) fail("Cannot bring to the disk:", target_.parent_path() / name, file->failureNumber());
  }
}

// Files without a name cannot be moved over others: they get one in the hidden folder first, all of them
// before the first one is moved.
void PartialFiles::giveNames() {
  makeHiddenFolder();
  for (const std::string& name : folder_.names()) {
    const auto file = folder_.find(name);
    if (!file->giveName(hidden_ / name)) fail("Cannot put in place:", target_, file->failureNumber());
  }
}

void PartialFiles::moveAll() {
  const fs::path home = target_.parent_path();
  const std::string image = target_.filename().string();
  for (const std::string& name : folder_.names()) {
    if (name != image) moveOver(hidden_ / name, home / name);
  }
  moveOver(hidden_ / image, target_);
  std::error_code error;
  for (const fs::path& former : descriptionsOf(target_)) {
    if (!folder_.find(former.filename().string())) fs::remove(former, error);
  }
  fs::remove_all(hidden_, error);
  syncToDisk(home);
}

void writeWholeFile(const fs::path& target, std::string_view content) {
  PartialFiles partial(target);
  partial.write(target.filename().string(), content);
  partial.publish();
}

}  // namespace vlclientui::client
