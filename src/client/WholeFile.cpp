#include "client/WholeFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

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

[[noreturn]] void fail(const std::string& what, const fs::path& path, int reason) {
  throw RuntimeFailure(what + " " + utf8FromAny(path.string()) + ": " + std::strerror(reason));
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

std::vector<fs::path> filesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder)) files.push_back(entry.path());
  return files;
}

fs::path wholePath(const fs::path& path) {
  std::error_code error;
  fs::path whole = fs::absolute(path, error);
  return error ? path : whole;
}

}  // namespace

PartialFiles::PartialFiles(const fs::path& target) : target_(wholePath(target)) {
  std::error_code error;
  if (fs::is_directory(target_, error))
    fail("Cannot write, there is a folder of this name:", target_, EISDIR);
  if (!fs::is_directory(target_.parent_path(), error)) {
    fail("Cannot write, there is no such folder:", target_.parent_path(), ENOENT);
  }
  sweep(target_);
  static unsigned count = 0;
  folder_ = target_.parent_path() / (partialPrefix(target_) + std::to_string(getpid()) + "-" +
                                     std::to_string(++count) + std::string(kPartialEnd));
  if (!fs::create_directory(folder_, error)) {
    fail("Cannot write in the folder", target_.parent_path(), error ? error.value() : EEXIST);
  }
}

PartialFiles::~PartialFiles() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

fs::path PartialFiles::file() const { return folder_ / target_.filename(); }

void PartialFiles::publish() {
  const std::vector<fs::path> files = filesIn(folder_);
  for (const fs::path& path : files) syncToDisk(path);
  const fs::path home = target_.parent_path();
  for (const fs::path& path : files) {
    if (path != file()) moveOver(path, home / path.filename());
  }
  const fs::path description = target_.filename().string() + ".aux.xml";
  std::error_code error;
  const bool hasDescription = std::find(files.begin(), files.end(), folder_ / description) != files.end();
  moveOver(file(), target_);
  if (!hasDescription) fs::remove(home / description, error);
  syncToDisk(home);
}

void writeFile(const fs::path& file, std::string_view content) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  stream.close();
  if (!stream) fail("Cannot write", file.filename(), errno);
}

void writeWholeFile(const fs::path& target, std::string_view content) {
  PartialFiles partial(target);
  writeFile(partial.file(), content);
  partial.publish();
}

}  // namespace vlclientui::client
