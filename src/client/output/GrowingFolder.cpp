#include "client/output/GrowingFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include <cpl_vsi.h>
#include <sys/stat.h>

namespace vlclientui::client {
namespace {

// GDAL keeps this pointer.
constexpr auto prefix = "/vlgrowing/";

std::mutex& registryMutex() {
  static std::mutex mutex;
  return mutex;
}

std::map<std::string, GrowingFolder*>& registry() {
  static std::map<std::string, GrowingFolder*> folders;
  return folders;
}

// GDAL passes paths without the prefix: folder number, slash, name.
struct Place {
  GrowingFolder* folder = nullptr;
  std::string name;
};

Place placeOf(const char* path) {
  const std::string_view whole = path;
  const std::size_t slash = whole.rfind('/') + 1;
  const std::lock_guard lock(registryMutex());
  const auto found = registry().find(std::string(whole.substr(0, slash)));
  return {found == registry().end() ? nullptr : found->second, std::string(whole.substr(slash))};
}

struct OpenFile {
  std::shared_ptr<GrowingFile> file;
  std::uint64_t position = 0;
  bool isAtEnd = false;
};

OpenFile& openFile(void* file) { return *static_cast<OpenFile*>(file); }

int statFile(void* /*data*/, const char* path, VSIStatBufL* facts, int /*flags*/) {
  const Place place = placeOf(path);
  const auto file = place.folder != nullptr ? place.folder->find(place.name) : nullptr;
  if (!file) return -1;
  *facts = {};
  facts->st_mode = S_IFREG;
  facts->st_size = static_cast<decltype(facts->st_size)>(file->size());
  return 0;
}

void* openPath(void* /*data*/, const char* path, const char* access) {
  const Place place = placeOf(path);
  if (place.folder == nullptr) return nullptr;
  const bool isNew = std::strchr(access, 'w') != nullptr;
  auto file = isNew ? place.folder->make(place.name) : place.folder->find(place.name);
  if (!file) return nullptr;
  const bool appends = std::strchr(access, 'a') != nullptr;
  const std::uint64_t position = appends ? file->size() : 0;
  return new OpenFile{std::move(file), position};
}

vsi_l_offset tellPosition(void* file) { return openFile(file).position; }

int seekPosition(void* file, vsi_l_offset offset, int whence) {
  OpenFile& open = openFile(file);
  const std::uint64_t start = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? open.position : open.file->size();
  open.position = start + offset;
  open.isAtEnd = false;
  return 0;
}

size_t readItems(void* file, void* buffer, size_t size, size_t count) {
  OpenFile& open = openFile(file);
  const std::size_t wanted = size * count;
  const std::size_t done = open.file->read(open.position, buffer, wanted);
  open.position += done;
  open.isAtEnd = done < wanted;
  return size == 0 ? 0 : done / size;
}

size_t writeItems(void* file, const void* buffer, size_t size, size_t count) {
  OpenFile& open = openFile(file);
  const std::size_t done = open.file->write(open.position, buffer, size * count);
  open.position += done;
  return size == 0 ? 0 : done / size;
}

int isAtEnd(void* file) { return openFile(file).isAtEnd ? 1 : 0; }

int truncateFile(void* file, vsi_l_offset size) { return openFile(file).file->resize(size) ? 0 : -1; }

int flushFile(void* /*file*/) { return 0; }

int closeFile(void* file) {
  delete static_cast<OpenFile*>(file);
  return 0;
}

void install() {
  VSIFilesystemPluginCallbacksStruct* calls = VSIAllocFilesystemPluginCallbacksStruct();
  calls->stat = statFile;
  calls->open = openPath;
  calls->tell = tellPosition;
  calls->seek = seekPosition;
  calls->read = readItems;
  calls->eof = isAtEnd;
  calls->write = writeItems;
  calls->flush = flushFile;
  calls->truncate = truncateFile;
  calls->close = closeFile;
  VSIInstallPluginHandler(prefix, calls);
  VSIFreeFilesystemPluginCallbacksStruct(calls);
}

}  // namespace

bool removeGrowing(const std::string& path) {
  const Place place = placeOf(path.c_str() + std::strlen(prefix));
  return place.folder != nullptr && place.folder->remove(place.name);
}

GrowingFolder::GrowingFolder(Maker maker) : maker_(std::move(maker)) {
  static std::once_flag once;
  std::call_once(once, install);
  static unsigned count = 0;
  const std::lock_guard lock(registryMutex());
  number_ = std::to_string(++count) + "/";
  registry()[number_] = this;
}

GrowingFolder::~GrowingFolder() {
  const std::lock_guard lock(registryMutex());
  registry().erase(number_);
}

std::string GrowingFolder::pathOf(const std::string& name) const {
  return std::string(prefix) + number_ + name;
}

std::vector<std::string> GrowingFolder::names() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const auto& [name, file] : files_) names.push_back(name);
  return names;
}

std::shared_ptr<GrowingFile> GrowingFolder::find(const std::string& name) const {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(name);
  return found == files_.end() ? nullptr : found->second;
}

std::shared_ptr<GrowingFile> GrowingFolder::make(const std::string& name) {
  if (auto former = find(name)) return former->resize(0) ? former : nullptr;
  auto file = maker_(name);
  const std::lock_guard lock(mutex_);
  if (!file && failure_ == 0) failure_ = errno;
  if (file) files_[name] = file;
  return file;
}

bool GrowingFolder::remove(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(name);
  if (found == files_.end()) return false;
  if (failure_ == 0) failure_ = found->second->failureNumber();
  files_.erase(found);
  return true;
}

int GrowingFolder::failureNumber() const {
  const std::lock_guard lock(mutex_);
  if (failure_ != 0) return failure_;
  for (const auto& [name, file] : files_) {
    if (file->failureNumber() != 0) return file->failureNumber();
  }
  return 0;
}

}  // namespace vlclientui::client
