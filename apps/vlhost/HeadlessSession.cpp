#include "HeadlessSession.h"

#include <system_error>
#include <utility>
#include <vector>

#include "Telling.h"
#include "engine/Engine.h"
#include "host/ShownText.h"

namespace vlclientui::vlhost {

namespace fs = std::filesystem;

HeadlessSession::HeadlessSession()
    : host_(host::composeHeadlessPlatform({})),
      surfaces_(std::make_shared<headless::HeadlessSurfaceFactory>()) {
  // The ready-made platform keeps its surfaces to itself, and the fields of a page are on them.
  auto parts = std::make_shared<Platform>(*host_.platform);
  parts->plexa = std::make_shared<engine::EngineFactory>(parts->xml, surfaces_);
  host_.platform = parts;
  host_ = host::start(std::move(host_));
}

headless::HeadlessToolkit& HeadlessSession::toolkit() const {
  return dynamic_cast<headless::HeadlessToolkit&>(*host_.platform->toolkit);
}

bool HeadlessSession::tellMessages() const {
  std::vector<std::string> texts = toolkit().failures();
  for (const MessageBox& box : toolkit().messages()) {
    if (box.buttons == MessageButtons::Ok) texts.push_back(box.text);
  }
  for (const std::string& text : texts) tell(host::shownText(host_, text));
  return !texts.empty();
}

std::string wholeReference(const std::string& reference) {
  std::error_code error;
  return fs::exists(reference, error) ? wholePath(reference).string() : reference;
}

fs::path wholePath(const std::string& file) { return fs::absolute(file).lexically_normal(); }

}  // namespace vlclientui::vlhost
