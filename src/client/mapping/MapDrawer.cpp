#include "client/mapping/MapDrawer.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include <gdal_priv.h>

#include "client/mapping/Areas.h"
#include "client/mapping/DrawerState.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostTiles = 2048;       // of one layer: more than any screen has
constexpr std::size_t mostBeneath = 64;       // pictures of other sizes while one is missing
constexpr std::size_t mostServices = 256;     // that are remembered while they are not shown
constexpr GIntBig mostBlockBytes = 64 << 20;  // kept by the raster library, for all handles together

// The library's own limit is a share of the machine's memory.
void limitBlocks() {
  static std::once_flag once;
  std::call_once(once, [] {
    const bool isSaid = CPLGetConfigOption("GDAL_CACHEMAX", nullptr) != nullptr;
    if (!isSaid && GDALGetCacheMax64() > mostBlockBytes) GDALSetCacheMax64(mostBlockBytes);
  });
}

double distanceTo(const MapScene& scene, const TileKey& key) {
  const Bounds extent = key.extent();
  return std::hypot(extent.xMin + extent.xMax - scene.area.xMin - scene.area.xMax,
                    extent.yMin + extent.yMax - scene.area.yMin - scene.area.yMax);
}

// With a text for how its holes are told.
std::string serviceOfKey(const std::string& key) { return key.substr(0, key.rfind('\n')); }

}  // namespace

const MapLayer* MapDrawer::State::layerOf(const std::string& id) const {
  const auto found = std::ranges::find(scene.layers, id, &MapLayer::id);
  return found == scene.layers.end() ? nullptr : &*found;
}

void MapDrawer::State::take(MapScene next) {
  scene = std::move(next);
  std::set<std::string> seen;
  for (MapLayer& layer : scene.layers) {
    if (layer.service.empty()) layer.service = layer.id;
  }
  std::erase_if(scene.layers, [&](const MapLayer& layer) { return !seen.insert(layer.id).second; });
  ++sceneNumber;
  noteEditions();
  listWanted();
  giveUpOthers();
  tidy();
}

void MapDrawer::State::noteEditions() {
  for (const MapLayer& layer : scene.layers) {
    Editions& ids = editions[layer.service];
    if (ids.present == layer.id) continue;
    // One that has no picture yet has nothing to be shown meanwhile.
    if (store.holds(ids.present)) ids.former = ids.present;
    ids.present = layer.id;
  }
}

void MapDrawer::State::listWanted() {
  wanted.clear();
  for (auto layer = scene.layers.rbegin(); layer != scene.layers.rend(); ++layer) {
    const auto tiles = tilesOf(layer->id, scene.wkt, scene.pixel, scene.area, mostTiles);
    wanted.insert(wanted.end(), tiles.begin(), tiles.end());
  }
  std::ranges::stable_sort(wanted, {}, [this](const TileKey& key) { return distanceTo(scene, key); });
  // What was used last is kept longest.
  for (const TileKey& key : wanted) static_cast<void>(store.find(key));
  store.keepAtLeast(wanted.size());
}

void MapDrawer::State::giveUpOthers() {
  for (Running& one : running) {
    if (std::ranges::find(wanted, one.job.key) == wanted.end()) one.token.cancel();
  }
  for (auto& [id, told] : known) {
    if (told.deciding && layerOf(id) == nullptr) told.deciding->cancel();
  }
}

void MapDrawer::State::tidy() {
  std::erase_if(known, [this](const auto& one) { return layerOf(one.first) == nullptr; });
  const auto isGone = [this](const std::string& service) {
    return std::ranges::find(scene.layers, service, &MapLayer::service) == scene.layers.end();
  };
  if (editions.size() > mostServices)
    std::erase_if(editions, [&](const auto& one) { return isGone(one.first); });
  if (stretches.size() > mostServices) {
    std::erase_if(stretches, [&](const auto& one) { return isGone(serviceOfKey(one.first)); });
  }
}

bool MapDrawer::State::isAnythingMissing() {
  return std::ranges::any_of(wanted, [this](const TileKey& key) {
    const PicturePtr there = store.find(key);
    return there ? there->isQuick : !isDown(key.layer);
  });
}

std::vector<StoredTile> MapDrawer::State::tiles(const std::string& layer) {
  std::vector<StoredTile> there;
  std::vector<TileKey> gaps;
  for (const TileKey& key : wanted) {
    if (key.layer != layer) continue;
    PicturePtr picture = store.find(key);
    const bool isEmpty = !picture || picture->rgba.empty();
    if (isEmpty && (!picture || picture->isLacking())) gaps.push_back(key);
    if (!isEmpty) there.push_back({key, std::move(picture)});
  }
  if (gaps.empty()) return there;
  std::vector<StoredTile> all = beneath(layer, gaps);
  all.insert(all.end(), there.begin(), there.end());
  return all;
}

