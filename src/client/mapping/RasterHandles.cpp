#include "client/mapping/RasterHandles.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

// Of a file on the disk; another one when it was written anew.
std::string ageOf(const std::filesystem::path& file) {
  std::error_code none;
  const auto time = std::filesystem::last_write_time(file, none);
  return none ? std::string() : std::to_string(time.time_since_epoch().count());
}

// A raster is the same one only with the same holes, in the same system.
std::string nameOf(const ImageServiceRecord& service, const ImageSource& source) {
  const std::string holes = service.pixels.noData ? numberText(*service.pixels.noData) : std::string();
  return holes + "\n" + ageOf(source.file) + "\n" + source.facts.srsWkt + "\n" + source.file.string();
}

}  // namespace

struct RasterHandles::Handle {
  std::string name;
  std::unique_ptr<OpenRaster> raster;
  std::map<std::string, std::unique_ptr<RasterPlacing>> placings;  ///< by the system of the map
};

RasterHandles::RasterHandles(std::size_t most) : most_(std::max<std::size_t>(most, 1)) {}
RasterHandles::~RasterHandles() = default;

RasterHandles::Handle& RasterHandles::handle(const ImageServiceRecord& service, const ImageSource& source) {
  std::string name = nameOf(service, source);
  if (const auto found = byName_.find(name); found != byName_.end()) {
    kept_.splice(kept_.begin(), kept_, found->second);
    return kept_.front();
  }
  ++openings_;
  const std::string& told = source.facts.srsWkt.empty() ? service.facts.srsWkt : source.facts.srsWkt;
  auto raster = openForMap(source.file, told, service.pixels.noData);
  kept_.push_front({name, std::move(raster), {}});
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

void RasterHandles::forget() {
  byName_.clear();
  kept_.clear();
}

}  // namespace vlclientui::client
