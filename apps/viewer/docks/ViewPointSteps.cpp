#include "viewer/docks/ViewPointSteps.h"

#include <utility>

namespace vlclientui::viewer {
namespace {

constexpr const char* page = "ViewPoint";
// Milliseconds. The page lets events run while it writes its boxes: no step may be taken half written.
constexpr int behindAStep = 40;
constexpr int behindTyping = 700;

}  // namespace

ViewPointSteps::ViewPointSteps(std::function<void()> moved)
    : listener_([this](const Operation& operation) { hear(operation); }) {
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, std::move(moved));
}

void ViewPointSteps::hear(const Operation& operation) {
  if (operation.window != page) return;
  if (operation.kind == Operation::Kind::Press) soon_.start(behindAStep);
  if (operation.kind == Operation::Kind::Set) soon_.start(behindTyping);
}

}  // namespace vlclientui::viewer
