#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "client/catalogue/Catalogue.h"
#include "client/network/Coverages.h"

namespace vlclientui::client {

/// Coverages of a server by the names that the list shows: folders are made of what separates parts of the
/// ids. In the order of the names.
using CoverageNames = std::map<std::string, std::string>;

[[nodiscard]] CoverageNames coverageNames(const CoverageCapabilities& capabilities);

/// One of them as a service. @param address of the server.
[[nodiscard]] CatalogueEntry coverageEntry(const std::string& address, const std::string& name,
                                           const std::string& id);

/// What the list of services shows. @param descriptions one for each name, null where nobody asked for it.
[[nodiscard]] CatalogueContent coverageContent(
    const std::string& address, const CoverageCapabilities& capabilities, const CoverageNames& names,
    const std::vector<std::shared_ptr<const CoverageDescription>>& descriptions);

}  // namespace vlclientui::client
