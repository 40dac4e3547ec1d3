#include <algorithm>
#include <utility>

#include "client/drawing/Drawing.h"
#include "client/mapping/BlockPainting.h"
#include "client/mapping/DrawerState.h"
#include "client/mapping/ServicePainter.h"
#include "client/mapping/StretchChoice.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr int mostFailures = 2;  // of a layer of which nothing could be drawn yet: then it rests
constexpr int mostDoublings = 6;

std::string textOf(const std::exception& problem) {
  const auto* told = dynamic_cast<const RuntimeFailure*>(&problem);
  const std::string text = told != nullptr ? told->description() : problem.what();
  return text.empty() ? "It cannot be drawn" : text;
}

std::string stretchKey(const MapLayer& layer, const Drawing& drawing) {
  const auto& noData = drawing.service->pixels.noData;
  return layer.service + "\n" + (noData ? numberText(*noData) : std::string());
}

PicturePtr failedPicture(const std::string& failure) {
  ServicePicture picture;
  picture.failure = failure;
  return std::make_shared<const ServicePicture>(std::move(picture));
}

}  // namespace

bool MapDrawer::State::isRunning(const TileKey& key) const {
  return std::ranges::any_of(running, [&](const Running& one) { return one.job.key == key; });
}

bool MapDrawer::State::isDue(const std::string& layer) const {
  const auto found = known.find(layer);
  return found == known.end() || !found->second.retryAt || *found->second.retryAt <= Clock::now();
}

// Nothing of it can be drawn, as when its server is gone.
bool MapDrawer::State::isDown(const std::string& layer) const {
  const auto found = known.find(layer);
  return found != known.end() && !found->second.isAnyDrawn && found->second.failures >= mostFailures;
}

// One worker decides how a layer looks; meanwhile no other one takes a tile of it.
bool MapDrawer::State::isHeld(const std::string& layer) const {
  const auto found = known.find(layer);
  if (found != known.end() && found->second.deciding && !found->second.stretch) return true;
  return isDown(layer) && !isDue(layer);
}

// A layer may keep its threads waiting for a server; others must not wait along. One that is down is tried by
// one thread.
bool MapDrawer::State::isBusyEnough(const std::string& layer) const {
  const auto count =
      std::ranges::count_if(running, [&](const Running& one) { return one.job.key.layer == layer; });
  const std::size_t most = isDown(layer) ? 1 : std::max<std::size_t>(2, settings.threads) - 1;
  return static_cast<std::size_t>(count) >= most;
}

// First something of each tile, then the whole of it, then what failed before.
std::optional<MapDrawer::State::Job> MapDrawer::State::nextJob() {
  std::optional<Job> fine;
  std::optional<Job> again;
  for (const TileKey& key : wanted) {
    if (isRunning(key) || isHeld(key.layer) || isBusyEnough(key.layer)) continue;
    const PicturePtr there = store.find(key);
    if (!there) return Job{key, Pass::Coarse, isDown(key.layer)};
    if (there->isQuick && !fine) fine = Job{key, Pass::Fine};
    if (!again && there->isLacking() && isDue(key.layer)) again = Job{key, Pass::Fine, true};
  }
  return fine ? fine : again;
}

std::optional<MapDrawer::State::Clock::time_point> MapDrawer::State::nextRetry() const {
  std::optional<Clock::time_point> next;
  for (const auto& [id, told] : known) {
    if (told.retryAt && *told.retryAt > Clock::now() && (!next || *told.retryAt < *next)) next = told.retryAt;
  }
  return next;
}

void MapDrawer::State::work() {
  Tools tools(settings);
  std::unique_lock lock(mutex);
  while (!isEnding) {
    const auto job = nextJob();
    if (job) {
      runJob(*job, tools, lock);
    } else if (const auto next = nextRetry()) {
      wake.wait_until(lock, *next);
    } else {
      wake.wait(lock);
    }
  }
}

void MapDrawer::State::refresh(Tools& tools, const Job& job) const {
  if (std::exchange(tools.forgotten, forgottenNumber) != forgottenNumber) tools.handles.forget();
  if (std::exchange(tools.scene, sceneNumber) != sceneNumber || job.isAgain) tools.handles.lookAgain();
  if (job.isAgain) tools.handles.forgetProblems();
}

