#include "client/facade/ServiceExport.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "client/facade/ImageDocuments.h"
#include "client/facade/OriginDocument.h"
#include "client/facade/SourcePassages.h"
#include "client/network/CoverageRaster.h"
#include "client/network/NetworkAccess.h"
#include "client/output/ExportIdentity.h"
#include "client/output/ImageExport.h"
#include "client/output/KeptPixels.h"
#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteFiles.h"
#include "client/ranges/RemoteSecrets.h"
#include "client/raster/Text.h"
#include "client/waiting/Wait.h"
#include "contracts/ReplacedFile.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using SystemClock = std::chrono::system_clock;

// Requests that a server really answers at a time, whatever it takes.
constexpr double answeredTogether = 2;

void prepare(const GetImageRequest& request, Keeping keeping) {
  const auto kept = keptExport(request.file);
  if (keeping == Keeping::Begin && kept) {
    throw RuntimeFailure("An unfinished export of this file is kept in " +
                         utf8FromAny(keptFolder(request.file).string()) + ": go on with it, or begin anew");
  }
  if (keeping != Keeping::Anew) return;
  if (!discardKept(request.file)) throw RuntimeFailure("Another export to this file is going on");
  // What is remembered of the servers may be what made going on impossible.
  NetworkAccess::shared().forget();
  RemoteFiles::shared().forget();
}

std::uint64_t rawBytes(const Drawing& drawing, const GetImageRequest& request) {
  return static_cast<std::uint64_t>(request.grid.columns) * static_cast<std::uint64_t>(request.grid.rows) *
         static_cast<std::uint64_t>(std::max(1, bytesOfPixel(drawing.service->facts)));
}

double shareKept(const ExportForecast& forecast, std::uint64_t rawBytes) {
  if (!forecast.kept || rawBytes == 0) return 0;
  return std::min(1.0, static_cast<double>(forecast.kept->bytes) / static_cast<double>(rawBytes));
}

// The level of the coverages that the sample touched; the others are reduced as much.
int levelOf(const SourcePassages& passages) {
  int level = 0;
  for (const auto& each : passages.all()) level = std::max(level, each.passage->level());
  return level;
}

std::int64_t pixelsOf(const CoveragePart& part) { return part.columns * part.rows; }

struct Measured {
  double bytesOfPixel = 0;  ///< as they come from the server
  double seconds = 0;       ///< of a request
  std::int64_t side = 0;    ///< pixels along one
};

// A refusal for the size tells the limit of the server, before anybody waits for it.
Measured measure(CoverageReader& reader, const PixelWindow& window, int level) {
  CoverageClient& client = reader.client();
  for (;;) {
    const CoveragePart part = reader.middlePart(window, level);
    const int across = client.tilesAcross();
    const auto fetched = client.fetchTimed(reader.coverage(), reader.format(), part);
    if (const auto* image = std::get_if<CoverageClient::TimedImage>(&fetched)) {
      const auto pixels = static_cast<double>(pixelsOf(part));
      return {static_cast<double>(image->image.size()) / pixels, image->seconds, across * coverageTileSide};
    }
    const auto& problem = std::get<CoverageProblem>(fetched);
    if (!isRefusedForSize(problem) || across == 1) throw RuntimeFailure(problem.text);
    client.takeFewerTiles();
  }
}

void addFetching(ExportForecast& forecast, const SourcePassages& passages) {
  if (passages.all().empty()) return;
  const int level = levelOf(passages);
  const auto& middle = passages.all()[passages.all().size() / 2];
  const Measured measured = measure(*middle.reader, middle.passage->window(), level);
  double bytes = 0;
  std::uint64_t requests = 0;
  for (const auto& each : passages.all()) {
    const PixelWindow& window = each.passage->window();
    requests += static_cast<std::uint64_t>(each.reader->requestsFor(window, level));
    bytes += measured.bytesOfPixel * static_cast<double>(each.reader->pixelsFor(window, level));
  }
  forecast.bytesToFetch += static_cast<std::uint64_t>(bytes);
  forecast.requests += requests;
  forecast.seconds += measured.seconds * std::ceil(static_cast<double>(requests) / answeredTogether);
  if (middle.reader->client().isLimited()) {
    forecast.limits.push_back("The server gives at most about " + std::to_string(measured.side) + " by " +
                              std::to_string(measured.side) + " pixels at once.");
  }
  if (level > 0 && !middle.reader->client().canScale()) {
    forecast.limits.emplace_back("The server gives pixels at their own size only; they are reduced here.");
  }
}

// A cancel ends requests that are underway as well.
ExportProgress givingUp(const ExportProgress& progress, const SourcePassages& passages) {
  if (!progress) return {};
  return [&](double share) {
    const bool goesOn = progress(share);
    if (!goesOn) passages.giveUp();
    return goesOn;
  };
}

