#pragma once

#include <chrono>

#include "client/transport/TransportSettings.h"

namespace vlclientui::test {

/// Of a transport that does not pause between tries.
[[nodiscard]] inline client::TransportSettings quickSettings() {
  client::TransportSettings settings;
  settings.sources.pause = [](std::chrono::milliseconds) { return std::chrono::milliseconds(0); };
  return settings;
}

}  // namespace vlclientui::test
