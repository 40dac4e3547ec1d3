#include "client/stac/StacMosaic.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "client/ranges/RangeFiles.h"
#include "client/stac/AssetChoice.h"
#include "client/stac/StacFacts.h"
#include "client/transport/Address.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

std::string hostOf(const StacService& service) {
  const auto parsed = parsedAddress(service.address);
  return parsed ? parsed->server.shown() : std::string();
}

constexpr std::size_t mostChoices = 50;
constexpr auto dateName = "datetime";

const std::string& dateOf(const StacItem& item) {
  static const std::string none;
  const bool hasDate = !item.attributes.empty() && item.attributes.front().first == dateName;
  return hasDate ? item.attributes.front().second : none;
}

// Dates of the same form, which the standard asks for, are in order as texts.
std::vector<const StacFound*> oldestFirst(const std::vector<StacFound>& items) {
  std::vector<const StacFound*> order;
  order.reserve(items.size());
  for (const StacFound& found : items) order.push_back(&found);
  std::ranges::stable_sort(order, {}, [](const StacFound* found) { return dateOf(found->item); });
  return order;
}

// A lock holds what stands before the first "." of an id.
class RasterIds {
 public:
  std::string next(const std::string& id) {
    std::string whole = id;
    std::ranges::replace(whole, '.', '_');
    std::string own = whole;
    for (int& number = numbers_[whole]; !taken_.insert(own).second;) {
      number = std::max(number + 1, 2);
      own = whole + "_" + std::to_string(number);
    }
    return own;
  }

 private:
  std::set<std::string> taken_;
  std::map<std::string, int> numbers_;  ///< the last one of each id, since many items may have the same
};

// What the asset tells itself wins over what its item tells of all of them.
ToldRaster toldOf(const StacItem& item, const StacAsset& asset) {
  ToldRaster told = item.raster;
  if (!asset.raster) return told;
  if (!asset.raster->system.empty()) told.system = asset.raster->system;
  if (asset.raster->columns > 0) {
    told.columns = asset.raster->columns;
    told.rows = asset.raster->rows;
  }
  if (asset.raster->transform) told.transform = asset.raster->transform;
  if (asset.raster->envelope) told.envelope = asset.raster->envelope;
  return told;
}

const StacAsset* shownAsset(const StacItem& item, const std::string& usual, const std::string& asked) {
  if (!asked.empty()) return assetOf(item.assets, asked);
  const StacAsset* const same = assetOf(item.assets, usual);
  return same != nullptr ? same : chosenAsset(item.assets);
}

std::string usualName(const std::vector<StacFound>& items) {
  for (const StacFound& found : items) {
    if (const StacAsset* asset = chosenAsset(found.item.assets)) return asset->key();
  }
  return {};
}

void addUnknown(StacItems& items, std::vector<StacFound>&& others) {
  std::set<std::string> known;
  for (const StacFound& found : items.items) known.insert(found.item.id);
  for (StacFound& found : others) {
    if (known.insert(found.item.id).second) items.items.push_back(std::move(found));
  }
}

// Names stand in a list, where these separate one from the next.
bool canBeListed(const std::string& name) { return name.find_first_of(";=") == std::string::npos; }

}  // namespace

std::vector<std::string> assetNames(const std::vector<StacFound>& items) {
  std::map<std::string, std::size_t> counts;
  std::vector<std::string> names;
  for (const StacFound& found : items) {
    for (const StacAsset& asset : found.item.assets) {
      if (++counts[asset.key()] == 1) names.push_back(asset.key());
    }
  }
  std::erase_if(
      names, [&](const std::string& name) { return counts[name] * 2 < items.size() || !canBeListed(name); });
  const auto usual = std::ranges::find(names, usualName(items));
  if (usual == names.end()) return {};
  std::rotate(names.begin(), usual, usual + 1);
  if (names.size() > mostChoices) names.resize(mostChoices);
  return names;
}

std::vector<MosaicSource> mosaicSources(const std::vector<StacFound>& items, const std::string& asset,
                                        std::vector<LeftOut>& problems) {
  std::vector<MosaicSource> sources;
  sources.reserve(items.size());
  RasterIds ids;
  const std::string usual = usualName(items);
  for (const StacFound* found : oldestFirst(items)) {
    const StacItem& item = found->item;
    const StacAsset* const shown = shownAsset(item, usual, asset);
    if (shown == nullptr) {
      problems.push_back({item.id, asset.empty() ? "it has no image" : "it has no image \"" + asset + "\""});
      continue;
    }
    auto address = assetAddress(*found->base, *shown);
    if (auto* problem = std::get_if<StacProblem>(&address)) {
      problems.push_back({item.id, std::move(problem->text)});
      continue;
    }
    MosaicSource source;
    source.file = rangeRasterName(std::get<std::string>(address));
    source.rasterId = ids.next(item.id);
    source.attributes = item.attributes;
    source.name = item.id;
    source.told = toldOf(item, *shown);
    sources.push_back(std::move(source));
  }
  return sources;
}

StacMosaic::StacMosaic(Transport& transport, StacService service, StacLimits limits)
    : transport_(transport), service_(std::move(service)), limits_(limits) {}

