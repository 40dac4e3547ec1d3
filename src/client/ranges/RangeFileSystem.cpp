#include "client/ranges/RangeFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_string.h>
#include <cpl_vsi_virtual.h>
#include <sys/stat.h>

#include "client/ranges/OpenableFiles.h"
#include "client/ranges/RangeNames.h"
#include "client/ranges/RangeOverviews.h"
#include "client/ranges/RemoteFiles.h"

namespace vlclientui::client {
namespace {

using FilePtr = std::shared_ptr<RemoteFile>;

constexpr std::uint64_t firstAhead = std::uint64_t{128} << 10U;
constexpr std::uint64_t mostAhead = std::uint64_t{4} << 20U;
// Reads that leave out less than that still go on where the last one ended.
constexpr std::uint64_t mostSkipped = std::uint64_t{64} << 10U;

void fail(const std::string& problem) { CPLError(CE_Failure, CPLE_HttpResponse, "%s", problem.c_str()); }

/// One who reads a file; who reads on is read ahead for.
class RangeHandle final : public VSIVirtualHandle {
 public:
  explicit RangeHandle(FilePtr file) : file_(std::move(file)) {}

  int Seek(vsi_l_offset offset, int whence) override;
  vsi_l_offset Tell() override { return position_; }
  size_t Read(void* buffer, size_t size, size_t count) override;
  int ReadMultiRange(int count, void** data, const vsi_l_offset* offsets, const size_t* sizes) override;
  size_t Write(const void* /*buffer*/, size_t /*size*/, size_t /*count*/) override { return 0; }
  int Eof() override { return isAtEnd_ ? TRUE : FALSE; }
  int Close() override { return 0; }
  [[nodiscard]] bool HasPRead() const override { return true; }
  size_t PRead(void* buffer, size_t size, vsi_l_offset offset) const override;

 private:
  [[nodiscard]] std::uint64_t aheadFor(std::uint64_t end);

  FilePtr file_;
  std::uint64_t position_ = 0;
  std::uint64_t lastEnd_ = 0;
  std::uint64_t ahead_ = 0;
  bool isAtEnd_ = false;
};

int RangeHandle::Seek(vsi_l_offset offset, int whence) {
  isAtEnd_ = false;
  const std::uint64_t from = whence == SEEK_CUR ? position_ : whence == SEEK_END ? file_->size() : 0;
  position_ = from + offset;
  return 0;
}

// A reader that jumps gets what it asks for, one that goes on gets more and more at once.
std::uint64_t RangeHandle::aheadFor(std::uint64_t end) {
  const bool goesOn = position_ >= lastEnd_ && position_ - lastEnd_ <= mostSkipped && lastEnd_ != 0;
  ahead_ = goesOn ? std::clamp(ahead_ * 2, firstAhead, mostAhead) : 0;
  lastEnd_ = end;
  return ahead_;
}

size_t RangeHandle::Read(void* buffer, size_t size, size_t count) {
  if (size == 0 || count == 0) return 0;
  const std::uint64_t left = position_ < file_->size() ? file_->size() - position_ : 0;
  const bool isWithin = count <= left / size;
  const auto bytes = static_cast<std::size_t>(isWithin ? size * count : left);
  isAtEnd_ = !isWithin;
  if (bytes == 0) return 0;
  const std::string problem =
      file_->read({{position_, bytes, static_cast<std::byte*>(buffer)}}, aheadFor(position_ + bytes));
  if (!problem.empty()) {
    fail(problem);
    return 0;
  }
  position_ += bytes;
  return bytes / size;
}

int RangeHandle::ReadMultiRange(int count, void** data, const vsi_l_offset* offsets, const size_t* sizes) {
  std::vector<FileStretch> stretches;
  for (int i = 0; i < count; ++i) {
    if (offsets[i] > file_->size() || sizes[i] > file_->size() - offsets[i]) return -1;
    stretches.push_back({offsets[i], sizes[i], static_cast<std::byte*>(data[i])});
  }
  const std::string problem = file_->read(stretches);
  if (problem.empty()) return 0;
  fail(problem);
  return -1;
}

size_t RangeHandle::PRead(void* buffer, size_t size, vsi_l_offset offset) const {
  if (offset >= file_->size()) return 0;
  const auto bytes = static_cast<std::size_t>(std::min<std::uint64_t>(size, file_->size() - offset));
  const std::string problem = file_->read({{offset, bytes, static_cast<std::byte*>(buffer)}});
  if (problem.empty()) return bytes;
  fail(problem);
  return 0;
}

class RangeFileSystem final : public VSIFilesystemHandler {
 public:
  VSIVirtualHandle* Open(const char* name, const char* access, bool setError, CSLConstList options) override;
  int Stat(const char* name, VSIStatBufL* status, int flags) override;
  char** SiblingFiles(const char* name) override;
  char** GetFileMetadata(const char* name, const char* domain, CSLConstList options) override;
  int HasOptimizedReadMultiRange(const char* /*name*/) override { return TRUE; }
  bool IsLocal(const char* /*name*/) override { return false; }
  bool SupportsSequentialWrite(const char* /*name*/, bool /*allowsTemporary*/) override { return false; }
  bool SupportsRandomWrite(const char* /*name*/, bool /*allowsTemporary*/) override { return false; }

 private:
  [[nodiscard]] static FilePtr served(const std::string& name) { return OpenableFiles::shared().open(name); }
};

VSIVirtualHandle* RangeFileSystem::Open(const char* name, const char* access, bool /*setError*/,
                                        CSLConstList /*options*/) {
  const bool isToRead = std::strchr(access, 'w') == nullptr && std::strchr(access, 'a') == nullptr &&
                        std::strchr(access, '+') == nullptr;
  errno = isToRead ? ENOENT : EROFS;
  FilePtr file = isToRead ? served(name) : nullptr;
  return file ? new RangeHandle(std::move(file)) : nullptr;
}

int RangeFileSystem::Stat(const char* name, VSIStatBufL* status, int /*flags*/) {
  std::memset(status, 0, sizeof(*status));
  const FilePtr file = served(name);
  if (!file) {
    errno = ENOENT;
    return -1;
  }
  status->st_mode = S_IFREG;
  status->st_size = static_cast<decltype(status->st_size)>(file->size());
  return 0;
}

// Of the domain by which files of the web tell what their server said of them.
char** RangeFileSystem::GetFileMetadata(const char* name, const char* domain, CSLConstList /*options*/) {
  const FilePtr file = domain != nullptr && EQUAL(domain, "HEADERS") ? served(name) : nullptr;
  if (!file) return nullptr;
  CPLStringList items;
  items.SetNameValue("ETag", file->state().tag.c_str());
  items.SetNameValue("Last-Modified", file->state().date.c_str());
  return items.StealList();
}

char** RangeFileSystem::SiblingFiles(const char* name) {
  CPLStringList siblings;
  siblings.AddString(CPLGetFilename(name));
  for (const std::string& neighbor : RemoteFiles::shared().neighbors(name))
    siblings.AddString(neighbor.c_str());
  return siblings.StealList();
}

}  // namespace

// The raster library asks for the blocks of a window together only up to 10 MB of them, and one by one above
// that. Whoever set another bound knows why.
void installRangeFileSystem() {
  constexpr const char* bound = "GDAL_MAX_RAW_BLOCK_CACHE_SIZE";
  if (CPLGetConfigOption(bound, nullptr) == nullptr) CPLSetConfigOption(bound, "67108864");
  keepOverviewsWithinRasters();
  VSIFileManager::InstallHandler(std::string(rangePrefix), new RangeFileSystem);
}

}  // namespace vlclientui::client
