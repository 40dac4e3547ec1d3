#pragma once

#include <functional>
#include <memory>

#include "headless/HeadlessSurface.h"

/// Surfaces of the form engine that are shown and can be acted on: each has a twin in memory, which holds
/// what the shown one shows and tells the engine of acts, as a person's on the shown one are told.
namespace vlclientui::python {

/// How a separate window of the form engine is acted in.
struct WindowActs {
  std::function<bool()> awaitsWindow;  ///< whether somebody acts in the next one
  /// Runs an action once the next window stands, and closes the window then.
  std::function<void(std::function<void()> act)> inNextWindow;
};

class TwinSurfaceFactory final : public engine::SurfaceFactory {
 public:
  TwinSurfaceFactory(std::shared_ptr<engine::SurfaceFactory> shown,
                     std::shared_ptr<headless::HeadlessSurfaceFactory> twins, WindowActs acts)
      : shown_(std::move(shown)), twins_(std::move(twins)), acts_(std::move(acts)) {}

  [[nodiscard]] std::unique_ptr<engine::Surface> createSurface(
      std::weak_ptr<engine::SurfaceListener> listener) override;

 private:
  std::shared_ptr<engine::SurfaceFactory> shown_;
  std::shared_ptr<headless::HeadlessSurfaceFactory> twins_;
  WindowActs acts_;
};

}  // namespace vlclientui::python
