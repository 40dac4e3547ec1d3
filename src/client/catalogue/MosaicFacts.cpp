#include "client/catalogue/MosaicFacts.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

bool hasBandsFor(const RasterFacts& first, const RasterFacts& source) {
  constexpr int colors = 3;
  return source.colorBands >= first.colorBands || (source.colorBands == 1 && first.colorBands == colors);
}

std::string bandsText(int count) { return std::to_string(count) + (count == 1 ? " band" : " bands"); }

void include(RasterFacts& whole, const RasterFacts& source, const Bounds& bounds) {
  whole.envelope = unite(whole.envelope, bounds);
  if (source.srsWkt == whole.srsWkt) {
    whole.pixelSize = std::min(whole.pixelSize, source.pixelSize);
    whole.pixelHeight = std::min(whole.pixelHeight, source.pixelHeight);
  }
  if (!source.geographicEnvelope) return;
  whole.geographicEnvelope = whole.geographicEnvelope
                                 ? unite(*whole.geographicEnvelope, *source.geographicEnvelope)
                                 : source.geographicEnvelope;
}

void finish(RasterFacts& whole, const MosaicDefinition& definition) {
  whole.pages.clear();
  whole.pagesProblem.clear();
  whole.title = definition.title.empty() ? definition.name : definition.title;
  whole.region = definition.region;
  if (!definition.pixelSource.empty()) whole.pixelSource = definition.pixelSource;
  if (whole.region.empty() && whole.geographicEnvelope) whole.region = regionText(*whole.geographicEnvelope);
  whole.columns = pixelCount(whole.envelope.xMax - whole.envelope.xMin, whole.pixelSize);
  whole.rows = pixelCount(whole.envelope.yMax - whole.envelope.yMin, whole.pixelHeight);
}

class Union {
 public:
  explicit Union(std::vector<LeftOut>& problems) : problems_(problems) {}

  std::optional<Bounds> add(const MosaicSource& source, const RasterResult& result) {
    if (const auto* problem = std::get_if<RasterProblem>(&result)) return report(source, problem->reason);
    const auto& facts = std::get<RasterFacts>(result);
    if (!whole_) {
      whole_ = facts;
      places_.emplace(facts);
    }
    const auto place = places_->of(facts);
    if (const auto* reason = std::get_if<std::string>(&place)) return report(source, *reason);
    include(*whole_, facts, std::get<Bounds>(place));
    return std::get<Bounds>(place);
  }

  [[nodiscard]] std::optional<RasterFacts>& whole() { return whole_; }

 private:
  std::nullopt_t report(const MosaicSource& source, const std::string& reason) {
    problems_.push_back({source.name.empty() ? utf8FromAny(source.file.string()) : source.name, reason});
    return std::nullopt;
  }

  std::optional<RasterFacts> whole_;
  std::optional<MosaicPlaces> places_;
  std::vector<LeftOut>& problems_;
};

}  // namespace

MosaicPlaces::MosaicPlaces(RasterFacts first) : first_(std::move(first)) {}

std::optional<Bounds> MosaicPlaces::inFirstSystem(const RasterFacts& source) {
  if (source.srsWkt == first_.srsWkt) return source.envelope;
  const auto [known, isNew] = ways_.try_emplace(source.srsWkt);
  if (isNew) {
    const OGRSpatialReference from(source.srsWkt.c_str());
    const OGRSpatialReference to(first_.srsWkt.c_str());
    if (!from.IsEmpty() && !to.IsEmpty()) known->second.emplace(from, to);
  }
  return known->second ? known->second->of(source.envelope) : std::nullopt;
}

std::variant<Bounds, std::string> MosaicPlaces::of(const RasterFacts& source) {
  if (!hasBandsFor(first_, source)) {
    return "it has " + bandsText(source.colorBands) + " of pixels, and the mosaic's first source has " +
           std::to_string(first_.colorBands);
  }
  const auto bounds = inFirstSystem(source);
  if (!bounds) return "its coordinate system cannot be brought into the mosaic's";
  return *bounds;
}

MosaicSummary summaryOf(const MosaicDefinition& definition, const std::vector<RasterResult>& sources,
                        std::vector<LeftOut>& problems) {
  const GdalScope scope;
  Union all(problems);
  MosaicSummary summary;
  summary.places.reserve(sources.size());
  for (std::size_t i = 0; i < sources.size(); ++i) {
    summary.places.push_back(all.add(definition.sources[i], sources[i]));
  }
  if (all.whole()) {
    finish(*all.whole(), definition);
    summary.whole = *std::move(all.whole());
  } else {
    summary.whole = RasterProblem{true, "none of the mosaic's sources can be read"};
  }
  return summary;
}

RasterResult mosaicFacts(const MosaicDefinition& definition, const std::vector<RasterResult>& sources,
                         std::vector<LeftOut>& problems) {
  return summaryOf(definition, sources, problems).whole;
}

}  // namespace vlclientui::client
