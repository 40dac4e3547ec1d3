#include "client/facade/MadeFolders.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

// Each time another job has removed it in between.
constexpr int mostTries = 1000;

std::vector<fs::path> missingOnTheWayTo(const fs::path& folder) {
  std::vector<fs::path> missing;
  std::error_code error;
  for (fs::path each = folder; !each.empty() && !fs::exists(each, error); each = each.parent_path()) {
    missing.push_back(each);
    if (each == each.parent_path()) break;
  }
  return missing;
}

bool isStill(int handle, const fs::path& folder) {
  struct stat held {};
  struct stat present {};
  return fstat(handle, &held) == 0 && stat(folder.c_str(), &present) == 0 && held.st_dev == present.st_dev &&
         held.st_ino == present.st_ino;
}

/// One that removes a folder has it alone for a moment; another program that holds it for good is not waited
/// for.
bool lockWithOthers(int handle) {
  constexpr int mostLooks = 100;
  constexpr std::chrono::milliseconds pause(2);
  for (int looks = 0; looks < mostLooks; ++looks) {
    if (flock(handle, LOCK_SH | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    std::this_thread::sleep_for(pause);
  }
  return false;
}

}  // namespace

MadeFolders::MadeFolders(const fs::path& folder) {
  std::error_code error;
  for (int tries = 0; tries < mostTries; ++tries) {
    for (fs::path& each : missingOnTheWayTo(folder)) {
      if (std::ranges::find(made_, each) == made_.end()) made_.push_back(std::move(each));
    }
    fs::create_directories(folder, error);
    const bool isGone = error == std::errc::no_such_file_or_directory;
    if (!isGone && (error || hold(folder))) break;
  }
  std::error_code unseen;
  if (error && !fs::is_directory(folder, unseen)) {
    throw RuntimeFailure("The folder " + utf8FromAny(folder.string()) +
                         " cannot be made: " + error.message());
  }
}

/// False where the folder has gone meanwhile. One that cannot be opened or locked is used as it is, and
/// stays.
bool MadeFolders::hold(const fs::path& folder) {
  handle_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle_ < 0) return errno != ENOENT;
  const bool isLocked = lockWithOthers(handle_);
  const bool isThere = isStill(handle_, folder);
  if (isThere && isLocked) return true;
  close(handle_);
  handle_ = -1;
  return isThere;
}

MadeFolders::~MadeFolders() {
  const bool isAlone = handle_ >= 0 && flock(handle_, LOCK_EX | LOCK_NB) == 0;
  std::error_code error;
  for (const fs::path& each : made_) {
    if (isAlone && fs::is_empty(each, error) && !error) fs::remove(each, error);
  }
  if (handle_ >= 0) close(handle_);
}

}  // namespace vlclientui::client
