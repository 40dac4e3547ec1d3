#include "client/mapping/SmallCopies.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

#include "client/mapping/CopyWriting.h"
#include "client/raster/NameMark.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr const char* unfinished = "making-";
constexpr std::size_t markDigits = 16;
constexpr auto longUnfinished = std::chrono::hours(24);  // nobody goes on with these

std::string pathPart(const fs::path& raster) {
  std::error_code error;
  const fs::path whole = fs::weakly_canonical(raster, error);
  return nameMark(error ? raster.string() : whole.string(), markDigits);
}

// Empty where there is no such file.
std::string nameOf(const fs::path& raster) {
  std::error_code error;
  if (!fs::is_regular_file(raster, error)) return {};
  const auto bytes = fs::file_size(raster, error);
  if (error) return {};
  const auto time = fs::last_write_time(raster, error);
  if (error) return {};
  const std::string state = std::to_string(bytes) + " " + std::to_string(time.time_since_epoch().count());
  return pathPart(raster) + "-" + nameMark(state, markDigits) + ".tif";
}

struct Entry {
  fs::path file;
  fs::file_time_type used;
  std::uintmax_t bytes = 0;
};

std::vector<Entry> entriesOf(const fs::path& folder) {
  std::vector<Entry> entries;
  std::error_code error;
  for (const auto& one : fs::directory_iterator(folder, error)) {
    if (one.path().extension() != ".tif") continue;
    std::error_code gone;
    Entry entry{one.path(), one.last_write_time(gone), one.file_size(gone)};
    if (!gone) entries.push_back(std::move(entry));
  }
  return entries;
}

bool isUnfinished(const fs::path& file) { return file.filename().string().starts_with(unfinished); }

void removeQuietly(const fs::path& file) {
  std::error_code error;
  fs::remove(file, error);
}

// Gone with the object.
class TemporaryCopy {
 public:
  explicit TemporaryCopy(fs::path file) : file_(std::move(file)) { removeQuietly(file_); }
  ~TemporaryCopy() { removeQuietly(file_); }
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;
  [[nodiscard]] const fs::path& file() const { return file_; }

 private:
  fs::path file_;
};

}  // namespace

SmallCopies::SmallCopies(fs::path folder, std::uintmax_t mostBytes)
    : folder_(std::move(folder)), mostBytes_(mostBytes) {}

std::optional<fs::path> SmallCopies::find(const fs::path& raster) const {
  const std::string name = nameOf(raster);
  if (name.empty()) return std::nullopt;
  const fs::path copy = folder_ / name;
  std::error_code error;
  if (!fs::is_regular_file(copy, error)) return std::nullopt;
  fs::last_write_time(copy, fs::file_time_type::clock::now(), error);
  return copy;
}

bool SmallCopies::canBeOf(const fs::path& raster) {
  std::error_code error;
  return fs::is_regular_file(raster, error);
}

SmallCopies::End SmallCopies::make(const fs::path& raster, const std::function<void(double)>& progress) {
  const std::lock_guard lock(making_);
  const std::string name = nameOf(raster);
  makeFolder();
  const GdalScope scope;
  const auto opened = name.empty() ? nullptr : openForMap(raster, {}, std::nullopt);
  if (!opened)
    throw RuntimeFailure(raster.string() + " cannot be opened: " + scope.firstFailure("it is no raster"));
  if (!deservesCopy(*opened)) throw RuntimeFailure(raster.string() + " needs no small copy");
  if (const auto copy = find(raster)) {
    addCopy(*opened, *copy);
    if (opened->copy) {
      // Another program has made it.
      if (known_.insert(name).second) ++version_;
      return End::Made;
    }
  }
  const TemporaryCopy making(folder_ / (unfinished + std::to_string(getpid()) + "-" + name));
  if (writeCopy(*opened, making.file(), progress) == CopyEnd::GivenUp) return End::GivenUp;
  // It may have been written meanwhile.
  if (nameOf(raster) != name) throw RuntimeFailure(raster.string() + " has changed meanwhile");
  keep(making.file(), raster);
  known_.insert(name);
  ++version_;
  return End::Made;
}

// Of rasters that only their owner may read, copies are no more open than that.
void SmallCopies::makeFolder() const {
  std::error_code error;
  fs::create_directories(folder_, error);
  fs::permissions(folder_, fs::perms::owner_all, error);
}

// Of what the raster was before nothing stays.
void SmallCopies::keep(const fs::path& written, const fs::path& raster) {
  std::error_code error;
  if (fs::file_size(written, error) > mostBytes_ || error) {
    throw RuntimeFailure("A small copy of " + raster.string() + " would be too large to keep");
  }
  const std::string former = pathPart(raster) + "-";
  for (const Entry& one : entriesOf(folder_)) {
    if (one.file.filename().string().starts_with(former)) removeQuietly(one.file);
  }
  const fs::path kept = folder_ / nameOf(raster);
  fs::rename(written, kept, error);
  if (error) throw RuntimeFailure(kept.string() + " cannot be written: " + error.message());
  dropOldest(kept);
}

void SmallCopies::dropOldest(const fs::path& newest) const {
  std::vector<Entry> entries = entriesOf(folder_);
  const auto now = fs::file_time_type::clock::now();
  std::erase_if(entries, [&](const Entry& one) {
    if (!isUnfinished(one.file)) return false;
    if (now - one.used > longUnfinished) removeQuietly(one.file);
    return true;
  });
  std::ranges::sort(entries, {}, &Entry::used);
  std::uintmax_t all = 0;
  for (const Entry& one : entries) all += one.bytes;
  for (const Entry& one : entries) {
    if (all <= mostBytes_) break;
    if (one.file == newest) continue;
    removeQuietly(one.file);
    all -= one.bytes;
  }
}

std::uintmax_t SmallCopies::bytes() const {
  std::uintmax_t all = 0;
  for (const Entry& one : entriesOf(folder_)) all += one.bytes;
  return all;
}

}  // namespace vlclientui::client
