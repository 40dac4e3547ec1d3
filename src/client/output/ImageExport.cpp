#include "client/output/ImageExport.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <system_error>

#include <gdal_priv.h>

#include "client/drawing/RequestRaster.h"
#include "client/output/ExportPlan.h"
#include "client/output/PartialFiles.h"
#include "client/output/PixelWriter.h"
#include "client/output/ServiceFiles.h"
#include "client/output/WorldFile.h"
#include "client/raster/Text.h"
#include "contracts/ReplacedFile.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

// GDAL's default, a share of the machine's memory, makes large exports slow and memory grow.
constexpr GIntBig cacheBytes = 64 << 20;

// The cache belongs to the process: the first of several concurrent exports limits it, the last restores it.
class CacheLimit {
 public:
  CacheLimit() {
    const std::lock_guard lock(mutex_);
    if (users_++ > 0) return;
    former_ = GDALGetCacheMax64();
    GDALSetCacheMax64(cacheBytes);
  }
  ~CacheLimit() {
    const std::lock_guard lock(mutex_);
    if (--users_ == 0) GDALSetCacheMax64(former_);
  }
  CacheLimit(const CacheLimit&) = delete;
  CacheLimit& operator=(const CacheLimit&) = delete;

 private:
  static inline std::mutex mutex_;
  static inline int users_ = 0;
  static inline GIntBig former_ = 0;
};

bool mayHaveHoles(const ImageServiceRecord& service) {
  return service.pixels.noData || std::ranges::any_of(service.sources, [](const ImageSource& source) {
           return source.facts.mayHaveHoles;
         });
}

// How many source pixels must be in memory per output pixel.
double reductionOf(const ImageServiceRecord& service, const OutputGrid& grid) {
  // Values in a wider type, their mask, and the data that it is made from.
  constexpr double copiesForHoles = 4;
  const RasterFacts& finest = service.facts;
  return std::max(1.0, grid.pixelWidth() / finest.pixelSize) *
         std::max(1.0, grid.pixelHeight() / finest.pixelHeight) *
         (mayHaveHoles(service) ? copiesForHoles : 1.0);
}

// A folder that cannot tell its free space is found out while writing.
void checkRoomFor(const ExportPlan& plan, const fs::path& target) {
  std::error_code error;
  const fs::path folder = replacedFile(target).file.parent_path();
  const fs::space_info space = fs::space(folder, error);
  if (!error) checkRoom(plan.leastBytes, space.available, utf8FromAny(folder.string()));
}

fs::path metadataFileOf(const fs::path& image) { return image.string() + ".xml"; }

// All files that an export makes, replaces or removes.
std::vector<fs::path> touchedFiles(const GetImageRequest& request) {
  std::vector<fs::path> files = descriptionsOf(request.file);
  files.push_back(request.file);
  if (request.createsWorldFile) files.push_back(worldFileOf(request.file));
  if (request.exportsMetadata) files.push_back(metadataFileOf(request.file));
  return files;
}

void writeCompanions(const GetImageRequest& request, PartialFiles& partial) {
  const fs::path image = request.file.filename();
  if (request.createsWorldFile) partial.write(worldFileOf(image).string(), worldFileText(request.grid));
  if (request.exportsMetadata) partial.write(metadataFileOf(image).string(), request.metadata);
}

// The system knows better than GDAL why a write failed.
void writeAll(const ImageServiceRecord& service, const GetImageRequest& request, GDALDataset& raster,
              const ExportPlan& plan, PartialFiles& partial, const ExportProgress& progress) {
  try {
    writePixels(raster, reductionOf(service, request.grid), plan, partial.file(), progress);
  } catch (const RuntimeFailure&) {
    const std::string reason = partial.failure();
    if (reason.empty()) throw;
    throw RuntimeFailure("The image could not be written. " + reason);
  }
  writeCompanions(request, partial);
}

}  // namespace

void exportImage(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                 const GetImageRequest& request, const ExportProgress& progress) {
  const CacheLimit limit;
  const DatasetPtr raster = openRequest(service, order, request.grid, fidelityOf(request));
  const ExportPlan plan = planExport(request, pixelKindOf(*raster));
  refuseFilesOf(service, touchedFiles(request));
  checkRoomFor(plan, request.file);
  PartialFiles partial(request.file);
  writeAll(service, request, *raster, plan, partial, progress);
  report(progress, 1);
  partial.publish();
}

}  // namespace vlclientui::client
