#include "client/ImageSource.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include <ogr_spatialref.h>

#include "client/CatalogueServer.h"
#include "client/GdalScope.h"
#include "client/GeographicBounds.h"
#include "client/MosaicFacts.h"
#include "client/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Order = std::vector<std::size_t>;

std::optional<Bounds> placeIn(const RasterFacts& whole, const RasterFacts& source) {
  if (whole.srsWkt == source.srsWkt) return source.envelope;
  const OGRSpatialReference from(source.srsWkt.c_str());
  const OGRSpatialReference to(whole.srsWkt.c_str());
  if (from.IsEmpty() || to.IsEmpty()) return std::nullopt;
  return transformBounds(source.envelope, from, to);
}

void addSource(ImageServiceRecord& service, const MosaicSource& source, const RasterResult& result) {
  const auto* facts = std::get_if<RasterFacts>(&result);
  if (facts == nullptr) return;
  const auto place = placeIn(service.facts, *facts);
  if (place) service.sources.push_back({source.file, source.rasterId, source.attributes, *facts, *place});
}

RasterFacts factsOrFailure(const RasterResult& result, const std::string& reference) {
  if (const auto* facts = std::get_if<RasterFacts>(&result)) return *facts;
  throw RuntimeFailure("The service " + reference +
                       " cannot be read: " + std::get<RasterProblem>(result).reason);
}

void readMosaic(ImageServiceRecord& service, const CatalogueEntry& entry, CatalogueServer& server) {
  std::vector<std::filesystem::path> files;
  for (const MosaicSource& source : entry.definition.sources) files.push_back(source.file);
  const std::vector<RasterResult> results = server.readFacts(files);
  std::vector<CatalogueProblem> ignored;
  service.facts = factsOrFailure(mosaicFacts(entry.definition, results, ignored), service.reference);
  if (service.facts.title.empty()) service.facts.title = entry.file.stem().string();
  const GdalScope scope;
  for (std::size_t i = 0; i < results.size(); ++i)
    addSource(service, entry.definition.sources[i], results[i]);
}

void readRaster(ImageServiceRecord& service, const CatalogueEntry& entry, CatalogueServer& server) {
  service.facts = factsOrFailure(server.readFacts({entry.file}).front(), service.reference);
  service.sources.push_back({entry.file, "1", {}, service.facts, service.facts.envelope});
}

// Without the server; a folder as server cannot be told from the name, so its leaf stands for both.
std::string nameOf(const std::string& reference, const CatalogueEntry& entry) {
  constexpr std::string_view scheme = "://";
  const std::size_t server = reference.find(scheme);
  const bool isService = server != std::string::npos && (reference[0] == 'I' || reference[0] == 'i');
  std::string rest = isService ? reference.substr(server + scheme.size()) : std::string();
  std::replace(rest.begin(), rest.end(), '\\', '/');
  const std::size_t slash = rest.find('/');
  const bool isHost = slash != std::string::npos && slash > 0 && rest[slash - 1] != ':';
  return isHost ? rest.substr(slash + 1) : utf8FromAny(entry.file.stem().string());
}

const std::string* attributeOf(const ImageSource& source, const std::string& name) {
  for (const auto& [key, value] : source.attributes) {
    if (key == name) return &value;
  }
  return nullptr;
}

// Smaller is further up; text that is no number is compared as text.
struct Rank {
  bool isMissing = true;
  std::optional<double> distance;
  std::string text;

  bool operator<(const Rank& other) const {
    if (isMissing != other.isMissing) return other.isMissing;
    if (distance && other.distance) return *distance < *other.distance;
    return text < other.text;
  }
};

Rank rankByAttribute(const ImageSource& source, const ServiceProperties& properties) {
  const std::string* value = attributeOf(source, properties.orderField);
  if (value == nullptr) return {};
  const auto number = readDecimal(*value);
  const double base = readDecimal(properties.orderBase).value_or(0.0);
  std::optional<double> distance;
  if (number) distance = std::abs(*number - base);
  if (!number && *value == properties.orderBase) return {false, distance, {}};
  return {false, distance, *value};
}

Rank rankByViewpoint(const ImageSource& source, const ServiceProperties& properties) {
  const double x = (source.place.xMin + source.place.xMax) / 2 - *properties.viewPointX;
  const double y = (source.place.yMin + source.place.yMax) / 2 - *properties.viewPointY;
  return {false, std::hypot(x, y), {}};
}

template <class RankOf>
void sortBottomFirst(Order& order, const std::vector<ImageSource>& sources, RankOf rankOf) {
  std::vector<Rank> ranks;
  ranks.reserve(sources.size());
  for (const ImageSource& source : sources) ranks.push_back(rankOf(source));
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return ranks[b] < ranks[a]; });
}

Order locked(Order order, const std::vector<ImageSource>& sources, const std::string& id) {
  for (const std::size_t i : order) {
    if (sources[i].rasterId == id) return {i};
  }
  return order;
}

}  // namespace

ImageServiceRecord loadImageService(CatalogueServer& server, const std::string& reference) {
  const auto entry = server.locate(reference);
  if (!entry) throw RuntimeFailure("There is no image service " + reference);
  ImageServiceRecord service;
  service.reference = reference;
  service.name = nameOf(reference, *entry);
  if (entry->kind == EntryKind::Mosaic) {
    readMosaic(service, *entry, server);
  } else {
    readRaster(service, *entry, server);
  }
  return service;
}

std::vector<std::size_t> orderedSources(const std::vector<ImageSource>& sources,
                                        const ServiceProperties& properties) {
  Order order(sources.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (properties.method == MosaicMethod::LockRaster) return locked(order, sources, properties.lockImageId);
  if (properties.method == MosaicMethod::ByAttribute) {
    sortBottomFirst(order, sources, [&](const ImageSource& s) { return rankByAttribute(s, properties); });
  }
  const bool hasViewpoint = properties.viewPointX && properties.viewPointY;
  if (properties.method == MosaicMethod::ClosestToViewpoint && hasViewpoint) {
    sortBottomFirst(order, sources, [&](const ImageSource& s) { return rankByViewpoint(s, properties); });
  }
  return order;
}

}  // namespace vlclientui::client
