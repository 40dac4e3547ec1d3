#pragma once

#include <map>
#include <string>
#include <vector>

#include "client/facade/CatalogueServer.h"
#include "host/Services.h"

namespace vlclientui::vlhost {

/// Columns aligned by characters, a heading, and a line that counts and tells how services are referred to;
/// each line ended by "\n". @param server as it was asked for.
[[nodiscard]] std::string serviceTable(const std::vector<host::ServiceDescription>& services,
                                       const std::string& server);

/// An array of objects. What a server does not tell has no member. Sizes are pixels; the extent is in the
/// units of the coordinate system. @param facts by the names of the services, which may lack some.
/// @param server as it was asked for.
[[nodiscard]] std::string serviceJson(const std::vector<host::ServiceDescription>& services,
                                      const std::map<std::string, client::RasterFacts>& facts,
                                      const std::string& server);

}  // namespace vlclientui::vlhost
