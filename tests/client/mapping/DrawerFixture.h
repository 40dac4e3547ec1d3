#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "client/mapping/MapDrawer.h"
#include "client/mapping/MappingFixture.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {

/// Counts what a drawer tells, and waits for it.
class Bell {
 public:
  void ring() {
    {
      const std::lock_guard lock(mutex_);
      ++count_;
    }
    heard_.notify_all();
  }

  template <class Condition>
  void waitUntil(Condition condition) {
    std::unique_lock lock(mutex_);
    heard_.wait(lock, condition);
  }

 private:
  std::mutex mutex_;
  std::condition_variable heard_;
  int count_ = 0;
};

/// Drawers of services whose sources may be held back, or break.
class DrawerFixture : public MappingFixture {
 protected:
  static constexpr client::MapPoint bern{7.44, 46.95};

  [[nodiscard]] client::MapLayer layerOf(const std::string& name) const {
    auto drawing = std::make_shared<const client::Drawing>(drawingOf(name));
    return {name, [drawing](const auto&) { return drawing; }};
  }

  /// Is drawn until that is given up. What it looks like needs no decision.
  [[nodiscard]] client::MapLayer endlessLayer() {
    client::MapLayer layer = undecidedLayer();
    layer.stretch = std::make_shared<const client::Stretch>();
    return layer;
  }

  /// What it looks like is decided until that is given up.
  [[nodiscard]] client::MapLayer undecidedLayer() {
    return {"endless", [this](const auto&) -> std::shared_ptr<const client::Drawing> {
              ++begun_;
              bell_.ring();
              while (!client::WaitScope::isGivenUp()) std::this_thread::yield();
              ++ended_;
              bell_.ring();
              throw RuntimeFailure("It was given up");
            }};
  }

  /// Waits while `isHeld_`, and fails while `isBroken_`. @param name of a raster.
  [[nodiscard]] client::MapLayer moodyLayer(const std::string& name) {
    client::MapLayer layer = layerOf(name);
    layer.source = [this, source = layer.source](const auto& area) {
      ++begun_;
      bell_.ring();
      while (isHeld_ && !client::WaitScope::isGivenUp()) std::this_thread::yield();
      if (isBroken_) throw RuntimeFailure("The server is silent");
      return source(area);
    };
    return layer;
  }

  [[nodiscard]] static client::MapScene sceneOf(const client::MapGrid& map,
                                                std::vector<client::MapLayer> layers) {
    return {map.wkt, map.grid.pixelWidth(), map.grid.extent, std::move(layers)};
  }

  void waitForAll(client::MapDrawer& drawer) {
    bell_.waitUntil([&] { return !drawer.isBusy(); });
  }

  std::atomic<int> begun_ = 0;
  std::atomic<int> ended_ = 0;
  std::atomic<bool> isHeld_ = false;
  std::atomic<bool> isBroken_ = false;
  Bell bell_;
};

}  // namespace vlclientui::test
