#include "widgets/EventLoop.h"

#include <QApplication>
#include <QTimer>
#include <array>
#include <string>
#include <utility>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::widgets {

namespace {

bool isSet(const char* variable) { return !qEnvironmentVariableIsEmpty(variable); }

// Without one the toolkit ends the process.
void needDisplay() {
#ifdef Q_OS_LINUX
  const QByteArray wanted = qgetenv("QT_QPA_PLATFORM");
  const bool isX = wanted.startsWith("xcb");
  const bool isWayland = wanted.startsWith("wayland");
  if (!wanted.isEmpty() && !isX && !isWayland) return;
  const bool isThere = (!isWayland && isSet("DISPLAY")) || (!isX && isSet("WAYLAND_DISPLAY"));
  if (!isThere) throw RuntimeFailure("there is no display to show windows on");
#endif
}

}  // namespace

// The application keeps references to both, so that they must live as long as it.
struct EventLoop::Parts {
  std::string name = "vlhost";
  std::array<char*, 2> words{name.data(), nullptr};
  int count = 1;
  QApplication application{count, words.data()};
};

EventLoop::EventLoop() {
  needDisplay();
  parts_ = std::make_unique<Parts>();
}

EventLoop::~EventLoop() = default;

void EventLoop::after(int milliseconds, std::function<void()> action) {
  QTimer::singleShot(milliseconds, qApp, std::move(action));
}

}  // namespace vlclientui::widgets
