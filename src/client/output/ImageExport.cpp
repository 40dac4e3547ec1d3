#include "client/output/ImageExport.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <cpl_conv.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>

#include "client/drawing/RequestRaster.h"
#include "client/output/ExportPlan.h"
#include "client/output/GrowingFolder.h"
#include "client/output/KeptPixels.h"
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
constexpr GIntBig leastCacheBytes = 24 << 20;
constexpr GIntBig mostCacheBytes = 64 << 20;
// Of images of the web, what was fetched is kept besides, and two readers have windows in hand.
constexpr GIntBig cacheBytesOfWeb = 16 << 20;

// The cache belongs to the process: the first of several concurrent exports limits it, the last restores it.
class CacheLimit {
 public:
  explicit CacheLimit(GIntBig bytes) {
    const std::lock_guard lock(mutex_);
    if (users_++ > 0) return;
    former_ = GDALGetCacheMax64();
    GDALSetCacheMax64(bytes);
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
void checkRoomFor(std::uint64_t bytes, const fs::path& target) {
  const fs::path folder = replacedFile(target).file.parent_path();
  if (const auto room = roomFor(target)) checkRoom(bytes, *room, utf8FromAny(folder.string()));
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
  if (request.exportsMetadata) partial.write(metadataFileOf(image).string(), request.metadata());
}

// The system knows better than GDAL why a write failed.
std::string reasonOf(const PartialFiles& partial, const KeptPixels* kept) {
  if (std::string reason = partial.failure(); !reason.empty())
    return "The image could not be written. " + reason;
  return kept != nullptr ? kept->failure() : std::string();
}

GIntBig bytesOfRows(const ImageServiceRecord& service, double columns, int rows) {
  const int sample = GDALGetDataTypeSizeBytes(GDALGetDataTypeByName(service.facts.pixelType.c_str()));
  return static_cast<GIntBig>(columns * rows) * sample * service.facts.bandCount;
}

// Windows of full width cut blocks of the sources, and a row of these is to stay until the next window comes.
GIntBig cacheFor(const ImageServiceRecord& service, const OutputGrid& grid) {
  constexpr int rowsOfBlock = 512;
  const double columns = grid.columns * std::max(1.0, grid.pixelWidth() / service.facts.pixelSize);
  return std::clamp(bytesOfRows(service, columns, rowsOfBlock), leastCacheBytes, mostCacheBytes);
}

// The most sources that a row of the image meets, twice: windows cross from one row of sources to the next.
// More that stay open cost memory alone, 2 MB each; the raster library keeps 100.
int sourcesAtOnce(const ImageServiceRecord& service) {
  constexpr int least = 16;
  constexpr int most = 100;
  std::vector<std::pair<double, int>> edges;
  for (const ImageSource& source : service.sources) {
    edges.emplace_back(source.place.yMin, 1);
    edges.emplace_back(source.place.yMax, -1);
  }
  std::ranges::sort(edges);
  int met = 0;
  int mostMet = 0;
  for (const auto& [y, change] : edges) mostMet = std::max(mostMet, met += change);
  return std::clamp(2 * mostMet, least, most);
}

// For the process, as sources are opened by whoever reads, unless whoever runs the program has chosen a
// number. The raster library looks at it when nobody has such sources open yet.
class OpenSourcesLimit {
 public:
  explicit OpenSourcesLimit(int count) : count_(std::to_string(count)) {
    isOurs_ = CPLGetConfigOption(option, nullptr) == nullptr;
    if (isOurs_) CPLSetConfigOption(option, count_.c_str());
  }
  ~OpenSourcesLimit() {
    const char* const present = CPLGetConfigOption(option, nullptr);
    if (isOurs_ && present != nullptr && count_ == present) CPLSetConfigOption(option, nullptr);
  }
  OpenSourcesLimit(const OpenSourcesLimit&) = delete;
  OpenSourcesLimit& operator=(const OpenSourcesLimit&) = delete;

 private:
  static constexpr const char* option = "GDAL_MAX_DATASET_POOL_SIZE";
  const std::string count_;
  bool isOurs_ = false;
};

bool isTiffOfWeb(const ImageSource& source) {
  const std::string extension = lowered(source.file.extension().string());
  return !VSIIsLocal(source.file.c_str()) && (extension == ".tif" || extension == ".tiff");
}

// Unpacking what comes of the web takes as long as fetching it, so it is done twice at a time, where the
// smaller cache holds two rows of blocks. Virtual rasters would share what they are made of.
bool isReadSideBySide(const ImageServiceRecord& service, const OutputGrid& grid) {
  constexpr int rowsOfTwoBlocks = 1024;
  return bytesOfRows(service, grid.columns, rowsOfTwoBlocks) <= cacheBytesOfWeb &&
         std::ranges::all_of(service.sources, isTiffOfWeb);
}

void writeAll(const ImageServiceRecord& service, const GetImageRequest& request,
              const std::vector<GDALDataset*>& rasters, const ExportPlan& plan, PartialFiles& partial,
              const ExportProgress& progress, KeptPixels* kept) {
  try {
    writePixels(rasters, reductionOf(service, request.grid), plan, partial.file(), progress, kept);
  } catch (const RuntimeFailure&) {
    const std::string reason = reasonOf(partial, kept);
    if (reason.empty()) throw;
    throw RuntimeFailure(reason);
  }
  writeCompanions(request, partial);
}

// What is kept needs as much room as the pixels, besides what is kept already.
std::uint64_t roomToKeep(GDALDataset& raster, const KeptPixels& kept) {
  const auto pixels = static_cast<std::uint64_t>(raster.GetRasterXSize()) *
                      static_cast<std::uint64_t>(raster.GetRasterYSize());
  const auto sample =
      static_cast<std::uint64_t>(GDALGetDataTypeSizeBytes(raster.GetRasterBand(1)->GetRasterDataType()));
  const std::uint64_t all = pixels * sample * static_cast<std::uint64_t>(raster.GetRasterCount());
  return all - std::min(all, kept.bytes());
}

// The start of a part in the middle. As a multiple of the side of usual blocks it cuts none of a raster that
// is exported from its corner: each cut block would be read whole and counted.
int startOfMiddle(int whole, int part) {
  constexpr int usualBlock = 256;
  return (whole - part) / 2 / usualBlock * usualBlock;
}

// The part of a request that a sample is taken of, in the middle; a smaller one where each pixel stands for
// many.
GetImageRequest sampleOf(const GetImageRequest& request, double reduction) {
  constexpr double mostPixelsOfSource = 512;
  constexpr double leastPixels = 32;
  const auto mostPixels = static_cast<int>(std::max(leastPixels, mostPixelsOfSource / std::sqrt(reduction)));
  const OutputGrid& whole = request.grid;
  const int columns = std::min(whole.columns, mostPixels);
  const int rows = std::min(whole.rows, mostPixels);
  const double left = whole.extent.xMin + startOfMiddle(whole.columns, columns) * whole.pixelWidth();
  const double top = whole.extent.yMax - startOfMiddle(whole.rows, rows) * whole.pixelHeight();
  GetImageRequest sample = request;
  sample.grid = {
      {left, top - rows * whole.pixelHeight(), left + columns * whole.pixelWidth(), top}, columns, rows};
  return sample;
}

std::uint64_t bytesInMemory(const ImageServiceRecord& service, const GetImageRequest& request,
                            GDALDataset& raster, const ExportPlan& plan) {
  GrowingFolder memory([](const std::string& /*name*/) { return GrowingFile::inMemory(); });
  writePixels({&raster}, reductionOf(service, request.grid), plan, memory.pathOf("sample"), {});
  std::uint64_t bytes = 0;
  for (const std::string& name : memory.names()) bytes += memory.find(name)->size();
  return bytes;
}

}  // namespace

void exportImage(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                 const GetImageRequest& request, const ExportProgress& progress,
                 const std::optional<ExportIdentity>& kept) {
  const bool isSideBySide = isReadSideBySide(service, request.grid);
  const OpenSourcesLimit openSources(sourcesAtOnce(service));
  const CacheLimit limit(isSideBySide ? cacheBytesOfWeb : cacheFor(service, request.grid));
  const DatasetPtr raster = openRequest(service, order, request.grid, fidelityOf(request));
  const ExportPlan plan = planExport(request, pixelKindOf(*raster));
  refuseFilesOf(service, touchedFiles(request));
  checkRoomFor(plan.leastBytes, request.file);
  PartialFiles partial(request.file);
  const auto pixels = kept ? std::make_unique<KeptPixels>(request.file, *kept) : nullptr;
  if (pixels) checkRoomFor(plan.leastBytes + roomToKeep(*raster, *pixels), request.file);
  const DatasetPtr twin =
      isSideBySide ? openRequest(service, order, request.grid, fidelityOf(request)) : nullptr;
  std::vector<GDALDataset*> rasters = {raster.get()};
  if (twin) rasters.push_back(twin.get());
  writeAll(service, request, rasters, plan, partial, progress, pixels.get());
  report(progress, 1);
  partial.publish();
  if (pixels) return pixels->discard();
  discardKept(request.file);
}

ExportSample sampleExport(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                          const GetImageRequest& request) {
  const CacheLimit limit(cacheFor(service, request.grid));
  const DatasetPtr whole = openRequest(service, order, request.grid, fidelityOf(request));
  const ExportPlan plan = planExport(request, pixelKindOf(*whole));
  refuseFilesOf(service, touchedFiles(request));
  const GetImageRequest sample = sampleOf(request, reductionOf(service, request.grid));
  const DatasetPtr part = openRequest(service, order, sample.grid, fidelityOf(request));
  const ExportPlan partPlan = planExport(sample, pixelKindOf(*part));
  const double share = static_cast<double>(request.grid.columns) / sample.grid.columns *
                       (static_cast<double>(request.grid.rows) / sample.grid.rows);
  const auto bytes = static_cast<double>(bytesInMemory(service, sample, *part, partPlan));
  return {static_cast<std::uint64_t>(bytes * share), plan.leastBytes, share};
}

std::optional<std::uint64_t> roomFor(const fs::path& target) {
  std::error_code error;
  const fs::path file = fs::absolute(replacedFile(target).file, error);
  const fs::space_info space = fs::space(file.parent_path(), error);
  return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
}

}  // namespace vlclientui::client
