#pragma once

#include <string>
#include <string_view>

namespace vlclientui::vlhost {

[[nodiscard]] bool isCommand(std::string_view name);

/// What --help prints. @param command for which alone; empty for a tour of all of them.
[[nodiscard]] std::string helpText(std::string_view command);

}  // namespace vlclientui::vlhost
