#include "contracts/WriterLock.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

bool isGone(pid_t process) { return process > 0 && ::kill(process, 0) != 0 && errno == ESRCH; }

bool isOld(int descriptor) {
  constexpr std::time_t day = 24 * 60 * 60;
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && std::time(nullptr) - status.st_mtime > day;
}

// A lock that is shared does for looking, and needs no right to write.
bool isHeldByNobody(int descriptor) {
  if (::flock(descriptor, LOCK_SH | LOCK_NB) == 0) return true;
  return errno != EWOULDBLOCK && isOld(descriptor);
}

}  // namespace

bool holdAsWriter(int descriptor) {
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
  struct stat status {};
  return ::fstat(descriptor, &status) != 0 || status.st_nlink > 0;
}

void removeAbandoned(const fs::path& path, pid_t writer) {
  if (!isGone(writer)) return;
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  std::error_code error;
  // While it is held: a writer that has just made it learns by that that it is lost.
  if (isHeldByNobody(descriptor)) fs::remove_all(path, error);
  ::close(descriptor);
}

}  // namespace vlclientui
