#include "client/mapping/MapDrawer.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include <gdal_priv.h>

#include "client/mapping/ServicePainter.h"
#include "client/mapping/StretchChoice.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostTiles = 2048;        // of one layer: more than any screen has
constexpr std::size_t mostBeneath = 64;        // pictures of other sizes while one is missing
constexpr GIntBig mostBlockBytes = 128 << 20;  // kept by the raster library, for all handles together

struct Job {
  TileKey key;
  Pass pass = Pass::Quick;
};

// The library's own limit is a share of the machine's memory.
void limitBlocks() {
  static std::once_flag once;
  std::call_once(once, [] {
    const bool isSaid = CPLGetConfigOption("GDAL_CACHEMAX", nullptr) != nullptr;
    if (!isSaid && GDALGetCacheMax64() > mostBlockBytes) GDALSetCacheMax64(mostBlockBytes);
  });
}

std::optional<Bounds> commonPart(const Bounds& one, const Bounds& other) {
  const Bounds part{std::max(one.xMin, other.xMin), std::max(one.yMin, other.yMin),
                    std::min(one.xMax, other.xMax), std::min(one.yMax, other.yMax)};
  if (!(part.xMin < part.xMax) || !(part.yMin < part.yMax)) return std::nullopt;
  return part;
}

double distanceTo(const MapScene& scene, const TileKey& key) {
  const Bounds extent = key.extent();
  return std::hypot(extent.xMin + extent.xMax - scene.area.xMin - scene.area.xMax,
                    extent.yMin + extent.yMax - scene.area.yMin - scene.area.yMax);
}

}  // namespace

struct MapDrawer::State {
  State(std::function<void()> whenChanged, const Settings& settings)
      : changed(std::move(whenChanged)), threadCount(settings.threads), store(settings.mostBytes) {}

  // A piece of work that goes on.
  struct Running {
    Job job;
    CancelToken token;
  };

  // What is known of a layer, by its id.
  struct Known {
    std::shared_ptr<const Stretch> stretch;
    bool isBeingDecided = false;
    std::set<std::string> missing;
    std::string failure;
  };

  const std::function<void()> changed;
  const std::size_t threadCount;
  PictureStore store;
  mutable std::mutex mutex;
  std::condition_variable wake;
  bool isEnding = false;
  MapScene scene;
  std::vector<TileKey> wanted;  ///< of the scene, the best first
  std::list<Running> running;
  std::map<std::string, Known> known;
  Counts counts;
  std::vector<std::jthread> threads;

  // All of these under the lock.
  [[nodiscard]] bool isRunning(const TileKey& key) const {
    return std::ranges::any_of(running, [&](const Running& one) { return one.job.key == key; });
  }
  [[nodiscard]] const MapLayer* layerOf(const std::string& id) const {
    const auto found = std::ranges::find(scene.layers, id, &MapLayer::id);
    return found == scene.layers.end() ? nullptr : &*found;
  }
  [[nodiscard]] bool isBlocked(const TileKey& key) const {
    const auto found = known.find(key.layer);
    return found != known.end() && found->second.isBeingDecided && !found->second.stretch;
  }
  // A layer may keep its threads waiting for a server; others must not wait along.
  [[nodiscard]] bool isBusyEnough(const std::string& layer) const {
    const auto count =
        std::ranges::count_if(running, [&](const Running& one) { return one.job.key.layer == layer; });
    return static_cast<std::size_t>(count) >= std::max<std::size_t>(2, threadCount) - 1;
  }
  [[nodiscard]] std::optional<Job> nextJob();
  [[nodiscard]] bool isAnythingMissing();

  void listWanted();
  void giveUpOthers();
  void work();
  void runJob(const Job& job, RasterHandles& handles, std::unique_lock<std::mutex>& lock);
  void keep(const Job& job, PicturePtr drawn, const std::string& failure);
  [[nodiscard]] PicturePtr picture(const MapLayer& layer, const Job& job, RasterHandles& handles);
  [[nodiscard]] std::shared_ptr<const Stretch> stretchFor(const MapLayer& layer, const Drawing& drawing,
                                                          RasterHandles& handles);
};

