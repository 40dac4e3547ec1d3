#include "frame/EngineRelease.h"

namespace vlclientui {

void releaseEngine(std::shared_ptr<Plexa>& engine) {
  if (!engine) return;
  const auto former = engine;
  former->ParentWindow(0);
  // What runs meanwhile may have put another one in its place.
  if (engine == former) engine.reset();
}

}  // namespace vlclientui
