#include "client/raster/ContentMark.h"

#include <set>
#include <string>
#include <system_error>

#include <cpl_string.h>
#include <cpl_vsi.h>

#include "client/raster/ContainedRaster.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Subdatasets.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

bool statsFile(const std::filesystem::path& raster, VSIStatBufL& facts) {
  return VSIStatL(fileOnDisk(raster).c_str(), &facts) == 0 ||
         VSIStatL(libraryName(raster).c_str(), &facts) == 0;
}

// What a file of the web is told by; nothing for others.
std::string headersOf(const std::string& name) {
  const CPLStringList headers(VSIGetFileMetadata(name.c_str(), "HEADERS", nullptr));
  std::string text;
  for (const char* const header : {"ETag", "Last-Modified"}) {
    if (headers.Count() > 0) text += std::string(" ") + headers.FetchNameValueDef(header, "");
  }
  return text;
}

// To the fraction of a second where the disk knows it: files are rewritten faster than clocks of seconds
// tell.
std::string timeOf(const std::filesystem::path& file, const VSIStatBufL& facts) {
  std::error_code isNoPlainFile;
  const auto time = std::filesystem::last_write_time(file, isNoPlainFile);
  return isNoPlainFile ? std::to_string(facts.st_mtime) : std::to_string(time.time_since_epoch().count());
}

// Other programs write statistics into these whenever they look at a raster.
bool isNotes(const std::string& file) { return endsIgnoringCase(file, ".aux.xml"); }

/// Files that a raster is made of, through virtual rasters in virtual rasters.
class FilesBehind {
 public:
  /// Those behind a raster, itself not among them.
  void addBehind(const std::string& name) {
    const GdalScope scope;
    const DatasetPtr raster = openRaster(name);
    const CPLStringList files(raster ? raster->GetFileList() : nullptr);
    for (int i = 0; i < files.Count(); ++i) {
      const std::string file = files[i];
      if (file != name && seen_.insert(file).second) add(file);
    }
  }
  [[nodiscard]] const std::string& marks() const { return marks_; }

 private:
  void add(const std::string& file) {
    VSIStatBufL facts{};
    if (VSIStatL(file.c_str(), &facts) != 0) facts.st_size = 0;
    const std::string headers = headersOf(file);
    if (headers.empty() && isNotes(file)) return;
    const std::string told = headers.empty() ? " " + timeOf(file, facts) : headers;
    marks_ += '\n' + file + ' ' + std::to_string(facts.st_size) + told;
    // A local image is only what it is told to be: to open thousands would take its time.
    if (!headers.empty() || endsIgnoringCase(file, ".vrt")) addBehind(file);
  }

  std::set<std::string> seen_;
  std::string marks_;
};

std::string toldMark(const std::filesystem::path& raster) {
  const GdalScope scope;
  const DatasetPtr opened = openRasterAt(raster);
  const char* const mark = opened ? opened->GetMetadataItem(contentMarkItem, contentMarkDomain) : nullptr;
  if (mark != nullptr) return mark;
  throw RuntimeFailure("It cannot be told whether a source has changed: " +
                       utf8FromAny(scope.firstFailure(raster.filename().string())));
}

}  // namespace

std::string contentMark(const std::filesystem::path& raster) {
  VSIStatBufL facts{};
  if (!statsFile(raster, facts)) return toldMark(raster);
  const std::string name = libraryName(raster);
  const std::string headers = headersOf(name);
  FilesBehind behind;
  behind.addBehind(name);
  return std::to_string(facts.st_size) + " " + timeOf(fileOnDisk(raster), facts) + headers + behind.marks();
}

}  // namespace vlclientui::client
