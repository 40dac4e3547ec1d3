#include "host/ShownRun.h"

#include <utility>

#include "widgets/EventLoop.h"

namespace vlclientui::host {

ShownRun::ShownRun(int pause) : loop_(std::make_unique<widgets::EventLoop>()), pause_(pause) {}

ShownRun::~ShownRun() = default;

void ShownRun::later(std::function<void()> action) const {
  widgets::EventLoop::after(pause_, std::move(action));
}

}  // namespace vlclientui::host