// Of a former id of the service first, since what there is by the present one lies above.
std::vector<StoredTile> MapDrawer::State::beneath(const std::string& layer,
                                                  const std::vector<TileKey>& gaps) {
  const MapLayer* shown = layerOf(layer);
  std::vector<StoredTile> others;
  if (shown != nullptr && !editions[shown->service].former.empty()) {
    others = store.around(editions[shown->service].former, scene.wkt, scene.pixel, scene.area, mostBeneath);
  }
  for (StoredTile& tile : store.around(layer, scene.wkt, scene.pixel, scene.area, mostBeneath)) {
    if (tile.key.pixel != scene.pixel) others.push_back(std::move(tile));
  }
  std::vector<StoredTile> parts;
  for (const TileKey& gap : gaps) {
    for (const StoredTile& tile : others) {
      const auto part = commonPart(tile.key.extent(), gap.extent());
      if (part) parts.push_back({tile.key, tile.picture, part});
    }
  }
  return parts;
}

std::string MapDrawer::State::problem(const std::string& layer) {
  std::map<std::string, std::string> missing;
  std::string failure;
  for (const TileKey& key : wanted) {
    const PicturePtr there = key.layer == layer ? store.find(key) : nullptr;
    if (!there) continue;
    missing.insert(there->missing.begin(), there->missing.end());
    if (failure.empty()) failure = there->failure;
  }
  if (!failure.empty() || missing.empty()) {
    const auto found = known.find(layer);
    return !failure.empty() || found == known.end() ? failure : found->second.failure;
  }
  return textOfMissing(missing);
}

void MapDrawer::State::forget(const std::string& service) {
  std::set<std::string> ids = {service};
  if (const auto found = editions.find(service); found != editions.end()) {
    ids.insert({found->second.present, found->second.former});
    found->second.former.clear();
  }
  for (Running& one : running) {
    if (ids.contains(one.job.key.layer)) one.token.cancel();
  }
  for (const std::string& id : ids) {
    if (const auto found = known.find(id); found != known.end() && found->second.deciding) {
      found->second.deciding->cancel();
    }
    known.erase(id);
    store.forget(id);
  }
  std::erase_if(stretches, [&](const auto& one) { return serviceOfKey(one.first) == service; });
  slow.clear();
  ++forgottenNumber;
}

MapDrawer::MapDrawer(std::function<void()> changed) : MapDrawer(std::move(changed), Settings()) {}

MapDrawer::MapDrawer(std::function<void()> changed, const Settings& settings)
    : state_(std::make_unique<State>(std::move(changed), settings)) {
  const GdalScope scope;
  limitBlocks();
  for (std::size_t i = 0; i < std::max<std::size_t>(1, settings.threads); ++i) {
    state_->threads.emplace_back([state = state_.get()] { state->work(); });
  }
}

MapDrawer::~MapDrawer() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->isEnding = true;
    for (State::Running& one : state_->running) one.token.cancel();
    for (auto& [id, told] : state_->known) {
      if (told.deciding) told.deciding->cancel();
    }
  }
  state_->wake.notify_all();
  state_->threads.clear();
}

void MapDrawer::show(MapScene scene) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->take(std::move(scene));
  }
  state_->wake.notify_all();
}

std::vector<StoredTile> MapDrawer::tiles(const std::string& layer) {
  const std::lock_guard lock(state_->mutex);
  return state_->tiles(layer);
}

bool MapDrawer::isBusy() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isAnythingMissing();
}

bool MapDrawer::isCovered() const {
  const std::lock_guard lock(state_->mutex);
  return std::ranges::all_of(state_->wanted,
                             [this](const TileKey& key) { return state_->store.find(key) != nullptr; });
}

std::string MapDrawer::problem(const std::string& layer) const {
  const std::lock_guard lock(state_->mutex);
  return state_->problem(layer);
}

std::shared_ptr<const Stretch> MapDrawer::stretch(const std::string& layer) const {
  const std::lock_guard lock(state_->mutex);
  const MapLayer* shown = state_->layerOf(layer);
  if (shown != nullptr && shown->stretch) return shown->stretch;
  const auto found = state_->known.find(layer);
  return found == state_->known.end() ? nullptr : found->second.stretch;
}

std::vector<std::string> MapDrawer::takeSlowFiles() {
  const std::lock_guard lock(state_->mutex);
  return std::exchange(state_->newSlow, {});
}

void MapDrawer::forget(const std::string& service) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->forget(service);
  }
  state_->wake.notify_all();
}

MapDrawer::Counts MapDrawer::counts() const {
  const std::lock_guard lock(state_->mutex);
  return state_->counts;
}

}  // namespace vlclientui::client