void MapDrawer::State::listWanted() {
  wanted.clear();
  for (auto layer = scene.layers.rbegin(); layer != scene.layers.rend(); ++layer) {
    const auto tiles = tilesOf(layer->id, scene.wkt, scene.pixel, scene.area, mostTiles);
    wanted.insert(wanted.end(), tiles.begin(), tiles.end());
  }
  store.keepAtLeast(wanted.size() * TileKey::side * TileKey::side * 4);
  std::ranges::stable_sort(wanted, {}, [this](const TileKey& key) { return distanceTo(scene, key); });
}

void MapDrawer::State::giveUpOthers() {
  for (Running& one : running) {
    if (std::ranges::find(wanted, one.job.key) == wanted.end()) one.token.cancel();
  }
}

// First something of each tile, then the whole of it.
std::optional<Job> MapDrawer::State::nextJob() {
  std::optional<Job> fine;
  for (const TileKey& key : wanted) {
    if (isRunning(key) || isBlocked(key) || isBusyEnough(key.layer)) continue;
    const PicturePtr there = store.find(key);
    if (!there) return Job{key, Pass::Quick};
    if (there->isQuick && !fine) fine = Job{key, Pass::Fine};
  }
  return fine;
}

bool MapDrawer::State::isAnythingMissing() {
  return std::ranges::any_of(wanted, [this](const TileKey& key) {
    const PicturePtr there = store.find(key);
    return !there || there->isQuick;
  });
}

void MapDrawer::State::work() {
  RasterHandles handles;
  std::unique_lock lock(mutex);
  while (!isEnding) {
    const auto job = nextJob();
    if (!job) {
      wake.wait(lock);
      continue;
    }
    runJob(*job, handles, lock);
  }
}

void MapDrawer::State::runJob(const Job& job, RasterHandles& handles, std::unique_lock<std::mutex>& lock) {
  const MapLayer layer = *layerOf(job.key.layer);
  const auto here = running.insert(running.end(), {job, {}});
  lock.unlock();
  PicturePtr drawn;
  std::string failure;
  {
    const WaitScope scope(nullptr, here->token);
    try {
      drawn = picture(layer, job, handles);
    } catch (const std::exception& problem) {
      const auto* told = dynamic_cast<const RuntimeFailure*>(&problem);
      failure = told != nullptr ? told->description() : problem.what();
    }
  }
  lock.lock();
  const bool isGivenUp = here->token.isCanceled();
  running.erase(here);
  ++(isGivenUp ? counts.givenUp : counts.drawn);
  if (!isGivenUp) keep(job, drawn, failure);
  wake.notify_all();
  lock.unlock();
  if (!isGivenUp) changed();
  lock.lock();
}

// What cannot be drawn is not tried again and again; what there is of it stays.
void MapDrawer::State::keep(const Job& job, PicturePtr drawn, const std::string& failure) {
  Known& told = known[job.key.layer];
  if (!failure.empty()) told.failure = failure;
  if (!drawn) {
    const PicturePtr there = store.find(job.key);
    ServicePicture instead = there ? *there : ServicePicture();
    instead.isQuick = false;
    drawn = std::make_shared<const ServicePicture>(std::move(instead));
  }
  told.missing.insert(drawn->missing.begin(), drawn->missing.end());
  store.put(job.key, std::move(drawn));
}

PicturePtr MapDrawer::State::picture(const MapLayer& layer, const Job& job, RasterHandles& handles) {
  const GdalScope scope;
  auto drawing = layer.source(std::nullopt);
  const auto stretch = stretchFor(layer, *drawing, handles);
  if (!stretch) return nullptr;
  const RasterFacts& facts = drawing->service->facts;
  const Bounds extent = job.key.extent();
  const auto way = handles.way(job.key.wkt, facts.srsWkt);
  const auto reach = way ? reachOf(extent, *way) : std::nullopt;
  // Degrees may be counted otherwise, so that a service of them is looked at in any case.
  const bool isInDegrees = facts.srsWkt.starts_with("GEOG");
  const auto part = reach ? commonPart(*reach, facts.envelope) : std::nullopt;
  if (!part && !(reach && isInDegrees)) return std::make_shared<const ServicePicture>();
  drawing = layer.source(part.value_or(facts.envelope));
  ServicePainter painter(*drawing, *stretch, handles);
  auto painted = painter.paint({job.key.wkt, {extent, TileKey::side, TileKey::side}}, job.pass);
  if (!painted) return nullptr;
  const auto isHole = [](std::uint8_t byte) { return byte == 0; };
  if (std::ranges::all_of(painted->rgba, isHole)) painted->rgba.clear();
  return std::make_shared<const ServicePicture>(*std::move(painted));
}

