// What is not declared by the system's headers in another way: these give some of the names below others.
#undef _FILE_OFFSET_BITS
#undef _FORTIFY_SOURCE

#include "support/FailingDisk.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

struct Failing {
  std::string folder;
  int error = 0;
  std::atomic<std::int64_t> left = 0;
};

Failing& failing() {
  static auto* const one = [] {
    auto* const made = new Failing;
    const char* const folder = std::getenv("VL_FAIL_UNDER");
    const char* const error = std::getenv("VL_FAIL_ERROR");
    const char* const after = std::getenv("VL_FAIL_AFTER");
    if (folder != nullptr && error != nullptr) {
      made->folder = folder;
      made->error = std::atoi(error);
      made->left = after == nullptr ? 0 : std::atoll(after);
    }
    return made;
  }();
  return *one;
}

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Of descriptors below the folder.
constexpr int mostDescriptors = 65536;
std::array<std::atomic<bool>, mostDescriptors> isWatched;

bool isBelow(int folder, const char* path) {
  const Failing& rule = failing();
  if (rule.error == 0 || path == nullptr) return false;
  std::string whole = path;
  if (whole.empty() || (whole[0] != '/' && folder != AT_FDCWD)) return false;
  if (whole[0] != '/') {
    std::array<char, 4096> here{};
    if (getcwd(here.data(), here.size()) == nullptr) return false;
    whole = std::string(here.data()) + "/" + whole;
  }
  return whole.starts_with(rule.folder) &&
         (whole.size() == rule.folder.size() || whole[rule.folder.size()] == '/');
}

bool mayNotChange(int folder, const char* path) {
  const bool isRefused = failing().error == EROFS && isBelow(folder, path);
  if (isRefused) errno = EROFS;
  return isRefused;
}

int watched(int descriptor, int folder, const char* path) {
  if (descriptor >= 0 && descriptor < mostDescriptors)
    isWatched[static_cast<std::size_t>(descriptor)] = isBelow(folder, path);
  return descriptor;
}

bool isOfTheDisk(int descriptor) {
  return failing().error != 0 && descriptor >= 0 && descriptor < mostDescriptors &&
         isWatched[static_cast<std::size_t>(descriptor)];
}

// How many of these bytes there is room for; less than none where there is none, with errno.
ssize_t roomFor(int descriptor, std::size_t count) {
  const bool isOfWriting = failing().error != EROFS && failing().error != EOPNOTSUPP;
  if (!isOfTheDisk(descriptor) || !isOfWriting) return static_cast<ssize_t>(count);
  const auto wanted = static_cast<std::int64_t>(count);
  const std::int64_t before = failing().left.fetch_sub(wanted);
  if (before >= wanted) return static_cast<ssize_t>(count);
  failing().left = 0;
  if (before > 0) return static_cast<ssize_t>(before);
  errno = failing().error;
  return -1;
}

mode_t modeOf(int flags, va_list arguments) {
  const bool isMaking = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return isMaking ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

bool isForWriting(int flags) { return (flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT) != 0; }

template <class... Arguments>
int openAs(const char* name, int folder, const char* path, int flags, Arguments... arguments) {
  if (isForWriting(flags) && mayNotChange(folder, path)) return -1;
  return watched(next<int(Arguments..., ...)>(name)(arguments...), folder, path);
}

}  // namespace

extern "C" {

void vlFailUnder(const char* folder, int error, std::int64_t afterBytes) {
  Failing& rule = failing();
  rule.folder = folder == nullptr ? "" : folder;
  while (rule.folder.ends_with('/')) rule.folder.pop_back();
  rule.left = afterBytes;
  rule.error = folder == nullptr ? 0 : error;
}

#define VL_OPENS(name)                                                                        \
  int name(const char* path, int flags, ...) {                                                \
    va_list arguments;                                                                        \
    va_start(arguments, flags);                                                               \
    const mode_t mode = modeOf(flags, arguments);                                             \
    va_end(arguments);                                                                        \
    return openAs<const char*, int, mode_t>(#name, AT_FDCWD, path, flags, path, flags, mode); \
  }
#define VL_OPENS_AT(name)                                                                                \
  int name(int folder, const char* path, int flags, ...) {                                               \
    va_list arguments;                                                                                   \
    va_start(arguments, flags);                                                                          \
    const mode_t mode = modeOf(flags, arguments);                                                        \
    va_end(arguments);                                                                                   \
    return openAs<int, const char*, int, mode_t>(#name, folder, path, flags, folder, path, flags, mode); \
  }
VL_OPENS(open)
VL_OPENS(open64)
VL_OPENS_AT(openat)
VL_OPENS_AT(openat64)

ssize_t write(int descriptor, const void* bytes, size_t count) {
  const ssize_t room = roomFor(descriptor, count);
  return room < 0
             ? room
             : next<ssize_t(int, const void*, size_t)>("write")(descriptor, bytes, static_cast<size_t>(room));
}

ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t at) {
  const ssize_t room = roomFor(descriptor, count);
  if (room < 0) return room;
  return next<ssize_t(int, const void*, size_t, off_t)>("pwrite")(descriptor, bytes,
                                                                  static_cast<size_t>(room), at);
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t count, off64_t at) {
  const ssize_t room = roomFor(descriptor, count);
  if (room < 0) return room;
  return next<ssize_t(int, const void*, size_t, off64_t)>("pwrite64")(descriptor, bytes,
                                                                      static_cast<size_t>(room), at);
}

int mkdir(const char* path, mode_t mode) noexcept {
  return mayNotChange(AT_FDCWD, path) ? -1 : next<int(const char*, mode_t)>("mkdir")(path, mode);
}

int unlink(const char* path) noexcept {
  return mayNotChange(AT_FDCWD, path) ? -1 : next<int(const char*)>("unlink")(path);
}

int rename(const char* from, const char* to) noexcept {
  const bool isRefused = mayNotChange(AT_FDCWD, from) || mayNotChange(AT_FDCWD, to);
  return isRefused ? -1 : next<int(const char*, const char*)>("rename")(from, to);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  if (failing().error == EOPNOTSUPP && isBelow(toFolder, to)) {
    errno = EOPNOTSUPP;
    return -1;
  }
  const bool isRefused = mayNotChange(toFolder, to);
  return isRefused ? -1
                   : next<int(int, const char*, int, const char*, int)>("linkat")(fromFolder, from, toFolder,
                                                                                  to, flags);
}
}
