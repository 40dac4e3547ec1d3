#include "platform/Environment.h"

#include <cstdlib>

namespace vlclientui::platform {

Environment processEnvironment() {
  return [](const std::string& name) -> std::optional<std::string> {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  };
}

}  // namespace vlclientui::platform
