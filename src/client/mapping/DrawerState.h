#pragma once

#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "client/mapping/MapDrawer.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/SourceSampler.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {

/// What the threads of a drawer share.
struct MapDrawer::State {
  using Clock = std::chrono::steady_clock;

  State(std::function<void()> whenChanged, const Settings& how)
      : changed(std::move(whenChanged)), settings(how), store(how.mostBytes) {}

  struct Job {
    TileKey key;
    Pass pass = Pass::Coarse;
    bool isAgain = false;  ///< of what failed before
  };
  // A piece of work that goes on.
  struct Running {
    Job job;
    CancelToken token;
  };
  // What is known of a layer, by its id.
  struct Known {
    std::shared_ptr<const Stretch> stretch;
    std::shared_ptr<CancelToken> deciding;  ///< of who decides the stretch right now; null for nobody
    bool isAnyDrawn = false;
    int failures = 0;     ///< before anything could be drawn
    std::string failure;  ///< the last of them
    int retries = 0;
    std::optional<Clock::time_point> retryAt;
  };
  // The ids that a service has had last.
  struct Editions {
    std::string present;
    std::string former;
  };
  // What a worker holds.
  struct Tools {
    explicit Tools(const Settings& settings) : handles(mostHandles, settings.copies) {}

    static constexpr std::size_t mostHandles = 64;
    RasterHandles handles;
    std::size_t scene = 0;
    std::size_t forgotten = 0;
  };

  const std::function<void()> changed;
  const Settings settings;
  PictureStore store;
  mutable std::mutex mutex;
  std::condition_variable wake;
  bool isEnding = false;
  MapScene scene;
  std::size_t sceneNumber = 0;
  std::size_t forgottenNumber = 0;
  std::vector<TileKey> wanted;  ///< of the scene, the best first
  std::list<Running> running;
  std::map<std::string, Known> known;
  std::map<std::string, Editions> editions;  ///< by service
  std::map<std::string, std::shared_ptr<const Stretch>>
      stretches;                     ///< decided; by service, line break, holes
  std::set<std::string> slow;        ///< files that were told
  std::vector<std::string> newSlow;  ///< those that nobody has taken
  Counts counts;
  std::vector<std::jthread> threads;

  // All of these under the lock.
  [[nodiscard]] const MapLayer* layerOf(const std::string& id) const;
  [[nodiscard]] bool isRunning(const TileKey& key) const;
  [[nodiscard]] bool isDue(const std::string& layer) const;
  [[nodiscard]] bool isDown(const std::string& layer) const;
  [[nodiscard]] bool isHeld(const std::string& layer) const;
  [[nodiscard]] bool isBusyEnough(const std::string& layer) const;
  [[nodiscard]] std::optional<Job> nextJob();
  [[nodiscard]] std::optional<Clock::time_point> nextRetry() const;
  [[nodiscard]] bool isAnythingMissing();
  [[nodiscard]] std::string problem(const std::string& layer);
  [[nodiscard]] std::vector<StoredTile> tiles(const std::string& layer);
  [[nodiscard]] std::vector<StoredTile> beneath(const std::string& layer, const std::vector<TileKey>& gaps);
  void take(MapScene next);
  void noteEditions();
  void listWanted();
  void giveUpOthers();
  void tidy();
  void forget(const std::string& service);
  void refresh(Tools& tools, const Job& job) const;
  void keep(const Job& job, PicturePtr drawn);
  void planRetry(Known& told) const;
  [[nodiscard]] std::shared_ptr<CancelToken> beginDeciding(const std::string& layer);
  void endDeciding(const MapLayer& layer, const std::shared_ptr<CancelToken>& mine,
                   const std::shared_ptr<const Stretch>& stretch, const std::string& failure);

  // These without it.
  void work();
  [[nodiscard]] std::shared_ptr<const Stretch> decide(const MapLayer& layer, const CancelToken& token,
                                                      RasterHandles& handles);
  [[nodiscard]] static PicturePtr picture(const MapLayer& layer, const Stretch& stretch, const Job& job,
                                          RasterHandles& handles);

  // Lets the lock go meanwhile.
  void runJob(const Job& job, Tools& tools, std::unique_lock<std::mutex>& lock);
};

}  // namespace vlclientui::client
