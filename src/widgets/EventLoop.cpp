#include "widgets/EventLoop.h"

#include <QApplication>
#include <QTimer>
#include <array>
#include <string>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "widgets/DisplayReach.h"

namespace vlclientui::widgets {

// The application keeps references to both, so that they must live as long as it.
struct EventLoop::Parts {
  std::string name = "vlhost";
  std::array<char*, 2> words{name.data(), nullptr};
  int count = 1;
  QApplication application{count, words.data()};
};

EventLoop::EventLoop() {
  if (const std::string problem = displayProblem(); !problem.empty()) throw RuntimeFailure(problem);
  parts_ = std::make_unique<Parts>();
}

EventLoop::~EventLoop() = default;

void EventLoop::after(int milliseconds, std::function<void()> action) {
  QTimer::singleShot(milliseconds, qApp, std::move(action));
}

}  // namespace vlclientui::widgets
