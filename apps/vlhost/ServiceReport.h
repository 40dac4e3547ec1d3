#pragma once

#include <string>
#include <vector>

#include "host/Services.h"

namespace vlclientui::vlhost {

/// Columns aligned by characters, a heading, and a line that counts; each line ended by "\n".
[[nodiscard]] std::string serviceTable(const std::vector<host::ServiceDescription>& services);

/// An array of objects. What a server does not tell has no member.
[[nodiscard]] std::string serviceJson(const std::vector<host::ServiceDescription>& services);

}  // namespace vlclientui::vlhost
