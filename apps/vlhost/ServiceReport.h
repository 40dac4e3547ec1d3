#pragma once

#include <string>
#include <vector>

#include "host/Services.h"

namespace vlclientui::vlhost {

/// Columns aligned by characters, a heading, and a line that counts and tells how services are referred to;
/// each line ended by "\n". @param server as it was asked for.
[[nodiscard]] std::string serviceTable(const std::vector<host::ServiceDescription>& services,
                                       const std::string& server);

/// An array of objects. What a server does not tell has no member. @param server as it was asked for.
[[nodiscard]] std::string serviceJson(const std::vector<host::ServiceDescription>& services,
                                      const std::string& server);

}  // namespace vlclientui::vlhost
