#include "client/raster/RasterCache.h"

#include <system_error>

#include "client/raster/GeographicBounds.h"
#include "client/raster/RasterReader.h"

namespace vlclientui::client {
namespace {

struct FactsReader {
  GeographicBounds geographic;

  RasterResult operator()(const std::filesystem::path& file) { return readRasterFacts(file, geographic); }
  RasterResult missing(const std::error_code& error) { return RasterProblem{true, error.message()}; }
};

struct MetadataReader {
  const XmlService& xml;

  std::shared_ptr<const FileMetadata> operator()(const std::filesystem::path& file) {
    return std::make_shared<const FileMetadata>(readFileMetadata(file, xml));
  }
  std::shared_ptr<const FileMetadata> missing(const std::error_code& /*error*/) {
    return std::make_shared<const FileMetadata>();
  }
};

}  // namespace

std::vector<RasterResult> RasterCache::read(const std::vector<std::filesystem::path>& files) {
  return facts_.read(files, [] { return FactsReader(); });
}

std::vector<std::shared_ptr<const FileMetadata>> RasterCache::readMetadata(
    const std::vector<std::filesystem::path>& files, const XmlService& xml) {
  return metadata_.read(files, [&] { return MetadataReader{xml}; });
}

}  // namespace vlclientui::client
