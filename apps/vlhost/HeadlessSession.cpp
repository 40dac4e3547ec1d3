#include "HeadlessSession.h"

#include <iostream>
#include <system_error>

#include "engine/Engine.h"
#include "frame/ThreadState.h"

namespace vlclientui::vlhost {

namespace fs = std::filesystem;

HeadlessSession::HeadlessSession()
    : host_(host::composeHeadlessPlatform({})),
      surfaces_(std::make_shared<headless::HeadlessSurfaceFactory>()) {
  // The ready-made platform keeps its surfaces to itself, and the fields of a page are on them.
  auto parts = std::make_shared<Platform>(*host_.platform);
  parts->plexa = std::make_shared<engine::EngineFactory>(parts->xml, surfaces_);
  host_.platform = parts;
  setPlatform(host_.platform);
}

headless::HeadlessToolkit& HeadlessSession::toolkit() const {
  return dynamic_cast<headless::HeadlessToolkit&>(*host_.platform->toolkit);
}

void HeadlessSession::tellMessages() const {
  for (const MessageBox& box : toolkit().messages()) {
    if (box.buttons == MessageButtons::Ok) std::cerr << "vlhost: " << box.text << "\n";
  }
  for (const std::string& failure : toolkit().failures()) std::cerr << "vlhost: " << failure << "\n";
}

std::string wholeReference(const std::string& reference) {
  std::error_code error;
  return fs::exists(reference, error) ? wholePath(reference).string() : reference;
}

fs::path wholePath(const std::string& file) { return fs::absolute(file).lexically_normal(); }

}  // namespace vlclientui::vlhost
