#include "metadata/TreeEngine.h"

#include "contracts/CallOut.h"
#include "contracts/Silence.h"
#include "frame/ThreadState.h"

namespace vlclientui {

std::shared_ptr<Plexa> TreeEngine::engine() {
  if (!engine_) engine_ = callOut(currentPlatform().plexa)->createPlexa();
  return engine_;
}

void TreeEngine::hide() { callOut(engine())->Visible(false); }

void TreeEngine::resize(std::int32_t width, std::int32_t height) {
  callOut(engine())->Width(width);
  callOut(engine())->Height(height);
}

void TreeEngine::renew() {
  if (engine_) callOut(engine_)->Visible(false);
  release();
  callOut(engine())->Visible(false);
}

void TreeEngine::putIn(WindowHandle window) {
  callOut(engine())->SetOption("treeviewdisplay", "True");
  callOut(engine())->ParentWindow(window);
}

void TreeEngine::fill(const std::string& xml) {
  callOut(engine())->SetOption("ShowVScrollBar", "False");
  callOut(engine())->DataXml(xml);
  callOut(engine())->Visible(true);
  if (!callOut(engine())->Show()) endSilently("the form engine shows no tree");
}

void TreeEngine::show(const std::string& xml, WindowHandle window, const TreePlace& place) {
  renew();
  callOut(engine())->Left(place.left);
  callOut(engine())->Top(place.top);
  resize(place.width, place.height);
  putIn(window);
  fill(xml);
}

void TreeEngine::showSizedFirst(const std::string& xml, WindowHandle window, const TreePlace& place) {
  renew();
  resize(place.width, place.height);
  putIn(window);
  callOut(engine())->Left(place.left);
  callOut(engine())->Top(place.top);
  fill(xml);
}

}  // namespace vlclientui