OrStacProblem<std::shared_ptr<const StacItems>> StacMosaic::items() {
  const Turn loading(loading_, hostOf(service_));
  if (!loading.isMine()) return StacProblem{"the wait for them was given up", true};
  {
    const std::lock_guard lock(mutex_);
    if (items_) return items_;
  }
  auto read = readStacItems(transport_, service_, limits_);
  if (auto* problem = std::get_if<StacProblem>(&read)) return std::move(*problem);
  auto found = std::make_shared<const StacItems>(std::get<StacItems>(std::move(read)));
  // Of a mosaic that cannot be shown nothing is kept: it is asked for anew when it is wanted again.
  if (found->items.empty()) return found;
  firstItems_ = found->items.size();
  firstProblems_ = found->problems.size();
  const std::lock_guard lock(mutex_);
  items_ = std::move(found);
  return items_;
}

std::vector<std::string> StacMosaic::choices() const {
  const std::lock_guard lock(mutex_);
  return items_ ? assetNames(items_->items) : std::vector<std::string>();
}

std::variant<MosaicDefinition, std::string> StacMosaic::definition(const std::string& choice) {
  auto read = items();
  if (auto* problem = std::get_if<StacProblem>(&read)) return "its items cannot be had: " + problem->text;
  const StacItems& found = *std::get<std::shared_ptr<const StacItems>>(read);
  const std::vector<std::string> names = assetNames(found.items);
  const bool isKnown = std::ranges::find(names, choice) != names.end();
  const bool isUsual = !names.empty() && names.front() == choice;
  MosaicDefinition definition;
  definition.name = service_.about.id;
  definition.title = service_.about.title.empty() ? service_.about.id : service_.about.title;
  definition.region = collectionRegion(service_.about);
  definition.pixelSource = collectionSource(service_.about);
  definition.metadata = collectionMetadata(service_.about, service_.address);
  definition.problems = found.problems;
  definition.sources =
      mosaicSources(found.items, isKnown && !isUsual ? choice : std::string(), definition.problems);
  if (!definition.sources.empty()) return definition;
  return definition.problems.empty() ? "it has no items"
                                     : "none of its items can be used: " + definition.problems.front().reason;
}

bool StacMosaic::isKnown(const Bounds& area) const {
  return std::ranges::any_of(areas_, [&](const Area& learnt) {
    const Bounds& known = learnt.bounds;
    if (!learnt.isWhole) return known == area;
    return known.xMin <= area.xMin && known.yMin <= area.yMin && known.xMax >= area.xMax &&
           known.yMax >= area.yMax;
  });
}

bool StacMosaic::isWanted(const StacFound& found) const {
  const auto& place = found.item.raster.geographic;
  return place && std::ranges::any_of(areas_, [&](const Area& area) {
           const Bounds& bounds = area.bounds;
           return place->xMin <= bounds.xMax && bounds.xMin <= place->xMax && place->yMin <= bounds.yMax &&
                  bounds.yMin <= place->yMax;
         });
}

// Whoever moves over the whole world would hold all items of it in the end. Those of the areas that were
// asked for last stay: several may be parts of one view.
bool StacMosaic::makeRoom(StacItems& items, std::size_t coming) {
  const std::size_t before = items.items.size();
  bool isTold = false;
  while (!areas_.empty() && items.items.size() + coming > limits_.held) {
    if (!std::exchange(isTold, true))
      endSilently("of " + service_.about.id +
                  " items of areas that were shown before are let go; they are asked for again when needed");
    areas_.erase(areas_.begin());
    const auto learnt = items.items.begin() + static_cast<std::ptrdiff_t>(firstItems_);
    items.items.erase(std::remove_if(learnt, items.items.end(),
                                     [this](const StacFound& found) { return !isWanted(found); }),
                      items.items.end());
  }
  return items.items.size() < before;
}

// An area is asked for once; what it brought stays while there is room.
bool StacMosaic::learn(const Bounds& geographic) {
  const Turn loading(loading_, hostOf(service_));
  if (!loading.isMine()) return false;
  std::shared_ptr<const StacItems> before;
  {
    const std::lock_guard lock(mutex_);
    before = items_;
  }
  if (!before || before->isWhole || isKnown(geographic)) return false;
  auto read = readStacItemsWithin(transport_, service_, geographic, limits_);
  if (const auto* problem = std::get_if<StacProblem>(&read)) {
    const std::string reason = "the items of an area cannot be had: " + problem->text;
    if (problem->mayPass) throw RuntimeFailure("Of " + service_.about.id + " " + reason);
    endSilently(reason);
    areas_.push_back({geographic, false, {}});
    return false;
  }
  auto& found = std::get<StacItems>(read);
  auto all = std::make_shared<StacItems>(*before);
  const bool isSmaller = makeRoom(*all, found.items.size());
  areas_.push_back({geographic, found.isWhole, std::move(found.problems)});
  all->problems.resize(firstProblems_);
  for (const Area& area : areas_)
    all->problems.insert(all->problems.end(), area.problems.begin(), area.problems.end());
  addUnknown(*all, std::move(found.items));
  if (!isSmaller && all->items.size() == before->items.size() &&
      all->problems.size() == before->problems.size())
    return false;
  const std::lock_guard lock(mutex_);
  items_ = std::move(all);
  return true;
}

}  // namespace vlclientui::client