// One worker decides; meanwhile no other one takes a tile of the layer.
std::shared_ptr<const Stretch> MapDrawer::State::stretchFor(const MapLayer& layer, const Drawing& drawing,
                                                            RasterHandles& handles) {
  if (layer.stretch) return layer.stretch;
  {
    std::unique_lock lock(mutex);
    const auto isOver = [this] { return isEnding || WaitScope::isGivenUp(); };
    wake.wait(lock, [&] { return !known[layer.id].isBeingDecided || isOver(); });
    Known& told = known[layer.id];
    if (told.stretch || isOver()) return told.stretch;
    told.isBeingDecided = true;
  }
  std::shared_ptr<const Stretch> decided;
  std::exception_ptr failure;
  try {
    if (auto chosen = chosenStretch(drawing, handles)) decided = std::make_shared<const Stretch>(*chosen);
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard lock(mutex);
  known[layer.id].isBeingDecided = false;
  known[layer.id].stretch = decided;
  wake.notify_all();
  if (failure) std::rethrow_exception(failure);
  return decided;
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
  }
  state_->wake.notify_all();
  state_->threads.clear();
}

void MapDrawer::show(MapScene scene) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->scene = std::move(scene);
    state_->listWanted();
    state_->giveUpOthers();
  }
  state_->wake.notify_all();
}

std::vector<StoredTile> MapDrawer::tiles(const std::string& layer) {
  const std::lock_guard lock(state_->mutex);
  std::vector<StoredTile> there;
  bool isMissing = false;
  for (const TileKey& key : state_->wanted) {
    if (key.layer != layer) continue;
    PicturePtr picture = state_->store.find(key);
    isMissing = isMissing || !picture || picture->isQuick;
    if (picture && !picture->rgba.empty()) there.push_back({key, std::move(picture)});
  }
  if (!isMissing) return there;
  const MapScene& scene = state_->scene;
  auto all = state_->store.around(layer, scene.wkt, scene.pixel, scene.area, mostBeneath);
  std::erase_if(all, [&](const StoredTile& tile) { return tile.key.pixel == scene.pixel; });
  all.insert(all.end(), there.begin(), there.end());
  return all;
}

bool MapDrawer::isBusy() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isAnythingMissing();
}

std::string MapDrawer::problem(const std::string& layer) const {
  const std::lock_guard lock(state_->mutex);
  const auto found = state_->known.find(layer);
  if (found == state_->known.end()) return {};
  const State::Known& told = found->second;
  if (told.missing.empty()) return told.failure;
  return "The source raster " + *told.missing.begin() + " cannot be read." +
         (told.missing.size() == 1 ? "" : " So are " + std::to_string(told.missing.size() - 1) + " more.");
}

std::shared_ptr<const Stretch> MapDrawer::stretch(const std::string& layer) const {
  const std::lock_guard lock(state_->mutex);
  const MapLayer* shown = state_->layerOf(layer);
  if (shown != nullptr && shown->stretch) return shown->stretch;
  const auto found = state_->known.find(layer);
  return found == state_->known.end() ? nullptr : found->second.stretch;
}

void MapDrawer::forget(const std::string& layer) {
  {
    const std::lock_guard lock(state_->mutex);
    for (State::Running& one : state_->running)
      if (one.job.key.layer == layer) one.token.cancel();
    state_->known.erase(layer);
    state_->store.forget(layer);
  }
  state_->wake.notify_all();
}

MapDrawer::Counts MapDrawer::counts() const {
  const std::lock_guard lock(state_->mutex);
  return state_->counts;
}

}  // namespace vlclientui::client
