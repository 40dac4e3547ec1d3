#pragma once

#include <functional>
#include <memory>

namespace vlclientui::widgets {

/// The application object of a program that knows no Qt itself, and its clock. One per program.
class EventLoop {
 public:
  EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;
  ~EventLoop();

  /// Runs the action once, after so many milliseconds, inside whichever window then waits for a person.
  static void after(int milliseconds, std::function<void()> action);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace vlclientui::widgets
