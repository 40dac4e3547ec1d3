#include "client/facade/SourcePassages.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "client/network/CoverageRaster.h"
#include "client/network/NetworkAccess.h"
#include "client/output/ExportIdentity.h"

namespace vlclientui::client {
namespace {

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
PixelWindow windowOf(const CoverageDescription& coverage, const Bounds& place, const Bounds& wanted) {
  const double width = place.xMax - place.xMin;
  const double height = place.yMax - place.yMin;
  const Part across =
      partOf((wanted.xMin - place.xMin) / width, (wanted.xMax - place.xMin) / width, coverage.columns);
  const Part down =
      partOf((place.yMax - wanted.yMax) / height, (place.yMax - wanted.yMin) / height, coverage.rows);
  return {across.begin, down.begin, across.length, down.length};
}

}  // namespace

SourcePassages::SourcePassages(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                               const OutputGrid& grid, CoveragePassage::Kind kind) {
  NetworkAccess& access = NetworkAccess::shared();
  for (const std::size_t index : sourcesWithin(service, order, grid)) {
    const ImageSource& source = service.sources[index];
    const auto name = coverageOfRasterName(source.file.string());
    if (!name) continue;
    auto opened = access.reader(name->first, name->second);
    const auto* reader = std::get_if<std::shared_ptr<CoverageReader>>(&opened);
    if (reader == nullptr) continue;
    const PixelWindow window = windowOf((*reader)->coverage(), source.place, grid.extent);
    all_.push_back({*reader, access.passages().begin(coverageName(name->first, name->second), window, kind)});
  }
}

void SourcePassages::giveUp() const {
  for (const Each& each : all_) each.passage->giveUp();
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
