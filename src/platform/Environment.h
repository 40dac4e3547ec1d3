#pragma once

#include <functional>
#include <optional>
#include <string>

namespace vlclientui::platform {

/// Value of a variable; nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

/// The variables of this process.
[[nodiscard]] Environment processEnvironment();

}  // namespace vlclientui::platform