void MapDrawer::State::runJob(const Job& job, Tools& tools, std::unique_lock<std::mutex>& lock) {
  const MapLayer layer = *layerOf(job.key.layer);
  const auto here = running.insert(running.end(), {job, {}});
  refresh(tools, job);
  auto stretch = layer.stretch ? layer.stretch : known[layer.id].stretch;
  const auto deciding = stretch ? nullptr : beginDeciding(layer.id);
  lock.unlock();
  PicturePtr drawn;
  std::string failure;
  try {
    if (deciding) stretch = decide(layer, *deciding, tools.handles);
    if (stretch) {
      const WaitScope scope(nullptr, here->token);
      drawn = picture(layer, *stretch, job, tools.handles);
    }
  } catch (const std::exception& problem) {
    failure = textOf(problem);
    drawn = failedPicture(failure);
  }
  lock.lock();
  if (deciding) endDeciding(layer, deciding, stretch, failure);
  const bool isUndecided = deciding && deciding->isCanceled();
  const bool isGivenUp = !drawn || isUndecided || here->token.isCanceled();
  running.erase(here);
  ++(isGivenUp ? counts.givenUp : counts.drawn);
  if (!isGivenUp) keep(job, std::move(drawn));
  wake.notify_all();
  lock.unlock();
  if (!isGivenUp || deciding) changed();
  lock.lock();
}

// What there is of it stays until the next try.
void MapDrawer::State::keep(const Job& job, PicturePtr drawn) {
  Known& told = known[job.key.layer];
  const bool isFailed = !drawn->failure.empty();
  if (const PicturePtr there = isFailed ? store.find(job.key) : nullptr) {
    ServicePicture instead = *there;
    instead.isQuick = false;
    instead.failure = drawn->failure;
    drawn = std::make_shared<const ServicePicture>(std::move(instead));
  }
  for (const std::string& file : drawn->slow) {
    if (slow.insert(file).second) newSlow.push_back(file);
  }
  const bool isLacking = drawn->isLacking();
  store.put(job.key, drawn);
  if (isFailed && !told.isAnyDrawn) {
    ++told.failures;
    told.failure = drawn->failure;
  }
  // An empty one may lie beside the service, and tells nothing of it.
  if (!isFailed && !drawn->rgba.empty()) {
    told.isAnyDrawn = true;
    told.failures = 0;
    told.failure.clear();
  }
  if (isLacking) return planRetry(told);
  const bool isAnyLacking = std::ranges::any_of(wanted, [&](const TileKey& key) {
    const PicturePtr there = key.layer == job.key.layer ? store.find(key) : nullptr;
    return there && there->isLacking();
  });
  if (isAnyLacking) return;
  told.retryAt.reset();
  told.retries = 0;
}

void MapDrawer::State::planRetry(Known& told) const {
  const auto now = Clock::now();
  if (told.retryAt && *told.retryAt > now) return;
  told.retryAt = now + settings.retry * (1 << std::min(told.retries, mostDoublings));
  ++told.retries;
}

std::shared_ptr<CancelToken> MapDrawer::State::beginDeciding(const std::string& layer) {
  auto mine = std::make_shared<CancelToken>();
  known[layer].deciding = mine;
  return mine;
}

// Without what it looks like nothing of a layer can be drawn.
void MapDrawer::State::endDeciding(const MapLayer& layer, const std::shared_ptr<CancelToken>& mine,
                                   const std::shared_ptr<const Stretch>& stretch,
                                   const std::string& failure) {
  const auto found = known.find(layer.id);
  if (found == known.end() || found->second.deciding != mine) return;
  Known& told = found->second;
  told.deciding.reset();
  told.stretch = stretch;
  if (stretch || mine->isCanceled() || failure.empty()) return;
  told.failures = mostFailures;
  told.failure = failure;
  planRetry(told);
}

// Not under the flag of a tile: zooming gives tiles up, and the decision goes on.
std::shared_ptr<const Stretch> MapDrawer::State::decide(const MapLayer& layer, const CancelToken& token,
                                                        RasterHandles& handles) {
  const GdalScope silence;
  const WaitScope scope(nullptr, token);
  const auto drawing = layer.source(std::nullopt);
  const std::string key = stretchKey(layer, *drawing);
  {
    const std::lock_guard lock(mutex);
    if (const auto found = stretches.find(key); found != stretches.end()) return found->second;
  }
  const auto chosen = chosenStretch(*drawing, handles);
  if (!chosen) return nullptr;
  auto decided = std::make_shared<const Stretch>(*chosen);
  const std::lock_guard lock(mutex);
  if (token.isCanceled()) return nullptr;
  ++counts.decided;
  stretches[key] = decided;
  return decided;
}

PicturePtr MapDrawer::State::picture(const MapLayer& layer, const Stretch& stretch, const Job& job,
                                     RasterHandles& handles) {
  const GdalScope scope;
  if (WaitScope::isGivenUp()) return nullptr;
  const MapGrid map{job.key.wkt, {job.key.extent(), TileKey::side, TileKey::side}};
  const auto drawing = drawingOn(layer.source, map, handles);
  if (!drawing) return std::make_shared<const ServicePicture>();
  ServicePainter painter(*drawing, stretch, handles);
  auto painted = painter.paint(map, job.pass);
  if (!painted) return nullptr;
  const auto isHole = [](std::uint8_t byte) { return byte == 0; };
  if (std::ranges::all_of(painted->rgba, isHole)) painted->rgba.clear();
  return std::make_shared<const ServicePicture>(*std::move(painted));
}

}  // namespace vlclientui::client
