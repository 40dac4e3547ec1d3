#include "client/facade/SourcePassages.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "client/network/CoverageRaster.h"
#include "client/network/NetworkAccess.h"
#include "client/output/ExportIdentity.h"
#include "client/ranges/RangeFiles.h"
#include "client/ranges/RangePassage.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostFiles = 4;

struct Part {
  std::int64_t begin = 0;
  std::int64_t length = 0;
};

// Whole pixels of an axis between two shares of it.
Part partOf(double from, double to, std::int64_t pixels) {
  constexpr double tolerance = 1e-3;  // of a pixel
  const auto count = static_cast<double>(pixels);
  const auto begin = static_cast<std::int64_t>(std::floor(std::clamp(from, 0.0, 1.0) * count + tolerance));
  const auto end = static_cast<std::int64_t>(std::ceil(std::clamp(to, 0.0, 1.0) * count - tolerance));
  return {std::min(begin, pixels - 1), std::max<std::int64_t>(end - begin, 1)};
}

// By shares of the source's place, which holds where it is turned into another system as well as can be.
PixelWindow windowOf(std::int64_t columns, std::int64_t rows, const Bounds& place, const Bounds& wanted) {
  const double width = place.xMax - place.xMin;
  const double height = place.yMax - place.yMin;
  const Part across = partOf((wanted.xMin - place.xMin) / width, (wanted.xMax - place.xMin) / width, columns);
  const Part down = partOf((place.yMax - wanted.yMax) / height, (place.yMax - wanted.yMin) / height, rows);
  return {across.begin, down.begin, across.length, down.length};
}

}  // namespace

SourcePassages::SourcePassages(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                               const OutputGrid& grid, CoveragePassage::Kind kind) {
  const std::vector<std::size_t> within = sourcesWithin(service, order, grid);
  for (const std::size_t index : within) addCoverage(service.sources[index], grid, kind);
  // Of many files each is small, and comes in few requests anyway.
  if (kind != CoveragePassage::Kind::Through || within.size() > mostFiles) return;
  for (const std::size_t index : within) addFile(service.sources[index], grid);
}

void SourcePassages::addCoverage(const ImageSource& source, const OutputGrid& grid,
                                 CoveragePassage::Kind kind) {
  NetworkAccess& access = NetworkAccess::shared();
  const auto name = coverageOfRasterName(source.file.string());
  if (!name) return;
  auto opened = access.reader(name->first, name->second);
  const auto* reader = std::get_if<std::shared_ptr<CoverageReader>>(&opened);
  if (reader == nullptr) return;
  const CoverageDescription& coverage = (*reader)->coverage();
  const PixelWindow window = windowOf(coverage.columns, coverage.rows, source.place, grid.extent);
  const std::string coverageIs = coverageName(name->first, name->second);
  all_.push_back({*reader, access.passages().begin(coverageIs, window, kind, readers_)});
}

// Reductions are read from overviews, which are small.
void SourcePassages::addFile(const ImageSource& source, const OutputGrid& grid) {
  constexpr double mostReduced = 1.01;
  const std::string name = source.file.string();
  const RasterFacts& facts = source.facts;
  const bool isReduced = grid.pixelWidth() > facts.pixelSize * mostReduced ||
                         grid.pixelHeight() > facts.pixelHeight * mostReduced;
  if (!addressOfRangeRaster(name) || isReduced || facts.fileColumns < 1 || facts.fileRows < 1) return;
  const PixelWindow window = windowOf(facts.fileColumns, facts.fileRows, source.place, grid.extent);
  if (auto ahead = rangePassage(name, window)) files_.push_back(std::move(ahead));
}

void SourcePassages::giveUp() const {
  for (const Each& each : all_) each.passage->giveUp();
  for (const auto& file : files_) file->giveUp();
}

std::uint64_t SourcePassages::requests() const {
  std::uint64_t requests = 0;
  for (const Each& each : all_) requests += each.passage->requests();
  return requests;
}

std::uint64_t SourcePassages::bytes() const {
  std::uint64_t bytes = 0;
  for (const Each& each : all_) bytes += each.passage->bytes();
  return bytes;
}

}  // namespace vlclientui::client
