#pragma once

#include <string>
#include <vector>

#include "contracts/Platform.h"

namespace vlclientui::viewer {

/// Makes it the first of the servers that the add-service window offers, and keeps the others. Where the
/// settings file cannot be written, nothing changes. A password or key in it is used for this session and not
/// kept. @param platform of this thread. @param typed as a person types it.
void putServerFirst(const Platform& platform, const std::string& typed);

/// Those that the add-service window offers, the latest first. The calling thread needs its platform.
[[nodiscard]] std::vector<std::string> serversOfLate();

}  // namespace vlclientui::viewer
