#include "client/output/ServiceFiles.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <system_error>

#include <cpl_string.h>
#include <gdal_priv.h>

#include "client/output/WorldFile.h"
#include "client/raster/ContainedRaster.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Subdatasets.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Files = std::vector<fs::path>;

[[noreturn]] void refuse(const fs::path& file) {
  throw RuntimeFailure("The file " + utf8FromAny(file.string()) +
                       " belongs to the service itself. Choose another file.");
}

// A raster library's path into an archive holds the archive's.
bool isWithin(const fs::path& listed, const fs::path& file) {
  const std::string text = listed.string();
  return text.starts_with("/vsi") && text.find(file.string()) != std::string::npos;
}

bool isSame(const fs::path& one, const fs::path& other) {
  std::error_code error;
  return (fs::equivalent(one, other, error) && !error) || isWithin(one, other);
}

// The files of a service's rasters, of the rasters that those are made from, and so on, each told once.
class FileWalk {
 public:
  explicit FileWalk(const ImageServiceRecord& service) {
    for (const ImageSource& source : service.sources) {
      add(fileOnDisk(source.file).string());
      add(libraryName(source.file));
    }
  }

  /// The first of the files that it comes by; nothing when it comes by none.
  std::optional<fs::path> firstOf(const Files& files) {
    for (; !waiting_.empty(); waiting_.pop_front()) {
      const std::string& file = waiting_.front();
      const auto met =
          std::ranges::find_if(files, [&](const fs::path& other) { return isSame(file, other); });
      if (met != files.end()) return *met;
      addFilesOf(file);
    }
    return std::nullopt;
  }

 private:
  void add(const std::string& file) {
    if (known_.insert(file).second) waiting_.push_back(file);
  }

  void addFilesOf(const std::string& file) {
    const DatasetPtr raster = openRaster(file);
    if (!raster) return;
    const CPLStringList files(raster->GetFileList());
    for (int i = 0; i < files.Count(); ++i) add(files[i]);
  }

  std::set<std::string> known_;
  std::deque<std::string> waiting_;
};

bool isOwn(const ImageServiceRecord& service, const fs::path& file) {
  const auto isTouched = [&file](const fs::path& source) {
    const fs::path onDisk = fileOnDisk(source);
    return isSame(onDisk, file) || isWorldFileOf(onDisk, file);
  };
  return isSame(fileOnDisk(service.file), file) ||
         std::ranges::any_of(service.sources, isTouched, &ImageSource::file);
}

}  // namespace

// Names come first: they cost nothing, and tell of world files that are not there yet. Rasters are opened
// only where a file that is there would be lost.
void refuseFilesOf(const ImageServiceRecord& service, const Files& touched) {
  for (const fs::path& file : touched) {
    if (isOwn(service, file)) refuse(file);
  }
  Files present = touched;
  std::erase_if(present, [](const fs::path& file) {
    std::error_code error;
    return !fs::exists(file, error);
  });
  if (present.empty()) return;
  const GdalScope scope;
  if (const auto met = FileWalk(service).firstOf(present)) refuse(*met);
}

}  // namespace vlclientui::client
