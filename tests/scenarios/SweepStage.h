#pragma once

#include <memory>

#include "contracts/Platform.h"
#include "scenarios/StrikingPorts.h"

namespace vlclientui::test {

/// What the sweep needs of one window system: its toolkit and engine, one window of the host, and modal
/// windows that run a script.
class SweepStage {
 public:
  virtual ~SweepStage() = default;

  /// Sets toolkit and engine of a platform that has system and documents.
  virtual void equip(Platform& platform) = 0;
  [[nodiscard]] virtual WindowHandle hostWindow() = 0;
  /// Takes the host's window away with all that stands in it.
  virtual void destroyHostWindow() = 0;
  virtual void runModal(Form& form, const std::function<void()>& script) = 0;
  /// Runs what waits in the queues of the window system.
  virtual void settle() = 0;
  /// Whether what knows no windows is struck on another window system already.
  [[nodiscard]] virtual bool strikesAtWindowsAlone() const { return false; }
};

/// The stage of the window system that the test program is built for.
[[nodiscard]] std::unique_ptr<SweepStage> makeSweepStage();

}  // namespace vlclientui::test
