#pragma once

#include <functional>
#include <memory>

#pragma GCC visibility push(default)
namespace vlclientui::widgets {
class EventLoop;
}

namespace vlclientui::host {

/// For programs without a toolkit of their own that show windows all the same: make it before the desktop
/// platform, and keep it until that is gone.
class ShownRun {
 public:
  /// @param pause between two steps, in milliseconds.
  explicit ShownRun(int pause);
  ShownRun(const ShownRun&) = delete;
  ShownRun& operator=(const ShownRun&) = delete;
  ~ShownRun();

  /// Runs the action after the pause, inside whichever window then waits for a person.
  void later(std::function<void()> action) const;

 private:
  std::unique_ptr<widgets::EventLoop> loop_;
  int pause_;
};

}  // namespace vlclientui::host
#pragma GCC visibility pop
