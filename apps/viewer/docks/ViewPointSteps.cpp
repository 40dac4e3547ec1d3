#include "viewer/docks/ViewPointSteps.h"

namespace vlclientui::viewer {
namespace {

constexpr const char* page = "ViewPoint";
// Milliseconds. The page lets events run while it writes its boxes: no step may be taken half written.
constexpr int behindAStep = 40;
constexpr int untilRest = 700;

}  // namespace

ViewPointSteps::ViewPointSteps(const std::function<void()>& moved)
    : listener_([this](const Operation& operation) { hear(operation); }) {
  for (QTimer* const timer : {&soon_, &rest_}) {
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, moved);
  }
}

void ViewPointSteps::hear(const Operation& operation) {
  if (operation.window != page) return;
  const bool isStep = operation.kind == Operation::Kind::Press;
  if (isStep) soon_.start(behindAStep);
  if (isStep || operation.kind == Operation::Kind::Set) rest_.start(untilRest);
}

}  // namespace vlclientui::viewer
