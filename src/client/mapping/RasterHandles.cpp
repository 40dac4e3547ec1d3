#include "client/mapping/RasterHandles.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "client/mapping/CopyWriting.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

// Of a file on the disk; another one when it was written anew.
std::string presentAge(const std::filesystem::path& file) {
  std::error_code none;
  const auto time = std::filesystem::last_write_time(file, none);
  return none ? std::string() : std::to_string(time.time_since_epoch().count());
}

KnownSystem systemOf(const ImageServiceRecord& service, const ImageSource& source) {
  if (source.facts.srsWkt.empty()) return {service.facts.srsWkt};
  if (source.factsFrom != FactsFrom::File) return {source.facts.srsWkt};
  return {source.facts.srsWkt, source.facts.envelope};
}

}  // namespace

std::string unreadable(const ImageSource& source, const std::string& reason) {
  return "The source raster " + source.shownName() + " cannot be read: " + reason;
}

struct RasterHandles::Handle {
  std::string name;
  std::unique_ptr<OpenRaster> raster;
  std::string problem;
  std::map<std::string, std::unique_ptr<RasterPlacing>> placings;  ///< by the system of the map
};

RasterHandles::RasterHandles(std::size_t most, std::shared_ptr<const SmallCopies> copies)
    : most_(std::max<std::size_t>(most, 1)), copies_(std::move(copies)) {
  if (copies_) copiesSeen_ = copies_->version();
}
RasterHandles::~RasterHandles() = default;

const std::string& RasterHandles::ageOf(const std::string& file) {
  const auto [place, isNew] = ages_.try_emplace(file);
  if (isNew) place->second = presentAge(file);
  return place->second;
}

// A raster is the same one only with the same holes, in the same system.
std::string RasterHandles::nameOf(const ImageServiceRecord& service, const ImageSource& source) {
  const std::string holes = service.pixels.noData ? numberText(*service.pixels.noData) : std::string();
  const std::string file = source.file.string();
  return holes + "\n" + ageOf(file) + "\n" + source.facts.srsWkt + "\n" + file;
}

RasterHandles::Handle& RasterHandles::handle(const ImageServiceRecord& service, const ImageSource& source) {
  std::string name = nameOf(service, source);
  if (const auto found = byName_.find(name); found != byName_.end()) {
    kept_.splice(kept_.begin(), kept_, found->second);
    return kept_.front();
  }
  ++openings_;
  const GdalScope scope;
  auto raster = openForMap(source.file, systemOf(service, source), service.pixels.noData);
  std::string problem;
  // A copy has the holes that the raster declares.
  if (raster && copies_ && !service.pixels.noData && deservesCopy(*raster)) {
    if (const auto copy = copies_->find(source.file)) addCopy(*raster, *copy);
  }
  if (!raster) problem = unreadable(source, scope.firstFailure("it cannot be opened"));
  kept_.push_front({name, std::move(raster), std::move(problem), {}});
  byName_.emplace(std::move(name), kept_.begin());
  if (kept_.size() > most_) {
    byName_.erase(kept_.back().name);
    kept_.pop_back();
  }
  return kept_.front();
}

const OpenRaster* RasterHandles::raster(const ImageServiceRecord& service, const ImageSource& source) {
  return handle(service, source).raster.get();
}

std::string RasterHandles::problem(const ImageServiceRecord& service, const ImageSource& source) {
  return handle(service, source).problem;
}

const RasterPlacing* RasterHandles::placing(const ImageServiceRecord& service, const ImageSource& source,
                                            const std::string& mapWkt) {
  Handle& found = handle(service, source);
  if (!found.raster) return nullptr;
  const auto [place, isNew] = found.placings.try_emplace(mapWkt);
  if (isNew) place->second = newPlacing(*found.raster, mapWkt);
  return place->second.get();
}

std::unique_ptr<RasterPlacing> RasterHandles::newPlacing(const OpenRaster& raster,
                                                         const std::string& mapWkt) {
  auto placing = RasterPlacing::of(raster, way(mapWkt, raster.wkt));
  const bool isCountedAnew = raster.isInDegrees && mapWkt.starts_with("GEOG");
  const auto there = way(raster.wkt, mapWkt);
  if (!placing || !there || raster.isPlacedByPoints || isCountedAnew) return placing;
  const auto reach = reachOf(envelopeOf(raster.transform, raster.columns, raster.rows), *there);
  if (reach) placing->setReach(reach);
  return placing;
}

std::shared_ptr<const PointWay> RasterHandles::way(const std::string& from, const std::string& to) {
  const auto [place, isNew] = ways_.try_emplace({from, to});
  if (isNew) place->second = PointWay::between(from, to);
  return place->second;
}

void RasterHandles::lookAgain() {
  ages_.clear();
  if (!copies_ || std::exchange(copiesSeen_, copies_->version()) == copies_->version()) return;
  byName_.clear();
  kept_.clear();
}

void RasterHandles::forgetProblems() {
  for (auto i = kept_.begin(); i != kept_.end();) {
    const auto next = std::next(i);
    if (!i->raster) {
      byName_.erase(i->name);
      kept_.erase(i);
    }
    i = next;
  }
}

void RasterHandles::forget() {
  lookAgain();
  byName_.clear();
  kept_.clear();
}

}  // namespace vlclientui::client
