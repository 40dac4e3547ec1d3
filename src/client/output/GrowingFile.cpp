#include "client/output/GrowingFile.h"

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlclientui::client {
namespace {

constexpr mode_t usualMode = 0666;
constexpr std::size_t hurryBytes = 32U << 20U;

std::shared_ptr<GrowingFile> opened(const std::filesystem::path& path, int flags) {
  const int descriptor = open(path.c_str(), flags | O_RDWR | O_CLOEXEC, usualMode);
  return descriptor < 0 ? nullptr : std::make_shared<GrowingFile>(descriptor);
}

std::string systemName(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

}  // namespace

std::shared_ptr<GrowingFile> GrowingFile::withoutName(const std::filesystem::path& folder) {
#ifdef O_TMPFILE
  auto file = opened(folder, O_TMPFILE);
  // Naming the file later works only through this path.
  if (!file || access(systemName(file->descriptor_).c_str(), F_OK) == 0) return file;
#endif
  errno = EOPNOTSUPP;
  return nullptr;
}

std::shared_ptr<GrowingFile> GrowingFile::named(const std::filesystem::path& file) {
  return opened(file, O_CREAT | O_EXCL);
}

std::shared_ptr<GrowingFile> GrowingFile::inMemory() {
  const int descriptor = memfd_create("vlclientui", MFD_CLOEXEC);
  return descriptor < 0 ? nullptr : std::make_shared<GrowingFile>(descriptor);
}

GrowingFile::~GrowingFile() { close(descriptor_); }

std::size_t GrowingFile::read(std::uint64_t offset, void* bytes, std::size_t count) const {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t part = pread(descriptor_, static_cast<std::byte*>(bytes) + done, count - done,
                               static_cast<off_t>(offset + done));
    if (part < 0 && errno == EINTR) continue;
    if (part <= 0) break;
    done += static_cast<std::size_t>(part);
  }
  return done;
}

std::size_t GrowingFile::write(std::uint64_t offset, const void* bytes, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t part = pwrite(descriptor_, static_cast<const std::byte*>(bytes) + done, count - done,
                                static_cast<off_t>(offset + done));
    if (part < 0 && errno == EINTR) continue;
    if (!keepFailure(part > 0)) break;
    done += static_cast<std::size_t>(part);
  }
  hurry(done);
  return done;
}

bool GrowingFile::resize(std::uint64_t size) {
  return keepFailure(ftruncate(descriptor_, static_cast<off_t>(size)) == 0);
}

std::uint64_t GrowingFile::size() const {
  struct stat facts {};
  return fstat(descriptor_, &facts) == 0 ? static_cast<std::uint64_t>(facts.st_size) : 0;
}

bool GrowingFile::sync() { return keepFailure(fsync(descriptor_) == 0); }

bool GrowingFile::setRights(std::filesystem::perms rights) {
  return keepFailure(fchmod(descriptor_, static_cast<mode_t>(rights)) == 0);
}

bool GrowingFile::giveName(const std::filesystem::path& file) {
  return keepFailure(
      linkat(AT_FDCWD, systemName(descriptor_).c_str(), AT_FDCWD, file.c_str(), AT_SYMLINK_FOLLOW) == 0);
}

// Starts writing to disk early, so that little remains at the end. Failures show up in sync.
void GrowingFile::hurry(std::size_t written) {
  waiting_ += written;
  if (waiting_ < hurryBytes) return;
  waiting_ = 0;
#ifdef SYNC_FILE_RANGE_WRITE
  sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

bool GrowingFile::keepFailure(bool isDone) {
  if (!isDone && failure_ == 0) failure_ = errno != 0 ? errno : EIO;
  return isDone;
}

}  // namespace vlclientui::client