std::shared_ptr<RemoteFile> firstFileOf(const Drawing& drawing, const std::vector<std::size_t>& sources) {
  for (const std::size_t index : sources) {
    const auto address = addressWithSecrets(drawing.service->sources[index].file.string());
    if (!address) continue;
    const auto met = RemoteFiles::shared().meet(*address);
    if (const auto* file = std::get_if<std::shared_ptr<RemoteFile>>(&met)) return *file;
  }
  return nullptr;
}

// Of files of the web: what was read for the sample, kept before or not, as often as it fits into the image.
// A sample that fell into a gap tells nothing; then all pixels count as they are. Blocks that the sample cut
// count too much; of one file no more can be fetched than it holds.
void addFiles(ExportForecast& forecast, const Drawing& drawing, const GetImageRequest& request,
              double bytesRead) {
  const auto sources = sourcesWithin(*drawing.service, drawing.order, request.grid);
  const std::shared_ptr<RemoteFile> file = firstFileOf(drawing, sources);
  if (!file) return;
  constexpr double bytesOfRequest = 1 << 20;
  double bytes = bytesRead > 0 ? bytesRead : static_cast<double>(rawBytes(drawing, request));
  if (sources.size() == 1) bytes = std::min(bytes, static_cast<double>(file->size()));
  const double requests = std::ceil(bytes / bytesOfRequest);
  const auto asked = static_cast<std::uint64_t>(std::min(bytes, bytesOfRequest));
  forecast.requests += static_cast<std::uint64_t>(requests);
  forecast.bytesToFetch += static_cast<std::uint64_t>(bytes);
  forecast.seconds += file->secondsOfRequest(asked).value_or(0) * std::ceil(requests / answeredTogether);
}

void addRoom(ExportForecast& forecast, const GetImageRequest& request, std::uint64_t leastBytes) {
  forecast.folder = replacedFile(request.file).file.parent_path();
  forecast.room = roomFor(request.file);
  if (forecast.room && *forecast.room < std::max(leastBytes, forecast.bytesToWrite)) {
    forecast.limits.emplace_back("The folder has less room than the file needs.");
  }
}

}  // namespace

void exportService(const Drawing& drawing, const GetImageRequest& wanted, const std::string& job,
                   Keeping keeping, const ExportProgress& progress) {
  prepare(wanted, keeping);
  const SystemClock::time_point began = SystemClock::now();
  const SourcePassages passages(*drawing.service, drawing.order, wanted.grid, CoveragePassage::Kind::Through);
  const WaitScope reading(nullptr, passages.readers());
  GetImageRequest request = wanted;
  request.metadata = [&] {
    const std::string origin = originElement({drawing, request.grid}, passages, began);
    return serviceMetadataDocument(*drawing.service, origin + job);
  };
  const ExportProgress given = givingUp(progress, passages);
  std::optional<ExportIdentity> identity;
  if (keeping != Keeping::Nothing) identity = exportIdentity(*drawing.service, drawing.order, request, given);
  exportImage(*drawing.service, drawing.order, request, given, identity);
}

ExportForecast forecastExport(const Drawing& drawing, const GetImageRequest& request) {
  const SourcePassages passages(*drawing.service, drawing.order, request.grid, CoveragePassage::Kind::Sample);
  const WaitScope reading(nullptr, passages.readers());
  const std::uint64_t readBefore = RemoteFile::bytesRead();
  const ExportSample sample = sampleExport(*drawing.service, drawing.order, request);
  const auto read = static_cast<double>(RemoteFile::bytesRead() - readBefore);
  ExportForecast forecast;
  forecast.isRemote = readsServers(*drawing.service);
  forecast.bytesToWrite = sample.fileBytes;
  forecast.kept = keptPart(request);
  addFiles(forecast, drawing, request, read * sample.parts);
  addFetching(forecast, passages);
  const double rest = 1 - shareKept(forecast, rawBytes(drawing, request));
  forecast.requests = static_cast<std::uint64_t>(std::ceil(static_cast<double>(forecast.requests) * rest));
  forecast.bytesToFetch = static_cast<std::uint64_t>(static_cast<double>(forecast.bytesToFetch) * rest);
  forecast.seconds *= rest;
  addRoom(forecast, request, sample.leastBytes);
  return forecast;
}

bool readsServers(const ImageServiceRecord& service) {
  return std::ranges::any_of(service.sources, [](const ImageSource& source) {
    const std::string name = source.file.string();
    return coverageOfRasterName(name).has_value() || addressOfRangeRaster(name).has_value();
  });
}

std::optional<KeptPart> keptPart(const GetImageRequest& request) {
  const auto kept = keptExport(request.file);
  return kept ? std::optional(KeptPart{kept->bytes, kept->isInUse}) : std::nullopt;
}

}  // namespace vlclientui::client
