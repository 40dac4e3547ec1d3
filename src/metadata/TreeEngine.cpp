#include "metadata/TreeEngine.h"

#include "contracts/Silence.h"
#include "frame/ThreadState.h"

namespace vlclientui {

void releaseEngine(std::shared_ptr<Plexa>& engine) {
  if (!engine) return;
  engine->ParentWindow(0);
  engine.reset();
}

Plexa& TreeEngine::engine() {
  if (!engine_) engine_ = currentPlatform().plexa->createPlexa();
  return *engine_;
}

void TreeEngine::hide() { engine().Visible(false); }

void TreeEngine::resize(std::int32_t width, std::int32_t height) {
  engine().Width(width);
  engine().Height(height);
}

void TreeEngine::renew() {
  if (engine_) engine_->Visible(false);
  release();
  engine().Visible(false);
}

void TreeEngine::putIn(WindowHandle window) {
  engine().SetOption("treeviewdisplay", "True");
  engine().ParentWindow(window);
}

void TreeEngine::fill(const std::string& xml) {
  engine().SetOption("ShowVScrollBar", "False");
  engine().DataXml(xml);
  engine().Visible(true);
  if (!engine().Show()) endSilently("the form engine shows no tree");
}

void TreeEngine::show(const std::string& xml, WindowHandle window, const TreePlace& place) {
  renew();
  engine().Left(place.left);
  engine().Top(place.top);
  resize(place.width, place.height);
  putIn(window);
  fill(xml);
}

void TreeEngine::showSizedFirst(const std::string& xml, WindowHandle window, const TreePlace& place) {
  renew();
  resize(place.width, place.height);
  putIn(window);
  engine().Left(place.left);
  engine().Top(place.top);
  fill(xml);
}

}  // namespace vlclientui
