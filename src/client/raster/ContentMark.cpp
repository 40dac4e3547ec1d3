#include "client/raster/ContentMark.h"

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

// What a file of the web is told by.
std::string headersOf(const std::filesystem::path& raster) {
  const CPLStringList headers(VSIGetFileMetadata(libraryName(raster).c_str(), "HEADERS", nullptr));
  std::string text;
  for (const char* const name : {"ETag", "Last-Modified"})
    text += std::string(" ") + headers.FetchNameValueDef(name, "");
  return text;
}

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
  return std::to_string(facts.st_size) + " " + std::to_string(facts.st_mtime) + headersOf(raster);
}

}  // namespace vlclientui::client
