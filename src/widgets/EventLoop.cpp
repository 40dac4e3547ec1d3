#include "widgets/EventLoop.h"

#include <QApplication>
#include <QTimer>
#include <array>
#include <string>
#include <utility>

namespace vlclientui::widgets {

// The application keeps references to both, so that they must live as long as it.
struct EventLoop::Parts {
  std::string name = "vlhost";
  std::array<char*, 2> words{name.data(), nullptr};
  int count = 1;
  QApplication application{count, words.data()};
};

EventLoop::EventLoop() : parts_(std::make_unique<Parts>()) {}

EventLoop::~EventLoop() = default;

void EventLoop::after(int milliseconds, std::function<void()> action) {
  QTimer::singleShot(milliseconds, qApp, std::move(action));
}

}  // namespace vlclientui::widgets
